// The last bytes of a stream that is gone by.
#ifndef FRAMESIFT_APP_CHECK_BYTETAIL_H
#define FRAMESIFT_APP_CHECK_BYTETAIL_H

#include <cstdint>
#include <span>
#include <vector>

namespace Marvane::FrameSift {

class CByteTail
{
public:
    // chunk: the next bytes of the stream. Keeps the last nKeep bytes of the stream, as far as they were kept before.
    void Keep(std::span<const uint8_t> chunk, uint64_t nKeep);
    std::vector<uint8_t> TakeLast(uint64_t nBytes);

private:
    std::vector<uint8_t> m_bytes;
};

} // namespace Marvane::FrameSift

#endif
