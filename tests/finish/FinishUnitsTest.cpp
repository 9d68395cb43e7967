#include "bitstream/CRC.h"
#include "bitstream/SideInfo.h"
#include "finish/FinishPlan.h"
#include "finish/GaplessEdges.h"
#include "finish/MainDataPacker.h"
#include "finish/TagLength.h"

#include <gtest/gtest.h>

#include <random>
#include <string_view>

using Placed = MainDataPacker::Placed;

namespace {

std::span<const std::uint8_t> Bytes(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

/// A frame with 100, 200 and 300 bytes of payload at its three bitrates.
PackedFrame Frame(unsigned int mainDataBegin, unsigned int mainDataBytes,
                  unsigned int bitrateIndex = 1) {
    PackedFrame frame;
    frame.payloadBytes = {0, 100, 200, 300};
    std::fill(frame.payloadBytes.begin() + 4, frame.payloadBytes.end(), 300U);
    frame.bitrateIndex = bitrateIndex;
    frame.mainDataBegin = mainDataBegin;
    frame.mainDataBytes = mainDataBytes;
    frame.maxMainDataBegin = 511;
    return frame;
}

/// Expects main data in order, each within reach of its frame and ending with it.
void ExpectLawful(const MainDataPacker& packer) {
    long long end = packer.Seats().empty() ? 0 : packer.Seats().front().data;
    long long payload = packer.Seats().empty() ? 0 : packer.Seats().front().payload;
    for (const MainDataPacker::Seat& seat : packer.Seats()) {
        const unsigned int bytes = seat.isEmpty ? 0 : seat.frame.mainDataBytes;
        EXPECT_EQ(seat.payload, payload);
        EXPECT_EQ(seat.data, seat.payload - seat.mainDataBegin);
        EXPECT_GE(seat.data, end);
        EXPECT_LE(seat.mainDataBegin, 511U);
        EXPECT_LE(seat.data + bytes, seat.payload + seat.PayloadBytes());
        end = seat.data + bytes;
        payload += seat.PayloadBytes();
    }
    EXPECT_EQ(packer.PayloadEnd(), payload);
}

} // namespace

TEST(SideInfos, AreReadAndWrittenInAllFourSizes) {
    std::mt19937 random(1);
    for (const bool isLSF : {false, true}) {
        for (const bool isSingle : {false, true}) {
            std::uint8_t bytes[32];
            for (std::uint8_t& byte : bytes) {
                byte = static_cast<std::uint8_t>(random());
            }
            const unsigned int channels = isSingle ? 1 : 2;
            // The last part ends with the last byte: its window switch stands 26 or 25 bits before.
            const std::size_t size = isLSF ? (isSingle ? 9 : 17) : (isSingle ? 17 : 32);
            const auto bit = [&](std::size_t at) {
                return (static_cast<unsigned int>(bytes[at / 8]) >> (7 - at % 8) & 1U) != 0;
            };
            const auto info = bitstream::SideInfo::Read(bytes, isLSF, isSingle);
            EXPECT_EQ(info.parts[isLSF ? 0 : 1][channels - 1].isWindowSwitched,
                      bit(8 * size - (isLSF ? 25U : 26U)));
            const std::uint8_t private1 = bytes[1];
            bitstream::SideInfo::WriteMainDataBegin(bytes, isLSF, 201);
            EXPECT_EQ(bitstream::SideInfo::Read(bytes, isLSF, isSingle).mainDataBegin, 201U);
            EXPECT_EQ(bytes[1] & 0x7FU, private1 & 0x7FU);
        }
    }
}

TEST(CRCs, AreThoseOfTheirStandards) {
    bitstream::MusicCRC music; // CRC-16/ARC
    music.Add(Bytes("12345"));
    music.Add(Bytes("6789"));
    EXPECT_EQ(music.Value(), 0xBB3D);
    std::string text(1000, 'x');
    bitstream::MusicCRC whole;
    bitstream::MusicCRC parts;
    whole.Add(Bytes(text));
    for (std::size_t at = 0; at < text.size(); at += 7) {
        parts.Add(Bytes(std::string_view(text).substr(at, 7)));
    }
    EXPECT_EQ(whole.Value(), parts.Value());
    const std::uint8_t header[] = {'x', 'x', '1', '2'};
    EXPECT_EQ(bitstream::FrameCRC(header, Bytes("3456789")), 0xAEE7); // CRC-16/CMS
}

TEST(MainDataPackers, LeaveOverwriteRaiseAndGiveUp) {
    MainDataPacker packer;
    EXPECT_EQ(packer.Place(Frame(0, 100), 0), Placed::InStep);
    EXPECT_EQ(packer.Place(Frame(0, 60), 1), Placed::InStep);
    packer.BeginRun(); // 40 bytes are free
    EXPECT_EQ(packer.Place(Frame(40, 140), 50), Placed::InStep);
    EXPECT_FALSE(packer.Seats().back().IsAltered());
    packer.BeginRun(); // nothing is free
    EXPECT_EQ(packer.Place(Frame(70, 170), 80), Placed::Late);
    EXPECT_EQ(packer.Seats().back().bitrateIndex, 2U);
    EXPECT_EQ(packer.Seats().back().mainDataBegin, 0U);
    EXPECT_EQ(packer.Place(Frame(0, 0), 81), Placed::InStep); // empty, but in order
    ExpectLawful(packer);
    EXPECT_EQ(packer.Place(Frame(300, 600, 3), 90), Placed::DoesNotFit);
    EXPECT_TRUE(packer.Enlarge(300));
    EXPECT_EQ(packer.Place(Frame(300, 600, 3), 90), Placed::InStep);
    packer.PlaceEmpty(Frame(0, 100, 3), 91);
    ExpectLawful(packer);
    const long long end = packer.PayloadEnd();
    packer.PlaceEmpty(Frame(0, 0), 92);
    packer.Pop();
    EXPECT_EQ(packer.PayloadEnd(), end);
}

TEST(MainDataPackers, KeepTheLawWhateverIsJoined) {
    std::mt19937 engine(5);
    const auto random = [&](unsigned int limit) {
        return static_cast<unsigned int>(engine() % limit);
    };
    MainDataPacker packer;
    packer.AddCarriers(Frame(0, 0), 1, 2, 150);
    int placed = 0;
    for (int i = 0; i < 3000; ++i) {
        if (random(5) == 0) {
            packer.Enlarge(random(512));
            packer.BeginRun();
        }
        const unsigned int begin = random(512);
        const unsigned int index = 1 + random(3);
        const unsigned int most = begin + 100 * index;
        if (packer.Place(Frame(begin, random(most), index), i) != Placed::DoesNotFit) {
            ++placed;
        }
        ExpectLawful(packer);
        if (packer.Seats().size() > 60) {
            packer.Drop(packer.Settled());
        }
    }
    EXPECT_GT(placed, 1000);
}

TEST(GaplessEdges, KeepToTheMusic) {
    const EncoderGap gap{576, 1105};
    const auto span = [](const SampleSpan& of) { return std::pair(of.begin, of.end); };
    EXPECT_EQ(span(MusicOf({}, 10, 0, 1152)), std::pair(0LL, 11520LL));
    EXPECT_EQ(span(MusicOf(gap, 10, 10, 1152)), std::pair(1105LL, 11520LL - 576));
    EXPECT_EQ(span(MusicOf(gap, 9, 10, 1152)), std::pair(1105LL, 9LL * 1152));
    EXPECT_EQ(span(MusicOf(gap, 11, 10, 1152)), std::pair(1105LL, 11LL * 1152));
    EXPECT_EQ(span(MusicOf(EncoderGap{576, 3}, 10, 10, 1152)), std::pair(1105LL, 11520LL));
    const auto stored = [](const EncoderGap& of) { return std::pair(of.delay, of.padding); };
    EXPECT_EQ(stored(GapAround({5000, 9000}, {2304, 9216})), std::pair(5000U - 2833, 216U + 529));
    EXPECT_EQ(stored(GapAround({5000, 5001}, {0, 9216})), std::pair(4095U, 4095U));
}

TEST(FinishPlans, BeginAndEndExactlyAndJoinAtTheNearestFrame) {
    const FrameGrid grid{1000, 1000, {100, 9900}, true}; // a frame a second
    const auto runs = [](const FinishPlan& plan) {
        std::string text;
        for (const FrameRun& run : plan.runs) {
            text += std::to_string(run.begin) + "-" + std::to_string(run.end) + " ";
        }
        return text + std::to_string(plan.wanted.begin) + ".." + std::to_string(plan.wanted.end);
    };
    EXPECT_EQ(runs(PlanExtract(grid, {1.5, 3.0})), "1-3 1500..3000");
    EXPECT_EQ(runs(PlanExtract(grid, {0.0, 99.0})), "0-10 100..9900");
    EXPECT_TRUE(PlanExtract(grid, {9.9, 99.0}).runs.empty());
    const auto removal = [&](std::vector<CutRange> ranges) {
        return runs(PlanRemoval(grid, ranges));
    };
    EXPECT_EQ(removal({{2.4, 4.6}}), "0-2 5-10 100..9900");
    EXPECT_EQ(removal({{0.05, 4.6}}), "4-10 4600..9900");
    EXPECT_EQ(removal({{2.4, 99.0}}), "0-3 100..2400");
    EXPECT_EQ(removal({{6.0, 7.0}, {0.0, 1.5}, {2.5, 4.0}}), "1-3 4-6 7-10 1500..9900");
    EXPECT_EQ(PlanRemoval(grid, std::vector<CutRange>{{2.1, 2.4}}).idleRemovals, 1);
    EXPECT_TRUE(PlanRemoval(grid, std::vector<CutRange>{{0.0, 99.0}}).runs.empty());
    const FrameGrid whole{1000, 1000, {0, 10000}, false};
    EXPECT_EQ(runs(PlanExtract(whole, {1.6, 3.4})), "2-3 1600..3400");
    EXPECT_EQ(runs(PlanExtract(whole, {1.6, 1.7})), "1-2 1600..1700");
}

TEST(TagLengths, FitTheirDigitsOrAreLeft) {
    EXPECT_EQ(LengthDigits(12.3456, 6), "012346");
    EXPECT_EQ(LengthDigits(1000.0, 6), "");
}
