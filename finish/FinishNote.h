#pragma once

#include <string>

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

/// A note in English, to be put behind the name of the output: "the join at 12.500 s moved by 1
/// frame, 26 ms".
std::string DescribeNote(const FinishNote& note);
