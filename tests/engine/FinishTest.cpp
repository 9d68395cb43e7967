#include "cutting/CutSummary.h"
#include "tests/adaptor/RecordingDelegate.h"
#include "tests/support/AlertRecorder.h"
#include "tests/support/DecodedMP3.h"

#include <gtest/gtest.h>

#include <map>
#include <numeric>
#include <set>

namespace {

namespace fs = std::filesystem;

/// An MP3 and what edits have left of it, kept in the plainest way: frame by frame.
class EditedMP3 {
public:
    struct Entry {
        std::vector<long long> held;           // frames
        std::set<long long> removed;           // those that lay between others
        std::pair<long long, long long> marks; // where it begins and ends; sample frames
    };

    explicit EditedMP3(const std::string& clip)
        : file(TemporaryFolder::Read(std::string(KLIPRA_CLIPS) + "/" + clip), 0, FormatType::MP3),
          whole(Decode(file.path, false)), music(Decode(file.path, true)),
          samples(whole.rateHz >= 32000 ? 1152 : 576) {
        Entry& entry = entries[1];
        entry.held.resize(static_cast<std::size_t>(whole.SampleFrames() / samples));
        std::iota(entry.held.begin(), entry.held.end(), 0);
        // What a player leaves out.
        const auto played = std::search(whole.samples.begin(), whole.samples.end(),
                                        music.samples.begin(), music.samples.begin() + 4000);
        const long long begin = (played - whole.samples.begin()) / whole.channels;
        entry.marks = {begin, begin + music.SampleFrames()};
    }

    KlipraMac& Engine() { return file.adaptor; }
    const Entry& Current() { return entries.at(Engine().currentHistoryId); }
    unsigned long long Position(long long sample) const {
        return static_cast<unsigned long long>(sample * 2 * whole.channels);
    }
    long long Length(const Entry& entry) const {
        return static_cast<long long>(entry.held.size()) * samples;
    }
    /// The part of the opened file that a range of an entry means.
    std::pair<long long, long long> Asked(const Entry& entry, long long from, long long to) const {
        const auto source = [&](long long sample) {
            return entry.held[static_cast<std::size_t>(sample / samples)] * samples +
                   sample % samples;
        };
        const auto [begin, end] = entry.marks;
        return {from == 0 ? begin : std::max(source(from), begin),
                to == Length(entry) ? end : std::min(source(to - 1) + 1, end)};
    }

    /// Edits the current entry and follows that; sample frames.
    void Cut(bool keep, long long from, long long to) {
        const Entry& parent = Current();
        Engine().cutPositions = {Position(from), Position(to)};
        ASSERT_TRUE(Engine().Cut(keep));
        Entry& entry = entries[Engine().currentHistoryId] = {{}, parent.removed, parent.marks};
        for (const CutRun& run : CutSummaries().at(0).runs) {
            entry.held.insert(entry.held.end(), parent.held.begin() + run.first,
                              parent.held.begin() + run.first + run.count);
        }
        ASSERT_EQ(Engine().length, Position(Length(entry)));
        const auto [begin, end] = Asked(parent, from, to);
        if (keep) {
            entry.marks = {begin, end};
        } else if (end == parent.marks.second) {
            entry.marks.second = begin;
        } else if (begin == parent.marks.first) {
            entry.marks.first = end;
        } else {
            const auto left = static_cast<std::size_t>(CutSummaries()[0].runs[0].count);
            const long long behind =
                left < entry.held.size() ? entry.held[left] : (end + samples - 1) / samples;
            for (long long frame = entry.held[left - 1] + 1; frame < behind; ++frame) {
                entry.removed.insert(frame);
            }
        }
    }

    std::string SaveFinished(const std::string& name) {
        person.answer = file.folder.Path(name);
        std::string path;
        EXPECT_TRUE(Engine().SaveFinished(path));
        EXPECT_TRUE(Engine().GetFinishNotes().empty());
        return path;
    }

    /// Expects the sample frames between marks, but for what was removed there; behind a join two
    /// frames sound together.
    void ExpectSource(const std::string& path, const std::pair<long long, long long>& marks) {
        const Floats finished = Decode(path, true).samples;
        std::size_t at = 0;
        long long exactFrom = 0;
        double difference = 0.0;
        for (long long sample = marks.first; sample < marks.second; ++sample) {
            if (Current().removed.contains(sample / samples)) {
                exactFrom = (sample / samples + 1) * samples + 1152;
                continue;
            }
            for (int channel = 0; channel < whole.channels; ++channel, ++at) {
                const auto source = static_cast<std::size_t>(sample * whole.channels + channel);
                if (sample >= exactFrom && at < finished.size()) {
                    difference = std::max(difference, std::abs(32768.0 * (double{finished[at]} -
                                                                          whole.samples[source])));
                }
            }
        }
        EXPECT_EQ(at, finished.size());
        EXPECT_LE(difference, kRounding);
    }

