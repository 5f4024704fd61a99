// The walk over the extension heads, on bytes that end with the frame. Properties: no crash, no leak, no read past the
// frame; it ends; what a head hands out can be read; and a second walk over the same bytes fills the same.

#include "Require.h"
#include "StreamAnalzyer/ZOSTD/ExtHead.h"

namespace Marvane::FrameSift {

namespace {

struct WALKED
{
    FrameInfo frame{};
    ExtZOAVIFrameInfo ext{};
    CLinkedBuffer linkBuffer;
};

void AppendCopy(std::vector<uint8_t>& to, const uint8_t* pBytes, size_t nLen)
{
    if (pBytes != nullptr)
        to.insert(to.end(), pBytes, pBytes + nLen);
}

void Walk(std::span<const uint8_t> bytes, int nExtFrameLen, WALKED& walked)
{
    EXT_FRAME_HEAD heads{};
    int nPRate = 0;
    int nB5 = 0;
    int nB6 = 0;
    int nCommon = 0;
    EXT_HEAD_TARGET target{walked.frame, walked.ext, heads, walked.linkBuffer, nPRate, false, nB5, nB6, nCommon};
    WalkExtHeads(bytes, nExtFrameLen, target);
}

// The records as bytes, the copies that they lead to behind them.
std::vector<uint8_t> Flatten(const WALKED& walked)
{
    std::vector<uint8_t> copies;
    ExtZOAVIFrameInfo ext = walked.ext;
    AppendCopy(copies, ext.digtalSignatureEncdecDataPtr, ext.digtalSignatureEncdeclen);
    AppendCopy(copies, ext.svacEncryptKeyData, ext.svacEncryptKeyLen);
    AppendCopy(copies, ext.osdExtDataPtr, ext.osdExtDataLen);
    // Where the copies lie differs from walk to walk.
    ext.digtalSignatureEncdecDataPtr = nullptr;
    ext.svacEncryptKeyData = nullptr;
    ext.osdExtDataPtr = nullptr;
    std::vector<uint8_t> flat(sizeof(FrameInfo) + sizeof(ExtZOAVIFrameInfo));
    std::memcpy(flat.data(), &walked.frame, sizeof(FrameInfo));
    std::memcpy(flat.data() + sizeof(FrameInfo), &ext, sizeof ext);
    flat.insert(flat.end(), copies.begin(), copies.end());
    return flat;
}

} // namespace

} // namespace Marvane::FrameSift

// Byte 0 is the length of the run, byte 1 the frame's subtype; the heads and what follows them in the frame come
// behind.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    using namespace Marvane::FrameSift;
    if (nSize < 2)
        return 0;
    const std::vector<uint8_t> bytes(pData + 2, pData + nSize); // of just its size, so that a read past it is found
    WALKED first;
    WALKED second;
    first.frame.frameSubType = second.frame.frameSubType = pData[1];
    Walk(bytes, pData[0], first);
    Walk(bytes, pData[0], second);
    Require(Flatten(first) == Flatten(second));
    return 0;
}
