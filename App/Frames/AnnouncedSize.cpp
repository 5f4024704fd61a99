#include "Frames/AnnouncedSize.h"

#include <cstring>
#include <span>

#include "StreamAnalzyer/ZOSTD/ExtHead.h"
#include "StreamAnalzyer/ZOSTD/ZOAVFrame.h"

namespace Marvane::FrameSift {

// The picture size of the record may come from the payload, or from the key frame in front: the heads are asked again.
void TakeAnnouncedSize(LISTED_FRAME& listed)
{
    const FrameInfo& parsed = listed.parsed;
    if (parsed.frameType != KX_FRAME_TYPE_VIDEO || parsed.framePointer == nullptr ||
        parsed.frameLen < gsk_stdFrameHeadSize)
        return;
    STD_FRAME_HEAD head = {};
    std::memcpy(&head, parsed.framePointer, sizeof head);
    if (!IfZavHeaderBigEndian(__builtin_bswap32(head.dwFlag)))
        return;
    FrameInfo frame = {};
    ExtZOAVIFrameInfo ext = {};
    EXT_FRAME_HEAD heads = {};
    CLinkedBuffer linkBuffer;
    int nUnused = 0; // rate and places, which the record has already
    EXT_HEAD_TARGET target{frame, ext, heads, linkBuffer, nUnused, false, nUnused, nUnused, nUnused};
    const std::span<const uint8_t> bytes(parsed.framePointer, static_cast<size_t>(parsed.frameLen));
    WalkExtHeads(bytes.subspan(gsk_stdFrameHeadSize), head.nExtFrameLen, target);
    listed.nAnnouncedWidth = frame.width;
    listed.nAnnouncedHeight = frame.height;
}

} // namespace Marvane::FrameSift
