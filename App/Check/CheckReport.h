// What a check finds out about one recording.
#ifndef FRAMESIFT_APP_CHECK_CHECKREPORT_H
#define FRAMESIFT_APP_CHECK_CHECKREPORT_H

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "FrameWriter/RecordingClock.h"
#include "IAnalyzer/FrameInfo.h"
#include "Io/AppError.h"

namespace Marvane::FrameSift {

enum class FINDING_KIND : uint8_t
{
    LostFrames,      // the numbers of video frames or audio frames leave some out
    DamagedFrame,    // there at full length, but a sum or the like does not match
    Stretch,         // bytes that belong to no frame
    Unfinished,      // the frame that the end of the file cuts off
    SequenceRestart, // the numbers step back, and go on from there
    OutOfOrder,      // a number that comes behind a higher one
    RepeatedNumber,
    ClockJump,    // the recording's clock
    NoPayloadSum, // of a frame, where most others of its kind have one
    NoKeyFrame,   // at the start
    Blocks,       // bytes of another kind that the format provides for
    Count
};

inline constexpr size_t gsk_findingKinds = static_cast<size_t>(FINDING_KIND::Count);

// Part of the output that scripts read: never change one.
const char* FindingName(FINDING_KIND eKind);
// Whether a recording with such a finding is damaged. The other kinds are worth a look and no more.
bool IsDamage(FINDING_KIND eKind);

// Of the older formats, where only the ID of a next frame ends one; no block of another kind is as short.
inline constexpr uint64_t gsk_endMarkSize = 4;

// Enough of a frame to find it again.
struct FRAME_MARK
{
    int64_t nOffset = 0;
    int32_t nFrameType = KX_FRAME_TYPE_UNKNOWN;
    int32_t nFrameSubType = 0;
    uint32_t nSeq = 0;
    KX_TIME time = {};
};

// What was stepped over in a stretch.
struct STRETCH_CONTENTS
{
    uint64_t nHeads = 0; // not believed, or without what they promise
    uint64_t nTails = 0; // without a head
    uint64_t nBlocks = 0;
};

struct FINDING
{
    FINDING_KIND eKind = FINDING_KIND::Count;
    int64_t nOffset = 0;
    uint64_t nBytes = 0;
    // The frame in front; where numbers or times are compared, that of the same kind.
    std::optional<FRAME_MARK> before = std::nullopt;
    // The frame behind, none at the end of the file. What one frame is found for, itself.
    std::optional<FRAME_MARK> after = std::nullopt;
    uint32_t nLost = 0;                           // of lost frames: how many of the numbers between the two
    int32_t nLostType = KX_FRAME_TYPE_UNKNOWN;    // and their kind; unknown if all kinds are numbered together
    STRETCH_CONTENTS contents = {};               // of a stretch
    uint32_t nAnnounced = 0;                      // of an unfinished frame: its whole length; 0 if that is lost too
    bool bOpenEnd = false;                        // of an unfinished frame: only a next frame would end it
    int32_t nErrorFlags = KX_ERROR_FLAGS_NOERROR; // of a damaged frame
    CLOCK_MS nJump = 0;                           // of a clock jump: from the frame before to the one after
};

FINDING FindingBetween(FINDING_KIND eKind, const FRAME_MARK& before, const FRAME_MARK& after);

// Counts all, but keeps so many of each kind: a damaged file of many gigabytes must not fill
// the memory.
class CFindings
{
public:
    explicit CFindings(uint64_t nMaxOfKind) : m_nMaxOfKind(nMaxOfKind) {}

    void Add(const FINDING& finding);
    void AddUnlisted(FINDING_KIND eKind, uint64_t nCount) { m_counts[static_cast<size_t>(eKind)] += nCount; }
    void Sort(); // in the order of the file: some findings are made late
    const std::vector<FINDING>& Listed() const { return m_listed; }
    uint64_t MaxOfKind() const { return m_nMaxOfKind; }
    uint64_t Count(FINDING_KIND eKind) const { return m_counts[static_cast<size_t>(eKind)]; }
    uint64_t LeftOut(FINDING_KIND eKind) const;
    bool HasDamage() const;

private:
    uint64_t m_nMaxOfKind;
    std::array<uint64_t, gsk_findingKinds> m_counts{};
    std::vector<FINDING> m_listed;
};

// Every byte belongs to one of the four parts, which add up to nBytes.
struct CHECK_REPORT
{
    explicit CHECK_REPORT(uint64_t nMaxOfKind) : findings(nMaxOfKind) {}
    uint64_t BytesInParts() const { return nGoodBytes + nDamagedBytes + nOutsideBytes + nUnfinishedBytes; }
    uint64_t GoodFrames() const;
    uint64_t LostFrames() const;

    std::string name; // escaped
    // Why it is no recording, or why it could not be read to its end; empty else. With the name in front where nothing
    // could be said of the contents.
    std::string error;
    EXIT_CODE eCode = EXIT_CODE::Done;
    int32_t nStreamType = KX_STREAM_TYPE_UNKNOWN;
    int32_t nInnerType = KX_STREAM_TYPE_UNKNOWN; // which of the older formats it is
    std::string sha256;                          // empty if the file could not be read to its end

    uint64_t nBytes = 0;
    uint64_t nGoodBytes = 0;
    uint64_t nDamagedBytes = 0; // of damaged frames
    uint64_t nOutsideBytes = 0; // between frames
    uint64_t nUnfinishedBytes = 0;
    uint64_t nBlockBytes = 0; // those of nOutsideBytes that are in blocks of another kind and no damage

    std::map<int32_t, uint64_t> goodByType;    // KX_FRAME_TYPE_*
    std::map<int32_t, uint64_t> lostByType;    // the same
    std::map<int32_t, uint64_t> damagedByFlag; // KX_ERROR_FLAGS_*
    uint64_t nSummed = 0;                      // good frames whose payload was checked against a sum
    uint64_t nEnciphered = 0;                  // frames whose payload nobody could look into
    std::optional<int64_t> firstEnciphered;
    uint64_t nDeciphered = 0;
    uint64_t nDecipheredKeys = 0;    // good key frames of a codec whose pictures begin in a known way
    uint64_t nUnlikePicture = 0;     // those of them that do not begin so
    std::optional<KX_TIME> earliest; // of the good frames
    std::optional<KX_TIME> latest;
    CFindings findings;
};

} // namespace Marvane::FrameSift

#endif
