// What mux does to a payload on its way into a frame: encipher it, and sum it up.
#ifndef FRAMESIFT_APP_MUX_PAYLOADSEAL_H
#define FRAMESIFT_APP_MUX_PAYLOADSEAL_H

#include <cstdint>
#include <optional>
#include <span>

#include "FrameWriter/ZOAVFrameWriter.h"
#include "Tools/KXAes.h"

namespace Marvane::FrameSift {

// Which head tells of the cipher, and with it how much of a payload is enciphered.
enum class CIPHER_HEAD : uint8_t
{
    Whole, // 0x89
    Part   // 0x95: the first gsk_maxPart bytes at most
};
inline constexpr uint32_t gsk_maxPart = 4096;

// Values of chType in head 0x88, on the wire.
enum class CHECKSUM : uint8_t
{
    Sum32 = 0,
    Xor32 = 1,
    Crc32 = 2
};

struct SEAL_OPTIONS
{
    Bytes key; // AES; empty: payloads stay plain
    CIPHER_HEAD eHead = CIPHER_HEAD::Whole;
    std::optional<CHECKSUM> checksum;
};

class CPayloadSeal
{
public:
    explicit CPayloadSeal(const SEAL_OPTIONS& options); // throws CAppError for a key of no good length

    // Puts the payload into the frame, with the heads that tell what was done to it.
    void Put(std::span<const uint8_t> payload, ZoavFrame& frame);

private:
    void Encipher(Bytes& payload, ZoavFrame& frame);
    void AddChecksum(std::span<const uint8_t> payload, ZoavFrame& frame) const;

    const SEAL_OPTIONS& m_options;
    CKXAes m_aes;
};

} // namespace Marvane::FrameSift

#endif
