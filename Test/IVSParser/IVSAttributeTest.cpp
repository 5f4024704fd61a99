#include "IVSParser/IVSAttribute.h"

#include "IVSParser/IvsObjectBytes.h"
#include "Tools/BufferRead.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint8_t K = 0xEE; // marks what was not written to

KX_IVS_ATTRIBUTE KeptRecord()
{
    KX_IVS_ATTRIBUTE attr;
    std::memset(&attr, K, sizeof attr);
    attr.attrflag = 0;
    attr.arrtibute84.pointCount = 0; // the counts are judged even if the payload ends in front of them
    attr.arrtibute89.posCount = 0;
    std::memset(&attr.arrtibute8C, 0, 4);
    return attr;
}

// Reads attributes in a block of just their size.
int Parse(const Bytes& attributes, KX_IVS_ATTRIBUTE& attr)
{
    const Bytes bytes = Part(attributes, 0);
    CBufferRead pb(bytes.data(), LengthOf(bytes));
    return ParseAttribute(pb, attr, static_cast<int>(bytes.size()));
}

} // namespace

TEST(IVSAttribute, FillsRecordsAsFarAsThePayloadGoes)
{
    const Bytes places = IvsAttribute(0x84, {0, 2}); // two, without their numbers: for 0x85
    const Rows<uint8_t, Bytes, WRITTEN> rows = {
        {0x80, Counting(22, 1), At(0, Bytes{1, 2, 7, 8, 3, 4, 5, 6, 9, 10, 11, 12} + Counting(8, 15) + Bytes{13})},
        {0x80, Counting(18, 1), At(0, {1, 2, 7, 8, 3, 4, 5, 6, 9, 10, 11, 12, 15, 16, 17, 18, K, K, K, K, 13})},
        {0x81, Counting(17, 1) + Bytes{0xFB}, At(0, Counting(16, 1) + Bytes{2, 3, 0, 0})},
        {0x81, Counting(14, 1), At(0, Counting(14, 1))},
        {0x82, Bytes{5, 3, 'A', 'B', 'C', 0}, At(0, {5, 3, K, K, 'A', 'B', 'C'})},
        {0x82, Bytes{5, 5, 'A', 'B', 'C', 'D'}, At(0, {5, 5})},
        {0x82, Bytes{5, 253} + Bytes(248), At(0, {5, 253})},
        {0x83, Counting(18, 1), At(0, {1, K, K, K, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 13, 14, 15})},
        {0x83, Counting(2, 1), At(0, {1})},
        {0x84, Bytes{1, 2, 3, 0, 0, 0} + Counting(20, 7),
         At(0, {1, 2, 3}) + At(260, Counting(4, 7)) + At(4, Counting(16, 11))},
        {0x84, Bytes{1, 31, 3, 0, 0, 0} + Counting(12, 7),
         At(0, {1, 31, 3}) + At(260, Counting(4, 7)) + At(4, Counting(8, 11))},
        {0x84, Bytes{255, 1, 3, 0, 0, 0} + Counting(244), At(0, {255, 1, 3}) + At(260, Counting(244))},
        {0x85, Bytes{1, 9} + Counting(36, 1), At(0, {1, 9}) + At(4, Counting(24, 1))},
        {0x85, Counting(14, 1), At(0, {1, 2}) + At(4, Counting(12, 3))},
        {0x86, Counting(10, 1), At(0, {2, K, 3, 4, 5, 6, 7, 8})},
        {0x87, Counting(10, 1), At(0, Counting(8, 3) + Bytes{1, 2})},
        {0x87, Counting(6, 1), At(0, {3, 4, 5, 6, K, K, K, K, 1, 2})},
        {0x88, Counting(22, 1), At(0, Counting(10, 1) + Bytes{19, 20} + Counting(8, 11))},
        {0x88, Counting(14, 1), At(0, Counting(10, 1) + Bytes{K, K, 11, 12, 13, 14, 0, 0, 0, 255})},
        {0x88, Counting(2, 1), At(0, {1, 2}) + At(12, {0, 0, 0, 255, 0, 0, 0, 255})},
        {0x89, Counting(26, 1) + Bytes{2, 0, 0, 0} + Counting(8, 31),
         At(0, Bytes{2, K} + Counting(26, 1) + Counting(8, 31))},
        {0x89, Counting(26, 1) + Bytes{56, 0, 0, 0} + Counting(4, 31),
         At(0, Bytes{56, K} + Counting(26, 1) + Counting(4, 31))},
        {0x89, Counting(22, 1), At(2, Counting(22, 1))},
        {0x8C, Bytes{0, 1, 1, 1, 2, 0, 0, 0, 0, 0, 0} + Counting(43, 1),
         At(0, {1, 1, 1, 2}) + At(4, Counting(8, 1)) + At(36, Counting(8, 9)) + At(68, Counting(8, 17)) +
             At(100, Counting(16, 25))},
        {0x8C, Bytes{0, 4, 4, 4, 8, 0, 0, 0, 0, 0, 0, 1, 2, 3}, At(0, {4, 4, 4, 8, 1, 2})},
        {0x8C, Bytes{0, 4, 4, 4, 8, 0, 0, 0, 0, 0}, At(0, {4, 4, 4, 8})},
        {0x8E, Bytes{1, 28} + Counting(28, 'A'), At(0, Bytes{1, 28} + Counting(28, 'A'))},
        {0x8E, Bytes{1, 5, 'A', 'B', 'C', 'D'}, At(0, {1, 5})},
        {0x8E, Bytes{1, 29} + Bytes(32), At(0, {1, 29})},
        {0x90, Counting(6, 1), At(0, {3, 4, 5, 6})},
        {0x92, Counting(6, 1), At(0, {3, 4, 5, 6, 1, 2})},
        {0x92, Counting(2, 1), At(4, {1, 2})},
        {0x93, Counting(6, 1), At(0, {1, 2, 3, 4, 5, 6})},
        {0x94, Counting(10, 1), At(0, {1, 2, 3, 4, 5, 6, 7, K, 9, 10})},
        {0x97, Counting(6, 1), At(0, {1, K, K, K, 3, 4, 5, 6})},
        {0x97, Counting(2, 1), At(0, {1})},
    };
    for (const auto& [nType, payload, written] : rows) {
        const auto* pRow = std::find_if(std::begin(gsk_ivsAttributes), std::end(gsk_ivsAttributes),
                                        [&, n = nType](const IVS_ATTRIBUTE_ROW& row) { return row.nType == n; });
        KX_IVS_ATTRIBUTE attr = KeptRecord();
        EXPECT_EQ(Parse(places, attr), KX_SUCCESS);
        const Bytes kept = Part(IvsBytesOf(attr), pRow->nOffset, pRow->nSize);
        EXPECT_EQ(Parse(IvsAttribute(nType, payload), attr), KX_SUCCESS);
        EXPECT_EQ(Part(IvsBytesOf(attr), pRow->nOffset, pRow->nSize), kept + written)
            << int{nType} << testing::PrintToString(payload);
        EXPECT_EQ(attr.attrflag, 1U << 4 | 1U << (nType - 0x80));
    }
}

