// Objects in the plain form. Properties beside those of the formats: the answer is that of KX_ParseIVS; each tracked
// object comes, and each common object that is no lane; each has a unit for every attribute that it carries.
#include <bit>

#include "IvsTarget.h"

namespace Marvane::FrameSift {

namespace {

struct FLATTENED
{
    size_t nObjects = 0;
    size_t nUnits = 0;
    bool operator==(const FLATTENED&) const = default;
};

int CountRecords(KX_IVS_PARSE_TYPE eType, void* pRecords, int nLen, void* pUserData)
{
    auto& counted = *static_cast<FLATTENED*>(pUserData);
    if (eType == IVS_TRACK_EX)
        counted.nObjects += IvsRecords<KX_IVS_OBJ_EX>(pRecords, nLen).size();
    if (eType == IVS_TRACK_40) {
        for (const auto& object : IvsRecords<KX_IVS_COMMON_OBJ>(pRecords, nLen)) {
            if (object.attrUnionflag != OBJ_ATTR_COMM)
                continue;
            ++counted.nObjects;
            counted.nUnits += static_cast<size_t>(std::popcount(object.attr.comm.attrflag));
        }
    }
    return 0;
}

void TakeObject(unsigned char* pObjInfo, int nLen, void* pReserved, void* pUserData)
{
    Require(nLen == sizeof(KX_IVS_OBJ_INFO) && pReserved == nullptr);
    const auto& info = *reinterpret_cast<const KX_IVS_OBJ_INFO*>(pObjInfo);
    TouchBytes(&info, sizeof info);
    auto& flattened = *static_cast<FLATTENED*>(pUserData);
    ++flattened.nObjects;
    flattened.nUnits += info.nAttrCount;
    for (uint32_t n = 0; n < info.nAttrCount; ++n) {
        const KX_IVS_OBJ_ATTR_UNIT& unit = info.pAttrData[n];
        Require(std::has_single_bit(unit.nAttrFlag));
        TouchBytes(unit.pAttrBuf, unit.nAttrDataLen);
    }
}

void Compare(void* handle, std::vector<uint8_t>& payload, KX_IVS_PARSE_TYPE eType, int frameSubType)
{
    const int nLen = static_cast<int>(payload.size());
    FLATTENED counted;
    FLATTENED flattened;
    KX_SetIVSObjAttrCBFun(handle, &TakeObject, &flattened);
    const int nResult = KX_ParseIVS(payload.data(), nLen, eType, &CountRecords, &counted);
    Require(KX_ParseIVSEx(handle, payload.data(), nLen, frameSubType) == nResult);
    Require(counted == flattened);
}

} // namespace

} // namespace Marvane::FrameSift

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    using namespace Marvane::FrameSift;
    if (nSize == 0)
        return 0; // a null or empty payload keeps a reference of the handle
    static void* const s_handle = KX_CreateFrameSift(0);
    std::vector<uint8_t> payload(pData, pData + nSize);
    Compare(s_handle, payload, IVS_TRACK_EX, KX_FRAME_SUB_TYPE_DATA_INTL);
    Compare(s_handle, payload, IVS_TRACK_EX2, KX_FRAME_SUB_TYPE_DATA_INTLEX);
    return 0;
}
