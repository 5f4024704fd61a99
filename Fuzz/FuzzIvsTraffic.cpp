// Traffic counts. Records of one byte each give one record of 24 each.
#include "IvsTarget.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    using namespace Marvane::FrameSift;
    return FuzzIvs({IVS_TRACK_15, {KX_SUCCESS, KX_ERROR_IVS_DATA_WRONG}, true, 24}, pData, nSize);
}
