#pragma once

#include "engine/CutPositions.h"
#include "finish/FrameRuns.h"

#include <string>

/// What has made an entry of the one that it is filed under.
enum class EditKind {
    None,    ///< it was opened
    Extract, ///< only the range is left
    Remove,  ///< everything but the range is left
    Split,   ///< a piece: the range, whose end is unset for the last one
};

/// One entry of the edit history: a state of the audio, in a file of its own.
struct HistoryItem {
    int id = 0; ///< from 1; the n-th entry made has id n

    /// What the history shows. Up to the first blank it is the label: # for the opened file,
    /// followed by -1, -2 ... for every edit on the way to this entry. What follows is a file name.
    std::string name;

    std::string path;          ///< the opened file, or a temporary file
    CutPositions cutPositions; ///< in this file, as they stood when an edit was last made from it
    bool saved = false;        ///< the person has the file under a name of their own

    int parentId = 0; ///< the entry that it was made from; 0 of the opened file
    EditKind edit = EditKind::None;
    CutPositions range; ///< of the edit, in the parent's file; the start may lie behind the end
    FrameRuns runs;     ///< what of the opened file it is
};
