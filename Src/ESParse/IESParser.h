// A parser of what a video payload says about itself.
#ifndef FRAMESIFT_SRC_ESPARSE_IESPARSER_H
#define FRAMESIFT_SRC_ESPARSE_IESPARSER_H

#include <cstdint>

#include "IAnalyzer/FrameInfo.h"

namespace Marvane::FrameSift {

enum KX_ES_TYPE : int32_t
{
    KX_ES_UNKOWN = -1,
    KX_ES_MPEG4 = 0,
    KX_ES_H264 = 1,
    KX_ES_H265 = 2,
    KX_ES_MPEG2 = 3
};

// One object belongs to one stream: some of what a frame says holds for those behind it. The bytes are the caller's;
// nothing outside them is read, and none of them is kept.
class CESParser
{
public:
    virtual ~CESParser() = default;

    // Fills those fields of a frame that the codec tells.
    virtual int Parse(const uint8_t* pESBuffer, uint32_t nESBufferLen, FrameInfo& frameInfo) = 0;
    // A KX_FRAME_SUB_TYPE_VIDEO_*, or KX_FRAME_SUB_TYPE_DATA_INVALID.
    virtual int GetFrameSubType(const uint8_t* pESBuffer, uint32_t nESBufferLen) = 0;
    // A KX_ENCODE_VIDEO_*.
    virtual int GetEncodeType() const = 0;
    // True if a picture begins in the bytes.
    virtual bool IsFullFrame(const uint8_t* pESBuffer, uint32_t nESBufferLen) = 0;
    // True if the bytes belong to the picture after this one.
    virtual bool IsNextFrame(const uint8_t* pESBuffer, uint32_t nESBufferLen) = 0;
    virtual bool IsLegalNal(const uint8_t*, uint32_t) { return true; }
    virtual bool IsSVC() { return false; }

    // The codec of the first unit that one of them recognises.
    static KX_ES_TYPE GetESType(const uint8_t* pBuf, uint32_t nSize);
    // True if a sequence parameter set, or a slice of a picture that is no IDR picture, begins anywhere.
    static bool IsH264IFrame(const uint8_t* pBuf, uint32_t nSize);
    static bool IsH264PFrame(const uint8_t* pBuf, uint32_t nSize);
    // The same for a unit at the front, behind a start code of four bytes, the first of which is not looked at.
    static bool IsH264IFrameID(const uint8_t* pBuf, uint32_t nSize);
    static bool IsH264PFrameID(const uint8_t* pBuf, uint32_t nSize);
    static bool IsMPEG4IFrameID(const uint8_t* pBuf, uint32_t nSize);
    static bool IsMPEG4PFrameID(const uint8_t* pBuf, uint32_t nSize);
};

} // namespace Marvane::FrameSift

#endif
