#include "Tools/BufferRead.h"

#include "Support/Testing.h"

namespace Marvane::FrameSift {

TEST(BufferRead, ReadsLowByteFirstAndNothingOutside)
{
    const uint8_t bytes[] = {1, 2, 3, 0xFE, 0xFF, 4, 5, 6, 7, 8, 9, 10};
    CBufferRead reader(bytes, sizeof bytes);
    uint8_t n8 = 0;
    uint16_t n16 = 0;
    int16_t nSigned = 0;
    uint32_t n32 = 0;
    EXPECT_TRUE(reader.ReadUint8(n8) && reader.ReadUint16Lsb(n16) && reader.ReadInt16Lsb(nSigned));
    EXPECT_TRUE(reader.ReadUint32Lsb(n32));
    EXPECT_EQ((Fields{n8, n16, nSigned, n32, reader.ReadInt24()}), (Fields{1, 0x0302, -2, 0x07060504, 0x0A0908}));
    EXPECT_FALSE(reader.ReadUint32Lsb(n32) || reader.Skip(1));
    EXPECT_EQ(n32, 0x07060504U); // as it was
    EXPECT_EQ((Fields{reader.ReadInt24(), reader.ReadInt16(), reader.ReadInt8()}), (Fields{0, 0, 0}));
    reader.Backforword(2);
    EXPECT_EQ(reader.ReadInt24(), 0U);
    EXPECT_EQ(reader.ReadInt16(), 0x0A09);
    reader.Backforword(1000); // not before the first byte
    EXPECT_EQ(reader.ReadInt8(), 1);
    EXPECT_EQ(reader.ReadBuffer(UINT32_MAX), nullptr); // the sum with the position would wrap
    EXPECT_NE(reader.ReadBuffer(0), nullptr);
}

} // namespace Marvane::FrameSift
