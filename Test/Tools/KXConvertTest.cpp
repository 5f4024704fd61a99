#include "Tools/KXConvert.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {
namespace {

// The answers for codes 0 to 22, and whether all beyond give 0.
template <typename Convert>
std::string Answers(Convert convert)
{
    std::string digits;
    for (int code = 0; code <= 22; ++code)
        digits += std::to_string(convert(code));
    for (const int code : {-1, 23, 255, 256, 257})
        EXPECT_EQ(convert(code), 0) << code;
    return digits;
}

TEST(KXConvertCodes, ColourDescription)
{
    EXPECT_EQ(Answers(CKXConvert::ConvertHxxxColourPrimaries), "03000222040000000000000");
    EXPECT_EQ(Answers(CKXConvert::ConvertHxxxTransferCharacteristics), "05002050100000556080000");
    EXPECT_EQ(Answers(CKXConvert::ConvertHxxxMatrixCoeffs), "02000110033000000000000");
}

TEST(KXConvertCodes, WaveFormats)
{
    const int rows[][2] = {{1, 16},  {2, 13},  {6, 14},   {7, 10},   {17, 13},    {20, 25}, {64, 11}, {68, 8},
                           {80, 31}, {85, 33}, {101, 34}, {255, 26}, {16897, 15}, {0, 0},   {-1, 0},  {65536 + 1, 0}};
    for (const auto& row : rows)
        EXPECT_EQ(CKXConvert::WaveFormatToEncodeType(row[0]), row[1]) << row[0];

    for (const auto& [pName, nLen, nType] : Rows<const char*, int, int>{{"G711", 3, 0},
                                                                        {"G711", 4, 14},
                                                                        {"g711u", 5, 14},
                                                                        {"G726", 4, 0},
                                                                        {"G711", -1, 14},
                                                                        {"G7", -1, 0},
                                                                        {nullptr, 4, 0}})
        EXPECT_EQ(CKXConvert::WaveFormatToEncodeType(pName, nLen), nType) << nLen;
}

TEST(KXConvertBytes, Reversed)
{
    EXPECT_EQ(CKXConvert::IntSwapBytes(0x01020384U), 0x84030201U);
    EXPECT_EQ(CKXConvert::ShortSwapBytes(0x0182), 0x8201);
    EXPECT_EQ(CKXConvert::SwapWord(0x0182), 0x8201);
    EXPECT_EQ(CKXConvert::Int64SwapBytes(0x0102030405060788ULL), 0x8807060504030201ULL);
}

TEST(KXConvertText, UpperCaseAndExtension)
{
    char text[] = "az{`AZ\xE4z";
    CKXConvert::ToUpper(text, sizeof text - 2); // without the last letter
    EXPECT_STREQ(text, "AZ{`AZ\xE4z");
    CKXConvert::ToUpper(text, -1);
    CKXConvert::ToUpper(nullptr, 4);
    EXPECT_EQ(CKXConvert::GetExt("/a.b/c.tar.gz"), ".gz");
    EXPECT_EQ(CKXConvert::GetExt("plain"), "");
}

TEST(KXConvertText, UrlInItsParts)
{
    URLInfo info;
    ASSERT_TRUE(CKXConvert::ParseUrl("tvf://me:p@:ss@10.0.0.1:8000/dir/a.zoav", info));
    EXPECT_EQ(info.strUserName + " " + info.strPassword + " " + info.strIP + " " + info.strFileName,
              "me p@:ss 10.0.0.1 dir/a.zoav");
    EXPECT_EQ(info.nPort, 8000);
    ASSERT_TRUE(CKXConvert::ParseUrl("tvf://u:p@h:99999999999999999999x/", info)); // any port does, and no file
    EXPECT_EQ(info.strFileName, "");
}

TEST(KXConvertText, UrlWithAPartMissingIsRefused)
{
    URLInfo info;
    info.strIP = "untouched";
    for (const char* pUrl : {"", "tvf://", "xtvf://u:p@h:1/f", "tvf:/u:p@h:1/f", "tvf://u@h:1/f", "tvf://u:@h:1/f",
                             "tvf://:p@h:1/f", "tvf://u:p@:1/f", "tvf://u:p@h/f", "tvf://u:p@h:/f", "tvf://u:p@h:1",
                             "tvf://u:ph:1/f", "tvf://u:p@h:1/f:g", "tvf://@:/"})
        EXPECT_FALSE(CKXConvert::ParseUrl(pUrl, info)) << pUrl;
    EXPECT_FALSE(CKXConvert::ParseUrl(nullptr, info));
    EXPECT_EQ(info.strIP, "untouched");
}

} // namespace
} // namespace Marvane::FrameSift
