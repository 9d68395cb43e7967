#include "cli/Pieces.h"

#include "cli/Operands.h"
#include "cli/Report.h"
#include "cli/WriteOutputs.h"
#include "cutting/CutFailure.h"
#include "cutting/CutMP3.h"
#include "cutting/CutWholeWAV.h"

#include <algorithm>

namespace {

bool Cut(const std::string& source, FormatType format, const Piece& piece,
         const std::string& path) {
    auto* const cutter = format == FormatType::WAV ? CutWAVFile : CutMP3File;
    return cutter(source.c_str(), path.c_str(), ToFloat(piece.ranges[0].begin),
                  ToFloat(piece.ranges[0].end), piece.keep);
}

} // namespace

bool WritePieces(const std::string& source, FormatType format, const std::vector<Piece>& pieces,
                 const Arguments& arguments) {
    std::vector<std::string> outputs;
    std::ranges::transform(pieces, std::back_inserter(outputs), &Piece::output);
    const auto write = [&](const std::vector<std::string>& paths, CutProgress& progress) {
        const CutProgressScope scope(progress);
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            if (!Cut(source, format, pieces[i], paths[i])) {
                return false;
            }
        }
        return true;
    };
    if (!WriteOutputs(source, outputs, arguments.Has(Option::NoReplace), write)) {
        return false;
    }
    for (const CutWarning warning : CutWarnings()) {
        ReportWarning(source, DescribeWarning(warning));
    }
    return true;
}
