#include "Support/RandomStream.h"

#include <algorithm>
#include <array>

#include "StreamAnalzyer/ZOSTD/ZOAVWaterMark.h"
#include "Tools/KXVerify.h"

namespace Marvane::FrameSift {

Bytes RandomBytes(std::mt19937& random, size_t nSize)
{
    Bytes bytes(nSize);
    for (uint8_t& nByte : bytes)
        nByte = static_cast<uint8_t>(random());
    return bytes;
}

namespace {

// Head 0x88: the payload's CRC-32.
Bytes CrcHead(const Bytes& payload)
{
    const uint32_t nCrc = CKXVerify::GetCRC32(payload.data(), static_cast<int>(payload.size()));
    Bytes head = {0x88, 0, 0, 0, 0, 0, 0, 2};
    for (uint32_t n = 0; n < 4; ++n)
        head[1 + n] = static_cast<uint8_t>(nCrc >> (8 * n));
    return head;
}

} // namespace

void HideMagics(Bytes& payload, std::mt19937& random)
{
    const Bytes decoy = random() % 2 == 0 ? ZoavFrame().Seq(7777).Build() : Bytes{'z', 'o', 'a', 'v'};
    if (payload.size() > decoy.size() + 20)
        std::copy(decoy.begin(), decoy.end(), payload.end() - static_cast<ptrdiff_t>(decoy.size()) - 12);
}

std::vector<Bytes> RandomFrames(uint32_t nSeed, size_t nCount, size_t nMaxPayload, AlterPayload alter)
{
    constexpr std::array types = {ZOAV_FRAME::I,    ZOAV_FRAME::P,     ZOAV_FRAME::P,   ZOAV_FRAME::B,
                                  ZOAV_FRAME::Jpeg, ZOAV_FRAME::Audio, ZOAV_FRAME::Data};
    std::mt19937 random(nSeed);
    const auto below = [&random](size_t nEnd) { return static_cast<uint32_t>(random() % nEnd); };
    std::vector<Bytes> frames;
    for (uint32_t nSeq = 1; nSeq <= nCount; ++nSeq) {
        const ZOAV_FRAME eType = types[below(types.size())];
        ZoavFrame frame;
        uint32_t nSubType = below(30);
        if (nSubType == gsk_waterMarkSubType) // random bytes are no sound watermark
            nSubType = 0;
        frame.Family(static_cast<ZOAV_FAMILY>(below(4))).Type(eType, static_cast<uint8_t>(nSubType));
        frame.Seq(nSeq).TimeStamp(static_cast<uint16_t>(random())).ExtHead({0xA0, 0, 0x34, 0x01});
        if (eType == ZOAV_FRAME::Audio)
            frame.ExtHead({0x83, 2, 26, 9});
        else if (below(2) == 0)
            frame.ExtHead({0x82, 0, 0, 0, 0x80, 0x07, 0x38, 0x04}).ExtHead({0x81, 25, 8, 25});
        if (below(4) == 0)
            frame.ExtHead({0xC0, 5, 1, 2, 3}); // of a later version of the format
        // At least 32 bytes: a frame that ends the stream is then taken without waiting for more.
        Bytes payload = RandomBytes(random, 32 + below(nMaxPayload));
        if (alter != nullptr)
            alter(payload, random);
        if (below(4) == 0)
            frame.ExtHead(CrcHead(payload));
        frames.push_back(frame.Payload(payload));
    }
    return frames;
}

Bytes Joined(const std::vector<Bytes>& parts)
{
    Bytes all;
    for (const Bytes& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

} // namespace Marvane::FrameSift
