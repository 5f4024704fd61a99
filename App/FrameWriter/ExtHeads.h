// The extension heads that a recording needs, as the bytes that stand on the wire.
#ifndef FRAMESIFT_APP_FRAMEWRITER_EXTHEADS_H
#define FRAMESIFT_APP_FRAMEWRITER_EXTHEADS_H

#include <cstdint>
#include <optional>

#include "FrameWriter/ZOAVFrameWriter.h"

namespace Marvane::FrameSift {

// Codec and rate, picture size. chEncodeType is the wire code of the codec, not KX_ENCODE_VIDEO_*.
Bytes ExtHead81(uint8_t chEncodeType, uint8_t chFrameRate);
Bytes ExtHead82(uint16_t nWidth, uint16_t nHeight);
Bytes ExtHead8A(uint8_t chEncodeType, uint16_t rateValue, uint16_t rateDenominator);

// Audio. chSampleType and chBitRateType: see SampleTypeOf and BitRateTypeOf.
Bytes ExtHead83(uint8_t chChannels, uint8_t chEncodeType, uint8_t chSampleType);
Bytes ExtHead8C(uint8_t chChannels, uint8_t chEncodeType, uint8_t chSampleType, uint8_t chBitRateType);

// Check of the payload as it stands on the wire. chType: 0 sum of words, 1 exclusive or of words, 2 CRC-32.
Bytes ExtHead88(uint8_t chType, uint32_t nValue);

// The cipher of the whole payload, or of nActualDataLen bytes from noffset on. chType: 0 AES, 1 DES, 2 triple DES; 0xFF
// marks what was deciphered in place.
Bytes ExtHead89(uint8_t chType);
Bytes ExtHead95(uint8_t chType, uint16_t noffset, uint32_t nActualDataLen);

Bytes ExtHeadA0(uint16_t nMilliSecond);

// The wire code of a sample rate in Hz; none for a rate that the format cannot carry.
std::optional<uint8_t> SampleTypeOf(uint32_t nSamplesPerSec);
// The wire code of a bit rate in bit/s; 0, "not known", for a rate without a code.
uint8_t BitRateTypeOf(uint32_t nBitsPerSec);

} // namespace Marvane::FrameSift

#endif
