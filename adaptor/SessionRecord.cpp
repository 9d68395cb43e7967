#include "adaptor/SessionRecord.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <limits>
#include <stdexcept>
#include <utility>

namespace {

using Json = nlohmann::json;

constexpr int kVersion = 1;
constexpr int kMostPieces = 3;
constexpr int kDeepest = 4; // the record, its steps, a step, its marks

constexpr std::array<std::pair<const char*, EditKind>, 3> kEdits = {
    {{"extract", EditKind::Extract}, {"remove", EditKind::Remove}, {"split", EditKind::Split}}};

void Require(bool condition) {
    if (!condition) {
        throw std::runtime_error("no session record");
    }
}

const char* NameOf(EditKind edit) {
    const auto* const found =
        std::ranges::find(kEdits, edit, &std::pair<const char*, EditKind>::second);
    return found == kEdits.end() ? "" : found->first;
}

EditKind EditNamed(const std::string& name) {
    const auto* const found =
        std::ranges::find_if(kEdits, [&](const auto& known) { return name == known.first; });
    Require(found != kEdits.end());
    return found->second;
}

Json ToJson(const CutPositions& positions) {
    Json json = Json::array();
    for (const unsigned long long position : {positions.start, positions.end}) {
        json.push_back(position == kUnsetPosition ? Json(nullptr) : Json(position));
    }
    return json;
}

unsigned long long PositionFrom(const Json& json) {
    Require(json.is_null() || json.is_number_unsigned());
    return json.is_null() ? kUnsetPosition : json.get<unsigned long long>();
}

CutPositions PositionsFrom(const Json& json) {
    Require(json.is_array() && json.size() == 2);
    return {PositionFrom(json[0]), PositionFrom(json[1])};
}

std::int64_t IntegerFrom(const Json& json, std::int64_t least, std::int64_t most) {
    Require(json.is_number_integer());
    const auto number = json.get<std::int64_t>();
    Require(number >= least && number <= most);
    Require(number >= 0 || !json.is_number_unsigned()); // it has wrapped
    return number;
}

std::int64_t NumberFrom(const Json& json) {
    return IntegerFrom(json, std::numeric_limits<std::int64_t>::min(),
                       std::numeric_limits<std::int64_t>::max());
}

std::string SavedNameFrom(const Json& json) {
    const auto name = json.get<std::string>();
    Require(name.empty() || name.starts_with(' ')); // the label ends there
    return name;
}

SessionStep StepFrom(const Json& json, std::size_t index) {
    SessionStep step;
    step.edit = EditNamed(json.at("edit").get<std::string>());
    const bool isSplit = step.edit == EditKind::Split;
    step.parent =
        static_cast<int>(IntegerFrom(json.at("parent"), -1, static_cast<std::int64_t>(index) - 1));
    step.piece = static_cast<int>(IntegerFrom(json.at("label"), 1, isSplit ? kMostPieces : 1));
    step.range = PositionsFrom(json.at("range"));
    step.marks = PositionsFrom(json.at("marks"));
    Require(step.range.start != kUnsetPosition);
    Require(isSplit || step.range.end != kUnsetPosition);
    step.saved = json.at("saved").get<bool>();
    step.savedName = SavedNameFrom(json.at("savedName"));
    return step;
}

/// Nothing of ours is nested deeper, and what is must not cost memory.
bool IsShallow(int depth, Json::parse_event_t /*event*/, Json& /*parsed*/) {
    Require(depth <= kDeepest);
    return true;
}

} // namespace

std::string WriteSessionRecord(const SessionRecord& record) {
    Json steps = Json::array();
    for (const SessionStep& step : record.steps) {
        steps.push_back({{"parent", step.parent},
                         {"edit", NameOf(step.edit)},
                         {"range", ToJson(step.range)},
                         {"marks", ToJson(step.marks)},
                         {"label", step.piece},
                         {"saved", step.saved},
                         {"savedName", step.savedName}});
    }
    const Json json = {{"version", kVersion},
                       {"path", record.path},
                       {"inode", record.file.inode},
                       {"size", record.file.sizeBytes},
                       {"modified", record.file.modifiedNanoseconds},
                       {"savedName", record.savedName},
                       {"steps", steps}};
    // Names of files need not be UTF-8; here they are only shown.
    return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::optional<SessionRecord> ReadSessionRecord(const std::string& text) {
    try {
        const Json json = Json::parse(text, IsShallow);
        Require(json.at("version") == kVersion);
        SessionRecord record;
        record.path = json.at("path").get<std::string>();
        record.file.inode = NumberFrom(json.at("inode"));
        record.file.sizeBytes = NumberFrom(json.at("size"));
        record.file.modifiedNanoseconds = NumberFrom(json.at("modified"));
        record.savedName = SavedNameFrom(json.at("savedName"));
        Require(json.at("steps").is_array());
        for (const Json& step : json.at("steps")) {
            record.steps.push_back(StepFrom(step, record.steps.size()));
        }
        return record;
    } catch (const std::exception&) {
        return std::nullopt; // of the JSON library's, or refused above
    }
}
