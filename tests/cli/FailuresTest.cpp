#include "tests/cli/CliTest.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/Mp3Builder.h"

namespace {

namespace fs = std::filesystem;

using Failures = CliTest;

// 16 bytes of AAC at 44.1 kHz.
std::string AdtsFrame() {
    return std::string("\xFF\xF1\x50\x80\x02\x1F\xFC", 7) + std::string(9, '\0');
}

TEST_F(Failures, OfWrongUsageShowTheUsageLine) {
    const std::pair<const char*, const char*> cases[] = {
        {"",
         "missing command\nUsage: klipra-cli COMMAND ..., where COMMAND is one of info, extract"},
        {"frobnicate", "unknown command 'frobnicate'\nUsage: klipra-cli COMMAND"},
        {"-x", "unknown option '-x'\n"},
        {"help frobnicate", "unknown command 'frobnicate'\nUsage: klipra-cli help [COMMAND]\n"},
        {"cut a.WAV 1 2", "missing operand\nUsage: klipra-cli cut [--finish] FILE START END"},
        {"cut a.WAV 1 2 3 out.wav", "missing operand: a START needs an END\n"},
        {"extract a.WAV 1 2 out.wav more", "extra operand 'more'\n"},
        {"extract a.WAV 1:5 2 out.wav", "'1:5' is not a time: write seconds (90, 12.5), [H:]M:SS"},
        {"extract -1 a.WAV", "unknown option '-1'\n"},
        {"extract a.WAV 1 2 out", "'out' needs the extension of the source, .wav\n"},
        {"extract a.WAV 1 2 out.mp3", "'out.mp3' needs the extension"},
        {"extract a.WAV 1 2 -", "'-' needs the extension"},
        {"cut --json a.WAV 1 2 out.wav", "unknown option '--json'\n"},
        {"info -a.mp3", "unknown option '-a.mp3'\n"},
        {"info --verb=1 a.WAV", "unknown option '--verb'\n"},
        {"info --json=1 a.WAV", "option '--json' takes no value\n"},
        {"scenes a.WAV --level", "option '--level' needs a value: L\n"},
        {"scenes a.WAV --level 0", "'0' is not a level: write a share"},
        {"scenes a.WAV --format x", "'x' is not a form: write lines, cue, labels or csv\n"},
        {"scenes --json --format=csv a.WAV", "exclude each other\n"},
        {"scenes --format=cue a.WAV a.WAV", "a CUE sheet is of one FILE\n"},
        {"split a.WAV p%.wav", "missing operand: where to split\nUsage: klipra-cli split"},
        {"split a.WAV 1 p.wav", "'p.wav' has no %"},
        {"split --quiet --every 1 a.WAV p%.wav", "exclude each other\n"},
        {"split --ti 1 a.WAV 1 p%.wav", "--time goes with --quiet\n"},
        {"split --t 1 a.WAV 1 p%.wav", "'--t' may mean --time or --tags\n"},
        {"split --every 0 a.WAV p%.wav", "pieces of 0 seconds hold nothing\n"},
        {"split --every end a.WAV p%.wav", "'end' is not a time"},
        {"split --quiet a.WAV 1 p%.wav", "extra operand '1'\n"},
        {"wave --width=10001 a.WAV out.png", "'10001' is not a whole number from 1 to 10000\n"},
        {"wave --zoom=1e1 a.WAV out.png", "'1e1' is not a whole number"},
        {"wave a.WAV out.wav", "'out.wav' needs the extension .png\n"},
    };
    for (const auto& [arguments, message] : cases) {
        ExpectFailure(2, arguments, message);
    }
}

TEST_F(Failures, LeaveEverythingAsItWas) {
    m_folder.Write("old-1.wav", "old");
    m_folder.Write("nulls.mp3", std::string(1000, '\0'));
    fs::create_directory(m_folder.Path("folder-2.wav"));
    fs::create_symlink("a.WAV", m_folder.Path("link-2.wav"));
    const std::pair<std::string, std::string> cases[] = {
        {"extract nulls.mp3 1 2 old-1.mp3", "nulls.mp3"},
        {"extract a.WAV 1 2 ./a.WAV", "a.WAV"},
        {"split a.WAV 0 old-%.wav", "'0'"},
        {"split a.WAV 100 old-%.wav", "'100'"},
        {"split a.WAV 5 5.00001 old-%.wav", "'5.00001'"}, // the same sample frame
        {"split a.WAV 1 folder-%.wav", "folder-2.wav"},
        {"split a.WAV 1 link-%.wav", "'link-2.wav': this is the input"},
        {"scenes a.WAV >/dev/full", "cannot write the result: No space"},
        {"info none.wav", "'none.wav': No such file"},
        {"scenes old-1.flac", "'old-1.flac': neither an mp3 nor a wav file"},
        {"wave --width 10000 --zoom 11 a.WAV old.png", "at this width at most 10\n"},
        {"wave nulls.mp3 old.png", "klipra-cli: 'nulls.mp3': holds no audio to decode\n"},
    };
    for (const auto& [arguments, message] : cases) {
        ExpectFailure(1, arguments, message);
    }
    m_folder.Write("frames.mp3", Mp3Builder().Frames(4000).Bytes());
    m_folder.Write("old-2.mp3", "old");
    const FileSizeLimit limit(1'000'000); // enough for the first piece only
    for (const std::string command : {"split ", "split --finish "}) {
        ExpectFailure(1, command + "a.WAV 1 old-%.wav", "'old-2.wav': cannot be written");
        ExpectFailure(1, command + "frames.mp3 1 old-%.mp3", "'old-2.mp3': cannot be written");
        ExpectFailure(1, command + "-n frames.mp3 1 2 3 old-%.mp3", "'old-2.mp3': exists");
    }
}

TEST_F(Failures, OfWhatIsAskedAndOfTargetsNameTheFileAtFault) {
    m_folder.Write("aac.mp3", AdtsFrame() + AdtsFrame());
    m_folder.Write("not-aac.mp3", AdtsFrame() + Mp3Builder().Frames(9).Bytes());
    m_folder.Write("wav.mp3", m_wav.Header());
    m_folder.Write("mp3.wav", Mp3Builder().Id3v2(9).Frames(2).Bytes());
    m_folder.Write("b\n.mp3", "");
    m_folder.Write("list", "1\t1\t\n200\t200\t\n");
    m_folder.Write("o2.wav", "old");
    fs::create_symlink("nowhere.wav", m_folder.Path("dangling.wav"));
    fs::create_symlink("o1.wav", m_folder.Path("p2.wav"));
    fs::create_symlink("p2.wav", m_folder.Path("p1.wav"));
    fs::create_symlink("o2.wav", m_folder.Path("q1.wav"));
    fs::create_hard_link(m_folder.Path("o2.wav"), m_folder.Path("q2.wav"));
    fs::create_symlink("/dev/null", m_folder.Path("null.png"));
    const std::pair<std::string, std::string> cases[] = {
        {"scenes aac.mp3", "'aac.mp3': is not an MP3 file: it looks like AAC (ADTS)\n"},
        {"cut wav.mp3 1 2 o.mp3", "'wav.mp3': is not an MP3 file: it looks like WAV\n"},
        {"info mp3.wav", "'mp3.wav': is not a WAV file: it looks like MP3\n"},
        {"info 'b\n.mp3'", "'b\\n.mp3': "},
        {"extract a.WAV 100 200 o.wav", "'a.WAV': there is no audio in the range\n"},
        {"extract a.WAV 5 5 o.wav", "'a.WAV': there is no audio from 5.000000 to 5.000000 s\n"},
        {"cut a.WAV 0 50 50 end o.wav", "'a.WAV': nothing would be left of it\n"},
        {"cut a.WAV 1 2 100 200 o.wav", "'a.WAV': there is no audio in the range\n"},
        {"cut a.WAV 1 2 dangling.wav", "'dangling.wav': is a link that leads nowhere\n"},
        {"cut a.WAV 1 2 none/o.wav", "'none/o.wav': No such file or directory\n"},
        {"wave a.WAV null.png", "'null.png': is no regular file\n"},
        {"split a.WAV 1 p%.wav", "link that leads nowhere\n"},
        {"split a.WAV 1 q%.wav", "'q2.wav': is the same file as 'q1.wav'\n"},
        {"split -n a.WAV 1 o%.wav", "'o2.wav': exists, and is not to be replaced\n"},
        {"extract -n --dry-run a.WAV 1 2 o2.wav", "'o2.wav': exists"},
        {"split --at none a.WAV o%.wav", "'none': No such file or directory\n"},
        {"split --at list a.WAV o%.wav",
         "'list': line 2: 200.000000 s does not lie before the end"},
        {"split --at - a.WAV o%.wav <a.WAV", "'standard input': line 1: "},
        {"split --every 0.0005 a.WAV o%.wav", "'a.WAV': would be split into more than 100000"},
    };
    for (const auto& [arguments, message] : cases) {
        ExpectFailure(1, arguments, message);
    }
    EXPECT_NE(Done("info not-aac.mp3").find("sampling_rate"), std::string::npos);
}

// At whatever moment: while the outputs are made, written, exchanged.
} // namespace
