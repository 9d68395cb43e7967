#pragma once

#include "cutting/CutRanges.h"
#include "finish/EditedAudio.h"
#include "finish/FinishNote.h"

#include <span>
#include <string>
#include <vector>

/// A file that is to be finished: one range, or everything but several.
struct FinishPiece {
    std::string path; ///< the output; an existing file is overwritten. Not the source itself
    std::vector<CutRange> ranges;
    bool keep = true;
};

/// Writes pieces of an MP3 so that nobody hears where something was cut: the frames at a join get
/// the main data that they are decoded from, the file begins and ends at the very sample in players
/// that keep to what a header tells of delay and padding, and that header is true in all it says,
/// and there where the source had none. Nothing is decoded: but for the frames at joins, each is
/// written as it was.
///
/// Layer I and II frames need nothing of others: whole ones are written, the nearest.
///
/// The pieces are written in one walk, in ascending order of where they begin. Where ranges are
/// removed the joins lie at the nearest frame. An end behind the music means its end.
///
/// @return whether all are written. If not, they are deleted, and CutFailure tells why; a piece
///         without any music is a failure
bool FinishMP3(const char* src, std::span<const FinishPiece> pieces);

/// The same for what edits have made of a file. Where a frame that is written is another one in
/// theirs, the call fails (CutReason::EditAltered): the result would not be what was heard.
[[nodiscard]] bool FinishEditedMP3(const char* src, const std::string& dst,
                                   const EditedAudio& audio);

/// What there is to say of the last call of either, in the order of the pieces.
const std::vector<FinishNote>& FinishNotes();
