// The size of a JPEG picture (ITU-T T.81).
#ifndef FRAMESIFT_SRC_ESPARSE_JPEGFRAMEPARSER_H
#define FRAMESIFT_SRC_ESPARSE_JPEGFRAMEPARSER_H

#include <cstdint>

#include "ESParse/IESParser.h"

namespace Marvane::FrameSift {

struct JPEGInfo
{
    uint32_t width = 0; // in pixels
    uint32_t height = 0;
};

class CJPEGESParser : public CESParser
{
public:
    // 1 always; width and height are 0 where no size was found.
    int Parse(const uint8_t* pESBuffer, uint32_t nESBufferLen, FrameInfo& frameInfo) override;
    int GetFrameSubType(const uint8_t*, uint32_t) override { return KX_FRAME_SUB_TYPE_VIDEO_I_FRAME; }
    int GetEncodeType() const override { return KX_ENCODE_VIDEO_JPEG; }
    // Both: a start of image with a marker behind it stands anywhere.
    bool IsFullFrame(const uint8_t* pESBuffer, uint32_t nESBufferLen) override;
    bool IsNextFrame(const uint8_t* pESBuffer, uint32_t nESBufferLen) override;

    // From the first frame head of a kind that a camera sends: baseline, extended, progressive or lossless with Huffman
    // codes. False, with param untouched, if there is none or it is damaged. The segment right behind the start of image
    // is stepped over unread, a frame head too; pictures have other segments there.
    static bool GetPicSize(const uint8_t* pESBuffer, uint32_t nESBufferLen, JPEGInfo& param);

private:
    JPEGInfo m_JPEGInfo; // of the last picture parsed
};

} // namespace Marvane::FrameSift

#endif