    AlertRecorder person;
    OpenedFile file;
    Decoded whole;
    Decoded music;
    long long samples; // of a frame
    std::map<int, Entry> entries;
};

const char* const kClips[] = {"joint-stereo-44100.mp3", "vbr-xing-48000.mp3",
                              "mono-8kbps-24000.mp3", "abr-crc-22050.mp3", "mono-8000.mp3"};

TEST(FinishedEdits, AreTheSourceToTheSampleAfterAnyEdits) {
    for (const char* const clip : kClips) {
        for (unsigned int seed = 0; seed < 8; ++seed) {
            SCOPED_TRACE(testing::Message() << clip << " " << seed);
            Random random(seed);
            EditedMP3 mp3(clip);
            const auto below = [&](long long limit) { return random(static_cast<int>(limit)); };
            for (int edit = 0; edit < 6; ++edit) {
                const long long length = mp3.Length(mp3.Current());
                const bool keep = random(3) == 0;
                const long long size = keep ? length / 2 : length / 6;
                const bool isFromBegin = random(5) == 0;
                const long long from = isFromBegin ? 0 : below(length - size);
                const bool isToEnd = random(5) == 0 && from > length / 2;
                const long long to = isToEnd ? length : from + 1 + size / 2 + below(size / 2);
                ASSERT_NO_FATAL_FAILURE(mp3.Cut(keep, from, to));
                if (mp3.Current().held.size() < 30) {
                    break;
                }
            }
            const std::string path = mp3.SaveFinished("a.mp3");
            mp3.ExpectSource(path, mp3.Current().marks);
            EXPECT_TRUE(mp3.Engine().histories.back().saved);
            const std::string bytes = TemporaryFolder::Read(path);

            const long long length = mp3.Length(mp3.Current());
            const long long from = length / 8 + below(length / 4);
            const long long to = length / 2 + below(length / 3);
            mp3.Engine().cutPositions = {mp3.Position(to), mp3.Position(from)};
            mp3.Engine().SaveRangeFinished();
            EXPECT_EQ(mp3.Engine().GetLastOutput(), path);
            mp3.ExpectSource(path, mp3.Asked(mp3.Current(), from, to));

            // As another session repeats it.
            EditedMP3 again(clip);
            for (const HistoryItem& item : mp3.Engine().histories) {
                EXPECT_TRUE(
                    item.edit == EditKind::None ||
                    again.Engine().RepeatEdit(item.parentId, item.edit, item.range, item.range, 1));
            }
            EXPECT_TRUE(TemporaryFolder::Read(again.SaveFinished("b.mp3")) == bytes);
        }
    }
}

TEST(FinishedEdits, LoseNothingAtTheEnds) {
    for (const char* const clip : kClips) {
        SCOPED_TRACE(clip);
        EditedMP3 mp3(clip);
        const long long length = mp3.Length(mp3.Current());
        for (int i = 0; i < 10; ++i) {
            mp3.Cut(false, length / 4, length / 4 + mp3.samples);
        }
        const Floats played = Decode(mp3.SaveFinished("a.mp3"), true).samples;
        const Floats& music = mp3.music.samples;
        const auto part = static_cast<std::ptrdiff_t>(music.size() / 5);
        EXPECT_LE(Difference({played.begin(), played.begin() + part},
                             {music.begin(), music.begin() + part}),
                  kRounding);
        EXPECT_LE(
            Difference({played.end() - part, played.end()}, {music.end() - part, music.end()}),
            kRounding);

        mp3.Engine().SelectHistory(1);
        mp3.Engine().cutPositions = {mp3.Position(length / 3), mp3.Position(length / 2)};
        ASSERT_TRUE(mp3.Engine().Split());
        Floats pieces;
        for (int id = 12; id <= 14; ++id) {
            mp3.Engine().SelectHistory(id);
            const Floats piece = Decode(mp3.SaveFinished("piece.mp3"), true).samples;
            pieces.insert(pieces.end(), piece.begin(), piece.end());
        }
        EXPECT_LE(Difference(pieces, music), kRounding);
    }
}

TEST(FinishedEdits, OfAWAVHoldTheSameSamplesAndAllChunks) {
    const std::string point = WavBuilder::Number(4, 7) + WavBuilder::Number(4, 50) + "data" +
                              std::string(8, '\0') + WavBuilder::Number(4, 50);
    WavBuilder source{.channels = 1, .rateHz = 8192, .samples = WavBuilder::Pattern(200)};
    source.after = WavBuilder::Chunk("cue ", WavBuilder::Number(4, 1) + point);
    for (unsigned int seed = 0; seed < 20; ++seed) {
        SCOPED_TRACE(seed);
        AlertRecorder person;
        OpenedFile file(source.Bytes());
        KlipraMac& engine = file.adaptor;
        Random random(seed);
        std::string samples = source.samples;
        for (int edit = 0; edit < 4; ++edit) {
            const auto size = static_cast<int>(samples.size() / 2);
            const bool keep = random(4) == 0;
            const auto from = static_cast<std::size_t>(random(size / 2)) * 2;
            const auto to = from + 2 + static_cast<std::size_t>(random(size / 4)) * 2;
            engine.cutPositions = {from, to};
            ASSERT_TRUE(engine.Cut(keep));
            samples = keep ? samples.substr(from, to - from)
                           : samples.substr(0, from) + samples.substr(to);
            if (samples.size() < 20) {
                break;
            }
        }
        person.answer = file.folder.Path("a.wav");
        std::string path;
        ASSERT_TRUE(engine.SaveFinished(path));
        const std::string bytes = TemporaryFolder::Read(path);
        const std::size_t data = bytes.find("data");
        ASSERT_EQ(bytes.substr(data, 8 + samples.size()), WavBuilder::Chunk("data", samples));
        const std::size_t cue = samples.find(source.samples.substr(100, 2));
        const std::size_t chunk = bytes.find("cue ", data + 8 + samples.size());
        if (cue != std::string::npos) {
            ASSERT_NE(chunk, std::string::npos);
            EXPECT_EQ(bytes.substr(chunk + 32, 4),
                      WavBuilder::Number(4, static_cast<std::uint32_t>(cue / 2)));
        }
    }
}

/// Expects that finishing fails for a reason, without a trace.
void ExpectNoFinish(KlipraMac& engine, const std::string& target, CutReason reason) {
    const fs::path folder = fs::path(target).parent_path();
    const auto files = std::distance(fs::directory_iterator(folder), fs::directory_iterator());
    const HistoryItem& item = engine.histories.back();
    EXPECT_FALSE(engine.Klipra::FinishExec({item.runs, item.path}, target));
    EXPECT_EQ(engine.GetLastFailure().problem.reason, reason);
    EXPECT_EQ(TemporaryFolder::Read(target), "old");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), files);
}

