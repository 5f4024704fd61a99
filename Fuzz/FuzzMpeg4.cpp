// The parser of MPEG-4 heads. Properties: no crash, no read outside the bytes, the results that are documented, and
// Parse writes its own fields only; two new parsers say the same, and one that is kept over frames survives them.
#include <algorithm>

#include "ESParse/MPEG4ESParser.h"
#include "Require.h"

namespace Marvane::FrameSift {

namespace {

void AskForFrame(CMPEG4ESParser& parser, std::span<const uint8_t> bytes, Answers& answers)
{
    FUZZ_PICTURE picture;
    const int32_t nBefore = picture.frame.frameSubType;
    const int nResult = parser.Parse(bytes.data(), static_cast<uint32_t>(bytes.size()), picture.frame);
    const int32_t nSubType = picture.frame.frameSubType;
    Require(nResult == 0 || (nResult == -1 && picture.frame.width == FUZZ_PICTURE().frame.width));
    Require(nSubType == nBefore || nSubType == 0 || nSubType == 1);
    answers.push_back(nResult);
    picture.Take(answers);
}

void AskForRate(std::span<const uint8_t> bytes, Answers& answers)
{
    FUZZ_PICTURE picture;
    const auto nLen = static_cast<uint32_t>(bytes.size());
    bool bSound = false;
    Require(CMPEG4ESParser::ParseBlock20(bytes.data(), nLen, picture.frame, bSound) == 0);
    const int32_t nRate = picture.frame.frameRate;
    Require(!bSound || (nRate >= 1 && nRate <= 60));
    // No more than 20 bytes count.
    FUZZ_PICTURE again;
    CMPEG4ESParser::ParseBlock20(bytes.data(), std::min(nLen, 20U), again.frame, bSound);
    Require(again.frame.frameRate == nRate);
    picture.Take(answers);
}

Answers Ask(CMPEG4ESParser& parser, std::span<const uint8_t> bytes)
{
    const auto nLen = static_cast<uint32_t>(bytes.size());
    Answers answers;
    AskForFrame(parser, bytes, answers);
    AskForRate(bytes, answers);
    MPEG4_INFO info;
    answers.push_back(CMPEG4ESParser::GetPicSize(bytes.data(), nLen, info) ? 1 : 0);
    Require(answers.back() == 1 || (info.nWidth == 0 && info.nHeight == 0));
    Require(info.nWidth < 1U << 14 && info.nHeight < 1U << 14);
    const int nSubType = parser.GetFrameSubType(bytes.data(), nLen);
    const bool bFull = parser.IsFullFrame(bytes.data(), nLen);
    Require(nSubType >= -1 && nSubType <= 2 && (nSubType < 0 || bFull));
    const bool bNext = parser.IsNextFrame(bytes.data(), nLen);
    Require(!bNext || nSubType >= 0);
    answers.insert(answers.end(), {info.nWidth, info.nHeight, nSubType, bFull ? 1 : 0, bNext ? 1 : 0});
    return answers;
}

} // namespace

} // namespace Marvane::FrameSift

// The bytes are one frame's payload.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    using namespace Marvane::FrameSift;
    AskNewAndKept<CMPEG4ESParser>(pData, nSize, &Ask);
    return 0;
}
