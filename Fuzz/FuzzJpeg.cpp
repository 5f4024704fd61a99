// The search for the size of a JPEG picture. Properties: no crash, no read outside the bytes; a size is found only
// behind a start of image, and Parse tells the same; once it is found, bytes behind it change nothing.
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "ESParse/JPEGFrameParser.h"

namespace Marvane::FrameSift {

namespace {

// The size, or nothing; in two numbers.
std::vector<uint32_t> SizeOf(const std::vector<uint8_t>& bytes)
{
    // A block of just its size, so that a read past it is found.
    const auto pBytes = std::make_unique<uint8_t[]>(bytes.size());
    std::memcpy(pBytes.get(), bytes.data(), bytes.size());
    const auto nLen = static_cast<uint32_t>(bytes.size());
    CJPEGESParser parser;
    JPEGInfo info;
    FrameInfo frame{};
    parser.IsFullFrame(pBytes.get(), nLen);
    const bool bFound = CJPEGESParser::GetPicSize(pBytes.get(), nLen, info);
    parser.Parse(pBytes.get(), nLen, frame);
    if (static_cast<uint32_t>(frame.width) != info.width || static_cast<uint32_t>(frame.height) != info.height)
        std::abort();
    if (!bFound)
        return {};
    const uint8_t start[] = {0xFF, 0xD8};
    if (memmem(pBytes.get(), bytes.size(), start, sizeof start) == nullptr)
        std::abort();
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
    if (SizeOf(bytes) != size)
        std::abort();
    return 0;
}
