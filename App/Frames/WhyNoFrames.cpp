#include "Frames/WhyNoFrames.h"

#include <fmt/format.h>

#include "ESParse/MPEG4ESParser.h"
#include "Frames/CodeNames.h"
#include "StreamAnalzyer/RawStream/MPEG4Fields.h"
#include "framesift/framesift.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint32_t sc_wordSize = 4;

bool BeginsRawMpeg4(uint32_t nWord)
{
    return nWord == MPEG4_SEQUENCE || nWord == MPEG4_VOP || nWord == gsk_firstObject || nWord == gsk_secondObject;
}

} // namespace

void CInputStart::Take(std::span<const uint8_t> chunk)
{
    for (size_t n = 0; n < chunk.size() && m_nTaken < sc_wordSize; ++n, ++m_nTaken)
        m_nWord = m_nWord << 8 | chunk[n];
}

std::string CInputStart::NoFormatText(uint64_t nBytes) const
{
    const bool bHint = m_nTaken == sc_wordSize && BeginsRawMpeg4(m_nWord);
    return fmt::format("no known stream format in {} bytes{}", nBytes,
                       bHint ? "; elementary MPEG-4 needs --type 1" : "");
}

bool NeedsFrame(int32_t nStreamType, bool bFixedType)
{
    return bFixedType || nStreamType == KX_STREAM_TYPE_OLD;
}

std::string NoFrameText(int32_t nStreamType, uint64_t nBytes)
{
    return fmt::format("no frame of a stream of type {} ({}) in {} bytes", StreamTypeName(nStreamType), nStreamType,
                       nBytes);
}

} // namespace Marvane::FrameSift
