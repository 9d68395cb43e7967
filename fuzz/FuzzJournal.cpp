#include "adaptor/SessionRecord.h"
#include "fuzz/Targets.h"

void FuzzJournal(const FuzzInput& input) {
    const auto record = ReadSessionRecord(input.File());
    if (!record) {
        return; // an answer as good as any
    }
    for (std::size_t i = 0; i < record->steps.size(); ++i) {
        const SessionStep& step = record->steps[i];
        Require(step.parent >= -1 && step.parent < static_cast<int>(i), "parents come first");
        Require(step.edit != EditKind::None && step.piece >= 1, "a step is an edit");
        Require(step.range.start != kUnsetPosition, "an edit has a range");
    }
    const auto again = ReadSessionRecord(WriteSessionRecord(*record));
    Require(again && again->steps == record->steps && again->IsOf(record->file) &&
                again->path == record->path && again->savedName == record->savedName,
            "a record comes back");
}
