#pragma once

#include "cli/Arguments.h"
#include "cli/HeadlessKlipra.h"

#include <string>
#include <vector>

/// Where a file is to be split, and what its pieces are called.
struct SplitPoints {
    std::vector<double> seconds;     ///< ascending, inside the audio
    std::vector<std::string> titles; ///< of the pieces, one more than there are places
};

/// How a file is to be split, as the command line says; knows nothing of the file yet.
class SplitPlan {
public:
    /// Throws UsageError.
    explicit SplitPlan(const Arguments& arguments);

    /// The places in a file.
    /// @return false after a failure, which has been reported
    bool Find(HeadlessKlipra& engine, SplitPoints& points) const;

private:
    bool FindPositions(const HeadlessKlipra& engine, SplitPoints& points) const;
    bool FindQuiet(const HeadlessKlipra& engine, SplitPoints& points) const;
    bool FindEvery(const HeadlessKlipra& engine, SplitPoints& points) const;
    bool FindListed(const HeadlessKlipra& engine, SplitPoints& points) const;

    const Arguments& m_arguments;
};
