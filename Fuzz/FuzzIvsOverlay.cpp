// Overlay drawings. A drawing of 10 bytes gives a record of 32.
#include "IvsTarget.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    using namespace Marvane::FrameSift;
    return FuzzIvs({IVS_TRACK_ZOOP, {KX_SUCCESS, KX_ERROR_IVS_DATA_WRONG}, false, 4}, pData, nSize);
}
