#include "cutting/CutWholeWAV.h"

#include "cutting/CutWAV.h"
#include "cutting/WAVPlan.h"
#include "platform/RegularFile.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <numeric>

namespace {

using Chunks = std::vector<std::pair<std::string, std::string>>; // identifier and payload

constexpr std::uint32_t kRate = 1000;
constexpr std::uint32_t kFrames = 3001;

std::string Number(std::uint32_t value) {
    return WavBuilder::Number(4, value);
}

std::string Numbers(std::initializer_list<std::uint32_t> values) {
    std::string bytes;
    for (const std::uint32_t value : values) {
        bytes += Number(value);
    }
    return bytes;
}

std::string Padded(const std::string& id, const std::string& payload) {
    return WavBuilder::Chunk(id, payload) + std::string(payload.size() % 2, '\0');
}

std::string Join(const Chunks& chunks) {
    std::string bytes;
    for (const auto& [id, payload] : chunks) {
        bytes += Padded(id, payload);
    }
    return bytes;
}

std::string Riff(const std::string& chunks) {
    return "RIFF" + Number(static_cast<std::uint32_t>(chunks.size() + 4)) + "WAVE" + chunks;
}

/// How samples are stored.
struct Format {
    std::uint32_t tag;
    std::uint32_t bytes; // of each sample
};

std::string FormatChunk(const Format& format, std::uint32_t channels, bool isExtensible) {
    const std::uint32_t align = channels * format.bytes;
    std::string bytes = WavBuilder::Number(2, isExtensible ? 0xFFFE : format.tag) +
                        WavBuilder::Number(2, channels) + Number(kRate) + Number(kRate * align) +
                        WavBuilder::Number(2, align) + WavBuilder::Number(2, 8 * format.bytes);
    if (isExtensible) {
        bytes += WavBuilder::Number(2, 22) + WavBuilder::Number(2, 8 * format.bytes) + Number(0) +
                 WavBuilder::Number(2, format.tag) +
                 std::string("\x00\x00\x00\x00\x10\x00\x80\x00\x00\xAA\x00\x38\x9B\x71", 14);
    }
    return bytes;
}

class CutWholeWAVs : public testing::Test {
protected:
    // In sample frames, which are milliseconds.
    std::string Cut(const std::string& source, double start, double end, bool keep) {
        m_folder.Write("source.wav", source);
        EXPECT_TRUE(
            CutWholeWAV(m_source.c_str(), m_output.c_str(), start / kRate, end / kRate, keep))
            << DescribeFailure(CutFailure());
        return TemporaryFolder::Read(m_output);
    }

    CutReason ReasonAgainst(const std::string& source) {
        m_folder.Write("source.wav", source);
        EXPECT_FALSE(CutWholeWAV(m_source.c_str(), m_output.c_str(), 0.0, 1.0, true));
        EXPECT_FALSE(std::filesystem::exists(m_output));
        return CutFailure().reason;
    }

