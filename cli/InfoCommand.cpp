#include "cli/Commands.h"
#include "cli/MP3Info.h"
#include "cli/Progress.h"
#include "cli/Report.h"
#include "cli/SourceFile.h"
#include "cli/WAVInfo.h"
#include "mpeg/MPAException.h"
#include "places/PrintableText.h"

#include <cstdio>

namespace {

// Null after an error, which has been reported.
Json Describe(const std::string& path) {
    const Progress progress([&] { return "Reading " + Printable(path); });
    const std::optional<FormatType> format = SourceFormat(path);
    if (!format) {
        return nullptr;
    }
    if (format == FormatType::MP3) {
        try {
            return DescribeMP3(path);
        } catch (CMPAException& e) {
            e.ShowError();
            return nullptr;
        }
    }
    std::string error;
    Json description = DescribeWAV(path, error);
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

} // namespace

int RunInfo(const Arguments& arguments) {
    const bool areSeveral = arguments.operands.size() > 1;
    int status = kDone;
    for (const std::string& path : arguments.operands) {
        Json description = Describe(path);
        if (description.is_null()) {
            status = kFailed;
            continue;
        }
        if (areSeveral) {
            Json named = {{"file", PathToJson(path)}};
            named.update(description);
            description = named;
        }
        if (arguments.Has(Option::Json)) {
            std::puts(JsonText(description).c_str());
        } else {
            PrintIndented(description, 0);
        }
    }
    return status;
}