TEST(IVSAttribute, KnowsSeventeenTypes)
{
    KX_IVS_ATTRIBUTE attr{};
    for (int nType = 255; nType >= 0; --nType)
        EXPECT_EQ(Parse(IvsAttribute(static_cast<uint8_t>(nType), Bytes(18, 1)), attr), KX_SUCCESS) << nType;
    EXPECT_EQ(attr.attrflag, 0x9D53FFU);
    // 0x85 came in front of 0x84: a colour is announced, and not read.
    EXPECT_EQ((Fields{attr.arrtibute85.mainColorCount, attr.arrtibute85.color[0].mainColor}), (Fields{1, 0}));
}

TEST(IVSAttribute, Damage)
{
    const Bytes sound = IvsAttribute(0x90, Bytes(6));
    const auto wrap = [](const Bytes& attributes) { return IvsPlainObject(1, attributes); };
    const Rows<int, Bytes, const char*> rows = {
        {KX_SUCCESS, IvsAttribute(0x8F, Bytes(6)) + sound, ""},
        {KX_SUCCESS, sound + Bytes{0x80}, ""},
        {BAD, sound + IvsAttribute(0x80, Bytes(4)),
         "warn [ParseAttribute] attrtype len is wrong. attrtype = 128 ,attrtypeDataLen = 6\n"},
        {BAD, Bytes{0x8F, 0, 0, 0},
         "warn [ParseAttribute] attrtype len is wrong. attrtype = 143 ,attrtypeDataLen = 0\n"},
        {BAD, Bytes{0x8F, 8, 0, 0}, "warn [ParseAttribute] pAttributeData is null.\n"},
        {BAD, IvsAttribute(0x84, {0, 32}),
         "info [ParseAttribute84] arrtibute84.pointCount is not corret ,attr.arrtibute84.pointCount = 32 \n"},
        {BAD, IvsAttribute(0x84, {0, 3}) + IvsAttribute(0x85, {0, 22}),
         "info [ParseAttribute85] arrtibute85.mainColorCount is not corret ,attr.arrtibute84.pointCount = 3 \n"},
        {BAD, IvsAttribute(0x86, Bytes(6)), ""},
        {BAD, IvsAttribute(0x89, Bytes(26) + Bytes{57, 0, 0, 0}),
         "info [ParseAttribute84] arrtibute89.posCount is not corret ,attr.arrtibute89.posCount = 57 \n"},
        {KX_SUCCESS, IvsAttribute(0x89, Bytes(26) + Bytes{2, 0, 0, 0, 1, 1, 0, 0, 255, 255, 255, 255}),
         "info [ParseAttribute89] arrtibute89.feature[i] = 257 \n"
         "info [ParseAttribute89] arrtibute89.feature[i] = -1 \n"},
        {BAD, IvsAttribute(0x8C, {0, 5, 0, 0, 0, 0}), ""},
        {BAD, IvsAttribute(0x8C, {0, 0, 5, 0, 0, 0}), ""},
        {BAD, IvsAttribute(0x8C, {0, 0, 0, 5, 0, 0}), ""},
        {BAD, IvsAttribute(0x8C, {0, 0, 0, 0, 9, 0}), ""},
    };
    ExpectAnswers(wrap, rows);
}

} // namespace Marvane::FrameSift
