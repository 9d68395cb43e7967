#pragma once

#include "engine/HistoryItem.h"
#include "platform/FileState.h"

#include <optional>
#include <string>
#include <vector>

/// How one entry of the history was made: enough to make it again.
struct SessionStep {
    int parent = -1; ///< index of an earlier step; -1: the opened file
    EditKind edit = EditKind::None;
    CutPositions range;    ///< of the edit; see HistoryItem
    CutPositions marks;    ///< the parent's cut positions, as they stood when it was edited
    int piece = 1;         ///< what the label adds to the parent's; above 1 only of a split
    bool saved = false;    ///< by the person
    std::string savedName; ///< what saving has added to the name, to be shown; never a path

    bool operator==(const SessionStep&) const = default;
};

/// The edits of one session.
struct SessionRecord {
    std::string path;      ///< of the opened file, to be read by people alone
    FileState file;        ///< the opened file; its inode, size and time of modification count
    std::string savedName; ///< of the opened file's entry; as of a step's
    std::vector<SessionStep> steps;

    /// Whether it is of a file in this very state. A device may have another number tomorrow.
    bool IsOf(const FileState& other) const {
        return file.inode == other.inode && file.sizeBytes == other.sizeBytes &&
               file.modifiedNanoseconds == other.modifiedNanoseconds;
    }
};

/// As JSON.
std::string WriteSessionRecord(const SessionRecord& record);

/// Trusts nothing: a step has to be one that the program could have written.
/// @return none when anything is not as it must be
std::optional<SessionRecord> ReadSessionRecord(const std::string& json);
