// A payload of intelligent video metadata, and what becomes of it.
#ifndef FRAMESIFT_APP_IVS_IVSFRAME_H
#define FRAMESIFT_APP_IVS_IVSFRAME_H

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "Ivs/IvsFormat.h"
#include "framesift/framesift.h"

namespace Marvane::FrameSift {

// What a data frame says of its payload.
struct IVS_FRAME_HEAD
{
    int64_t nOffset = 0; // in the stream, of the whole frame
    KX_TIME time = {};
    uint32_t nSeq = 0;
    int32_t nSubType = 0;
    std::string damage; // name of the frame's error; empty: none
    std::string cipher; // name of the cipher that still lies over it; empty: none
};

struct IVS_FRAME
{
    const IVS_FORMAT_ROW* pFormat = nullptr; // never null outside of here
    std::span<const uint8_t> payload;
    std::optional<IVS_FRAME_HEAD> head; // none: a payload without a frame

    bool IsEnciphered() const { return head && !head->cipher.empty(); }
    bool WouldKeyHelp() const { return IsEnciphered() && head->cipher == "aes"; }
};

using TAKE_IVS_RECORDS = std::function<void(KX_IVS_PARSE_TYPE eType, const void* pRecords, int nLen)>;

// A KX_RESULT or KX_RESULT_EX; none if the payload is enciphered. What take throws comes out.
std::optional<int> DecodeIvs(const IVS_FRAME& frame, const TAKE_IVS_RECORDS& take);

// What is wrong with the frame or its payload, for a reader; empty: nothing.
std::string IvsErrorText(const IVS_FRAME& frame, std::optional<int> result);
// The same, and what helps.
std::string IvsErrorAdvice(const IVS_FRAME& frame, std::optional<int> result);

// Of one payload no more is kept: a drawing has ten bytes on the wire and many times that in a listing.
inline constexpr uint64_t gsk_maxIvsRecords = 100'000;

struct IVS_OUTCOME
{
    std::optional<int> result; // of DecodeIvs
    uint64_t nLeftOut = 0;     // records behind gsk_maxIvsRecords
};

// How many things the records of one callback are, and what they are called: "object".
struct IVS_COUNT
{
    size_t nCount;
    const char* pNoun;
    size_t nParts = 0; // elements of drawings
};
IVS_COUNT CountIvsRecords(KX_IVS_PARSE_TYPE eType, const void* pRecords, int nLen);

} // namespace Marvane::FrameSift

#endif
