#include "finish/FinishNote.h"

#include <cmath>
#include <cstdio>

std::string DescribeNote(const FinishNote& note) {
    char text[160];
    const int milliseconds = static_cast<int>(std::lround(note.seconds * 1000.0));
    switch (note.kind) {
    case FinishNote::Kind::JoinMoved:
        std::snprintf(text, sizeof text, "the join at %.3f s moved by %d %s, %d ms", note.atSeconds,
                      note.frames, note.frames == 1 ? "frame" : "frames", milliseconds);
        return text;
    case FinishNote::Kind::JoinFades:
        std::snprintf(text, sizeof text, "the join at %.3f s fades for %d ms", note.atSeconds,
                      milliseconds);
        return text;
    case FinishNote::Kind::NothingRemoved:
        return "a range to be removed is shorter than a frame: nothing is removed there";
    case FinishNote::Kind::LengthNotFixed:
        return note.tag + ": the length could not be corrected";
    case FinishNote::Kind::TagIsOfSource:
        return note.tag + ": describes the source";
    }
    return {};
}
