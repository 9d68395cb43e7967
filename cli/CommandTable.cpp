#include "cli/CommandTable.h"

#include "cli/Commands.h"

#include <algorithm>
#include <limits>

namespace {

constexpr std::size_t kAnyCount = std::numeric_limits<std::size_t>::max();

// What every command takes, and what those take that write.
constexpr Option kCommon[] = {Option::Silent, Option::NoReplace, Option::Help};
constexpr Option kOfCutters[] = {Option::DryRun};

std::vector<Option> OptionsOf(std::vector<Option> own, bool cuts) {
    if (cuts) {
        own.insert(own.end(), std::begin(kOfCutters), std::end(kOfCutters));
    }
    own.insert(own.end(), std::begin(kCommon), std::end(kCommon));
    return own;
}

CommandInfo Info() {
    return {
        .name = "info",
        .forms = {"[--json] FILE..."},
        .leastOperands = 1,
        .mostOperands = kAnyCount,
        .operands = {ValueKind::Source},
        .options = OptionsOf({Option::Json}, false),
        .summary = "tells what is in an MP3 or WAV file",
        .details =
            {"Of an MP3: the tags at both ends with their places, the first frame, the VBR header "
             "with what the encoder noted in it, the number of frames behind the first, and the "
             "duration. Of a WAV: its format, the chunks up to and including the samples, and the "
             "duration. Sizes and offsets are in bytes, bit rates in bits per second, sampling "
             "rates and the lowpass filter in Hz. Title, artist and chapters are shown where tags "
             "hold them.",
             "With --json it is one JSON object, without what tags hold; with several FILEs one "
             "object a line, each with its 'file'."},
        .examples = {{"Ask how long two recordings last, in seconds:",
                      "klipra-cli info radio.mp3 tape.wav | grep seconds"}},
        .run = RunInfo,
    };
}

CommandInfo Extract() {
    return {
        .name = "extract",
        .forms = {"[--finish] FILE START END OUT"},
        .leastOperands = 4,
        .mostOperands = 4,
        .operands = {ValueKind::Source, ValueKind::Text, ValueKind::Text, ValueKind::Output},
        .options = OptionsOf({Option::Finish}, true),
        .summary = "writes only the range from START to END to OUT",
        .details = {"The two times may be in either order. An END behind the audio is its end; a "
                    "range that holds no audio fails."},
        .examples = {{"Take ten minutes out of a long recording:",
                      "klipra-cli extract radio.mp3 1:20:00 1:30:00 interview.mp3"},
                     {"Keep the last half minute:",
                      "klipra-cli extract radio.mp3 end-30 end jingle.mp3"}},
        .run = RunExtract,
    };
}

CommandInfo Cut() {
    return {
        .name = "cut",
        .forms = {"[--finish] FILE START END [START END ...] OUT"},
        .leastOperands = 4,
        .mostOperands = kAnyCount,
        .operands = {ValueKind::Source, ValueKind::Text, ValueKind::Text, ValueKind::Output},
        .options = OptionsOf({Option::Finish}, true),
        .summary = "writes everything but the ranges to OUT",
        .details = {"Ranges may be given in any order, and may overlap. A cut that leaves nothing "
                    "fails."},
        .examples = {{"Cut two advertisements out:",
                      "klipra-cli cut show.mp3 12:30.5 14:02 31:10 32:40 show-only.mp3"}},
        .run = RunCut,
    };
}

CommandInfo Split() {
    return {
        .name = "split",
        .forms = {"[--finish] [--tags] FILE POS [POS ...] OUT",
                  "[--finish] [--tags] --quiet [--level L] [--time S] [--min-piece S] FILE OUT",
                  "[--finish] [--tags] --every T FILE OUT",
                  "[--finish] [--tags] --at LIST FILE OUT"},
        .leastOperands = 2,
        .mostOperands = kAnyCount,
        .operands = {ValueKind::Source, ValueKind::Folder},
        .options = OptionsOf({Option::Finish, Option::Quiet, Option::Every, Option::At,
                              Option::Level, Option::Time, Option::LeastPiece, Option::Tags},
                             true),
        .summary = "writes the pieces between positions, each to a file of its own",
        .details =
            {"OUT is a pattern: its last % becomes the number of a piece, with leading zeros to "
             "the width of the largest; %3 or %03d sets another width. {title} becomes the title "
             "that LIST gives a piece, or its number where there is none; what cannot stand in a "
             "file name becomes _ there. All pieces are written, or none.",
             "A position has to lie inside the audio, and no two may be the same. A piece is what "
             "extract writes for the same times: of an MP3, neighbouring pieces share the frames "
             "at their boundary.",
             "--quiet splits in the middle of every quiet place; quiet at either end of the file "
             "makes no piece, and where nothing is quiet there is one piece.",
             "LIST is a CUE sheet (INDEX 01 of each track), labels of Audacity (where regions do "
             "not touch, the gap between them is a piece, too), or CSV with a header, as scenes "
             "writes it (the column 'seconds' decides). It is UTF-8 or Shift_JIS; - is standard "
             "input."},
        .examples = {{"Split a tape into its songs, song-1.wav to song-3.wav:",
                      "klipra-cli split tape.wav 3:58 7:41.5 song-%.wav"},
                     {"Split at every silence of a second or more, but into no pieces of less than "
                      "a minute:",
                      "klipra-cli split --quiet --time 1 --min-piece 60 radio.mp3 part-%.mp3"},
                     {"Split a concert at the tracks of a CUE sheet, and name and tag the pieces "
                      "by their titles:",
                      "klipra-cli split --tags --at concert.cue concert.mp3 "
                      "'% {title}.mp3'"},
                     {"Cut a day of radio into hours, after a look at what that gives:",
                      "klipra-cli split --dry-run --every 1h radio.mp3 hour-%02d.mp3"}},
        .run = RunSplit,
    };
}

CommandInfo Scenes() {
    return {
        .name = "scenes",
        .forms = {"[--level L] [--time S] [--json | --format F] FILE..."},
        .leastOperands = 1,
        .mostOperands = kAnyCount,
        .operands = {ValueKind::Source},
        .options = OptionsOf({Option::Level, Option::Time, Option::Json, Option::Format}, false),
        .summary = "finds the quiet places, where the scene may change",
        .details =
            {"Each is a line with its position, in bytes of the decoded audio (16 bits a sample, "
             "all channels) and in seconds. A quiet place of less than two seconds is told by its "
             "middle, a longer one by its begin and its end, one that lasts to the end of the "
             "file by its begin. Where there is none, nothing is printed, and a terminal is told "
             "the quietest level that there is.",
             "F is lines, cue, labels (of Audacity) or csv; split --at reads all but the first. "
             "With --json it is an object of 'positions' and of 'places', each with 'begin' and "
             "'end' in seconds and its loudest sample as 'level'.",
             "With several FILEs each line has the file as a further last column, and --json is "
             "one object a line; a CUE sheet is of one FILE."},
        .examples = {{"List the pauses of a lecture recorded in a noisy room:",
                      "klipra-cli scenes --level auto --time 0.7 lecture.mp3"},
                     {"Look the places over in Audacity, then split there:",
                      "klipra-cli scenes --format labels tape.wav >places.txt"},
                     {"Split at the same places, the list left as it is:",
                      "klipra-cli scenes --format csv tape.wav | klipra-cli split --at - tape.wav "
                      "place-%.wav"}},
        .run = RunScenes,
    };
}

CommandInfo Wave() {
    return {
        .name = "wave",
        .forms = {"[--width W] [--zoom Z] FILE OUT.png"},
        .leastOperands = 2,
        .mostOperands = 2,
        .operands = {ValueKind::Source, ValueKind::Picture},
        .options = OptionsOf({Option::Width, Option::Zoom}, false),
        .summary = "draws the waveform, W x Z pixels wide and 201 high",
        .details = {"It is a PNG image, the left channel upwards and the right one downwards. At "
                    "the largest zoom a pixel is a millisecond."},
        .examples = {{"Draw an hour for a web page:",
                      "klipra-cli wave --width 1920 radio.mp3 radio.png"}},
        .run = RunWave,
    };
}

CommandInfo Compare() {
    return {
        .name = "compare",
        .forms = {"[--json] SOURCE RESULT"},
        .leastOperands = 2,
        .mostOperands = 2,
        .operands = {ValueKind::Source},
        .options = OptionsOf({Option::Json}, false),
        .summary = "tells which parts of SOURCE another file holds",
        .details =
            {"Each line is a run of frames of RESULT, of an MP3 counted from 0 behind the frame of "
             "its VBR header, of a WAV sample frames: where in SOURCE they stand, every byte the "
             "same; that a join has altered them, which --finish does to a few beside it, so that "
             "they decode from the same data or are mute; or that they are from elsewhere. Every "
             "frame of RESULT is in one line.",
             "With --json it is an object of 'runs', each with the first frame in the 'result' "
             "and in the 'source' and their 'count', and of the numbers of all frames that are "
             "'altered' and 'foreign'.",
             "The status is 0 also where frames are from elsewhere; so count, of a WAV of hours, "
             "stretches of the source of less than a twentieth of a second, too. Tags and what "
             "else is around "
             "the audio is not compared."},
        .examples = {{"See that a cut has left everything else as it was:",
                      "klipra-cli compare show.mp3 show-only.mp3"}},
        .run = RunCompare,
    };
}

CommandInfo Help() {
    return {
        .name = "help",
        .forms = {"[COMMAND]"},
        .leastOperands = 0,
        .mostOperands = 1,
        .operands = {ValueKind::Command},
        .options = {Option::Help},
        .summary = "tells about a command, or about all of them",
        .details = {"The same is said by --help or -h behind a command, or in its place; "
                    "--version or -V in its place prints the version."},
        .examples = {{"Read about split:", "klipra-cli help split"}},
        .run = RunHelp,
    };
}

} // namespace

