// The search for the size of a JPEG picture. Properties: no crash, no read outside the bytes; a size is found only
// behind a start of image, and Parse tells the same; once it is found, bytes behind it change nothing.

#include "ESParse/JPEGFrameParser.h"
#include "Require.h"

namespace Marvane::FrameSift {

namespace {

// The size, or nothing; in two numbers.
std::vector<uint32_t> SizeOf(const std::vector<uint8_t>& bytes)
{
    const std::vector<uint8_t> block = bytes; // of just its size, so that a read past it is found
    const auto nLen = static_cast<uint32_t>(bytes.size());
    CJPEGESParser parser;
    JPEGInfo info;
    FrameInfo frame{};
    parser.IsFullFrame(block.data(), nLen);
    const bool bFound = CJPEGESParser::GetPicSize(block.data(), nLen, info);
    parser.Parse(block.data(), nLen, frame);
    Require(frame.width == static_cast<int32_t>(info.width) && frame.height == static_cast<int32_t>(info.height));
    if (!bFound)
        return {};
    const uint8_t start[] = {0xFF, 0xD8};
    Require(memmem(bytes.data(), bytes.size(), start, sizeof start) != nullptr);
    return {info.width, info.height};
}

} // namespace

} // namespace Marvane::FrameSift

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    using namespace Marvane::FrameSift;
    if (nSize == 0)
        return 0;
    std::vector<uint8_t> bytes(pData, pData + nSize);
    const auto size = SizeOf(bytes);
    if (size.empty())
        return 0;
    bytes.insert(bytes.end(), {0xFF, 0xD8, 0xFF, 0xE0, 0, 2, 0xFF, 0xC0, 0, 8, 8, 0, 1, 0, 1, 1});
    Require(SizeOf(bytes) == size);
    return 0;
}
