// The HB stream, whose blocks go through a parser of their own.
#include <memory>

#include "LegacyTarget.h"
#include "StreamAnalzyer/OldStream/HBStream.h"

namespace Marvane::FrameSift {

namespace {

// Not to be moved, as it is the callback of its own inner parser.
struct HB_PARSER
{
    int ParseData(CLogicData* window, IFrameCallBack* callBack) { return pStream->ParseData(window, callBack); }
    int FlushBuffer(CLogicData* window, IFrameCallBack* callBack) { return pStream->FlushBuffer(window, callBack); }

    std::unique_ptr<CHBStream> pStream = std::make_unique<CHBStream>();
};

} // namespace

} // namespace Marvane::FrameSift

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    using namespace Marvane::FrameSift;
    return FuzzLegacy(
        pData, nSize, [] { return HB_PARSER(); }, &NeverMatters);
}
