#include "IVSParser/IVSAttribute.h"

#include <array>

#include "IVSParser/IVSParser.h"
#include "Tools/BufferRead.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

// Type and length. The length counts them too.
constexpr uint32_t sc_attributeHeadSize = 2;

// The rows by type, null for a type that is stepped over.
constexpr auto sc_rowOfType = [] {
    std::array<const IVS_ATTRIBUTE_ROW*, 0x100> rows{};
    for (const IVS_ATTRIBUTE_ROW& row : gsk_ivsAttributes)
        rows[row.nType] = &row;
    return rows;
}();

} // namespace

int ParseAttribute(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr, int nLen)
{
    for (int nUsed = 0; nUsed < nLen;) {
        const uint8_t* pHead = pb.ReadBuffer(sc_attributeHeadSize);
        if (pHead == nullptr)
            return KX_SUCCESS;
        const uint8_t nType = pHead[0];
        const uint8_t nDataLen = pHead[1];
        if (nDataLen == 0 || nDataLen % 4 != 0) {
            KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath,
                         "[ParseAttribute] attrtype len is wrong. attrtype = %d ,attrtypeDataLen = %d\n", nType,
                         nDataLen);
            return KX_ERROR_BAD_FORMATTED;
        }
        const uint8_t* pAttributeData = pb.ReadBuffer(nDataLen - sc_attributeHeadSize);
        if (pAttributeData == nullptr) {
            KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParseAttribute] pAttributeData is null.\n");
            return KX_ERROR_BAD_FORMATTED;
        }
        if (const IVS_ATTRIBUTE_ROW* pRow = sc_rowOfType[nType]) {
            CBufferRead payload(pAttributeData, nDataLen - sc_attributeHeadSize);
            attr.attrflag |= pRow->nMask;
            if (pRow->pfnParse(payload, attr) != KX_SUCCESS)
                return KX_ERROR_BAD_FORMATTED;
        }
        nUsed += nDataLen;
    }
    return KX_SUCCESS;
}

} // namespace Marvane::FrameSift
