#include "cli/CommandLine.h"

#include "cli/Commands.h"
#include "cli/Report.h"
#include "platform/SystemError.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <getopt.h>
#include <iterator>
#include <limits>

namespace {

constexpr char kProgramUsage[] = "klipra-cli COMMAND ...";

constexpr std::size_t kAnyCount = std::numeric_limits<std::size_t>::max();

struct Command {
    const char* name;
    const char* operands; // as the usage line shows them
    std::size_t leastOperands;
    std::size_t mostOperands;
    const char* options; // the letters of those that it takes
    const char* summary;
    int (*run)(const Arguments&);
};

constexpr Command kCommands[] = {
    {"info", "[--json] FILE", 1, 1, "j", "tells what is in an MP3 or WAV file", RunInfo},
    {"extract", "FILE START END OUT", 4, 4, "", "writes only the range to OUT", RunExtract},
    {"cut", "FILE START END OUT", 4, 4, "", "writes everything but the range to OUT", RunCut},
    {"split", "FILE POS [POS ...] OUT", 3, kAnyCount, "",
     "writes the pieces between the positions; the last % in OUT becomes their number", RunSplit},
    {"scenes", "[--level L] [--time S] [--json] FILE", 1, 1, "jlt",
     "finds the quiet places: below level L (0.001) for at least S seconds (0.2)", RunScenes},
    {"wave", "[--width W] [--zoom Z] FILE OUT.png", 2, 2, "wz",
     "draws the waveform, W x Z (1000 x 1) pixels wide and 201 high", RunWave},
};

// Each with its letter in the table above.
constexpr option kOptions[] = {
    {"json", no_argument, nullptr, 'j'},       {"level", required_argument, nullptr, 'l'},
    {"time", required_argument, nullptr, 't'}, {"width", required_argument, nullptr, 'w'},
    {"zoom", required_argument, nullptr, 'z'}, {},
};

const Command* FindCommand(const char* name) {
    const auto* found =
        std::find_if(std::begin(kCommands), std::end(kCommands),
                     [&](const Command& c) { return std::strcmp(c.name, name) == 0; });
    return found == std::end(kCommands) ? nullptr : found;
}

void PrintHelp() {
    std::printf("Usage: %s\n\n", kProgramUsage);
    std::puts("Cuts MP3 and PCM WAV files without re-encoding; the input is never changed.\n");
    for (const Command& command : kCommands) {
        std::printf("  klipra-cli %s %s\n        %s\n", command.name, command.operands,
                    command.summary);
    }
    std::puts("  klipra-cli --help\n  klipra-cli --version\n");
    std::puts("A time is seconds (90, 12.5) or [H:]M:SS[.fraction] (1:30.25); two times in either\n"
              "order mean the same range. The format follows the extension, mp3 or wav.\n");
    std::puts("Exit status: 0 done, 1 failed (OUT is as it was), 2 wrong usage.");
}

int RefuseUsage(const std::string& problem, const std::string& usage) {
    std::fprintf(stderr, "klipra-cli: %s\nUsage: %s\n", problem.c_str(), usage.c_str());
    return kWrongUsage;
}

void SetOption(Arguments& arguments, int letter, const char* value) {
    switch (letter) {
    case 'j':
        arguments.json = true;
        break;
    case 'l':
        arguments.level = value;
        break;
    case 't':
        arguments.time = value;
        break;
    case 'w':
        arguments.width = value;
        break;
    case 'z':
        arguments.zoom = value;
        break;
    default:
        break;
    }
}

// argv begins with the command's name.
Arguments ParseArguments(const Command& command, int argc, char** argv) {
    Arguments arguments;
    opterr = 0; // the messages are ours
    int letter = 0;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread runs yet
    for (int index = 0; (letter = getopt_long(argc, argv, ":", kOptions, &index)) != -1;) {
        const bool isKnown = letter != '?' && letter != ':';
        const std::string name =
            isKnown ? std::string("--") + kOptions[index].name : argv[optind - 1];
        if (letter == ':') {
            throw UsageError(name + " needs a value");
        }
        if (!isKnown || std::strchr(command.options, letter) == nullptr) {
            throw UsageError("unknown option " + name);
        }
        SetOption(arguments, letter, optarg);
    }
    arguments.operands.assign(argv + optind, argv + argc);
    if (arguments.operands.size() < command.leastOperands) {
        throw UsageError("something is missing");
    }
    if (arguments.operands.size() > command.mostOperands) {
        throw UsageError("there is something too much");
    }
    return arguments;
}

int RunCommand(const Command& command, int argc, char** argv) {
    try {
        return command.run(ParseArguments(command, argc, argv));
    } catch (const UsageError& e) {
        return RefuseUsage(e.what(),
                           std::string("klipra-cli ") + command.name + " " + command.operands);
    } catch (const std::exception& e) { // no memory, no thread
        ReportError(e.what());
        return kFailed;
    }
}

// What could not be written to standard output is a result that is missing.
int FinishOutput(int status) {
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        ReportError("cannot write the result: " + SystemErrorText(errno));
        return kFailed;
    }
    return status;
}

} // namespace

int RunCommandLine(int argc, char** argv) {
    if (argc < 2) {
        return RefuseUsage("which command?", kProgramUsage);
    }
    if (std::strcmp(argv[1], "--help") == 0) {
        PrintHelp();
        return FinishOutput(kDone);
    }
    if (std::strcmp(argv[1], "--version") == 0) {
        std::puts("klipra-cli " KLIPRA_VERSION);
        return FinishOutput(kDone);
    }
    const Command* command = FindCommand(argv[1]);
    if (command == nullptr) {
        return RefuseUsage(std::string("there is no command '") + argv[1] + "'", kProgramUsage);
    }
    return FinishOutput(RunCommand(*command, argc - 1, argv + 1));
}
