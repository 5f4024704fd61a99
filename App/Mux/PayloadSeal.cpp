#include "Mux/PayloadSeal.h"

#include <algorithm>

#include "FrameWriter/ExtHeads.h"
#include "Io/AppError.h"
#include "Tools/KXVerify.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint8_t sc_aes = 0; // chType of the cipher heads, on the wire
constexpr uint32_t sc_blockSize = 16;

uint32_t SumOf(std::span<const uint8_t> bytes, CHECKSUM eKind)
{
    const auto nBytes = static_cast<int>(bytes.size());
    switch (eKind) {
    case CHECKSUM::Xor32:
        return CKXVerify::GetXor32(bytes.data(), nBytes);
    case CHECKSUM::Crc32:
        return CKXVerify::GetCRC32(bytes.data(), nBytes);
    case CHECKSUM::Sum32:
        break;
    }
    return CKXVerify::GetSum32(bytes.data(), nBytes);
}

} // namespace

CPayloadSeal::CPayloadSeal(const SEAL_OPTIONS& options) : m_options(options)
{
    const Bytes& key = options.key;
    if (!key.empty() && !m_aes.SetKey(key.data(), static_cast<uint32_t>(key.size())))
        throw CAppError(EXIT_CODE::Usage, "the key is not one for AES");
}

void CPayloadSeal::Put(std::span<const uint8_t> payload, ZoavFrame& frame)
{
    Bytes sealed(payload.begin(), payload.end());
    if (m_aes.HaveKey())
        Encipher(sealed, frame);
    // Behind the cipher: a reader without a key checks the bytes that it sees.
    if (m_options.checksum)
        AddChecksum(sealed, frame);
    frame.Payload(sealed);
}

void CPayloadSeal::Encipher(Bytes& payload, ZoavFrame& frame)
{
    auto nLen = static_cast<uint32_t>(payload.size());
    if (m_options.eHead == CIPHER_HEAD::Part)
        nLen = std::min(nLen, gsk_maxPart);
    frame.ExtHead(m_options.eHead == CIPHER_HEAD::Part ? ExtHead95(sc_aes, 0, nLen) : ExtHead89(sc_aes));
    // What is left behind the last whole block stays plain, a payload shorter than a block with it.
    uint32_t nWritten = nLen;
    if (nLen >= sc_blockSize && !m_aes.Encrypt(payload.data(), nLen, payload.data(), nWritten))
        throw CAppError(EXIT_CODE::Io, "a payload could not be enciphered");
}

void CPayloadSeal::AddChecksum(std::span<const uint8_t> payload, ZoavFrame& frame) const
{
    if (!payload.empty()) // a reader takes the sum of nothing for damage
        frame.ExtHead(ExtHead88(static_cast<uint8_t>(*m_options.checksum), SumOf(payload, *m_options.checksum)));
}

} // namespace Marvane::FrameSift
