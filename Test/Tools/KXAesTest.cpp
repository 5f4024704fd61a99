#include "Tools/KXAes.h"

#include "Support/Testing.h"

#include <new>

namespace Marvane::FrameSift {
namespace {

bool Set(IEncrypt& cipher, const Bytes& key)
{
    return cipher.SetKey(key.data(), LengthOf(key));
}

// What two blocks become; empty if refused.
Bytes Enciphered(IEncrypt& cipher)
{
    Bytes bytes(32, 0x5A);
    uint32_t nLength = 32;
    return cipher.Encrypt(bytes.data(), 32, bytes.data(), nLength) ? bytes : Bytes();
}

} // namespace

TEST(KXAes, KeyLengths)
{
    for (size_t nLength = 0; nLength <= 64; ++nLength) {
        SCOPED_TRACE(nLength);
        const bool bGood = nLength == 16 || nLength == 24 || nLength == 32;
        // Odd lengths, but for 1, and those above 62 are not even looked at.
        const bool bOldKeyStays = nLength == 0 || nLength > 62 || (nLength % 2 != 0 && nLength != 1);
        CKXAes aes;
        EXPECT_FALSE(aes.HaveKey());
        ASSERT_TRUE(Set(aes, Counting(16, 0x10)));
        const Bytes before = Enciphered(aes);
        Bytes key = Counting(nLength, 0xA0);
        key.reserve(1); // not null
        EXPECT_EQ(Set(aes, key), bGood);
        EXPECT_EQ(aes.HaveKey(), bGood || bOldKeyStays);
        EXPECT_EQ(Enciphered(aes) == before, bOldKeyStays);
        EXPECT_TRUE(Set(aes, Counting(16, 0x10)));
        EXPECT_FALSE(aes.SetKey(nullptr, 16));
        EXPECT_EQ(Enciphered(aes), before);
    }
}

TEST(KXAes, WholeBlocksOnly)
{
    CKXAes aes;
    ASSERT_TRUE(Set(aes, Counting(24, 0xA0)));
    for (const uint32_t nSource : {0U, 15U, 16U, 20U, 32U, 47U, 160U}) {
        for (const uint32_t nCapacity : {0U, 15U, 16U, 20U, 31U, 32U, 99U, 160U}) {
            for (const bool bEncrypts : {true, false}) {
                SCOPED_TRACE(testing::Message() << nSource << " into " << nCapacity << " " << bEncrypts);
                const Bytes source(nSource + (nSource == 0 ? 1 : 0));
                Bytes target(nCapacity + 1, 0xEE);
                uint32_t nLength = nCapacity;
                const uint32_t nWhole = nSource / 16 * 16;
                const auto run = bEncrypts ? &CKXAes::Encrypt : &CKXAes::Decrypt;
                // Encrypt refuses less than a block, Decrypt does not.
                const bool bDone = nCapacity >= nWhole && !(bEncrypts && nSource < 16);
                EXPECT_EQ((aes.*run)(source.data(), nSource, target.data(), nLength), bDone);
                EXPECT_EQ(nLength, bDone ? nWhole : nCapacity);
                const size_t nWritten = bDone ? nWhole : 0;
                EXPECT_EQ(Part(target, nWritten), Bytes(nCapacity + 1 - nWritten, 0xEE));
                EXPECT_TRUE(nWritten == 0 || Part(target, 0, nWritten) != Bytes(nWritten, 0xEE));
            }
        }
    }
}

TEST(KXAes, WhatCannotBeDoneIsRefused)
{
    CKXAes aes;
    uint8_t bytes[16] = {};
    uint32_t nLength = 16;
    EXPECT_FALSE(aes.Encrypt(bytes, 16, bytes, nLength)); // no key
    EXPECT_FALSE(aes.Decrypt(bytes, 16, bytes, nLength));
    ASSERT_TRUE(Set(aes, Counting(32, 0xA0)));
    EXPECT_FALSE(aes.Encrypt(nullptr, 16, bytes, nLength));
    EXPECT_FALSE(aes.Encrypt(bytes, 16, nullptr, nLength));
    EXPECT_FALSE(aes.Decrypt(nullptr, 0, bytes, nLength));
    EXPECT_FALSE(aes.Decrypt(bytes, 0, nullptr, nLength));
    EXPECT_EQ(nLength, 16U);
}

TEST(KXAes, LeavesNoKeyInMemory)
{
    alignas(CKXAes) uint8_t place[sizeof(CKXAes)] = {};
    const Bytes key = Counting(32, 0xA0);
    const auto holds = [&place](std::span<const uint8_t> wanted) {
        const volatile uint8_t* pPlace = place; // a dead object's bytes: really read them
        const Bytes bytes(pPlace, pPlace + sizeof place);
        return std::search(bytes.begin(), bytes.end(), wanted.begin(), wanted.end()) != bytes.end();
    };
    const auto bothHalves = [&] { return int{holds(std::span(key).first(16))} + int{holds(std::span(key).last(16))}; };
    auto* pAes = new (place) CKXAes;
    ASSERT_TRUE(Set(*pAes, key));
    ASSERT_EQ(bothHalves(), 2);
    ASSERT_TRUE(Set(*pAes, Counting(16, 1)));
    EXPECT_EQ(bothHalves(), 0);
    ASSERT_TRUE(Set(*pAes, key));
    EXPECT_FALSE(Set(*pAes, Counting(20, 0xA0)));
    EXPECT_EQ(bothHalves(), 0);
    ASSERT_TRUE(Set(*pAes, key));
    ASSERT_EQ(bothHalves(), 2);
    pAes->~CKXAes();
    EXPECT_EQ(bothHalves(), 0);
}

} // namespace Marvane::FrameSift
