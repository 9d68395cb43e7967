#include "cli/Pieces.h"

#include "cli/Operands.h"
#include "cli/WriteOutputs.h"
#include "cutting/CutMP3.h"
#include "cutting/CutWAV.h"

#include <algorithm>

bool WritePieces(const std::string& source, FormatType format, const std::vector<Piece>& pieces,
                 const Arguments& /*arguments*/) {
    std::vector<std::string> outputs;
    std::ranges::transform(pieces, std::back_inserter(outputs), &Piece::output);
    const auto write = [&](std::size_t index, const std::string& path) {
        const Piece& piece = pieces[index];
        auto* const cutter = format == FormatType::WAV ? CutWAVFile : CutMP3WholeFrames;
        return cutter(source.c_str(), path.c_str(), ToFloat(piece.ranges[0].begin),
                      ToFloat(piece.ranges[0].end), piece.keep);
    };
    return WriteOutputs(source, outputs, write);
}
