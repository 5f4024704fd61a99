// Segments of objects. An object of 12 bytes gives a record of 2248.
#include "IvsTarget.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    using namespace Marvane::FrameSift;
    return FuzzIvs(
        {IVS_TRACK_EX2, {KX_SUCCESS, KX_ERROR_PARAMETER, KX_ERROR_BAD_FORMATTED, KX_ERROR_IVS_DATA_WRONG}, false, 188},
        pData, nSize);
}
