// The older formats from their first byte on: audio alone, the hand-over, the parsers behind it. What is in the window when
// video shows itself decides what is seen of the stream, so the cut matters, and nothing is compared.
#include "LegacyTarget.h"
#include "StreamAnalzyer/OldStream/ZOOldStream.h"

namespace Marvane::FrameSift {

namespace {

constexpr auto sc_cutMatters = [](std::span<const uint8_t>) { return true; };

struct OLD_PARSER
{
    int ParseData(CLogicData* window, IFrameCallBack* callBack)
    {
        const int nResult = pStream->ParseData(window, callBack);
        const int nType = pStream->GetType();
        Require(nType == 0 || nType == KX_STREAM_TYPE_ZOPT || nType == KX_STREAM_TYPE_NEW ||
                nType == KX_STREAM_TYPE_HB);
        Require(nHandedOver == 0 || nHandedOver == nType); // once, for good
        nHandedOver = nType;
        return nResult;
    }
    int FlushBuffer(CLogicData* window, IFrameCallBack* callBack) { return pStream->FlushBuffer(window, callBack); }

    std::unique_ptr<CZOOldStream> pStream = std::make_unique<CZOOldStream>();
    int nHandedOver = 0;
};

} // namespace

} // namespace Marvane::FrameSift

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    using namespace Marvane::FrameSift;
    return FuzzLegacy(
        pData, nSize, [] { return OLD_PARSER(); }, sc_cutMatters);
}
