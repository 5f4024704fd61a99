// The H.265 parser, on bytes that end with the frame. Properties: no crash, no read past the frame; it ends; answers
// lie in their ranges, and Parse writes its own fields only; two new parsers say the same; and one that is kept over
// frames survives them.
#include <algorithm>

#include "ESParse/H265ESParser.h"
#include "ESParse/H265Nal.h"
#include "Require.h"

namespace Marvane::FrameSift {

namespace {

void AddInfo(const ES_PARSER_INFO& info, Answers& answers)
{
    Require(info.frameSubType >= -1 && info.frameSubType <= 2 && info.picStruct >= 0 && info.picStruct <= 3);
    answers.insert(answers.end(),
                   {info.frameSubType, info.frameRate, info.frameWidth, info.frameHeight, info.picStruct,
                    info.frameCropBeforeWidth, info.frameCropBeforeHeight, info.bitDepth, info.nMaxLuminance,
                    info.nMinLuminance, info.nMaxContentLightLevel, info.nMaxFrameAverageLightLevel,
                    info.nColorPrimaries, info.nColorTransfer, info.nColorSpace});
    answers.insert(answers.end(), info.nDisplayPrimaries.begin(), info.nDisplayPrimaries.end());
    answers.insert(answers.end(), info.nWhitePoint.begin(), info.nWhitePoint.end());
}

void AskForFrame(CH265ESParser& parser, std::span<const uint8_t> bytes, Answers& answers)
{
    FUZZ_PICTURE picture;
    picture.bH265 = true;
    const int nResult = parser.Parse(bytes.data(), static_cast<uint32_t>(bytes.size()), picture.frame);
    Require(nResult == (bytes.empty() ? -1 : 0));
    Require(picture.frame.frameSubType >= -1 && picture.frame.frameSubType <= 2);
    picture.Take(answers);
}

// Of the bytes as one unit, whatever stands in them.
void AskForUnit(CH265ESParser& parser, std::span<const uint8_t> bytes, Answers& answers)
{
    const auto nLen = static_cast<int32_t>(bytes.size());
    const uint8_t* pBytes = bytes.data();
    ES_PARSER_INFO info{.frameSubType = KX_FRAME_SUB_TYPE_DATA_INVALID};
    answers.push_back(parser.ParseVPS(pBytes, nLen, info));
    answers.push_back(parser.ParseSPS(pBytes, nLen, info));
    answers.push_back(parser.ParsePPS(pBytes, nLen, info));
    answers.push_back(parser.ParseSEI(pBytes, nLen, H265_NAL_PREFIX_SEI, info));
    for (const uint8_t nType : {H265_NAL_TRAIL_N, H265_NAL_IDR_W_RADL})
        answers.push_back(parser.ParseSlice(pBytes, nLen, nType, info));
    answers.push_back(parser.ParseNal(pBytes, nLen, info));
    AddInfo(info, answers);
    h265Slice slice{};
    answers.push_back(parser.ParseSliceHeader(pBytes, nLen, slice) ? 1 : 0);
    answers.insert(answers.end(), {slice.frame_type, slice.first_slice_segment_in_pic_flag, slice.frame_num});
    answers.push_back(parser.IsLegalNal(pBytes, static_cast<uint32_t>(bytes.size())) ? 1 : 0);
}

Answers Ask(CH265ESParser& parser, std::span<const uint8_t> bytes)
{
    const auto nSize = static_cast<uint32_t>(bytes.size());
    const uint8_t* pBytes = bytes.data();
    Answers answers;
    AskForFrame(parser, bytes, answers);
    answers.push_back(parser.GetFrameSubType(pBytes, nSize));
    ES_PARSER_INFO info{.frameSubType = KX_FRAME_SUB_TYPE_DATA_INVALID};
    answers.push_back(parser.Parse_KX(pBytes, static_cast<int32_t>(nSize), info));
    AddInfo(info, answers);
    const bool bFull = parser.IsFullFrame(pBytes, nSize);
    answers.push_back(bFull ? 1 : 0);
    answers.push_back(parser.IsNextFrame(pBytes, nSize) ? 1 : 0);
    H265_SPS sps{};
    answers.push_back(parser.GetSPSInfo(pBytes, nSize, sps) ? 1 : 0);
    answers.insert(answers.end(), {sps.pic_width_in_luam_samples, sps.pic_height_in_luma_samples, sps.bit_depth_luma,
                                   sps.cropBeforePicwidth_in_luam_samples, sps.cropBeforePicheight_in_luma_samples});
    AskForUnit(parser, bytes, answers);
    return answers;
}

// Taking escapes out never lengthens, and a smaller room only cuts off.
void CheckUnescaping(std::span<const uint8_t> bytes)
{
    const auto nSize = static_cast<uint32_t>(bytes.size());
    std::vector<uint8_t> whole(nSize);
    whole.resize(CH265ESParser::DiscardEmulationByte(bytes.data(), nSize, whole.data(), nSize));
    std::vector<uint8_t> part(nSize / 2);
    const uint32_t nPart = CH265ESParser::DiscardEmulationByte(bytes.data(), nSize, part.data(), nSize / 2);
    Require(nPart == std::min<size_t>(part.size(), whole.size()));
    Require(std::equal(part.begin(), part.begin() + nPart, whole.begin()));
}

} // namespace

} // namespace Marvane::FrameSift

// The bytes are one frame's payload.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    using namespace Marvane::FrameSift;
    AskNewAndKept<CH265ESParser>(pData, nSize, &Ask);
    CheckUnescaping({pData, nSize});
    return 0;
}
