// The ZOAV parser behind an analyzer that is told the type, so that no byte is spent on being detected. Properties as
// in FuzzStream.
#include "ParserMethod/StreamAnalyzer.h"
#include "SiftedFrames.h"

namespace Marvane::FrameSift {

namespace {

std::vector<SIFTED_FRAME> SiftParsed(std::span<const uint8_t> stream, size_t nChunk, bool bKey)
{
    constexpr unsigned char key[16] = {1, 2, 3};
    std::vector<SIFTED_FRAME> frames;
    CStreamAnalyzer analyzer(0);
    analyzer.InitEx(KX_STREAM_TYPE_ZOSTD);
    if (bKey)
        analyzer.SetExtInfo(KX_ENCRYPT_AES, key, sizeof key);
    InChunks(stream, FixedChunks(nChunk), [&](Bytes& chunk) {
        analyzer.ParseData(chunk.data(), static_cast<int>(chunk.size()));
        FrameInfo frame{};
        ExtZOAVIFrameInfo ext{};
        while (analyzer.GetOneFrame(&frame, &ext) == KX_SUCCESS) {
            frames.push_back(TakeSiftedFrame(frame));
            frame = {};
            ext = {};
        }
    });
    return frames;
}

uint32_t ReadLsb(std::span<const uint8_t> bytes)
{
    return bytes[0] | uint32_t{bytes[1]} << 8 | uint32_t{bytes[2]} << 16 | uint32_t{bytes[3]} << 24;
}

// Gives each head its right sum, and a tail where its length says, so that a changed byte gets past the first checks.
void MakeSound(std::span<uint8_t> stream)
{
    constexpr std::string_view head = "ZOAV";
    constexpr std::string_view tail = "zoav";
    auto place = stream.begin();
    while ((place = std::search(place, stream.end(), head.begin(), head.end())) != stream.end()) {
        const std::span<uint8_t> frame(place, stream.end());
        ++place;
        if (frame.size() < 24)
            return;
        const uint32_t nFrameLen = ReadLsb(frame.subspan(12));
        uint8_t nSum = 0;
        for (const uint8_t nByte : frame.first(23))
            nSum = static_cast<uint8_t>(nSum + nByte);
        frame[23] = nSum;
        if (nFrameLen < 32 || nFrameLen > frame.size())
            continue;
        const auto end = frame.subspan(nFrameLen - 8, 8);
        std::copy(tail.begin(), tail.end(), end.begin());
        std::copy_n(frame.begin() + 12, 4, end.begin() + 4);
    }
}

} // namespace

} // namespace Marvane::FrameSift

// Byte 0 chooses the cut, byte 1 whether frames are made sound and whether there is a key; the stream follows.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    using namespace Marvane::FrameSift;
    if (nSize < 6)
        return 0;
    std::vector<uint8_t> stream(pData + 2, pData + nSize);
    if ((pData[1] & 1) != 0)
        MakeSound(stream);
    const bool bKey = (pData[1] & 2) != 0;
    const auto whole = SiftParsed(stream, stream.size(), bKey);
    // Not below 4: without detection, a window that is shorter is thrown away.
    const auto cut = SiftParsed(stream, size_t{4} + pData[0], bKey);
    if (!CutMayMatter(stream, whole))
        CompareSifted(whole, cut);
    return 0;
}
