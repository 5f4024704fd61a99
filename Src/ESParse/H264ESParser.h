// What an H.264 byte stream (ITU-T H.264, annex B) says of its pictures, from parameter sets and slice heads alone.
#ifndef FRAMESIFT_SRC_ESPARSE_H264ESPARSER_H
#define FRAMESIFT_SRC_ESPARSE_H264ESPARSER_H

#include <cstddef>
#include <cstdint>
#include <span>

#include "ESParse/ESParserInfo.h"
#include "ESParse/IESParser.h"
#include "Tools/BitsStream.h"

namespace Marvane::FrameSift {

// A sequence parameter set.
struct h264SPS
{
    uint32_t width = 0; // in pixels, after cropping
    uint32_t height = 0;
    uint32_t framerate = 0;       // frames per second; 0: not told
    uint32_t interlace = 0;       // 1: interlaced to ParseSPS, but progressive to GetPicSize
    int32_t cropBeforeHeight = 0; // in pixels, as coded
    int32_t cropBeforeWidth = 0;
};

// The head of a slice.
struct h264Slice
{
    uint32_t frame_type = 0; // KX_FRAME_SUB_TYPE_*, -1 for a slice_type that is none of I, P, B
    uint32_t first_mb_in_slice = 0;
    uint32_t slice_type = 0; // as coded
    uint32_t frame_num = 0;
    uint32_t picture_structure = 0; // PICTURE_STRUCTURE
};

// One object for one stream; a new object is the reset. ParseSPS and ParseSlice look at 256 bytes of a unit at most; the
// three questions that are asked of a single frame read it in place, to the end of the buffer if need be.
class CH264ESParser : public CESParser
{
public:
    // The subtype is that of the first slice; what is told of the picture is its own parameter set's, or inherited.
    // Answers -1 if there are no bytes, else 0.
    int Parse(const uint8_t* pESBuffer, uint32_t nESBufferLen, FrameInfo& frameInfo) override;
    int GetFrameSubType(const uint8_t* pESBuffer, uint32_t nESBufferLen) override;
    int GetEncodeType() const override;
    bool IsFullFrame(const uint8_t* pESBuffer, uint32_t nESBufferLen) override;
    bool IsNextFrame(const uint8_t* pESBuffer, uint32_t nESBufferLen) override;
    // By the header byte alone.
    bool IsLegalNal(const uint8_t* pNalUintBuffer, uint32_t nNalUintLen) override;
    // True if the last unit that told was one of a scalable stream.
    bool IsSVC() override { return m_bSVC; }

    // pNal points at the start code. Answers -1 for a null pointer, else 0: a unit that cannot be read adds nothing.
    virtual int ParseNal(const uint8_t* pNal, uint32_t nalSize, uint8_t nalType, ES_PARSER_INFO& info);
    // pNal points at the start code. Answers -1 for a set that is refused.
    virtual int ParseSPS(const uint8_t* pNal, uint32_t nalSize, h264SPS& param);
    // pNal points at the start code, or a byte before it. Does not clear slice. Answers -1 for a slice that is too
    // short or not sound.
    virtual int ParseSlice(const uint8_t* pNal, uint32_t nalSize, h264Slice& slice);
    // PICTURE_STRUCTURE of the first slice. Rests on the parameter set that this object has read last.
    virtual int GetPicStructure(const uint8_t* pESBuffer, uint32_t nESBufferLen);
    // From the first parameter set. Leaves framerate as it is, and all of param if it answers false.
    virtual bool GetPicSize(const uint8_t* pESBuffer, uint32_t nESBufferLen, h264SPS& param);

    // Reads up to the first slice. Answers -1 if there are no bytes, else 0.
    int Parse_KX(const uint8_t* pESBuffer, uint32_t nESBufferLen, ES_PARSER_INFO& info);

private:
    void TakeIFrame(const ES_PARSER_INFO& info, FrameInfo& frameInfo);
    void TakeOtherFrame(const ES_PARSER_INFO& info, FrameInfo& frameInfo) const;
    size_t FindLegalNal(std::span<const uint8_t> bytes, size_t nFrom);
    const char* ReadSPS(CBitsStream& bits, h264SPS& param);
    void ReadPicSize(CBitsStream& bits, h264SPS& param);
    uint32_t ReadFrameNum(CBitsStream& bits) const;
    uint32_t ReadField(CBitsStream& bits) const;
    int ParseSliceAt(std::span<const uint8_t> bytes, size_t nHeader, h264Slice& slice);
    bool TakeFrameNum(const h264Slice& slice, bool bFirstSlice);

    ES_PARSER_INFO m_nIFrameInfo{.frameSubType = KX_FRAME_SUB_TYPE_DATA_INVALID}; // inherited by P and B frames
    // Of the last parameter set.
    int32_t m_frame_mbs_only_flag = 1;
    int32_t m_log2_max_frame_num_minus4 = 0;
    ES_PARSER_INFO m_prevSPSframeInfo; // only width, height and rate
    int32_t m_nPreFrameNum = -1;       // frame_num where a frame was last found to begin
    bool m_bSVC = false;
    bool m_bParseOneFrame = false; // tells Parse_KX that its first slice is read
};

} // namespace Marvane::FrameSift

#endif
