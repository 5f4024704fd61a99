#include "Tools/KXAesBlocks.h"

#include <bit>

#include "Support/RandomStream.h"
#include "Support/Testing.h"
#include "Tools/KXAesTables.h"

namespace Marvane::FrameSift {
namespace {

Bytes Counted(size_t nBytes, size_t nFactor)
{
    Bytes bytes(nBytes);
    for (size_t n = 0; n < nBytes; ++n)
        bytes[n] = static_cast<uint8_t>(n * nFactor);
    return bytes;
}

std::vector<const AES_FORM*> Forms()
{
    std::vector<const AES_FORM*> forms = {&g_aesByTable};
    if (AesByInstructions() != nullptr)
        forms.push_back(AesByInstructions());
    return forms;
}

} // namespace

// FIPS 197, 5.1.1: the inverse in GF(2^8), then a sum of its rotations. The boxes hold this for every byte.
TEST(KXAesBlocks, BoxesAreThoseOfTheStandard)
{
    const auto times = [](uint32_t a, uint32_t b) {
        uint32_t nProduct = 0;
        for (; b != 0; b >>= 1, a = a << 1 ^ (a >= 0x80 ? 0x11B : 0))
            nProduct ^= (b & 1) != 0 ? a : 0;
        return nProduct;
    };
    for (uint32_t n = 0; n < 256; ++n) {
        uint32_t nInverse = 1; // the 254th power
        for (int i = 0; i < 254; ++i)
            nInverse = times(nInverse, n);
        uint8_t nBox = 0x63;
        for (int i = 0; i < 5; ++i)
            nBox = static_cast<uint8_t>(nBox ^ std::rotl(static_cast<uint8_t>(nInverse), i));
        EXPECT_EQ(g_aes_sbox[n], nBox) << n;
        EXPECT_EQ(g_aes_isbox[nBox], n);
    }
}

TEST(KXAesBlocks, VectorsOfTheStandard)
{
    // FIPS 197, appendix C: the key counts from 0, the plain text in steps of 0x11.
    const Rows<size_t, Bytes> rows = {
        {16, {0x69, 0xC4, 0xE0, 0xD8, 0x6A, 0x7B, 0x04, 0x30, 0xD8, 0xCD, 0xB7, 0x80, 0x70, 0xB4, 0xC5, 0x5A}},
        {24, {0xDD, 0xA9, 0x7C, 0xA4, 0x86, 0x4C, 0xDF, 0xE0, 0x6E, 0xAF, 0x70, 0xA0, 0xEC, 0x0D, 0x71, 0x91}},
        {32, {0x8E, 0xA2, 0xB7, 0xCA, 0x51, 0x67, 0x45, 0xBF, 0xEA, 0xFC, 0x49, 0x90, 0x4B, 0x49, 0x60, 0x89}}};
    const Bytes plainText = Counted(16, 0x11);
    for (const auto& [nKeyLen, cipherText] : rows) {
        for (const AES_FORM* pForm : Forms()) {
            SCOPED_TRACE(testing::Message() << nKeyLen << (pForm == &g_aesByTable ? " table" : " instructions"));
            aes_ctx_t ctx;
            ASSERT_TRUE(aes_keyexpansion(Counted(nKeyLen, 1), ctx));
            Bytes block(16);
            pForm->pfnEncrypt(ctx, plainText.data(), block.data(), 1);
            EXPECT_EQ(block, cipherText);
            pForm->pfnDecrypt(ctx, block.data(), block.data(), 1);
            EXPECT_EQ(block, plainText);
        }
    }
}

// Every count around the group of blocks that is worked on at once, at every address, in place and not.
TEST(KXAesBlocks, FormsAgree)
{
    const AES_FORM* pInstructions = AesByInstructions();
    if (pInstructions == nullptr)
        GTEST_SKIP() << "no such instructions here";
    std::mt19937 random(7);
    const auto runAs = [](AES_FORM::BLOCKS pfnBlocks, const aes_ctx_t& ctx, const Bytes& source, size_t nShift) {
        Bytes result(source.size());
        pfnBlocks(ctx, source.data() + nShift, result.data() + nShift, (source.size() - nShift) / gsk_aesBlockSize);
        return result;
    };
    for (const size_t nKeyLen : {16U, 24U, 32U}) {
        for (const size_t nBlocks : {0U, 1U, 2U, 7U, 8U, 9U, 15U, 16U, 17U, 18U, 1000U}) {
            const size_t nShift = random() % 16;
            SCOPED_TRACE(testing::Message() << nKeyLen << " " << nBlocks << " " << nShift);
            aes_ctx_t ctx;
            ASSERT_TRUE(aes_keyexpansion(RandomBytes(random, nKeyLen), ctx));
            const Bytes text = Part(Bytes(nShift) + RandomBytes(random, nBlocks * gsk_aesBlockSize), 0);
            const Bytes enciphered = runAs(g_aesByTable.pfnEncrypt, ctx, text, nShift);
            EXPECT_EQ(runAs(pInstructions->pfnEncrypt, ctx, text, nShift), enciphered);
            EXPECT_EQ(runAs(pInstructions->pfnDecrypt, ctx, enciphered, nShift), text);
            EXPECT_EQ(runAs(g_aesByTable.pfnDecrypt, ctx, enciphered, nShift), text);
            Bytes inPlace = enciphered;
            pInstructions->pfnDecrypt(ctx, inPlace.data() + nShift, inPlace.data() + nShift, nBlocks);
            std::fill_n(inPlace.begin(), nShift, uint8_t{0});
            EXPECT_EQ(inPlace, text);
        }
    }
}

} // namespace Marvane::FrameSift
