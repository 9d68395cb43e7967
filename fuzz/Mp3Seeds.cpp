#include "fuzz/Seeds.h"
#include "tests/support/Mp3Builder.h"

namespace {

constexpr FrameFormat kSmall{.version = 2, .bitrateKbps = 8, .rateHz = 24000, .channelMode = 3};

std::string Repeated(const std::string& text, unsigned int count) {
    std::string result;
    for (; count > 0; --count) {
        result += text;
    }
    return result;
}

std::string Padded(std::string text, std::size_t bytes) {
    text.resize(bytes, ' ');
    return text;
}

Mp3Builder Audio() {
    return Mp3Builder().Frames(6);
}

Mp3Builder SmallAudio() {
    return Mp3Builder().Format(kSmall).Frames(12);
}

void AddSound(std::vector<Seed>& seeds) {
    const auto add = [&](const char* name, const Mp3Builder& file) {
        seeds.push_back({name, file.Bytes()});
    };
    add("plain", Audio());
    add("xing", Mp3Builder()
                    .Id3v2(100)
                    .Xing(15, 8, 3753, 57)
                    .Lame("LAME3.99r", 0x03, 160, 128)
                    .Frames(8)
                    .Id3v1(7));
    add("info-counts", Mp3Builder().Xing(3, 8, 3753, 0, "Info").Frames(8));
    add("vbri", Mp3Builder()
                    .Vbri({.byteCount = 3336,
                           .frameCount = 8,
                           .framesPerEntry = 2,
                           .entries = {834, 834, 834, 834}})
                    .Frames(8));
    add("layer-1", Mp3Builder().Format({.layer = 1, .isProtected = true}).Frames(8));
    add("layer-2", Mp3Builder().Format({.layer = 2, .rateHz = 48000}).Frames(6));
    add("mpeg-2",
        Mp3Builder().Format({.version = 2, .bitrateKbps = 64, .rateHz = 22050}).Frames(9));
    add("mpeg-2.5",
        Mp3Builder().Format({.version = 0, .bitrateKbps = 16, .rateHz = 8000}).Frames(9));
    add("small", SmallAudio());
    add("all-tags", Mp3Builder()
                        .Ape(40)
                        .Id3v2(50, true)
                        .Frames(4)
                        .Ape(20)
                        .Lyrics3v2(60)
                        .Id3v2(10, true)
                        .Id3v1());
    add("lyrics-1", Audio().Lyrics3v1(300).Id3v1());
    add("music-match-3.00", Audio().MusicMatch(20, 7868));
    add("music-match-3.05", Audio().MusicMatch(0, 8004, true));
    add("garbage", Mp3Builder().Frames(3).Garbage(500).Frames(3).Garbage(3).Frames(3));
    add("formats", Audio()
                       .Format({.version = 2, .bitrateKbps = 32, .rateHz = 16000})
                       .Frames(4)
                       .Format({.channelMode = 3})
                       .Frames(4));
}

// Sizes that wrap, that point before the file or past its end, and none at all.
void AddTags(std::vector<Seed>& seeds) {
    const auto number = [](unsigned int value) { return LittleEndian(value); };
    for (const unsigned int size :
         {0U, 1U, 31U, 32U, 64U, 2600U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFE0U, 0xFFFFFFFFU}) {
        for (const unsigned int flags : {0U, 1U << 31}) {
            const std::string footer = "APETAGEX" + number(2000) + number(size) + number(1) +
                                       number(flags) + std::string(8, '\0');
            const std::string name = "ape-" + std::to_string(size) + (flags != 0 ? "-header" : "");
            seeds.push_back({name + "-behind", Audio().Raw(footer).Bytes()});
            seeds.push_back({name + "-before", footer + Audio().Bytes()});
        }
    }
    for (const char* size : {"\x7F\x7F\x7F\x7F", "\xFF\xFF\xFF\xFF", "\x7F\x01\x01\x01"}) {
        seeds.push_back({"id3v2-before", std::string("ID3\4\0\x10", 6) + size + Audio().Bytes()});
        seeds.push_back(
            {"id3v2-behind", Audio().Raw(std::string("3DI\4\0\x10", 6) + size).Bytes()});
    }
    for (const char* digits :
         {"000000", "999999", "-00001", "+00011", "      ", "0x0011", "002516"}) {
        const std::string tag = std::string("LYRICSBEGIN") + digits + "LYRICS200";
        seeds.push_back({std::string("lyrics-2-") + digits, Audio().Raw(tag).Bytes()});
    }
    seeds.push_back({"lyrics-1-endless", Audio().Raw("LYRICSEND").Bytes()});
    seeds.push_back({"lyrics-1-too-long", Audio().Lyrics3v1(6000).Bytes()});
    for (const char* version : {"3.05", "0.00", "9.99", "-3.1", "nan ", "1e99", "    "}) {
        for (const unsigned int image : {0U, 256U, 0xFFFFFFFFU}) {
            seeds.push_back(
                {std::string("music-match-") + version,
                 Audio()
                     .Garbage(8500)
                     .Raw(number(image) + number(0) + number(0) + number(image / 2) + number(0) +
                          Padded("Brava Software Inc.", 32) + Padded(version, 16))
                     .Bytes()});
        }
    }
}

void AddVBRHeaders(std::vector<Seed>& seeds) {
    for (const unsigned int entrySize : {0U, 1U, 3U, 4U, 5U, 65535U}) {
        Mp3Builder file;
        file.Vbri(
            {.frameCount = 0xFFFFFFFF, .scale = 0, .framesPerEntry = 0, .entries = {1, 2, 3}});
        file.Patch(file.VbrHeaderOffset() + 22, BigEndian(entrySize, 2));
        seeds.push_back({"vbri-entries-of-" + std::to_string(entrySize), file.Frames(4).Bytes()});
        file.Patch(file.VbrHeaderOffset() + 18, BigEndian(65535, 2));
        seeds.push_back({"vbri-65536-entries-of-" + std::to_string(entrySize), file.Bytes()});
    }
    for (const unsigned int flags : {0U, 1U, 2U, 3U, 4U, 8U, 15U}) {
        for (const unsigned int count : {0U, 1U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
            seeds.push_back({"xing-" + std::to_string(flags) + "-" + std::to_string(count),
                             Mp3Builder().Xing(flags, count, count).Frames(5).Id3v1().Bytes()});
            // The header reaches beyond its frame, over the next ones.
            Mp3Builder small;
            small.Format(kSmall).Frames(1).Raw(std::string(160, '\0'));
            small.Patch(13, "Xing" + BigEndian(flags) + BigEndian(count) + BigEndian(count));
            for (long long frame = 24; frame < 160; frame += 24) {
                small.Patch(frame, kSmall.Header());
            }
            seeds.push_back({"xing-in-24-bytes", small.Bytes()});
        }
    }
}

void AddHeaders(std::vector<Seed>& seeds) {
    const std::string header = FrameFormat().Header();
    for (std::size_t bytes = 1; bytes <= header.size(); ++bytes) {
        seeds.push_back({"header-at-the-end", Audio().Raw(header.substr(0, bytes)).Bytes()});
        seeds.push_back({"nothing-but-a-header", header.substr(0, bytes)});
    }
    seeds.push_back({"empty", ""});
    seeds.push_back({"nothing-but-a-tag", Mp3Builder().Id3v1().Bytes()});
    seeds.push_back(
        {"tags-upon-tags", Mp3Builder().Id3v2(2000).Frames(4).Id3v1().Bytes().substr(0, 1900) +
                               Mp3Builder().Id3v1().Bytes()});
    for (const unsigned int zeros : {32768U, 32769U}) {
        seeds.push_back({"late", std::string(zeros, '\0') + Audio().Bytes()});
    }
    Mp3Builder changing;
    for (unsigned int i = 0; i < 200; ++i) {
        changing.Format(i % 2 == 0 ? FrameFormat{} : kSmall).Frames(1);
    }
    seeds.push_back({"two-streams-in-turn", changing.Bytes()});
}

// Large, and slow for whoever looks at all of it again and again.
void AddMany(std::vector<Seed>& seeds) {
    const std::string header = FrameFormat().Header();
    seeds.push_back({"many-headers", Repeated(header, 20000)});
    seeds.push_back(
        {"many-free-headers", Audio().Raw(Repeated("\xFF\xFB\x04\x64", 20000)).Bytes()});
    seeds.push_back({"many-syncs", std::string(100000, '\xFF')});
    seeds.push_back({"many-small-frames", Mp3Builder().Format(kSmall).Frames(5000).Bytes()});
    for (const unsigned int tags : {4000U, 5000U}) {
        seeds.push_back(
            {"many-id3v2", Repeated(Mp3Builder().Id3v2(0).Bytes(), tags) + Audio().Bytes()});
        seeds.push_back(
            {"many-3di", Audio().Raw(Repeated(Mp3Builder().Id3v2(0, true).Bytes(), tags)).Bytes()});
        seeds.push_back(
            {"many-ape", Audio().Raw(Repeated(Mp3Builder().Ape(0, false).Bytes(), tags)).Bytes()});
        seeds.push_back(
            {"many-id3v1", Audio().Raw(Repeated(Mp3Builder().Id3v1().Bytes(), tags)).Bytes()});
    }
}

// A file with everything in it that ends early.
void AddBeginnings(std::vector<Seed>& seeds) {
    Mp3Builder file;
    file.Id3v2(20, true)
        .Ape(8)
        .Xing(15, 3, 1251)
        .Lame("LAME3.99r")
        .Frames(2)
        .Ape(8)
        .Lyrics3v2(30)
        .Id3v1();
    std::vector<long long> boundaries;
    for (const auto& pieces : {file.TagExtents(), file.FrameExtents()}) {
        for (const Extent& piece : pieces) {
            boundaries.insert(boundaries.end(), {piece.offset, piece.offset + 4, piece.offset + 10,
                                                 piece.offset + 32, piece.End() - 32, piece.End()});
        }
    }
    for (const long long field : {0, 4, 8, 12, 16, 116, 120, 129, 140}) {
        boundaries.push_back(file.VbrHeaderOffset() + field);
    }
    for (Seed& seed : Beginnings({"beginning", file.Bytes()}, boundaries)) {
        seeds.push_back(std::move(seed));
    }
    const Mp3Builder vbri = Mp3Builder().Vbri({.frameCount = 3, .entries = {1, 2, 3}});
    for (Seed& seed :
         Beginnings({"vbri", vbri.Bytes()}, {36, 40, 46, 54, 58, 60, 62, 64, 66, 68})) {
        seeds.push_back(std::move(seed));
    }
}

} // namespace

std::vector<Seed> Mp3Seeds() {
    std::vector<Seed> seeds;
    for (const auto& add : {AddSound, AddTags, AddVBRHeaders, AddHeaders, AddMany, AddBeginnings}) {
        add(seeds);
    }
    return seeds;
}
