// Tracked objects, extended form. An object of 12 bytes gives a record of 232.
#include "IvsTarget.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    using namespace Marvane::FrameSift;
    return FuzzIvs(
        {IVS_TRACK_EX, {KX_SUCCESS, KX_ERROR_WRONG_VERSION, KX_ERROR_BAD_OBJ_COUNT, KX_ERROR_IVS_DATA_WRONG}, true, 20},
        pData, nSize);
}
