#include "cli/PieceTags.h"

#include "places/TextLines.h"

#include <algorithm>
#include <taglib/apetag.h>
#include <taglib/chapterframe.h>
#include <taglib/id3v1tag.h>
#include <taglib/id3v2header.h>
#include <taglib/id3v2tag.h>
#include <taglib/infotag.h>
#include <taglib/mpegfile.h>
#include <taglib/tdebuglistener.h>
#include <taglib/wavfile.h>
#include <vector>

namespace {

using TagLib::ID3v2::ChapterFrame;

constexpr bool kReadsNoAudio = false;

/// The tag library tells of whatever it finds odd. While this lives, nobody.
class QuietTagLibrary : public TagLib::DebugListener {
public:
    QuietTagLibrary() { TagLib::setDebugListener(this); }
    QuietTagLibrary(const QuietTagLibrary&) = delete;
    QuietTagLibrary& operator=(const QuietTagLibrary&) = delete;
    ~QuietTagLibrary() override { TagLib::setDebugListener(nullptr); }

    void printMessage(const TagLib::String& /*message*/) override {}
};

void Set(TagLib::Tag& tag, const PieceTags& tags) {
    if (!tags.title.empty()) {
        tag.setTitle(TagLib::String(tags.title, TagLib::String::UTF8));
    }
    tag.setTrack(tags.track);
}

// The version that the file has, as players that know the older one alone do not read the newer.
TagLib::ID3v2::Version VersionOf(const TagLib::ID3v2::Tag& tag) {
    return tag.header()->majorVersion() < 4 ? TagLib::ID3v2::v3 : TagLib::ID3v2::v4;
}

bool WriteMP3Tags(const std::string& path, const PieceTags& tags) {
    TagLib::MPEG::File file(path.c_str(), kReadsNoAudio);
    if (!file.isValid() || file.readOnly()) {
        return false;
    }
    const bool isNew = !file.hasID3v2Tag();
    Set(*file.ID3v2Tag(true), tags);
    int kinds = TagLib::MPEG::File::ID3v2;
    if (file.hasID3v1Tag()) {
        Set(*file.ID3v1Tag(), tags);
        kinds |= TagLib::MPEG::File::ID3v1;
    }
    if (file.hasAPETag()) {
        Set(*file.APETag(), tags);
        kinds |= TagLib::MPEG::File::APE;
    }
    const auto version = isNew ? TagLib::ID3v2::v3 : VersionOf(*file.ID3v2Tag());
    return file.save(kinds, TagLib::File::StripNone, version, TagLib::File::DoNotDuplicate);
}

bool WriteWAVTags(const std::string& path, const PieceTags& tags) {
    TagLib::RIFF::WAV::File file(path.c_str(), kReadsNoAudio);
    if (!file.isValid() || file.readOnly()) {
        return false;
    }
    Set(*file.InfoTag(), tags);
    auto kinds = TagLib::RIFF::WAV::File::Info;
    if (file.hasID3v2Tag()) {
        Set(*file.ID3v2Tag(), tags);
        kinds = TagLib::RIFF::WAV::File::AllTags;
    }
    return file.save(kinds, TagLib::File::StripNone, VersionOf(*file.ID3v2Tag()));
}

std::vector<std::string> Chapters(const TagLib::ID3v2::Tag* tag) {
    std::vector<const ChapterFrame*> chapters;
    if (tag != nullptr) {
        for (const TagLib::ID3v2::Frame* frame : tag->frameList("CHAP")) {
            if (const auto* chapter = dynamic_cast<const ChapterFrame*>(frame)) {
                chapters.push_back(chapter);
            }
        }
    }
    std::ranges::stable_sort(chapters, {}, &ChapterFrame::startTime);
    constexpr double kMilliseconds = 1000.0;
    std::vector<std::string> lines;
    for (const ChapterFrame* chapter : chapters) {
        const TagLib::ID3v2::FrameList titles = chapter->embeddedFrameList("TIT2");
        const std::string title = titles.isEmpty() ? "" : titles.front()->toString().to8Bit(true);
        lines.push_back(Concat({SecondsText(chapter->startTime() / kMilliseconds), " ", title}));
    }
    return lines;
}

template <typename File>
TagFacts Facts(const File& file, const TagLib::ID3v2::Tag* id3) {
    if (!file.isValid() || file.tag() == nullptr) {
        return {};
    }
    return {file.tag()->title().to8Bit(true), file.tag()->artist().to8Bit(true), Chapters(id3)};
}

} // namespace

bool WritePieceTags(const std::string& path, FormatType format, const PieceTags& tags) {
    const QuietTagLibrary quiet;
    return format == FormatType::MP3 ? WriteMP3Tags(path, tags) : WriteWAVTags(path, tags);
}

TagFacts ReadTagFacts(const std::string& path, FormatType format) {
    const QuietTagLibrary quiet;
    if (format == FormatType::MP3) {
        TagLib::MPEG::File file(path.c_str(), kReadsNoAudio);
        return Facts(file, file.isValid() ? file.ID3v2Tag() : nullptr);
    }
    const TagLib::RIFF::WAV::File file(path.c_str(), kReadsNoAudio);
    return Facts(file, file.isValid() ? file.ID3v2Tag() : nullptr);
}
