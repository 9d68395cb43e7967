#include "tests/cli/CliTest.h"
#include "tests/support/FileSizeLimit.h"

namespace {

namespace fs = std::filesystem;

using Failures = CliTest;

TEST_F(Failures, OfWrongUsageShowTheUsageLine) {
    for (const std::string time : {"''", "-- -1", "nan", "inf", "1e999", "1:5", "1:60", "1::30",
                                   "1:60:00", "1:2:3:04", "0x10", "1.5:00", "'5 '"}) {
        ExpectFailure(2, "extract a.WAV " + time + " 10 out",
                      "Usage: klipra-cli extract FILE START END OUT\n");
    }
    for (const char* call :
         {"", "frobnicate", "cut a.WAV 1 2", "cut a.WAV 1 2 out more", "cut --json a.WAV 1 2 out",
          "info --verbose a.WAV", "scenes a.WAV --level", "scenes a.WAV --level 0",
          "split a.WAV 1 p", "wave --width=10001 a.WAV out", "wave --zoom=1e1 a.WAV out"}) {
        ExpectFailure(2, call, "Usage: klipra-cli ");
    }
}

TEST_F(Failures, LeaveEverythingAsItWas) {
    m_folder.Write("old-1.wav", "old");
    m_folder.Write("nulls.mp3", std::string(1000, '\0'));
    fs::create_directory(m_folder.Path("folder-2.wav"));
    fs::create_symlink("a.WAV", m_folder.Path("link-2.wav"));
    const std::pair<std::string, std::string> cases[] = {
        {"extract nulls.mp3 1 2 old-1.wav", "nulls.mp3"},
        {"extract a.WAV 1 2 ./a.WAV", "a.WAV"},
        {"split a.WAV 0 old-%.wav", "'0'"},
        {"split a.WAV 100 old-%.wav", "'100'"},
        {"split a.WAV 5 5.00001 old-%.wav", "'5.00001'"}, // the same sample frame
        {"split a.WAV 1 folder-%.wav", "folder-2.wav"},
        {"split a.WAV 1 link-%.wav", "a.WAV"},
        {"scenes a.WAV >/dev/full", "cannot write the result: No space"},
        {"info none.wav", "'none.wav': No such file"},
        {"scenes old-1.flac", "'old-1.flac': neither an mp3 nor a wav file"},
        {"wave --width 10000 --zoom 11 a.WAV old-1.wav", "at this width at most 10\n"},
        {"wave nulls.mp3 old-1.wav", "klipra-cli: 'nulls.mp3': holds no audio to decode\n"},
    };
    for (const auto& [arguments, message] : cases) {
        ExpectFailure(1, arguments, message);
    }
    const FileSizeLimit limit(1'000'000); // enough for the first piece only
    ExpectFailure(1, "split a.WAV 1 old-%.wav", "'old-2.wav': cannot be written");
}

} // namespace
