#include "cli/QuietSearch.h"

#include "cli/Progress.h"
#include "cli/Report.h"
#include "engine/BlockReader.h"
#include "engine/Klipra.h"
#include "places/PrintableText.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <limits>
#include <unistd.h>

namespace {

constexpr double kLeastSeconds = 0.02; // one block
constexpr double kDefaultSeconds = 0.2;
constexpr float kDefaultLevel = 0.001F;

float Loudest(const Block& block) {
    return std::max(block.levels[0], block.levels[1]);
}

/// Reads all blocks of a file.
class LevelScan {
public:
    explicit LevelScan(const std::string& path) : m_path(path), m_reader(path) {}

    template <typename Use>
    void ForEachBlock(Use use) {
        const unsigned long long length = std::max(m_reader.GetLength(), 1ULL);
        const Progress progress([&] {
            return "Searching " + Printable(m_path) + ": " +
                   std::to_string(m_position * 100 / length) + " %";
        });
        for (Block block; m_reader.Read(block);) {
            m_position.store(block.position, std::memory_order_relaxed);
            m_quietest = std::min(m_quietest, Loudest(block));
            use(block);
        }
    }

    const BlockReader& Reader() const { return m_reader; }
    float Quietest() const { return m_quietest; }

private:
    const std::string& m_path;
    const BlockReader m_reader;
    std::atomic<unsigned long long> m_position{0}; // main -> progress
    float m_quietest = std::numeric_limits<float>::infinity();
};

// A pause is not much louder than the quietest tenth of what was recorded in the same room.
float AutomaticLevel(const std::vector<Block>& blocks) {
    constexpr float kLeast = 0.001F;
    constexpr float kMost = 0.1F;
    constexpr std::size_t kTenth = 10;
    constexpr float kSixDecibels = 1.9952623F;
    if (blocks.empty()) {
        return kLeast;
    }
    std::vector<float> levels;
    std::ranges::transform(blocks, std::back_inserter(levels), Loudest);
    const auto tenth = levels.begin() + static_cast<std::ptrdiff_t>(levels.size() / kTenth);
    std::ranges::nth_element(levels, tenth);
    return std::clamp(*tenth * kSixDecibels, kLeast, kMost);
}

void TellQuietest(const std::string& path, float level) {
    if (isatty(STDERR_FILENO) == 0 || !AreRemarksWanted() || !std::isfinite(level)) {
        return;
    }
    std::array<char, 100> text{};
    std::snprintf(text.data(), text.size(), "nothing is quiet enough; the quietest level is %.6f",
                  static_cast<double>(level));
    std::string line = text.data();
    if (level > 0.0F) {
        std::snprintf(text.data(), text.size(), " (%.1fdB)",
                      20.0 * std::log10(static_cast<double>(level)));
        line += text.data();
    }
    ReportError(path, line);
}

} // namespace

QuietThresholds QuietThresholds::From(const Arguments& arguments) {
    const auto level = arguments.Value(Option::Level);
    const double seconds = DurationOption(arguments, Option::Time, kDefaultSeconds);
    return {.level = level ? ParseLevelOperand(*level) : LevelOperand{.share = kDefaultLevel},
            .seconds = ToFloat(std::max(seconds, kLeastSeconds))};
}

bool FindQuietPlaces(const HeadlessKlipra& engine, const QuietThresholds& thresholds,
                     std::vector<QuietStretch>& found) {
    LevelScan scan(engine.Path());
    if (scan.Reader().GetStream() == 0) {
        ReportScanFailure(engine.Path());
        return false;
    }
    std::vector<Block> blocks; // kept only where all have to be known first
    float level = thresholds.level.share;
    if (thresholds.level.isAuto) {
        scan.ForEachBlock([&](const Block& block) { blocks.push_back(block); });
        level = AutomaticLevel(blocks);
    }
    QuietStretches stretches(level, thresholds.seconds);
    if (thresholds.level.isAuto) {
        std::ranges::for_each(blocks, [&](const Block& block) { stretches.Add(block); });
    } else {
        scan.ForEachBlock([&](const Block& block) { stretches.Add(block); });
    }
    stretches.Finish(scan.Reader().GetLength());
    if (!engine.ReportReadFailure(scan.Reader().GetStream())) {
        return false;
    }
    found = stretches.Found();
    if (found.empty()) {
        TellQuietest(engine.Path(), scan.Quietest());
    }
    return true;
}
