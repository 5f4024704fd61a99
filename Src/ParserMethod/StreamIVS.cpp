// Intelligent video metadata in the plain form: the objects of KX_ParseIVS, one by one.
#include <array>
#include <iterator>

#include "IVSParser/IVSAttribute.h"
#include "ParserMethod/StreamAnalyzer.h"

namespace Marvane::FrameSift {

namespace {

constexpr size_t sc_maxUnits = 32; // bits of attrflag
static_assert(std::size(gsk_ivsAttributes) <= sc_maxUnits);

// The newest place. A full list counts as none, which is kept: callers know the place to stay where it was.
void TakeNewestPoint(const KX_IVS_OBJ_EX& object, KX_IVS_POINT& point)
{
    if (object.trackpt_num >= 1 && object.trackpt_num < KX_IVS_MAX_TRACK_POINT)
        point = object.track_point[object.trackpt_num - 1];
}

// A unit for each attribute that is there, pointing at it. How many.
size_t ListAttributes(KX_IVS_ATTRIBUTE& attr, std::array<KX_IVS_OBJ_ATTR_UNIT, sc_maxUnits>& units)
{
    auto* const pRecords = reinterpret_cast<uint8_t*>(&attr);
    size_t nUnits = 0;
    for (const IVS_ATTRIBUTE_ROW& row : gsk_ivsAttributes) {
        if ((attr.attrflag & row.nMask) != 0)
            units[nUnits++] = {row.nMask, row.nSize, pRecords + row.nOffset};
    }
    return nUnits;
}

} // namespace

void CStreamAnalyzer::SetIVSObjAttrCBFun(IVSObjAttrCBFun pCallBack, void* pUserData)
{
    m_fpIVSObjAttrCBFun = pCallBack;
    m_pIVSUserData = pUserData;
}

int CStreamAnalyzer::ParseIVSEx(unsigned char* pBuffer, int len, KX_IVS_PARSE_TYPE eParseType)
{
    if (pBuffer == nullptr || len == 0)
        return KX_ERROR_PARAMETER;
    return KX_ParseIVS(pBuffer, len, eParseType, &CStreamAnalyzer::CallBackIVSEx, this);
}

int CStreamAnalyzer::CallBackIVSEx(KX_IVS_PARSE_TYPE IVSType, void* pIVSBuff, int nIVSBuffLen, void* pUserData)
{
    const auto* pThis = static_cast<const CStreamAnalyzer*>(pUserData);
    if (pThis == nullptr)
        return -1;
    if (pThis->m_fpIVSObjAttrCBFun == nullptr || pIVSBuff == nullptr)
        return KX_SUCCESS;
    if (IVSType == IVS_TRACK_EX)
        pThis->HandOutTracks(static_cast<const KX_IVS_OBJ_EX*>(pIVSBuff), nIVSBuffLen);
    if (IVSType == IVS_TRACK_40)
        pThis->HandOutCommonObjects({static_cast<uint8_t*>(pIVSBuff), static_cast<size_t>(nIVSBuffLen)});
    return KX_SUCCESS;
}

void CStreamAnalyzer::HandOutTracks(const KX_IVS_OBJ_EX* pObjects, int nIVSBuffLen) const
{
    // One record for all objects, cleared once: an object without a place of its own shows that of the one before.
    KX_IVS_OBJ_INFO info{};
    for (size_t n = 0; n < static_cast<size_t>(nIVSBuffLen) / sizeof *pObjects; ++n) {
        const KX_IVS_OBJ_EX& object = pObjects[n];
        info.classID = static_cast<uint32_t>(object.decode_id);
        info.objID = static_cast<uint32_t>(object.obj_id);
        info.operatorType = static_cast<uint8_t>(object.operator_type);
        info.objType = object.object_type;
        info.pointVailed = uint8_t{IVS_TRACK_EX};
        TakeNewestPoint(object, info.trackPoint);
        HandOut(info);
    }
}

void CStreamAnalyzer::HandOutCommonObjects(std::span<uint8_t> objects) const
{
    for (size_t nOffset = 0; nOffset < objects.size();) {
        auto& object = *reinterpret_cast<KX_IVS_COMMON_OBJ*>(&objects[nOffset]);
        nOffset += object.nStructSize;
        if (object.attrUnionflag != OBJ_ATTR_COMM) // lanes have no units
            continue;
        std::array<KX_IVS_OBJ_ATTR_UNIT, sc_maxUnits> units{};
        KX_IVS_OBJ_INFO info{};
        info.classID = object.segInfo.funcType;
        info.objID = object.objID;
        info.trackPoint = object.trackPoint;
        info.objType = object.objType;
        info.pointVailed = object.pointVailed;
        info.operatorType = object.operatorType;
        info.nAttrCount = static_cast<uint32_t>(ListAttributes(object.attr.comm, units));
        info.pAttrData = units.data();
        HandOut(info);
    }
}

void CStreamAnalyzer::HandOut(KX_IVS_OBJ_INFO& info) const
{
    // The callback may have switched the translation off at an object before.
    if (m_fpIVSObjAttrCBFun != nullptr)
        m_fpIVSObjAttrCBFun(reinterpret_cast<uint8_t*>(&info), sizeof info, nullptr, m_pIVSUserData);
}

} // namespace Marvane::FrameSift
