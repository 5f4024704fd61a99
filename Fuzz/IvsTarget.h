// What the fuzz targets of the formats of intelligent video metadata have in common.
#ifndef FRAMESIFT_FUZZ_IVSTARGET_H
#define FRAMESIFT_FUZZ_IVSTARGET_H

#include <algorithm>
#include <initializer_list>

#include "Require.h"
#include "Support/IvsTouch.h"

namespace Marvane::FrameSift {

struct IVS_HANDED_OUT
{
    size_t nCalls = 0;
    size_t nBytes = 0;
};

inline int TakeIvsRecords(KX_IVS_PARSE_TYPE eType, void* pRecords, int nLen, void* pUserData)
{
    auto& handedOut = *static_cast<IVS_HANDED_OUT*>(pUserData);
    Require((pRecords == nullptr) == (nLen == 0) && nLen >= 0);
    if (pRecords != nullptr)
        TouchIvsRecords(eType, pRecords, nLen);
    ++handedOut.nCalls;
    handedOut.nBytes += static_cast<size_t>(nLen);
    return 0;
}

struct IVS_TARGET
{
    KX_IVS_PARSE_TYPE eType;
    std::initializer_list<int> results; // that the format can give
    bool bAllOrNothing;                 // a failure hands out nothing
    size_t nBytesPerByte;               // of records for each byte of payload, at most
};

// Properties: no crash, no read outside the payload, which is not written to; the answer is one that the format has, and
// the same without a callback; what is handed out can be read in full, and does not grow beyond measure.
inline int FuzzIvs(const IVS_TARGET& target, const uint8_t* pData, size_t nSize)
{
    constexpr size_t nFewRecords = 4096; // a short payload may still give a record
    std::vector<uint8_t> block(pData, pData + nSize);
    const int nLen = static_cast<int>(nSize);
    IVS_HANDED_OUT handedOut;
    const int nResult = KX_ParseIVS(block.data(), nLen, target.eType, &TakeIvsRecords, &handedOut);
    Require(std::equal(block.begin(), block.end(), pData));
    Require(KX_ParseIVS(block.data(), nLen, target.eType, nullptr, nullptr) == nResult);
    if (nSize == 0) {
        Require(nResult == KX_ERROR_PARAMETER);
        return 0;
    }
    Require(std::find(target.results.begin(), target.results.end(), nResult) != target.results.end());
    Require(!target.bAllOrNothing || nResult == KX_SUCCESS || handedOut.nCalls == 0);
    Require(handedOut.nBytes <= nFewRecords + target.nBytesPerByte * nSize);
    return 0;
}

} // namespace Marvane::FrameSift

#endif
