#include "mpeg/MusicMatchTag.h"

#include "mpeg/MPAEndOfFileException.h"
#include "mpeg/MPAStream.h"

#include <algorithm>
#include <iterator>

namespace {

// Offsets before the end of the tag.
constexpr unsigned int kVersionSection = 324; // with the footer behind it
constexpr unsigned int kImageExtensionOffset = 68;
constexpr unsigned int kVersionInfoOffset = 56;
constexpr unsigned int kSignatureOffset = 48;
constexpr unsigned int kVersionTextOffset = 16;

constexpr unsigned int kHeaderSize = 256;
constexpr unsigned int kMetadataSizeOfVersion3 = 7868; // and of all before it
constexpr unsigned int kMetadataSizes[] = {7936, 8004, 8132};

constexpr char kSignature[] = "Brava Software Inc.             ";
static_assert(sizeof kSignature - 1 == 32);

} // namespace

CTag* CMusicMatchTag::FindTag(CMPAStream* stream, bool appended, long long /*begin*/,
                              long long end) {
    if (!appended || !HasText(stream, end - kSignatureOffset, kSignature, true) ||
        MeasureMetadata(stream, end) == 0) {
        return nullptr;
    }
    return new CMusicMatchTag(stream, end - kVersionTextOffset);
}

CMusicMatchTag::CMusicMatchTag(CMPAStream* stream, long long offset)
    : CTag(stream, "MM", true, offset) {
    m_version = ParseDecimal(ReadText(stream, offset, 4, true));

    const long long end = offset + kVersionTextOffset;
    long long fieldOffset = end - kImageExtensionOffset;
    const unsigned int imageExtension = stream->ReadLEValue(4, fieldOffset, false);
    fieldOffset = end - kVersionInfoOffset;
    const unsigned int versionInfo = stream->ReadLEValue(4, fieldOffset, false);

    const unsigned int metadataSize = MeasureMetadata(stream, end);
    const long long imageSize = static_cast<long long>(versionInfo) - imageExtension;
    const long long size = imageSize + metadataSize + kVersionSection;
    if (metadataSize == 0 || imageSize < 0 || size > end) {
        throw CMPAEndOfFileException(stream->GetFileName());
    }
    const bool hasHeader = HasSectionAt(stream, end - size - kHeaderSize);
    m_offset = end - size - (hasHeader ? kHeaderSize : 0);
    m_size = static_cast<unsigned int>(end - m_offset);
}

CMusicMatchTag::~CMusicMatchTag() = default;

bool CMusicMatchTag::HasSectionAt(CMPAStream* stream, long long offset) {
    return offset >= 0 && HasText(stream, offset, "18273645", true);
}

// The metadata's size in bytes; 0 when no size puts a version section where it belongs.
unsigned int CMusicMatchTag::MeasureMetadata(CMPAStream* stream, long long end) {
    if (!(ParseDecimal(ReadText(stream, end - kVersionTextOffset, 4, true)) > 3.0F)) {
        return kMetadataSizeOfVersion3;
    }
    const auto* found =
        std::find_if(std::begin(kMetadataSizes), std::end(kMetadataSizes), [&](unsigned int size) {
            return HasSectionAt(stream, end - kVersionSection - size);
        });
    return found == std::end(kMetadataSizes) ? 0 : *found;
}
