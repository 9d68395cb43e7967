#include "cli/Commands.h"
#include "cli/HeadlessKlipra.h"
#include "cli/OutputPattern.h"
#include "cli/Pieces.h"
#include "cli/SourceFile.h"
#include "cli/SplitPoints.h"

int RunSplit(const Arguments& arguments) {
    const std::string& source = arguments.operands.front();
    const std::string& output = arguments.operands.back();
    const std::optional<FormatType> format = SourceFormat(source);
    if (!format) {
        return kFailed;
    }
    const SplitPlan plan(arguments);
    const OutputPattern pattern(output);
    CheckOutputExtension(output, *format);
    HeadlessKlipra engine;
    SplitPoints points;
    if (!engine.Open(source) || !plan.Find(engine, points)) {
        return kFailed;
    }
    const std::vector<std::string> names = pattern.Names(points.titles);
    points.seconds.insert(points.seconds.begin(), 0.0);
    points.seconds.push_back(engine.LengthInSeconds());
    std::vector<Piece> pieces;
    for (std::size_t i = 0; i < names.size(); ++i) {
        pieces.push_back({.output = names[i],
                          .ranges = {{points.seconds[i], points.seconds[i + 1]}},
                          .title = points.titles[i]});
    }
    return WritePieces(source, *format, pieces, arguments) ? kDone : kFailed;
}
