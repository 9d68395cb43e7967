#include "fuzz/Targets.h"
#include "mpeg/MPAFile.h"
#include "mpeg/MPAStream.h"
#include "mpeg/Tags.h"
#include "mpeg/VBRHeader.h"

#include <cstring>
#include <memory>

namespace {

constexpr int kFramesForwards = 5000;
constexpr int kFramesBackwards = 16; // a step may look at 32 KiB

void CheckTags(const CMPAFile& file) {
    const long long size = file.GetStream()->GetSize();
    unsigned int index = 0;
    while (const CTag* tag = file.GetTags()->GetNextTag(index)) {
        Require(tag->GetOffset() >= 0 && tag->GetEnd() <= size && tag->GetSize() > 0,
                "a tag lies in the file");
    }
    Require(file.GetTags()->GetBeginOffset() >= 0 && file.GetTags()->GetBeginOffset() <= size &&
                file.GetTags()->GetEndOffset() >= 0 && file.GetTags()->GetEndOffset() <= size,
            "the audio lies in the file");
}

void CheckVBRHeader(const CVBRHeader& header) {
    Require((header.GetSeekTable() != nullptr) == (header.GetRewriteTable() != nullptr),
            "both tables or none");
    for (int tenths = -100; tenths < 1200; tenths += 37) {
        float percent = static_cast<float>(tenths) / 10.0F;
        unsigned int seekPoint = 0;
        if (header.SeekPosition(percent, seekPoint)) {
            Require(percent >= 0.0F && percent <= 99.0F, "a percentage is brought within bounds");
        }
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

using Frame = std::unique_ptr<CMPAFrame>;

Frame Step(CMPAFile& file, CMPAFile::GetType type, Frame frame) {
    return Frame(file.GetFrame(type, frame.release(), true, 0));
}

// Strictly one way: a walk cannot go on for ever.
void CheckWalk(CMPAFile& file, Frame frame, CMPAFile::GetType type, int most) {
    const long long fileSize = file.GetStream()->GetSize();
    for (int i = 0; i < most && frame != nullptr; ++i) {
        CheckFrame(*frame, fileSize);
        const long long offset = frame->GetOffset();
        frame = Step(file, type, std::move(frame));
        Require(frame == nullptr || (type == CMPAFile::Next) == (frame->GetOffset() > offset),
                "a walk goes on");
    }
}

} // namespace

void FuzzParser(const FuzzInput& input) {
    try {
        CMPAFile file(input.Path().c_str());
        CheckTags(file);
        if (file.GetVBRHeader() != nullptr) {
            CheckVBRHeader(*file.GetVBRHeader());
        }
        CheckWalk(file, Step(file, CMPAFile::First, nullptr), CMPAFile::Next, kFramesForwards);
        CheckWalk(file, Step(file, CMPAFile::Last, nullptr), CMPAFile::Prev, kFramesBackwards);
        Frame frame(file.GetFrame(CMPAFile::Resync, nullptr, true, input.Number(0)));
        CheckWalk(file, std::move(frame), CMPAFile::Prev, kFramesBackwards);
    } catch (CMPAException& e) {
        Require(std::strlen(e.GetErrorDescription()) > 0, "a failure is described");
    }
}