const std::vector<OptionInfo>& Options() {
    static const std::vector<OptionInfo> kOptions = {
        {Option::Finish, "--finish", nullptr, ValueKind::None,
         "make joins play without a fault and headers true: an MP3 begins and ends at the very "
         "sample in gapless players; a WAV keeps every chunk, corrected"},
        {Option::Quiet, "--quiet", nullptr, ValueKind::None, "split at quiet places"},
        {Option::Every, "--every", "T", ValueKind::Text,
         "pieces that last T, the last one shorter"},
        {Option::At, "--at", "LIST", ValueKind::List, "split where a list of places says"},
        {Option::Level, "--level", "L", ValueKind::Text,
         "what is quiet: samples below a share of full scale (0.01) or below so many decibels "
         "(-46dB); auto is 6 dB above what the quietest tenth of the recording stays below. 0.001 "
         "by default"},
        {Option::Time, "--time", "S", ValueKind::Text,
         "how long a quiet place lasts at least, no less than 0.02 seconds; 0.2 by default"},
        {Option::LeastPiece, "--min-piece", "S", ValueKind::Text,
         "leave out positions, so that no piece is shorter"},
        {Option::Tags, "--tags", nullptr, ValueKind::None,
         "set title (where LIST has one) and track number in the tags of each piece; otherwise "
         "tags stay byte for byte"},
        {Option::Json, "--json", nullptr, ValueKind::None, "print JSON"},
        {Option::Format, "--format", "F", ValueKind::Format, "print positions in another form"},
        {Option::Width, "--width", "W", ValueKind::Text,
         "1 to 10000 pixels that are visible at once; 1000 by default"},
        {Option::Zoom, "--zoom", "Z", ValueKind::Text, "1 to 100 times as wide; 1 by default"},
        {Option::DryRun, "--dry-run", nullptr, ValueKind::None,
         "write nothing, and print what would be written: a line for each file, with begin and "
         "end in seconds, as asked and as they fall"},
        {Option::Silent, "-q", nullptr, ValueKind::None, "no warnings and no progress"},
        {Option::NoReplace, "-n", nullptr, ValueKind::None,
         "never replace a file: fail where one exists"},
        {Option::Help, "--help", nullptr, ValueKind::None, "tell about this command; also -h"},
        {Option::Help, "-h", nullptr, ValueKind::None, nullptr},
    };
    return kOptions;
}

