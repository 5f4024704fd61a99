// The H.264 parser, on bytes that end with the frame. Properties: no crash, no read past the frame; it ends; answers
// lie in their ranges, and Parse writes its own fields only; two new parsers say the same; and one that is kept over
// frames survives them.
#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>
#include <vector>

#include "ESParse/H264ESParser.h"
#include "ESParse/H264Nal.h"

namespace Marvane::FrameSift {

namespace {

using Answers = std::vector<int64_t>;

void Require(bool bHolds)
{
    if (!bHolds)
        std::abort();
}

void AskForFrame(CH264ESParser& parser, std::span<const uint8_t> bytes, Answers& answers)
{
    FrameInfo frame;
    FrameInfo untouched;
    std::memset(&frame, 0xA5, sizeof frame);
    std::memset(&untouched, 0xA5, sizeof untouched);
    const int nResult = parser.Parse(bytes.data(), static_cast<uint32_t>(bytes.size()), frame);
    Require(nResult == (bytes.empty() ? -1 : 0));
    answers.insert(answers.end(), {nResult, frame.frameSubType, frame.frameRate, frame.width, frame.height,
                                   frame.cropBeforeWidth, frame.cropBeforeHeight, frame.pictrueStructure});
    if (nResult == 0)
        Require(frame.pictrueStructure == 0 || frame.frameSubType == untouched.frameSubType);
    frame.frameSubType = untouched.frameSubType;
    frame.frameRate = untouched.frameRate;
    frame.width = untouched.width;
    frame.height = untouched.height;
    frame.cropBeforeWidth = untouched.cropBeforeWidth;
    frame.cropBeforeHeight = untouched.cropBeforeHeight;
    frame.pictrueStructure = untouched.pictrueStructure;
    Require(std::memcmp(&frame, &untouched, sizeof frame) == 0);
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
    // A block of just its size, so that a read past it is found.
    const auto pBytes = std::make_unique<uint8_t[]>(nSize);
    if (nSize != 0)
        std::memcpy(pBytes.get(), pData, nSize);
    const std::span<const uint8_t> bytes(pBytes.get(), nSize);
    CH264ESParser first;
    CH264ESParser second;
    Require(Ask(first, bytes) == Ask(second, bytes));
    Ask(first, bytes.subspan(nSize / 2));
    Ask(first, bytes);
    return 0;
}
