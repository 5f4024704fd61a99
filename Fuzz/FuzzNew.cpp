// The New stream in its three forms.
#include "LegacyTarget.h"
#include "StreamAnalzyer/OldStream/NewStream.h"

namespace Marvane::FrameSift {

namespace {

// A length above the room of the window is not believed, and a larger chunk makes more room. Any three bytes may be read
// as a length.
bool HasLengthNearTheRoom(std::span<const uint8_t> stream)
{
    constexpr uint32_t nRoom = 16384;
    for (size_t nPos = 0; nPos + 3 <= stream.size(); ++nPos) {
        const uint32_t nLength = stream[nPos] | uint32_t{stream[nPos + 1]} << 8 | uint32_t{stream[nPos + 2]} << 16;
        if (nLength >= nRoom && nLength <= 8 * (nRoom + stream.size()))
            return true;
    }
    return false;
}

} // namespace

} // namespace Marvane::FrameSift

// Byte 0 chooses the form.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    using namespace Marvane::FrameSift;
    if (nSize < 6)
        return 0;
    constexpr int types[] = {KX_STREAM_TYPE_NEW, KX_STREAM_TYPE_NEW_EX, KX_STREAM_TYPE_NEW_EX1};
    const int nType = types[pData[0] % std::size(types)];
    return FuzzLegacy(
        pData + 1, nSize - 1, [nType] { return CNewStream(nType); }, &HasLengthNearTheRoom);
}
