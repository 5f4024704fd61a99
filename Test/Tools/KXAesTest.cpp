#include "Tools/KXAes.h"

#include <algorithm>
#include <memory>
#include <new>
#include <span>
#include <vector>

#include <gtest/gtest.h>

namespace Marvane::FrameSift {
namespace {

using Bytes = std::vector<uint8_t>;

Bytes Key(size_t nBytes, uint8_t nFirst = 0xA0)
{
    Bytes key(nBytes);
    for (size_t n = 0; n < nBytes; ++n)
        key[n] = static_cast<uint8_t>(nFirst + n);
    return key;
}

bool Set(IEncrypt& cipher, const Bytes& key)
{
    return cipher.SetKey(key.data(), static_cast<uint32_t>(key.size()));
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
    const struct
    {
        size_t nLength;
        bool bGood;
        bool bOldKeyStays;
    } rows[] = {
        {16, true, false},  {24, true, false},  {32, true, false},                                        //
        {0, false, true},   {3, false, true},   {17, false, true}, {63, false, true},  {64, false, true}, //
        {1, false, false},  {2, false, false},  {8, false, false}, {20, false, false},                    //
        {48, false, false}, {62, false, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.nLength);
        CKXAes aes;
        EXPECT_FALSE(aes.HaveKey());
        ASSERT_TRUE(Set(aes, Key(16, 0x10)));
        const Bytes before = Enciphered(aes);
        Bytes key = Key(row.nLength);
        key.reserve(1); // not null
        EXPECT_EQ(Set(aes, key), row.bGood);
        EXPECT_EQ(aes.HaveKey(), row.bGood || row.bOldKeyStays);
        EXPECT_EQ(Enciphered(aes) == before, row.bOldKeyStays);
        EXPECT_TRUE(Set(aes, Key(16, 0x10)));
        EXPECT_EQ(Enciphered(aes), before);
        EXPECT_FALSE(aes.SetKey(nullptr, 16));
        EXPECT_EQ(Enciphered(aes), before);
    }
}

TEST(KXAes, WholeBlocksOnly)
{
    // Encrypt refuses less than a block, Decrypt does not.
    const struct
    {
        uint32_t nLength;
        uint32_t nCapacity;
        bool bEncrypts;
        bool bDecrypts;
        uint32_t nWritten;
    } rows[] = {{0, 0, false, true, 0},    {15, 15, false, true, 0},   {15, 0, false, true, 0},
                {16, 15, false, false, 0}, {16, 16, true, true, 16},   {20, 16, true, true, 16},
                {20, 20, true, true, 16},  {47, 32, true, true, 32},   {47, 31, false, false, 0},
                {32, 99, true, true, 32},  {160, 160, true, true, 160}};
    CKXAes aes;
    ASSERT_TRUE(Set(aes, Key(24)));
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.nLength << " into " << row.nCapacity);
        const auto source = std::make_unique<uint8_t[]>(row.nLength);
        const Bytes untouched(row.nCapacity + 1, 0xEE);
        Bytes target = untouched;
        const auto check = [&](bool bDone, bool bExpected, uint32_t nLength) {
            EXPECT_EQ(bDone, bExpected);
            EXPECT_EQ(nLength, bExpected ? row.nWritten : row.nCapacity);
            const uint32_t nWritten = bExpected ? row.nWritten : 0;
            EXPECT_TRUE(std::equal(target.begin() + nWritten, target.end(), untouched.begin() + nWritten));
            EXPECT_EQ(nWritten == 0, target == untouched);
        };
        uint32_t nLength = row.nCapacity;
        const bool bEncrypted = aes.Encrypt(source.get(), row.nLength, target.data(), nLength);
        check(bEncrypted, row.bEncrypts, nLength);
        target = untouched;
        nLength = row.nCapacity;
        const bool bDecrypted = aes.Decrypt(source.get(), row.nLength, target.data(), nLength);
        check(bDecrypted, row.bDecrypts, nLength);
    }
}

TEST(KXAes, WhatCannotBeDoneIsRefused)
{
    CKXAes aes;
    uint8_t bytes[16] = {};
    uint32_t nLength = 16;
    EXPECT_FALSE(aes.Encrypt(bytes, 16, bytes, nLength)); // no key
    EXPECT_FALSE(aes.Decrypt(bytes, 16, bytes, nLength));
    ASSERT_TRUE(Set(aes, Key(32)));
    EXPECT_FALSE(aes.Encrypt(nullptr, 16, bytes, nLength));
    EXPECT_FALSE(aes.Encrypt(bytes, 16, nullptr, nLength));
    EXPECT_FALSE(aes.Decrypt(nullptr, 0, bytes, nLength));
    EXPECT_FALSE(aes.Decrypt(bytes, 0, nullptr, nLength));
    EXPECT_EQ(nLength, 16U);
}

TEST(KXAes, DecryptsInPlaceWhatWasEncrypted)
{
    for (const size_t nKeyLen : {16U, 24U, 32U}) {
        CKXAes aes;
        ASSERT_TRUE(Set(aes, Key(nKeyLen)));
        Bytes text(1003);
        for (size_t n = 0; n < text.size(); ++n)
            text[n] = static_cast<uint8_t>(n / 5);
        Bytes work = text;
        uint32_t nLength = 1003;
        ASSERT_TRUE(aes.Encrypt(work.data(), 1003, work.data(), nLength));
        EXPECT_EQ(nLength, 992U);
        EXPECT_NE(work, text);
        ASSERT_TRUE(aes.Decrypt(work.data(), 1003, work.data(), nLength));
        EXPECT_EQ(work, text);
    }
}

TEST(KXAes, LeavesNoKeyInMemory)
{
    alignas(CKXAes) uint8_t place[sizeof(CKXAes)] = {};
    const Bytes key = Key(32);
    const auto holds = [&place](std::span<const uint8_t> wanted) {
        const volatile uint8_t* pPlace = place; // a dead object's bytes: really read them
        const Bytes bytes(pPlace, pPlace + sizeof place);
        return std::search(bytes.begin(), bytes.end(), wanted.begin(), wanted.end()) != bytes.end();
    };
    const auto bothHalves = [&] { return int{holds(std::span(key).first(16))} + int{holds(std::span(key).last(16))}; };
    auto* pAes = new (place) CKXAes;
    ASSERT_TRUE(Set(*pAes, key));
    ASSERT_EQ(bothHalves(), 2);
    ASSERT_TRUE(Set(*pAes, Key(16, 1)));
    EXPECT_EQ(bothHalves(), 0);
    ASSERT_TRUE(Set(*pAes, key));
    EXPECT_FALSE(Set(*pAes, Key(20)));
    EXPECT_EQ(bothHalves(), 0);
    ASSERT_TRUE(Set(*pAes, key));
    ASSERT_EQ(bothHalves(), 2);
    pAes->~CKXAes();
    EXPECT_EQ(bothHalves(), 0);
}

} // namespace Marvane::FrameSift
