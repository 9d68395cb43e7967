#include "cli/Commands.h"
#include "cli/MP3Info.h"
#include "cli/PieceTags.h"
#include "cli/Progress.h"
#include "cli/Report.h"
#include "cli/SourceFile.h"
#include "cli/WAVInfo.h"
#include "places/PrintableText.h"

#include <cstdio>

namespace {

// Null after an error, which has been reported.
Json Describe(const std::string& path, FormatType format) {
    const Progress progress([&] { return "Reading " + Printable(path); });
    std::string error;
    Json description =
        format == FormatType::MP3 ? DescribeMP3(path, error) : DescribeWAV(path, error);
    if (description.is_null()) {
        ReportError(path, error);
    }
    return description;
}

// Strings without their quotes, but escaped: bytes of a file are not to command the terminal.
std::string ScalarText(const Json& value) {
    const std::string text = JsonText(value);
    return value.is_string() ? text.substr(1, text.size() - 2) : text;
}

// The same facts for people: a line each, what belongs together indented below its name.
void PrintIndented(const Json& object, int indent) {
    for (const auto& [name, value] : object.items()) {
        if (value.is_object()) {
            std::printf("%*s%s\n", indent, "", name.c_str());
            PrintIndented(value, indent + 2);
        } else if (value.is_array()) {
            for (const Json& element : value) {
                std::printf("%*s%s\n", indent, "", name.c_str());
                PrintIndented(element, indent + 2);
            }
        } else if (!value.is_null()) {
            std::printf("%*s%-*s %s\n", indent, "", 20 - indent, name.c_str(),
                        ScalarText(value).c_str());
        }
    }
}

// A fact that tags tell.
void PrintTagFact(const char* name, const std::string& text) {
    if (!text.empty()) {
        std::printf("%-20s %s\n", name, Printable(text).c_str());
    }
}

void PrintTagFacts(const TagFacts& facts) {
    PrintTagFact("title", facts.title);
    PrintTagFact("artist", facts.artist);
    for (const std::string& chapter : facts.chapters) {
        PrintTagFact("chapter", chapter);
    }
}

bool Tell(const std::string& path, bool asJson, bool namesFile) {
    const std::optional<FormatType> format = SourceFormat(path);
    if (!format) {
        return false;
    }
    Json description = Describe(path, *format);
    if (description.is_null()) {
        return false;
    }
    if (namesFile) {
        Json named = {{"file", PathToJson(path)}};
        named.update(description);
        description = named;
    }
    if (asJson) {
        std::puts(JsonText(description).c_str());
        return true;
    }
    PrintIndented(description, 0);
    PrintTagFacts(ReadTagFacts(path, *format));
    return true;
}

} // namespace

int RunInfo(const Arguments& arguments) {
    const bool areSeveral = arguments.operands.size() > 1;
    int status = kDone;
    for (const std::string& path : arguments.operands) {
        if (!Tell(path, arguments.Has(Option::Json), areSeveral)) {
            status = kFailed;
        }
    }
    return status;
}
