#include "Tools/BufferRead.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace Marvane::FrameSift {

TEST(BufferRead, ReadsLowByteFirst)
{
    const uint8_t bytes[] = {1, 2, 3, 0xFE, 0xFF, 4, 5, 6, 7, 8, 9, 10};
    CBufferRead reader(bytes, sizeof bytes);
    uint8_t n8 = 0;
    uint16_t n16 = 0;
    int16_t nSigned = 0;
    uint32_t n32 = 0;
    EXPECT_TRUE(reader.ReadUint8(n8) && reader.ReadUint16Lsb(n16) && reader.ReadInt16Lsb(nSigned));
    EXPECT_EQ(n8, 1);
    EXPECT_EQ(n16, 0x0302);
    EXPECT_EQ(nSigned, -2);
    EXPECT_TRUE(reader.ReadUint32Lsb(n32));
    EXPECT_EQ(n32, 0x07060504U);
    EXPECT_EQ(reader.ReadInt24(), 0x0A0908U);
    reader.Backforword(2);
    EXPECT_EQ(reader.ReadInt16(), 0x0A09);
    reader.Backforword(1000); // not before the first byte
    EXPECT_EQ(reader.ReadInt8(), 1);
}

TEST(BufferRead, WhatIsNotThereIsNotRead)
{
    const uint8_t bytes[] = {1, 2, 3};
    CBufferRead reader(bytes, sizeof bytes);
    uint32_t n32 = 77;
    EXPECT_FALSE(reader.ReadUint32Lsb(n32));
    EXPECT_EQ(n32, 77U);
    EXPECT_FALSE(reader.Skip(4));
    EXPECT_TRUE(reader.Skip(1));
    EXPECT_EQ(reader.ReadBuffer(UINT32_MAX), nullptr); // the sum with the position would wrap
    EXPECT_EQ(reader.ReadInt24(), 0U);
    EXPECT_EQ(reader.ReadInt16(), 0x0302);
    EXPECT_EQ(reader.ReadInt8(), 0);
    EXPECT_NE(reader.ReadBuffer(0), nullptr);
}

} // namespace Marvane::FrameSift
