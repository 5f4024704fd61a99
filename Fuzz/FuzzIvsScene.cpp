// Scene points. A record is as long as on the wire.
#include "IvsTarget.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    using namespace Marvane::FrameSift;
    return FuzzIvs({IVS_TRACK_EX3, {KX_SUCCESS, KX_ERROR_SYSTEM_OUT_OF_MEMORY, KX_ERROR_IVS_DATA_WRONG}, true, 1},
                   pData, nSize);
}