const std::vector<CommandInfo>& Commands() {
    static const std::vector<CommandInfo> kCommands = {Info(),   Extract(), Cut(),     Split(),
                                                       Scenes(), Wave(),    Compare(), Help()};
    return kCommands;
}

const std::vector<Topic>& Topics() {
    static const std::vector<Topic> kTopics = {
        {"Times",
         {"A time is seconds (90, 12.5), [H:]M:SS[.fraction] (1:30.25), 1h2m3.5s, end, or end-T "
          "for the time T before the end."}},
        {"Files",
         {"FILE is only read, never written to. The format follows its extension, .mp3 or .wav in "
          "any letter case, and OUT has the same one. OUT is replaced in one step when it is "
          "complete; where a command fails or is interrupted, OUT is as it was. It may not be "
          "FILE itself. Where OUT is a link, the file that it leads to is written.",
          "Options may stand before or behind the operands; behind -- everything is an operand."}},
        {"Exit status",
         {"0 done; 1 it failed, and a message names the file that is at fault; 2 wrong usage. With "
          "several FILEs the others are done all the same, and the status is the worst."}},
    };
    return kTopics;
}

const std::vector<const char*>& FormatNames() {
    static const std::vector<const char*> kNames = {"lines", "cue", "labels", "csv"};
    return kNames;
}

const OptionInfo& FindOption(Option option) {
    return *std::ranges::find(Options(), option, &OptionInfo::option);
}

const CommandInfo* FindCommand(const std::string& name) {
    const auto found = std::ranges::find(Commands(), name, &CommandInfo::name);
    return found == Commands().end() ? nullptr : &*found;
}
