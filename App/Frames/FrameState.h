// What a record says of its frame beyond kind and damage.
#ifndef FRAMESIFT_APP_FRAMES_FRAMESTATE_H
#define FRAMESIFT_APP_FRAMES_FRAMESTATE_H

#include "Frames/FrameSource.h"

namespace Marvane::FrameSift {

// No frame, but a place where the numbers of the video frames jump: it has no bytes, and its number is the one in front
// of the next frame's. Its subtype, 0, is not that of an I frame.
inline bool IsLostFrame(const FrameInfo& frame)
{
    return frame.errorFlags == KX_ERROR_FLAGS_LOSTFRAME;
}

enum class CIPHER_STATE : uint8_t
{
    Clear,
    Enciphered,
    Deciphered
};

// parsed: as the parser made it; a client's record is blanked.
inline CIPHER_STATE CipherStateOf(const FrameInfo& parsed)
{
    if (parsed.nEncryptType == KX_ENCRYPT_UNKOWN)
        return CIPHER_STATE::Clear;
    return parsed.bHasDecrypt != 0 ? CIPHER_STATE::Deciphered : CIPHER_STATE::Enciphered;
}

// In the older formats a head whose length is not believed is stepped over with a few bytes, but its record still tells
// the payload that would have been.
inline bool IsPayloadLost(const LISTED_FRAME& listed)
{
    const bool bOld = listed.nStreamType == KX_STREAM_TYPE_OLD || listed.nStreamType == KX_STREAM_TYPE_MPEG4;
    return bOld && listed.frame.errorFlags == KX_ERROR_FLAGS_LENGTH && listed.frame.streamLen > listed.frame.frameLen;
}

// A record starts out with 0, which is KX_DEINTERLACE_PAIR: only with a head that speaks of the picture does it count. The
// head of a key frame of New always does.
inline bool IsInterlaceTold(const LISTED_FRAME& listed)
{
    const bool bHeadTells =
        listed.nAnnouncedWidth > 0 || (listed.nInnerType == KX_STREAM_TYPE_NEW && listed.parsed.width > 0);
    return listed.parsed.deinterlace != KX_DEINTERLACE_PAIR || bHeadTells;
}

} // namespace Marvane::FrameSift

#endif