    TemporaryFolder m_folder;
    std::string m_source = m_folder.Path("source.wav");
    std::string m_output = m_folder.Path("output.wav");
};

TEST_F(CutWholeWAVs, KeepTheBytesOfEverySampleFormatInEveryWrapping) {
    constexpr Format kFormats[] = {{1, 1}, {1, 2}, {1, 3}, {1, 4}, {3, 4}, {3, 8}, {6, 1}, {7, 1}};
    for (const Format& format : kFormats) {
        for (std::uint32_t channels = 1; channels <= 8; ++channels) {
            const std::uint32_t align = format.bytes * channels;
            const std::string all = WavBuilder::Pattern(std::size_t{kFrames} * align);
            const auto frames = [&](std::uint32_t begin, std::uint32_t end) {
                return all.substr(std::size_t{begin} * align, std::size_t{end - begin} * align);
            };
            const std::string plain = Padded("fmt ", FormatChunk(format, channels, false));
            const std::string extensible = Padded("fmt ", FormatChunk(format, channels, true));
            const std::string odd = Padded("odd ", "12345");
            const std::string sizes =
                Numbers({0xFFFFFFFF, 0, static_cast<std::uint32_t>(all.size()), 0, kFrames, 0, 0});
            const std::string large = odd + plain + "data" + Number(0xFFFFFFFF) + all;
            const std::string junk = Padded("JUNK", std::string(28, '\0'));
            // What stands before the samples of a source, the source, what follows in a result.
            const std::string sources[][3] = {
                {extensible, Riff(extensible + Padded("data", all)), ""},
                {odd + plain, Riff(odd + plain + Padded("data", all) + odd), odd},
                {plain, Riff(plain) + "data" + Number(0) + all, ""},
                {odd + extensible, Riff(odd + extensible) + "data" + Number(0xFFFFFFFF) + all, ""},
                {plain, Riff(plain) + "data" + Number(0x7FFFFFFF) + all + (align > 1 ? "?" : ""),
                 ""},
                {junk + odd + plain,
                 "RF64" + Number(0xFFFFFFFF) + "WAVE" + Padded("ds64", sizes) + large +
                     (all.size() % 2 == 1 ? std::string(1, '\0') : "") + odd,
                 odd},
            };
            for (const auto& parts : sources) {
                const std::string &before = parts[0], &source = parts[1], &behind = parts[2];
                SCOPED_TRACE(testing::Message() << format.tag << ' ' << format.bytes << ' '
                                                << channels << ' ' << &source - &sources[0][1]);
                const auto expected = [&](const std::string& samples) {
                    return Riff(before + Padded("data", samples) + behind);
                };
                // A last frame that is not whole is none.
                EXPECT_TRUE(Cut(source, 100, 1333, true) == expected(frames(100, 1333)));
                EXPECT_TRUE(Cut(source, 100, 1e9, true) == expected(frames(100, kFrames)));
                EXPECT_TRUE(Cut(source, 0, 2002, false) == expected(frames(2002, kFrames)));
                EXPECT_TRUE(Cut(source, 7, 8, false) ==
                            expected(frames(0, 7) + frames(8, kFrames)));
            }
        }
    }
}

TEST_F(CutWholeWAVs, CorrectWhatOtherChunksTellOfTheSamples) {
    const auto point = [](std::uint32_t name, std::uint32_t position, std::uint32_t offset) {
        return Numbers({name, position}) + "data" + Numbers({0, 0, offset});
    };
    const auto loop = [](std::uint32_t first, std::uint32_t last) {
        return Numbers({9, 0, first, last, 0, 3});
    };
    const auto text = [](const std::string& id, std::uint32_t name, const std::string& rest) {
        return Padded(id, Number(name) + rest);
    };
    const auto sampler = [](std::uint32_t loops) {
        return Numbers({1, 2, 3, 4, 5, 6, 7, loops, 4});
    };
    std::string broadcast = WavBuilder::Pattern(700);
    broadcast.replace(338, 10, Numbers({0xFFFFFFF0, 7}) + WavBuilder::Number(2, 2));
    std::string corrected = broadcast;
    corrected.replace(338, 8, Numbers({0x54, 8}));
    corrected.replace(412, 10, "\xFF\x7F\xFF\x7F\xFF\x7F\xFF\x7F\xFF\x7F");

    const std::string format = FormatChunk({3, 4}, 2, false);
    const std::string all = WavBuilder::Pattern(std::size_t{kFrames} * 8);
    const Chunks source = {
        {"bext", broadcast},
        {"LIST", "adtl" + text("labl", 1, "gone") + text("labl", 2, "odd") +
                     text("note", 3, "at the end") + text("ltxt", 2, Numbers({1000, 0, 0, 0})) +
                     text("ltxt", 4, Number(5)) + text("labl", 77, "of no point") +
                     text("file", 5, "")},
        {"fmt ", format},
        {"fact", Number(5) + "more"},
        {"PEAK", "x"},
        {"data", all},
        {"cue ", Number(5) + point(1, 1500, 1500) + point(2, 600, 600) + point(3, 8, 3000) +
                     point(4, 0, 999) + point(5, 0, 3001)},
        {"plst", Number(9) + Numbers({2, 2401, 1, 1, 5, 1})}, // as many as there are
        {"smpl", sampler(4) + loop(200, 299) + loop(900, 1000) + loop(2000, 2999) +
                     loop(3000, 2000) + "data"},
        {"LIST", "INFOIART" + Number(2) + "us"},
        {"levl", ""},
        {"MD5 ", std::string(16, 'x')},
        {"id3 ", "ID3"},
    };
    // The sample frames 100 to 999 and 2000 to 2999.
    const std::string samples = all.substr(800, 7200) + all.substr(16000, 8000);
    const Chunks expected = {
        {"bext", corrected},
        {"LIST", "adtl" + text("labl", 2, "odd") + text("note", 3, "at the end") +
                     text("ltxt", 2, Numbers({400, 0, 0, 0})) + text("ltxt", 4, Number(1)) +
                     text("labl", 77, "of no point")},
        {"fmt ", format},
        {"fact", Number(1900) + "more"},
        {"data", samples},
        {"cue ", Number(3) + point(2, 500, 500) + point(3, 8, 1900) + point(4, 0, 899)},
        {"plst", Number(1) + Numbers({2, 1400, 1})},
        {"smpl", sampler(2) + loop(100, 199) + loop(900, 1899) + "data"},
        {"LIST", "INFOIART" + Number(2) + "us"},
        {"id3 ", "ID3"},
    };
    const std::string bytes = Riff(Join(source));
    m_folder.Write("source.wav", bytes);
    EXPECT_TRUE(FinishWAV(m_source.c_str(), m_output.c_str(), {{100, 1000}, {2000, 3000}}));
    EXPECT_TRUE(TemporaryFolder::Read(m_output) == Riff(Join(expected)));

    // What has no point left to tell of goes; of all samples everything stays true but the count.
    EXPECT_EQ(Cut(bytes, 10, 20, true).find("cue "), std::string::npos);
    Chunks whole = source;
    whole[3].second = Number(kFrames) + "more";
    EXPECT_TRUE(Cut(bytes, 0, kFrames, true) == Riff(Join(whole)));
}

TEST(WAVChunkMap, AgreesWithCountingEverySample) {
    const std::vector<SampleRange> kept = {{2, 5}, {5, 7}, {10, 11}, {15, 20}};
    const WAVChunkMap map(kept, 22);
    const auto isKept = [&](long long frame) {
        return std::ranges::any_of(
            kept, [&](const SampleRange& r) { return frame >= r.begin && frame < r.end; });
    };
    for (long long frame = 0; frame <= 22; ++frame) {
        long long before = 0;
        for (long long i = 0; i < frame; ++i) {
            before += isKept(i) ? 1 : 0;
        }
        const bool isThere = isKept(frame) || isKept(frame - 1);
        EXPECT_EQ(map.Map(frame), isThere ? std::optional(before) : std::nullopt) << frame;
        EXPECT_EQ(map.KeptIn({0, frame}), before);
        EXPECT_EQ(map.KeptIn({frame, 22}), map.ResultFrames() - before);
    }
    EXPECT_FALSE(map.IsWhole());
}

// Sparse: six billion bytes of zeros.
TEST_F(CutWholeWAVs, ResultsAreRF64OnlyWhereTheyHaveToBe) {
    constexpr long long kLarge = 750'000'000;
    const std::string format = Padded("fmt ", FormatChunk({3, 8}, 1, false));
    const std::string fact = Padded("fact", Number(0));
    const std::string begin = "RIFF" + Number(0) + "WAVE" + format + fact + "data" + Number(0);
    m_folder.Write("source.wav", begin);
    std::filesystem::resize_file(m_source, begin.size() + kLarge * 8);
    const FilePointer file = OpenRegularFile(m_source.c_str());
    WholeWAVLayout layout;
    ASSERT_EQ(ReadWholeWAVLayout(file.get(), layout), CutReason::None);
    EXPECT_EQ(layout.SampleFrames(), kLarge);

    // What a pipe leaves tells no size, not that of four gigabytes either.
    const std::string piped =
        m_folder.Write("piped.wav", begin.substr(0, begin.size() - 4) + Number(0xFFFFFFFF));
    std::filesystem::resize_file(piped, begin.size() + std::size_t{kLarge} * 8);
    WholeWAVLayout pipedLayout;
    ASSERT_EQ(ReadWholeWAVLayout(OpenRegularFile(piped.c_str()).get(), pipedLayout),
              CutReason::None);
    EXPECT_EQ(pipedLayout.SampleFrames(), kLarge);

    const auto plan = [&](long long frames) {
        std::pair<std::string, long long> written; // our own bytes, and of how many there are
        for (const WAVStretch& stretch :
             PlanWAV(layout, WAVChunkMap({{0, frames}}, kLarge), [&](long long at, long long size) {
                 return begin.substr(static_cast<std::size_t>(at), static_cast<std::size_t>(size));
             })) {
            written.first += stretch.bytes;
            written.second += static_cast<long long>(stretch.bytes.size()) + stretch.sourceSize;
        }
        return written;
    };
    constexpr long long kMostFrames = (0xFFFFFFFE - 48) / 8;
    const auto [riff, size] = plan(kMostFrames);
    EXPECT_EQ(riff.substr(0, 8), "RIFF" + Number(static_cast<std::uint32_t>(size - 8)));
    const auto [rf64, largeSize] = plan(kMostFrames + 1);
    const auto halves = [](long long value) {
        return Numbers(
            {static_cast<std::uint32_t>(value), static_cast<std::uint32_t>(value >> 32)});
    };
    EXPECT_EQ(rf64.substr(0, 48), "RF64" + Number(0xFFFFFFFF) + "WAVEds64" + Number(28) +
                                      halves(largeSize - 8) + halves((kMostFrames + 1) * 8) +
                                      halves(kMostFrames + 1) + Number(0));
    EXPECT_TRUE(rf64.ends_with("data" + Number(0xFFFFFFFF)));

    // Out of the middle, where 32 bits do not reach.
    EXPECT_TRUE(CutWholeWAV(m_source.c_str(), m_output.c_str(), 700000.0, 700001.5, true));
    EXPECT_EQ(std::filesystem::file_size(m_output), begin.size() + std::size_t{1500} * 8);
}

TEST_F(CutWholeWAVs, RefuseWhatNoOneCanCutAndSayWhy) {
    const std::string format = Padded("fmt ", FormatChunk({3, 4}, 2, false));
    const std::string data = Padded("data", WavBuilder::Pattern(80));
    std::string unknown = FormatChunk({3, 4}, 2, true);
    unknown.back() = 'x';
    std::string many;
    for (int i = 0; i < 10000; ++i) {
        many += "abcd" + Number(0);
    }
    const std::pair<CutReason, std::string> cases[] = {
        {CutReason::NotWAV, "RIFX" + Riff(format + data).substr(4)},
        {CutReason::NotWAV, "RIFF"},
        {CutReason::FormatNotFirst, Riff(data + format)},
        {CutReason::CompressedWAV, Riff(Padded("fmt ", FormatChunk({2, 4}, 2, false)) + data)},
        {CutReason::CompressedWAV, Riff(Padded("fmt ", unknown) + data)},
        {CutReason::DamagedWAV, Riff(Padded("fmt ", "short") + data)},
        {CutReason::DamagedWAV, Riff(Padded("fmt ", FormatChunk({3, 0}, 2, false)) + data)},
        {CutReason::DamagedWAV, Riff(Padded("fmt ", FormatChunk({3, 9}, 2, false)) + data)},
        {CutReason::NoData, Riff(format)},
        {CutReason::NoData, Riff("long" + Number(0xFFFFFFFF) + format + data)},
        {CutReason::NoSamples, Riff(format + "data" + Number(0))},
        {CutReason::NoSamples, Riff(format + "data" + Number(0) + Padded("LIST", "INFO"))},
        {CutReason::NoSamples, Riff(format + "data" + Number(0xFFFFFFFF) + "1234567")},
        {CutReason::TooManyChunks, Riff(many + format + data)},
        {CutReason::TooManyChunks, Riff(format + data + many)},
    };
    for (const auto& [reason, source] : cases) {
        SCOPED_TRACE(source.substr(0, 60));
        EXPECT_EQ(ReasonAgainst(source), reason) << DescribeFailure(CutFailure());
        EXPECT_EQ(WhyNoCutterTakes(m_source.c_str()), reason);
    }
    m_folder.Write("source.wav", Riff(format + data));
    EXPECT_EQ(WhyNoCutterTakes(m_source.c_str()), CutReason::None);
    for (const bool keep : {true, false}) {
        EXPECT_FALSE(CutWholeWAV(m_source.c_str(), m_output.c_str(), keep ? 9.0 : 0.0, 9.0, keep));
        EXPECT_EQ(CutFailure().reason, keep ? CutReason::NoAudioInRange : CutReason::NothingLeft);
    }
}

// Of a plain file the very bytes of CutWAVFile, but up to the end of the samples.
TEST_F(CutWholeWAVs, PiecesAndSeveralRangesOfEitherKind) {
    const std::string all = WavBuilder::Pattern(std::size_t{kFrames} * 8);
    const std::string format = Padded("fmt ", FormatChunk({1, 4}, 2, false));
    const std::string odd = Padded("odd ", "12345");
    const std::vector<CutRange> ranges = {{2.0, 2.5}, {0.5, 1.0}, {1.0, 1.25}, {2.9, 99.0}};
    for (const bool isPlain : {true, false}) {
        const std::string before = isPlain ? format : odd + format;
        m_folder.Write("source.wav", Riff(before) + "data" + Number(0xFFFFFFFF) + all);
        std::vector<CutPiece> pieces;
        pieces.reserve(ranges.size());
        for (const CutRange& range : ranges) {
            pieces.push_back({m_folder.Path(std::to_string(pieces.size())), range});
        }
        ASSERT_TRUE(CutWAVPieces(m_source.c_str(), pieces));
        for (const auto& [path, range] : pieces) {
            const auto begin = static_cast<std::size_t>(range.start * kRate) * 8;
            const std::size_t end =
                std::min(static_cast<std::size_t>(range.end * kRate) * 8, all.size());
            const std::string expected =
                Riff(before + Padded("data", all.substr(begin, end - begin)));
            EXPECT_TRUE(TemporaryFolder::Read(path) == expected) << path;
            if (range.end < 3.0) {
                ASSERT_TRUE(
                    CutAnyWAV(m_source.c_str(), m_output.c_str(), range.start, range.end, true));
                EXPECT_TRUE(TemporaryFolder::Read(m_output) == expected);
            }
        }
        ASSERT_TRUE(CutWAVAllBut(m_source.c_str(), m_output.c_str(), ranges));
        EXPECT_TRUE(TemporaryFolder::Read(m_output) ==
                    Riff(before + Padded("data", all.substr(0, 4000) + all.substr(10000, 6000) +
                                                     all.substr(20000, 3200))));

        pieces.push_back({m_folder.Path("none"), {4.0, 5.0}});
        EXPECT_FALSE(CutWAVPieces(m_source.c_str(), pieces));
        EXPECT_EQ(CutFailure(), (CutProblem{CutReason::NoAudioInRange, m_source}));
        EXPECT_FALSE(std::filesystem::exists(pieces[0].path));
        EXPECT_FALSE(
            CutWAVAllBut(m_source.c_str(), m_output.c_str(), std::vector<CutRange>{{0.0, 9.0}}));
        EXPECT_EQ(CutFailure(), (CutProblem{CutReason::NothingLeft, m_source}));
    }
}

} // namespace
