#pragma once

#include "cutting/CutRanges.h"

#include <span>
#include <string>
#include <vector>

/// A file that is to be finished: one range, or everything but several.
struct FinishPiece {
    std::string path; ///< the output; an existing file is overwritten. Not the source itself
    std::vector<CutRange> ranges;
    bool keep = true;
};

/// What finishing could not do as it was asked to.
struct FinishNote {
    enum class Kind {
        JoinMoved,      ///< by so many frames, which is `seconds` long
        JoinFades,      ///< for `seconds`
        NothingRemoved, ///< a range is too short to hold a frame
        LengthNotFixed, ///< a tag's length does not fit in, or is encoded in a way that is left
                        ///< alone
        TagIsOfSource,  ///< a tag's frame describes the source
    };
    Kind kind;
    double atSeconds = 0.0; ///< of a join: in the output
    double seconds = 0.0;
    int frames = 0;
    std::string tag = {}; ///< the name of its frame: "CHAP"
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

/// What there is to say of the last call, in the order of the pieces.
const std::vector<FinishNote>& FinishNotes();

/// A note in English, to be put behind the name of the output: "the join at 12.500 s moved by 1
/// frame, 26 ms".
std::string DescribeNote(const FinishNote& note);
