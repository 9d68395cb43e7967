#include "cli/MP3Info.h"

#include "cli/Report.h"
#include "cutting/MP3Output.h"
#include "cutting/MP3Survey.h"
#include "mpeg/LameTag.h"
#include "mpeg/MPAFile.h"
#include "mpeg/MPAStream.h"
#include "mpeg/Tags.h"
#include "mpeg/XINGHeader.h"

namespace {

Json DescribeTags(const CTags& tags) {
    Json list = Json::array();
    unsigned int index = 0;
    while (const CTag* tag = tags.GetNextTag(index)) {
        list.push_back({{"name", tag->GetName()},
                        {"version", FloatToJson(tag->GetVersion())},
                        {"offset", tag->GetOffset()},
                        {"size", tag->GetSize()},
                        {"appended", tag->IsAppended()}});
    }
    return list;
}

Json DescribeFrame(const CMPAFrame& frame) {
    const CMPAHeader& header = *frame.GetHeader();
    return {{"offset", frame.GetOffset()},
            {"size", frame.GetSize()},
            {"version", CMPAHeader::m_szMPEGVersions[header.GetVersion()]},
            {"layer", CMPAHeader::m_szLayers[header.GetLayer()]},
            {"bitrate", header.GetBitrateBps()},
            {"sampling_rate", header.GetSamplingRateHz()},
            {"samples_per_frame", header.GetSamplesPerFrame()},
            {"channel_mode", CMPAHeader::m_szChannelModes[header.GetChannelMode()]},
            {"crc", header.IsCRCProtected()}};
}

Json DescribeLAMETag(const CLAMETag* tag) {
    if (tag == nullptr) {
        return nullptr;
    }
    return {{"encoder", BytesToJson(tag->GetEncoder())},
            {"version", FloatToJson(tag->GetVersion())},
            {"simple", tag->IsSimpleTag()},
            {"method", tag->GetVBRInfo()},
            {"lowpass", tag->GetLowpassHz()},
            {"bitrate", tag->GetBitrateKbps()}};
}

std::string VBRHeaderKind(const CVBRHeader& header) {
    long long offset = header.GetOffset();
    const unsigned char* id = header.GetStream()->ReadBytes(4, offset, false, false);
    return {reinterpret_cast<const char*>(id), 4};
}

Json DescribeVBRHeader(const CVBRHeader* header) {
    if (header == nullptr) {
        return nullptr;
    }
    const auto* xing = dynamic_cast<const CXINGHeader*>(header);
    return {{"kind", VBRHeaderKind(*header)},
            {"offset", header->GetOffset()},
            {"frame_count", header->GetFrameCount()},
            {"byte_count", header->GetByteCount()},
            {"quality", header->GetQuality()},
            {"table_size", header->GetTableSize()},
            {"lame", DescribeLAMETag(xing == nullptr ? nullptr : xing->GetLAMETag())}};
}

Json Describe(CMPAFile& file, const MP3Survey& survey) {
    const bool isFirstOfThem = file.GetVBRHeader() == nullptr && survey.frames > 0;
    const long long behindFirst = survey.frames - (isFirstOfThem ? 1 : 0);
    return {{"format", "mp3"},
            {"size", file.GetStream()->GetSize()},
            {"audio_begin", file.GetTags()->GetBeginOffset()},
            {"audio_end", file.GetTags()->GetEndOffset()},
            {"tags", DescribeTags(*file.GetTags())},
            {"first_frame", DescribeFrame(*file.GetFirstFrame())},
            {"vbr_header", DescribeVBRHeader(file.GetVBRHeader())},
            {"frames", behindFirst + (survey.endsInStump ? 1 : 0)},
            {"seconds", survey.seconds}};
}

} // namespace

Json DescribeMP3(const std::string& path, std::string& error) {
    const SilentDesktop silence;
    Json description;
    std::vector<CutWarning> warnings;
    const bool isRead = WithMP3Source(path.c_str(), [&](CMPAFile& file) {
        const MP3Survey survey = SurveyMP3(file);
        warnings = survey.warnings;
        description = Describe(file, survey);
    });
    if (!isRead) {
        error = DescribeFailure(CutFailure());
        return nullptr;
    }
    ReportWarnings(path, warnings);
    return description;
}

void ReportOddities(const std::string& path) {
    if (!AreRemarksWanted()) {
        return;
    }
    const SilentDesktop silence;
    MP3Survey survey;
    if (WithMP3Source(path.c_str(), [&](CMPAFile& file) { survey = SurveyMP3(file); })) {
        ReportWarnings(path, survey.warnings);
    }
}
