// What a key makes of enciphered frames.
#ifndef FRAMESIFT_APP_CHECK_KEYTRIAL_H
#define FRAMESIFT_APP_CHECK_KEYTRIAL_H

#include <span>
#include <vector>

#include "StreamAnalzyer/ZOSTD/ZOAVStream.h"

namespace Marvane::FrameSift {

struct KEY_RESULT
{
    bool bDeciphered = false;
    int32_t nErrorFlags = KX_ERROR_FLAGS_NOERROR; // not deciphered though the key fits, or a wrong watermark
    // A key frame of a codec whose pictures begin in a known way, enciphered from its first byte on.
    bool bTellsOfKey = false;
    bool bLikePicture = false;
};

// Deciphers a copy: payload sums are of the bytes as they stand in the file, so those must stay. One frame at a time.
class CKeyTrial
{
public:
    // Without a key, nothing is deciphered.
    explicit CKeyTrial(std::span<const uint8_t> key);
    // frame: parsed without a key, its pointers alive.
    KEY_RESULT Try(const FrameInfo& frame);

private:
    CZOAVStream m_parser;
    std::vector<uint8_t> m_copy;
    bool m_bHasKey = false;
};

} // namespace Marvane::FrameSift

#endif