TEST(FinishedEdits, AreRefusedWhereTheFileOfTheEditWasAlteredOrTheWorkCancelled) {
    AlertRecorder person;
    for (const FormatType format : {FormatType::MP3, FormatType::WAV}) {
        const bool isMP3 = format == FormatType::MP3;
        OpenedFile file(isMP3 ? TemporaryFolder::Read(std::string(KLIPRA_CLIPS) + "/" + kClips[1])
                              : SilentWav(3),
                        0, format);
        KlipraMac& engine = file.adaptor;
        engine.cutPositions = {engine.length / 8 * 2, engine.length / 8 * 4};
        ASSERT_TRUE(engine.Cut(false));
        person.answer = file.folder.Write("out", "old");
        const std::string edited = engine.histories.back().path;
        const std::string bytes = TemporaryFolder::Read(edited);
        for (const std::size_t place : {bytes.size() / 3, bytes.size() - 600}) {
            std::string altered = bytes;
            altered[place] = static_cast<char>(altered[place] + 1);
            std::ofstream(edited) << altered;
            ExpectNoFinish(engine, person.answer, CutReason::EditAltered);
        }
        std::ofstream(edited) << bytes.substr(0, bytes.size() / 2);
        ExpectNoFinish(engine, person.answer, CutReason::EditAltered);
        std::ofstream(edited) << bytes;
        {
            CutProgress progress;
            progress.isCancelled = true;
            const CutProgressScope scope(progress);
            ExpectNoFinish(engine, person.answer, CutReason::Cancelled);
        }
        std::string path;
        EXPECT_TRUE(engine.SaveFinished(path));
        EXPECT_NE(TemporaryFolder::Read(path), "old");
    }
}

} // namespace
