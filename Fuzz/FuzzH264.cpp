// The H.264 parser, on bytes that end with the frame. Properties: no crash, no read past the frame; it ends; answers
// lie in their ranges, and Parse writes its own fields only; two new parsers say the same; and one that is kept over
// frames survives them.
#include "ESParse/H264ESParser.h"
#include "ESParse/H264Nal.h"
#include "Require.h"

namespace Marvane::FrameSift {

namespace {

void AskForFrame(CH264ESParser& parser, std::span<const uint8_t> bytes, Answers& answers)
{
    FUZZ_PICTURE picture;
    const int32_t nBefore = picture.frame.frameSubType;
    const int nResult = parser.Parse(bytes.data(), static_cast<uint32_t>(bytes.size()), picture.frame);
    Require(nResult == (bytes.empty() ? -1 : 0));
    Require(nResult != 0 || picture.frame.pictrueStructure == 0 || picture.frame.frameSubType == nBefore);
    picture.Take(answers);
}

// Of the bytes as one unit, whatever stands in them.
void AskForUnit(CH264ESParser& parser, std::span<const uint8_t> bytes, Answers& answers)
{
    const auto nLen = static_cast<uint32_t>(bytes.size());
    h264SPS sps;
    h264Slice slice;
    answers.push_back(parser.ParseSPS(bytes.data(), nLen, sps));
    answers.insert(answers.end(), {sps.width, sps.height, sps.framerate, sps.interlace});
    answers.push_back(parser.ParseSlice(bytes.data(), nLen, slice));
    answers.insert(answers.end(), {slice.frame_type, slice.frame_num, slice.picture_structure});
    for (const uint8_t nType : {H264_NAL_SLICE, H264_NAL_SPS, H264_NAL_SUBSET_SPS, H264_NAL_DELIMITER}) {
        ES_PARSER_INFO info;
        answers.push_back(parser.ParseNal(bytes.data(), nLen, nType, info));
        answers.insert(answers.end(), {info.frameSubType, info.frameWidth});
    }
    answers.push_back(parser.IsLegalNal(bytes.data(), nLen) ? 1 : 0);
}

Answers Ask(CH264ESParser& parser, std::span<const uint8_t> bytes)
{
    const auto nLen = static_cast<uint32_t>(bytes.size());
    Answers answers;
    AskForFrame(parser, bytes, answers);
    answers.push_back(parser.IsFullFrame(bytes.data(), nLen) ? 1 : 0);
    answers.push_back(parser.IsSVC() ? 1 : 0);
    answers.push_back(parser.IsNextFrame(bytes.data(), nLen) ? 1 : 0);
    h264SPS size;
    answers.push_back(parser.GetPicSize(bytes.data(), nLen, size) ? 1 : 0);
    answers.insert(answers.end(), {size.width, size.height, size.interlace, size.cropBeforeWidth});
    const int nStructure = parser.GetPicStructure(bytes.data(), nLen);
    const int nSubType = parser.GetFrameSubType(bytes.data(), nLen);
    Require(nStructure >= 0 && nStructure <= 3 && nSubType >= -1 && nSubType <= 2);
    Require(nStructure != 0 || nSubType == -1); // both look at the same slice
    answers.insert(answers.end(), {nStructure, nSubType});
    AskForUnit(parser, bytes, answers);
    return answers;
}

} // namespace

} // namespace Marvane::FrameSift

// The bytes are one frame's payload.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    using namespace Marvane::FrameSift;
    AskNewAndKept<CH264ESParser>(pData, nSize, &Ask);
    return 0;
}
