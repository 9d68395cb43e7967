#include "cli/Pieces.h"

#include "cli/Operands.h"
#include "cli/WriteOutputs.h"
#include "cutting/CutMP3.h"
#include "cutting/CutWholeWAV.h"

#include <algorithm>

bool WritePieces(const std::string& source, FormatType format, const std::vector<Piece>& pieces,
                 const Arguments& /*arguments*/) {
    std::vector<std::string> outputs;
    std::ranges::transform(pieces, std::back_inserter(outputs), &Piece::output);
    const auto write = [&](std::size_t index, const std::string& path) {
        const Piece& piece = pieces[index];
        const auto& [begin, end] = piece.ranges[0];
        return format == FormatType::WAV
                   ? CutAnyWAV(source.c_str(), path.c_str(), begin, end, piece.keep)
                   : CutMP3WholeFrames(source.c_str(), path.c_str(), ToFloat(begin), ToFloat(end),
                                       piece.keep);
    };
    return WriteOutputs(source, outputs, write);
}
