// The shape of the extension heads' table: tag, step, fields, effect. A new tag is one row.
#ifndef FRAMESIFT_SRC_STREAMANALZYER_ZOSTD_EXTHEAD_H
#define FRAMESIFT_SRC_STREAMANALZYER_ZOSTD_EXTHEAD_H

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>

#include "IAnalyzer/FrameInfo.h"
#include "Memory/LinkedBuffer.h"
#include "StreamAnalzyer/ZOSTD/ExtFrameHead.h"
#include "Tools/BufferRead.h"

namespace Marvane::FrameSift {

// What the heads of one frame fill.
struct EXT_HEAD_TARGET
{
    FrameInfo& frame;
    ExtZOAVIFrameInfo& ext;
    EXT_FRAME_HEAD& heads;
    CLinkedBuffer& linkBuffer; // owns the copies of variable parts
    int& nPRate;               // a rate that a non-key frame announces
    bool bGMSet;               // which AES-256 kind head 0xB5 means
    // Where a head was found, counted from the first one.
    int& nB5ExtStartOffset;
    int& nB6ExtStartOffset;
    int& nCommonEncryptHeadoffset;
};

// One head in the walk. bytes reach from its tag to the end of the frame, not of the run: a fixed head at the end of
// the run takes its last fields from the payload. Deliberate.
struct EXT_HEAD_PLACE
{
    std::span<const uint8_t> bytes;
    int nIndex;
    int nExtFrameLen;
};

// One field. A field that does not lie within the frame whole is absent, and what it would fill keeps its value.
struct EXT_HEAD_FIELD
{
    size_t nOffset;
    size_t nSize;
    void (*pfnTake)(const uint8_t* pField, EXT_HEAD_TARGET& target);
};

// How far the walk steps over a head.
enum class EXT_HEAD_STEP : uint8_t
{
    Fixed4,
    Fixed8,
    Guarded,   // byte 1; up to 2 makes it 4, and the head is ignored
    SelfSized, // byte 1; 0 makes it 4. A size of 1 or 2 leads into the head itself. Kept.
};

// An effect beyond the fields. Answers the step, nStep unless the head says otherwise; EXT_HEAD_STOP ends the walk.
using EXT_HEAD_EFFECT = int (*)(const EXT_HEAD_PLACE& place, EXT_HEAD_TARGET& target, int nStep);
inline constexpr int EXT_HEAD_STOP = 0;

struct EXT_HEAD_ROW
{
    uint8_t nTag;
    EXT_HEAD_STEP eStep;
    std::span<const EXT_HEAD_FIELD> fields = {};
    const uint8_t* EXT_FRAME_HEAD::*pSeen = nullptr; // set if the head is there
    EXT_HEAD_EFFECT pfnEffect = nullptr;
    // Notes where the head lies; also for one that its size makes ignored.
    void (*pfnNotePlace)(int nIndex, EXT_HEAD_TARGET& target) = nullptr;
};

// The rows, by what the heads speak of.
std::span<const EXT_HEAD_ROW> ExtHeadsOfPicture();
std::span<const EXT_HEAD_ROW> ExtHeadsOfAudio();
std::span<const EXT_HEAD_ROW> ExtHeadsOfStructure();
std::span<const EXT_HEAD_ROW> ExtHeadsOfCipher();
std::span<const EXT_HEAD_ROW> ExtHeadsOfOverlay();

// Walks nExtFrameLen bytes of heads. bytes: the frame from its first extension head on.
void WalkExtHeads(std::span<const uint8_t> bytes, int nExtFrameLen, EXT_HEAD_TARGET& target);

// Takes those fields of a head that lie within bytes.
void TakeExtHeadFields(std::span<const EXT_HEAD_FIELD> fields, std::span<const uint8_t> bytes, EXT_HEAD_TARGET& target);

// nSize bytes at nOffset as a number; 0 if bytes do not reach that far.
uint64_t ExtHeadNumber(std::span<const uint8_t> bytes, size_t nOffset, size_t nSize);

// Copies the nLen bytes behind nOffset to the stream's buffer. Null if nLen is 0, if the frame does not have them, and
// without memory.
uint8_t* CopyExtHeadPart(const EXT_HEAD_PLACE& place, size_t nOffset, size_t nLen, EXT_HEAD_TARGET& target);

// Keeps a copy of a head's fixed bytes, as many of them as there are.
template <class Record>
void CopyExtHead(const EXT_HEAD_PLACE& place, Record& record)
{
    record = {};
    std::memcpy(&record, place.bytes.data(), std::min(place.bytes.size(), sizeof record));
}

// A field of the wire record that stands at the front of bytes.
#define EXT_HEAD_NUMBER(bytes, record, field) ExtHeadNumber(bytes, offsetof(record, field), sizeof(record::field))

// A row of fields: a number of the wire record that fills a member of the target, converted to the member's type.
#define EXT_HEAD_FILLS(record, field, member)                                                                          \
    EXT_HEAD_FIELD                                                                                                     \
    {                                                                                                                  \
        offsetof(record, field), sizeof(record::field), [](const uint8_t* pField, EXT_HEAD_TARGET& target) {           \
            target.member = static_cast<decltype(target.member)>(LoadLsb(pField, sizeof(record::field)));              \
        }                                                                                                              \
    }

// The same for bytes that are copied as they stand.
#define EXT_HEAD_COPIES(record, field, member)                                                                         \
    EXT_HEAD_FIELD                                                                                                     \
    {                                                                                                                  \
        offsetof(record, field), sizeof(record::field), [](const uint8_t* pField, EXT_HEAD_TARGET& target) {           \
            static_assert(sizeof(target.member) == sizeof(record::field));                                             \
            std::memcpy(target.member, pField, sizeof(record::field));                                                 \
        }                                                                                                              \
    }

// The same for a number that pfnTake(uint64_t, EXT_HEAD_TARGET&) turns into something else.
#define EXT_HEAD_TAKES(record, field, pfnTakeNumber)                                                                   \
    EXT_HEAD_FIELD                                                                                                     \
    {                                                                                                                  \
        offsetof(record, field), sizeof(record::field), [](const uint8_t* pField, EXT_HEAD_TARGET& target) {           \
            pfnTakeNumber(LoadLsb(pField, sizeof(record::field)), target);                                             \
        }                                                                                                              \
    }

} // namespace Marvane::FrameSift

#endif
