// SHA-256 of bytes that come in pieces.
#ifndef FRAMESIFT_APP_CHECK_SHA256_H
#define FRAMESIFT_APP_CHECK_SHA256_H

#include <nettle/sha2.h>

#include <cstdint>
#include <span>
#include <string>

namespace Marvane::FrameSift {

class CSha256
{
public:
    CSha256() { sha256_init(&m_context); }
    void Update(std::span<const uint8_t> bytes) { sha256_update(&m_context, bytes.size(), bytes.data()); }
    // In hexadecimal, as sha256sum(1) prints it. Starts anew.
    std::string TakeHex();

private:
    sha256_ctx m_context;
};

} // namespace Marvane::FrameSift

#endif
