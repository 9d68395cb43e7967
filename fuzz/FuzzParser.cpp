#include "fuzz/Targets.h"
#include "mpeg/MPAFile.h"
#include "mpeg/MPAStream.h"
#include "mpeg/Tags.h"
#include "mpeg/VBRHeader.h"

#include <cstring>
#include <memory>

namespace {

void CheckTags(const CTags& tags, long long fileSize) {
    unsigned int index = 0;
    while (const CTag* tag = tags.GetNextTag(index)) {
        Require(tag->GetOffset() >= 0 && tag->GetEnd() <= fileSize && tag->GetSize() > 0,
                "a tag lies in the file");
    }
    for (const long long offset : {tags.GetBeginOffset(), tags.GetEndOffset()}) {
        Require(offset >= 0 && offset <= fileSize, "the audio lies in the file");
    }
}

void CheckVBRHeader(const CVBRHeader& header) {
    Require((header.GetSeekTable() != nullptr) == (header.GetRewriteTable() != nullptr),
            "both tables or none");
    for (int tenths = -100; tenths < 1200; tenths += 37) {
        float percent = static_cast<float>(tenths) / 10.0F;
        unsigned int seekPoint = 0;
        Require(!header.SeekPosition(percent, seekPoint) || (percent >= 0.0F && percent <= 99.0F),
                "a percentage is brought within bounds");
    }
}

void CheckFrame(const CMPAFrame& frame, long long fileSize) {
    Require(frame.GetOffset() >= 0 && frame.GetOffset() + CMPAHeader::kSize <= fileSize,
            "a frame's header lies in the file");
    Require(frame.GetSize() >= 24 && frame.GetSize() <= 4096, "a frame has a frame's size");
    try {
        frame.CheckCRC();
    } catch (const CMPAException&) {
        // The file ends before the frame does.
    }
    static_cast<void>(frame.IsLast());
}

// Strictly one way: a walk cannot go on for ever.
void CheckWalk(CMPAFile& file, CMPAFile::GetType from, long long offset, CMPAFile::GetType type) {
    const int most = type == CMPAFile::Next ? 5000 : 16; // a step back may look at 32 KiB
    std::unique_ptr<CMPAFrame> frame(file.GetFrame(from, nullptr, true, offset));
    for (int i = 0; i < most && frame != nullptr; ++i) {
        CheckFrame(*frame, file.GetStream()->GetSize());
        offset = frame->GetOffset();
        frame.reset(file.GetFrame(type, frame.release(), true, 0));
        Require(frame == nullptr || (type == CMPAFile::Next ? frame->GetOffset() > offset
                                                            : frame->GetOffset() < offset),
                "a walk goes on");
    }
}

} // namespace

void FuzzParser(const FuzzInput& input) {
    try {
        CMPAFile file(input.Path().c_str());
        CheckTags(*file.GetTags(), file.GetStream()->GetSize());
        if (file.GetVBRHeader() != nullptr) {
            CheckVBRHeader(*file.GetVBRHeader());
        }
        CheckWalk(file, CMPAFile::First, 0, CMPAFile::Next);
        CheckWalk(file, CMPAFile::Last, 0, CMPAFile::Prev);
        CheckWalk(file, CMPAFile::Resync, input.Number(0), CMPAFile::Prev);
    } catch (CMPAException& e) {
        Require(std::strlen(e.GetErrorDescription()) > 0, "a failure is described");
    }
}
