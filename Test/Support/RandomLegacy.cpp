#include "Support/RandomLegacy.h"

#include <algorithm>
#include <random>

#include "FrameWriter/LegacyFrameWriter.h"
#include "StreamAnalzyer/OldStream/HBStream.h"
#include "StreamAnalzyer/OldStream/NewStream.h"
#include "StreamAnalzyer/OldStream/ZOOldStream.h"
#include "StreamAnalzyer/OldStream/ZOPTStream.h"
#include "StreamAnalzyer/RawStream/RawMPEG4Stream.h"

namespace Marvane::FrameSift {

namespace {

// Neither zeros nor ones, so that no start code and no border comes about.
Bytes Noise(std::mt19937& random, size_t nSize)
{
    Bytes noise(nSize);
    std::generate(noise.begin(), noise.end(), [&random] { return static_cast<uint8_t>(2 + random() % 0xF0); });
    return noise;
}

Bytes Picture(std::mt19937& random, bool bKey, size_t nSize)
{
    constexpr size_t nLeast = 100; // a raw picture is not looked at before so many bytes have come
    const Bytes vop = {0, 0, 1, 0xB6, static_cast<uint8_t>(bKey ? 0x10 : 0x50)};
    const Bytes heads = {0, 0, 1, 0xB0, 1, 0, 0, 1, 0xB2, 1, 2, 3, 4, 5, 6, 20}; // 20 pictures a second
    return (bKey ? heads : Bytes()) + vop + Noise(random, std::max(nSize, nLeast));
}

NEW_HEADS HeadsOf(LEGACY_FORMAT eFormat)
{
    return static_cast<NEW_HEADS>(eFormat);
}

Bytes VideoFrame(LEGACY_FORMAT eFormat, bool bKey, const Bytes& picture)
{
    switch (eFormat) {
    case LEGACY_FORMAT::New:
    case LEGACY_FORMAT::NewEx:
    case LEGACY_FORMAT::NewEx1:
        return bKey ? NewKeyFrame(HeadsOf(eFormat), {}, picture) : NewOtherFrame(HeadsOf(eFormat), false, picture);
    case LEGACY_FORMAT::Zopt:
        return ZoptFrame(picture);
    default:
        return picture;
    }
}

Bytes AudioFrame(LEGACY_FORMAT eFormat, std::mt19937& random)
{
    const Bytes samples = Noise(random, random() % 400);
    const bool bLongHead = eFormat == LEGACY_FORMAT::Hb || eFormat == LEGACY_FORMAT::AudioEx;
    return bLongHead ? OldAudioFrameEx(14, 2, samples) : OldAudioFrame(14, 2, samples);
}

bool IsAudioAlone(LEGACY_FORMAT eFormat)
{
    return eFormat == LEGACY_FORMAT::Audio || eFormat == LEGACY_FORMAT::AudioEx;
}

Bytes OneFrame(LEGACY_FORMAT eFormat, std::mt19937& random, bool bKey, size_t nMaxPayload)
{
    const bool bNew = eFormat <= LEGACY_FORMAT::NewEx1;
    if (IsAudioAlone(eFormat) || (!bKey && random() % 4 == 0))
        return AudioFrame(eFormat, random);
    if (bNew && !bKey && random() % 8 == 0)
        return NewDataFrame(static_cast<uint8_t>(random() % 9), Noise(random, 12 + random() % nMaxPayload));
    return VideoFrame(eFormat, bKey, Picture(random, bKey, random() % nMaxPayload));
}

// One block for each 1024 bytes of pictures, with audio in between.
std::vector<Bytes> HbBlocks(std::mt19937& random, size_t nCount, size_t nMaxPayload)
{
    std::vector<Bytes> blocks;
    Bytes waiting;
    uint32_t nBlockSeq = 0;
    for (size_t nPicture = 0; blocks.size() < nCount; ++nPicture) {
        waiting = waiting + Picture(random, nPicture % 5 == 0, random() % nMaxPayload);
        while (waiting.size() >= gsk_hbBlockPayload) {
            if (random() % 4 == 0)
                blocks.push_back(AudioFrame(LEGACY_FORMAT::Hb, random));
            blocks.push_back(HbBlock({}, ++nBlockSeq, waiting));
            waiting.erase(waiting.begin(), waiting.begin() + gsk_hbBlockPayload);
        }
    }
    return blocks;
}

} // namespace

std::vector<Bytes> RandomLegacyFrames(LEGACY_FORMAT eFormat, uint32_t nSeed, size_t nCount, size_t nMaxPayload)
{
    std::mt19937 random(nSeed);
    std::vector<Bytes> frames;
    if (eFormat == LEGACY_FORMAT::Hb)
        frames = HbBlocks(random, nCount, nMaxPayload);
    while (frames.size() < nCount)
        frames.push_back(OneFrame(eFormat, random, frames.size() % 10 == 0, nMaxPayload));
    frames.push_back(LegacyEndMark());
    return frames;
}

std::unique_ptr<IStreamAnalzyer> MakeLegacyParser(LEGACY_FORMAT eFormat)
{
    switch (eFormat) {
    case LEGACY_FORMAT::New:
        return std::make_unique<CNewStream>(KX_STREAM_TYPE_NEW);
    case LEGACY_FORMAT::NewEx:
        return std::make_unique<CNewStream>(KX_STREAM_TYPE_NEW_EX);
    case LEGACY_FORMAT::NewEx1:
        return std::make_unique<CNewStream>(KX_STREAM_TYPE_NEW_EX1);
    case LEGACY_FORMAT::Zopt:
        return std::make_unique<CZOPTStream>();
    case LEGACY_FORMAT::Hb:
        return std::make_unique<CHBStream>();
    case LEGACY_FORMAT::RawMpeg4:
        return std::make_unique<CRawMPEG4Stream>();
    default:
        return std::make_unique<CZOOldStream>();
    }
}

} // namespace Marvane::FrameSift
