// The parser of MPEG-2 heads. Properties: no crash, no read outside the bytes, the results that are documented; once a
// slice is found, bytes behind it change nothing; and a frame begins where a picture type is found.

#include "ESParse/MPEG2ESParser.h"
#include "Require.h"

namespace Marvane::FrameSift {

namespace {

int Parse(const std::vector<uint8_t>& bytes, FrameInfo& frame)
{
    const std::vector<uint8_t> block = bytes; // of just its size, so that a read past it is found
    const auto nLen = static_cast<uint32_t>(bytes.size());
    CMPEG2ESParser parser;
    const int nResult = parser.Parse(block.data(), nLen, frame);
    const int nSubType = parser.GetFrameSubType(block.data(), nLen);
    Require(nResult >= -4 && nResult <= 0 && nSubType >= -1 && nSubType <= 2);
    Require(nSubType < 0 || parser.IsFullFrame(block.data(), nLen));
    return nResult;
}

} // namespace

} // namespace Marvane::FrameSift

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    using namespace Marvane::FrameSift;
    if (nSize == 0)
        return 0;
    std::vector<uint8_t> bytes(pData, pData + nSize);
    FrameInfo frame{};
    FrameInfo longer{};
    if (Parse(bytes, frame) != 0)
        return 0;
    bytes.insert(bytes.end(), {0, 0, 1, 0xB3, 0, 0});
    Require(Parse(bytes, longer) == 0 && std::memcmp(&frame, &longer, sizeof frame) == 0);
    return 0;
}
