#include "places/PieceStarts.h"

std::vector<double> WithoutShortPieces(const std::vector<double>& places, double length,
                                       double leastSeconds) {
    constexpr double kRounding = 1e-9;
    std::vector<double> kept;
    double begin = 0.0;
    for (const double place : places) {
        if (place - begin >= leastSeconds - kRounding &&
            length - place >= leastSeconds - kRounding) {
            kept.push_back(place);
            begin = place;
        }
    }
    return kept;
}
