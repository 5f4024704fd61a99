// What a listing of intelligent video metadata says at its end.
#ifndef FRAMESIFT_APP_IVS_IVSLISTINGSUMMARY_H
#define FRAMESIFT_APP_IVS_IVSLISTINGSUMMARY_H

#include <map>
#include <string>

#include "Ivs/IvsFrame.h"

namespace Marvane::FrameSift {

// What the stream around the metadata was like.
struct IVS_STREAM_ACCOUNT
{
    uint64_t nUnfinished = 0; // bytes at the end that wait for the rest of a frame
    uint64_t nDamagedFrames = 0;
    uint64_t nOutside = 0; // bytes in no frame
};

class CIvsSummary
{
public:
    void CountRecords(const IVS_COUNT& count);
    void CountPayload(const IVS_FRAME& frame, const IVS_OUTCOME& outcome);
    void CountOtherData(int32_t nSubType) { ++m_othersBySubType[nSubType]; }

    uint64_t Payloads() const { return m_nPayloads; }
    bool IsSound() const { return m_nFailed == 0; }
    // Some lines for a reader.
    std::string Text(const IVS_STREAM_ACCOUNT& account) const;

private:
    uint64_t m_nPayloads = 0;
    uint64_t m_nFailed = 0;
    uint64_t m_nLeftOut = 0; // records
    std::map<std::string_view, uint64_t> m_payloadsByFormat;
    std::map<std::string, uint64_t> m_recordsByNoun;
    std::map<std::string, uint64_t> m_failures;
    std::map<int32_t, uint64_t> m_othersBySubType;
};

} // namespace Marvane::FrameSift

#endif
