// Extension heads that bring a signature or on-screen text of variable length.
#include <array>

#include "StreamAnalzyer/ZOSTD/ExtHead.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

constexpr auto sc_sourcePath = "Src/StreamAnalzyer/ZOSTD/ExtHeadOverlay";

constexpr std::array sc_fields9C = {
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_9CEX, digtalSignatureSamplenlen, ext.digtalSignatureSamplenlen),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_9CEX, digtalSignatureEncdeclen, ext.digtalSignatureEncdeclen),
};

int TakeSignature(const EXT_HEAD_PLACE& place, EXT_HEAD_TARGET& target, int)
{
    constexpr int nFixedLen = sizeof(EXT_FRAME_HEAD_9CEX);
    CopyExtHead(place, target.heads.head9C.header);
    // What an earlier head of this kind brought does not fit the length of this one.
    target.ext.digtalSignatureEncdecDataPtr = nullptr;
    target.ext.digtalSignatureDigestType = KX_DIGEST_ALGORITHM_UNKOWN;
    target.ext.digtalSignatureEncryptType = KX_DIGTAL_SIGNATURE_ENCRYPT_UNKOWN;
    const auto nLen = static_cast<int>(EXT_HEAD_NUMBER(place.bytes, EXT_FRAME_HEAD_9CEX, digtalSignatureEncdeclen));
    if (place.nIndex + nFixedLen + nLen > place.nExtFrameLen) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, sc_sourcePath,
                     "frameInfoEx.digtalSignatureEncdeclen %d, nIndex %d, nExtFrameLen %d\n", nLen, place.nIndex,
                     place.nExtFrameLen);
        return EXT_HEAD_STOP;
    }
    uint8_t* pSignature = CopyExtHeadPart(place, nFixedLen, static_cast<size_t>(nLen), target);
    target.ext.digtalSignatureEncdecDataPtr = pSignature;
    // A 0 on the wire is the default algorithm; any other is not known by name.
    const EXT_FRAME_HEAD_9CEX& header = target.heads.head9C.header;
    if (pSignature != nullptr && header.digtalSignatureDigestAlgorithm == 0)
        target.ext.digtalSignatureDigestType = KX_DIGEST_ALGORITHM_SHA1;
    if (pSignature != nullptr && header.digtalSignatureEncryptAlogrithm == 0)
        target.ext.digtalSignatureEncryptType = KX_DIGTAL_SIGNATURE_ENCRYPT_RSA;
    return nFixedLen + nLen;
}

int TakeOsd(const EXT_HEAD_PLACE& place, EXT_HEAD_TARGET& target, int nStep)
{
    constexpr int nFixedLen = sizeof(EXT_FRAME_HEAD_B1EX);
    CopyExtHead(place, target.heads.headB1.header);
    const int nLen = nStep - nFixedLen;
    target.ext.osdExtDataLen = static_cast<uint8_t>(nLen);
    target.ext.osdExtDataPtr = nullptr; // an earlier head's does not fit this length
    if (place.nIndex + nFixedLen + nLen > place.nExtFrameLen) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, sc_sourcePath, "frameInfoEx.osdExtDataLen %d, nIndex %d, nExtFrameLen %d\n",
                     nLen, place.nIndex, place.nExtFrameLen);
        return EXT_HEAD_STOP;
    }
    target.ext.osdExtDataPtr = CopyExtHeadPart(place, nFixedLen, static_cast<size_t>(nLen), target);
    return nStep;
}

constexpr EXT_HEAD_ROW sc_rows[] = {
    {0x9C, EXT_HEAD_STEP::Fixed8, sc_fields9C, nullptr, &TakeSignature},
    {0xB1, EXT_HEAD_STEP::Guarded, {}, nullptr, &TakeOsd},
};

} // namespace

std::span<const EXT_HEAD_ROW> ExtHeadsOfOverlay()
{
    return sc_rows;
}

} // namespace Marvane::FrameSift
