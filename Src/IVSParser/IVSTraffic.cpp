// Traffic records: counts of people or vehicles.
#include <span>

#include "IVSParser/IVSParser.h"
#include "IVSParser/IVSRecords.h"
#include "IVSParser/IVSTrafficPlan.h"
#include "Tools/BufferRead.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

using TRAFFIC_RECORD = KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR;

constexpr uint16_t sc_typeTraffic = 13;
constexpr int64_t sc_lengthAt = 4; // of the whole record; 32 bits, signed
constexpr int64_t sc_headSize = 8;

// The payload. Positions may lie outside, also below 0, as the length of a record may be any number: 0 is read there.
class CTrafficBytes
{
public:
    CTrafficBytes(const uint8_t* pBytes, int len) : m_bytes(pBytes, static_cast<size_t>(len)) {}

    int64_t Size() const { return static_cast<int64_t>(m_bytes.size()); }
    uint16_t Type(int64_t nPos) const { return From(nPos).ReadInt16(); }
    int32_t Length(int64_t nPos) const
    {
        uint32_t nLength = 0;
        CBufferRead pb = From(nPos + sc_lengthAt);
        return pb.ReadUint32Lsb(nLength) ? static_cast<int32_t>(nLength) : 0;
    }
    // What follows the head of a record that ends inside.
    std::span<const uint8_t> Body(int64_t nPos, int64_t nEnd) const
    {
        // A length was read, so nPos is at least -4.
        return m_bytes.subspan(static_cast<size_t>(nPos + sc_headSize), static_cast<size_t>(nEnd - nPos - sc_headSize));
    }

private:
    CBufferRead From(int64_t nPos) const
    {
        if (nPos < 0 || nPos > Size())
            return {nullptr, 0};
        const auto rest = m_bytes.subspan(static_cast<size_t>(nPos));
        return {rest.data(), static_cast<uint32_t>(rest.size())};
    }

    std::span<const uint8_t> m_bytes;
};

struct TRAFFIC_RECORDS
{
    explicit TRAFFIC_RECORDS(size_t nNum) : records(TryAllocRecords<TRAFFIC_RECORD>(nNum)), nCount(nNum) {}
    ~TRAFFIC_RECORDS()
    {
        for (size_t n = 0; records != nullptr && n < nCount; ++n)
            FreeTrafficPlans(records[n]);
    }
    TRAFFIC_RECORDS(const TRAFFIC_RECORDS&) = delete;
    TRAFFIC_RECORDS& operator=(const TRAFFIC_RECORDS&) = delete;

    std::unique_ptr<TRAFFIC_RECORD[]> records;
    size_t nCount;
};

enum class TRAFFIC_WALK : uint8_t
{
    Whole,
    Dropped, // answered with success, but nothing is handed out
    Damaged
};

TRAFFIC_WALK ReadRecords(const CTrafficBytes& bytes, std::span<TRAFFIC_RECORD> records)
{
    int64_t nPos = 0;
    // Where the type is looked for. From the second record on that is the body of the record in front, deliberately.
    int64_t nTypePos = 0;
    for (TRAFFIC_RECORD& record : records) {
        if (nPos + sc_headSize >= bytes.Size() || bytes.Type(nTypePos) != sc_typeTraffic)
            return TRAFFIC_WALK::Damaged;
        nTypePos = nPos + sc_headSize;
        record.NumberStat = bytes.Type(nPos);
        const int64_t nStart = nPos;
        const int32_t nLength = bytes.Length(nPos);
        nPos += nLength;
        if (nLength <= sc_headSize || nPos > bytes.Size())
            continue; // handed out without plans
        if (!ParseIVSTrackTrafficPlan(bytes.Body(nStart, nPos), record))
            return TRAFFIC_WALK::Dropped;
    }
    return TRAFFIC_WALK::Whole;
}

} // namespace

int ParseIVSTrackTraffic(const uint8_t* pFrameBody, int len, int nIvsTrafficNum, IVSCallBack pCallBack, void* pUserData)
{
    if (pFrameBody == nullptr)
        return KX_ERROR_PARAMETER;
    if (len < sc_headSize) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParseIVSTrackTraffic] data is not enough! len =  %d\n", len);
        return KX_ERROR_IVS_DATA_WRONG;
    }
    if (nIvsTrafficNum < 1 || nIvsTrafficNum > gsk_maxTrafficNum) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath,
                     "[ParseIVSTrackTraffic] scene_points is not allowed! nIvsTrafficNum =  %d\n", nIvsTrafficNum);
        return KX_ERROR_IVS_DATA_WRONG;
    }
    const TRAFFIC_RECORDS traffic(static_cast<size_t>(nIvsTrafficNum));
    if (traffic.records == nullptr) {
        KX_WRITE_LOG(KX_LOG_LevelError, gsk_ivsPath, "[ParseIVSTrackTraffic] out of memory %d * %d\n", nIvsTrafficNum,
                     static_cast<int>(sizeof(TRAFFIC_RECORD)));
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    }
    const TRAFFIC_WALK eWalk = ReadRecords({pFrameBody, len}, {traffic.records.get(), traffic.nCount});
    if (eWalk == TRAFFIC_WALK::Damaged)
        return KX_ERROR_IVS_DATA_WRONG;
    if (eWalk == TRAFFIC_WALK::Dropped)
        return KX_SUCCESS;
    return HandOut(pCallBack, pUserData, IVS_TRACK_B1, traffic.records.get(), traffic.nCount);
}

int ParseIVSTrackEx15(const uint8_t* pFrameBody, int len, IVSCallBack pCallBack, void* pUserData)
{
    if (pFrameBody == nullptr)
        return KX_ERROR_PARAMETER;
    if (len < sc_headSize) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParseIVSTrackEx15] data is not enough! len =  %d\n", len);
        return KX_ERROR_IVS_DATA_WRONG;
    }
    const CTrafficBytes bytes(pFrameBody, len);
    if (bytes.Type(0) != sc_typeTraffic)
        return KX_SUCCESS;
    // All records are taken to be as long as the first, whatever their own heads say: deliberate.
    const int64_t nLength = bytes.Length(0);
    int nCount = 0;
    for (int64_t nPos = 0; nLength > 0 && nPos + sc_headSize < len && nPos + nLength <= len; nPos += nLength)
        ++nCount;
    return nCount > 0 ? ParseIVSTrackTraffic(pFrameBody, len, nCount, pCallBack, pUserData) : int{KX_SUCCESS};
}

} // namespace Marvane::FrameSift
