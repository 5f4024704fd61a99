// Overlay drawings.
#include <iterator>

#include "IVSParser/IVSField.h"
#include "IVSParser/IVSParser.h"
#include "IVSParser/IVSRecords.h"
#include "IVSParser/IVSZoopElement.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint8_t sc_version = 1;
constexpr int sc_minLength = 3; // less than a head, deliberately: a lone version is no failure
constexpr int sc_headSize = 4;

constexpr IVS_FIELD sc_objectFields[] = {
    IVS_FIELD_OF(0, KX_IVS_ZOOP_OBJ, nId),
    IVS_FIELD_OF(4, KX_IVS_ZOOP_OBJ, wCustom),
    IVS_FIELD_OF(6, KX_IVS_ZOOP_OBJ, chState),
    IVS_FIELD_OF(7, KX_IVS_ZOOP_OBJ, chCount),
};

// What a drawing leads to.
class CZoopMemory
{
public:
    CZoopMemory() = default;
    ~CZoopMemory() { RealseZOOP(); }
    CZoopMemory(const CZoopMemory&) = delete;
    CZoopMemory& operator=(const CZoopMemory&) = delete;

    // The elements of object, from pb's place on. False: no memory.
    bool ReadElements(CBufferRead& pb, KX_IVS_ZOOP_OBJ& object)
    {
        m_elements = TryAllocRecords<KX_IVS_ZOOP_OBJ_ELEMENT>(object.chCount);
        m_records = TryAllocRecords<ZOOP_ELEMENT_RECORD>(object.chCount);
        object.pElement = m_elements.get();
        if (m_elements == nullptr || m_records == nullptr)
            return false;
        for (; m_nCount < object.chCount;) {
            const size_t n = m_nCount++;
            if (!ParserIVSTrackZOOPObjElement(m_elements[n], m_records[n], pb))
                return false;
        }
        return true;
    }

private:
    void RealseZOOP()
    {
        for (size_t n = 0; n < m_nCount; ++n)
            ReleaseZoopElement(m_elements[n]);
    }

    std::unique_ptr<KX_IVS_ZOOP_OBJ_ELEMENT[]> m_elements;
    std::unique_ptr<ZOOP_ELEMENT_RECORD[]> m_records;
    size_t m_nCount = 0; // elements read
};

// Size of a drawing on the wire, as its elements claim it.
int64_t SizeOf(const KX_IVS_ZOOP_OBJ& object)
{
    int64_t nSize = int64_t{IvsWireSize(sc_objectFields)} + int64_t{sizeof object.wInfoLen} + object.wInfoLen;
    for (size_t n = 0; n < object.chCount; ++n)
        nSize += object.pElement[n].nLength;
    return nSize;
}

// Reads and hands out one drawing and adds its size to nPos. False: no memory.
bool ParseObject(CBufferRead& pb, int64_t& nPos, IVSCallBack pCallBack, void* pUserData)
{
    KX_IVS_ZOOP_OBJ object;
    std::memset(&object, 0, sizeof object);
    ReadFields<sc_objectFields>(pb, object);
    CZoopMemory memory;
    if (!memory.ReadElements(pb, object)) {
        KX_WRITE_LOG(KX_LOG_LevelError, gsk_ivsPath, "[ParserIVSTrackZOOP] out of memory %d\n", int{object.chCount});
        return false;
    }
    object.wInfoLen = pb.ReadInt16();
    object.pInfo = pb.ReadBuffer(object.wInfoLen);
    nPos += SizeOf(object);
    HandOut(pCallBack, pUserData, IVS_TRACK_ZOOP, &object, 1);
    return true;
}

} // namespace

int ParserIVSTrackZOOP(const uint8_t* pFrameBody, int len, IVSCallBack pCallBack, void* pUserData)
{
    if (pFrameBody == nullptr)
        return KX_ERROR_PARAMETER;
    if (len < sc_minLength) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParserIVSTrack] data is not enough! len =  %d\n", len);
        return KX_ERROR_IVS_DATA_WRONG;
    }
    CBufferRead pb(pFrameBody, static_cast<uint32_t>(len));
    const uint8_t nVersion = pb.ReadInt8();
    if (nVersion != sc_version) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParserIVSTrack] version is not 0x1! version =  %d\n",
                     int{nVersion});
        return KX_ERROR_IVS_DATA_WRONG;
    }
    pb.Skip(sc_headSize - 1);
    // The walk goes by the sizes that the drawings claim, not by the reader, deliberately: the two part at an element of
    // an unknown type, and behind the end of the data the reader stands still while drawings of zeros are handed out.
    for (int64_t nPos = sc_headSize; nPos < len;) {
        if (!ParseObject(pb, nPos, pCallBack, pUserData))
            return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    }
    return KX_SUCCESS;
}

} // namespace Marvane::FrameSift
