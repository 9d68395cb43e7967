#include "tests/cli/CliTest.h"
#include "tests/support/FileSizeLimit.h"

namespace {

namespace fs = std::filesystem;

using Failures = CliTest;

TEST_F(Failures, OfWrongUsageShowTheUsageLine) {
    for (const std::string time :
         {"''", "x", "-- -1", "nan", "inf", "1e999", "1:5", "1:60", "1::30", "1:60:00", "1:2:3:04",
          "0x10", "1.5:00", "'5 '", ":30"}) {
        ExpectFailure(2, "extract a.WAV " + time + " 10 out",
                      "Usage: klipra-cli extract FILE START END OUT\n");
    }
    for (const char* call :
         {"", "frobnicate", "cut a.WAV 1 2", "cut a.WAV 1 2 out more", "cut --json a.WAV 1 2 out",
          "info --verbose a.WAV", "scenes a.WAV --level", "scenes a.WAV --level 0",
          "scenes a.WAV --level 0.1x", "scenes a.WAV --time soon", "split a.WAV p%",
          "split a.WAV 1 p", "split --time 1 a.WAV 1 p%", "wave --width=0 a.WAV out",
          "wave --width=10001 a.WAV out", "wave --width=1e3 a.WAV out", "wave --zoom=101 a.WAV out",
          "wave --level=1 a.WAV out"}) {
        ExpectFailure(2, call, "Usage: klipra-cli ");
    }
}

TEST_F(Failures, LeaveEverythingAsItWas) {
    m_folder.Write("old-1.wav", "old");
    m_folder.Write("broken.wav", m_wav.Header().substr(0, 40));
    m_folder.Write("empty.mp3", "");
    for (const char* name : {"nulls.mp3", "nulls.wav", "nulls.flac"}) {
        m_folder.Write(name, std::string(1000, '\0'));
    }
    fs::create_directory(m_folder.Path("folder-2.wav"));
    fs::create_symlink("a.WAV", m_folder.Path("link-2.wav"));
    const std::pair<std::string, std::string> cases[] = {
        {"extract broken.wav 1 2 old-1.wav", "broken.wav"},
        {"extract empty.mp3 1 2 old-1.wav", "empty.mp3"},
        {"extract nulls.flac 1 2 old-1.wav", "nulls.flac"},
        {"extract none.mp3 1 2 old-1.wav", "none.mp3"},
        {"extract a.WAV 1 2 a.WAV", "a.WAV"},
        {"extract a.WAV 1 2 link-2.wav", "a.WAV"},
        {"extract a.WAV 1 2 folder-2.wav", "folder-2.wav"},
        {"extract a.WAV 1 2 no/folder.wav", "no/folder.wav"},
        {"extract a.WAV 1 2 /dev/full", "/dev/full"},
        {"split a.WAV 0 old-%.wav", "'0'"},
        {"split a.WAV 100 old-%.wav", "'100'"},
        {"split a.WAV 5 5.00001 old-%.wav", "'5.00001'"}, // the same sample frame
        {"split a.WAV 1 folder-%.wav", "folder-2.wav"},
        {"split a.WAV 1 link-%.wav", "a.WAV"},
        {"split a.WAV 1 %/p.wav", "1/p.wav"},
        {"scenes nulls.mp3", "nulls.mp3"},
        {"info nulls.mp3", "'nulls.mp3': No frame found before end of file was reached."},
        {"info nulls.wav", "'nulls.wav': not a WAV file"},
        {"info nulls.flac", "'nulls.flac': neither an mp3 nor a wav file"},
        {"info none.wav", "'none.wav': No such file"},
        {"wave --width 10000 --zoom 11 a.WAV old-1.wav", "at this width at most 10\n"},
        {"wave nulls.mp3 old-1.wav", "klipra-cli: 'nulls.mp3': holds no audio to decode\n"},
    };
    for (const auto& [arguments, message] : cases) {
        ExpectFailure(1, arguments, message);
    }
    const FileSizeLimit limit(1'000'000); // enough for the first piece only
    ExpectFailure(1, "split a.WAV 1 old-%.wav", "cannot write the output");
}

} // namespace
