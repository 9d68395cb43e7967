#include "tests/cli/CliTest.h"
#include "tests/support/Mp3Builder.h"

#include <nlohmann/json.hpp>

namespace {

using nlohmann::json;

using InfoCommand = CliTest;

TEST_F(InfoCommand, DescribesAnMP3WithAllThatCanBeInItOrNothingButFrames) {
    Mp3Builder()
        .Id3v2(1000)
        .Format({.channelMode = 1})
        .Xing(15, 2, 872, 57, "Info")
        .Lame("LAME3.99r", 0x01, 170, 128)
        .Frames(2)
        .Ape(100)
        .Id3v1(3)
        .WriteTo(m_folder.Path("a.mp3"));
    const json expected = json::parse(R"({
        "format": "mp3", "size": 2553, "audio_begin": 1010, "audio_end": 2261,
        "tags": [
            {"name": "ID3", "version": 1.1, "offset": 2425, "size": 128, "appended": true},
            {"name": "APE", "version": 2.0, "offset": 2261, "size": 164, "appended": true},
            {"name": "ID3", "version": 2.3, "offset": 0, "size": 1010, "appended": false}],
        "first_frame": {"offset": 1010, "size": 417, "version": "MPEG 1", "layer": "Layer III",
            "bitrate": 128000, "sampling_rate": 44100, "samples_per_frame": 1152,
            "channel_mode": "Joint Stereo", "crc": false},
        "vbr_header": {"kind": "Info", "offset": 1046, "frame_count": 2, "byte_count": 872,
            "quality": 57, "table_size": 100,
            "lame": {"encoder": "LAME3.99r", "version": 3.99, "simple": false, "method": "CBR",
                "lowpass": 17000, "bitrate": 128}},
        "frames": 2})");
    EXPECT_EQ(json::parse(Done("info a.mp3 --json")), expected);

    Mp3Builder().Frames(20).WriteTo(m_folder.Path("b.mp3"));
    const json plain = json::parse(Done("info --json b.mp3"));
    EXPECT_EQ(plain["tags"], json::array());
    EXPECT_EQ(plain["vbr_header"], nullptr);
}

TEST_F(InfoCommand, EscapesWhateverAnEncoderStringHolds) {
    const std::string encoder("LAME3.10\0\n\t\x7F\x80\xFF\"\\\x1B[2J", 20);
    Mp3Builder().Xing(15).Lame(encoder).Frames(5).WriteTo(m_folder.Path("a.mp3"));
    const std::string out = Done("info --json a.mp3");
    EXPECT_NE(out.find(R"("LAME3.10\u0000\u000a\u0009\u007f\u0080\u00ff\"\\\u001b[2J")"),
              std::string::npos)
        << out;
    const json lame = json::parse(out)["vbr_header"]["lame"];
    EXPECT_EQ(lame["simple"], true);
    EXPECT_EQ(lame["method"], "Unknown");
    EXPECT_EQ(Done("info a.mp3").find('\x1B'), std::string::npos);
}

TEST_F(InfoCommand, DescribesAWAVUpToItsSamples) {
    const WavBuilder source{.chunksBefore = WavBuilder::Chunk("LI\xFFT", "ab"),
                            .samples = std::string(88200, '\1'),
                            .after = WavBuilder::Chunk("LIST", "ab")};
    const json expected = json::parse(R"({
        "format": "wav", "size": 88264, "format_tag": 1, "channels": 2, "sample_rate": 44100,
        "bytes_per_second": 176400, "block_align": 4, "bits": 16,
        "chunks": [{"id": "fmt ", "offset": 12, "size": 16},
            {"id": "LI\u00ffT", "offset": 36, "size": 2},
            {"id": "data", "offset": 46, "size": 88200}]})");
    m_folder.Write("b.wav", source.Bytes());
    EXPECT_EQ(json::parse(Done("info --json b.wav")), expected);
}

} // namespace
