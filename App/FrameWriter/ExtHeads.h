// The extension heads that a recording needs, as the bytes that stand on the wire.
#ifndef FRAMESIFT_APP_FRAMEWRITER_EXTHEADS_H
#define FRAMESIFT_APP_FRAMEWRITER_EXTHEADS_H

#include <cstdint>

#include "FrameWriter/ZOAVFrameWriter.h"

namespace Marvane::FrameSift {

// Values of chInterlaceType, on the wire. They are not the numbers of KX_DEINTERLACE_*.
enum class ZOAV_INTERLACE : uint8_t
{
    None = 0,
    Single = 1, // one field is enough for a picture
    Pair = 2    // two fields make a picture
};

// Picture size, codec and rate. chEncodeType is the wire code of the codec, not KX_ENCODE_VIDEO_*.
Bytes ExtHead80(uint8_t chWidth, uint8_t chHeight, ZOAV_INTERLACE eInterlace = ZOAV_INTERLACE::None); // units of 8
Bytes ExtHead81(uint8_t chEncodeType, uint8_t chFrameRate);
Bytes ExtHead82(uint16_t nWidth, uint16_t nHeight, ZOAV_INTERLACE eInterlace = ZOAV_INTERLACE::None);
Bytes ExtHead8A(uint8_t chEncodeType, uint16_t rateValue, uint16_t rateDenominator);
Bytes ExtHead8B(uint8_t nRotationAngle);
Bytes ExtHead94(uint8_t nAllLevels, uint8_t nLevelOrder);

// Audio. chSampleType and chBitRateType: see SampleTypeOf and BitRateTypeOf.
Bytes ExtHead83(uint8_t chChannels, uint8_t chEncodeType, uint8_t chSampleType);
Bytes ExtHead8C(uint8_t chChannels, uint8_t chEncodeType, uint8_t chSampleType, uint8_t chBitRateType);

Bytes ExtHead92(uint16_t companyType, uint16_t tpStreamHeaderLen);
Bytes ExtHead96(uint8_t totalChannels, uint8_t curChannel);
Bytes ExtHeadA0(uint16_t nMilliSecond);
Bytes ExtHeadA1(uint8_t nIsCompleteFrameFlag); // bit 7 set: the frame was cut short

// The wire code of a sample rate in Hz; none for a rate that the format cannot carry.
std::optional<uint8_t> SampleTypeOf(uint32_t nSamplesPerSec);
// The wire code of a bit rate in bit/s; 0, "not known", for a rate without a code.
uint8_t BitRateTypeOf(uint32_t nBitsPerSec);

} // namespace Marvane::FrameSift

#endif
