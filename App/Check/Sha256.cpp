#include "Check/Sha256.h"

#include <fmt/format.h>

#include <array>

namespace Marvane::FrameSift {

std::string CSha256::TakeHex()
{
    std::array<uint8_t, SHA256_DIGEST_SIZE> digest;
    sha256_digest(&m_context, digest.size(), digest.data());
    return fmt::format("{:02x}", fmt::join(digest, ""));
}

} // namespace Marvane::FrameSift
