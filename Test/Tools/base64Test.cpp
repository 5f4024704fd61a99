#include "Tools/base64.h"

#include <string>

#include <gtest/gtest.h>

namespace Marvane::FrameSift {
namespace {

TEST(Base64, BothFamiliesRoundTrip)
{
    // RFC 4648, section 10, and the top of the alphabet.
    const struct
    {
        std::string bytes;
        std::string text;
    } rows[] = {{"", ""},
                {"f", "Zg=="},
                {"fo", "Zm8="},
                {"foo", "Zm9v"},
                {"foob", "Zm9vYg=="},
                {"fooba", "Zm9vYmE="},
                {"foobar", "Zm9vYmFy"},
                {"\xFF\xEF\xBE\xFF", "/+++/w=="}};
    for (const auto& row : rows) {
        const auto nLength = static_cast<unsigned int>(row.bytes.size());
        EXPECT_EQ(base64_encode(reinterpret_cast<const unsigned char*>(row.bytes.data()), nLength), row.text);
        EXPECT_EQ(sc_base64Encode(row.bytes.data(), static_cast<int>(nLength)), row.text);
        EXPECT_EQ(base64_decode(row.text), row.bytes);
        EXPECT_EQ(sc_base64Decode(row.text.data(), static_cast<int>(row.text.size())), row.bytes);
    }
}

TEST(Base64, EndOfText)
{
    const struct
    {
        std::string text;
        const char* pPlain;
        const char* pSkipping;
    } rows[] = {
        {"Zm9vY", "foo", "foo"},              // a single character left over
        {"Zm9vYm", "foob", "foob"},           // padding left out
        {"Zm8=Zm9v", "fo", "fo"},             // nothing counts behind the padding
        {"Zm9v-Zm9v", "foo", "foo"},          // the alphabet for URLs is another
        {"Zm9v\r\n Ym\tFy", "foo", "foobar"}, // line ends
        {"Zm9v\x80Zm9v", "foo", "foo"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(base64_decode(row.text), row.pPlain) << row.text;
        EXPECT_EQ(sc_base64Decode(row.text.data(), static_cast<int>(row.text.size())), row.pSkipping) << row.text;
    }
}

TEST(Base64, NothingGiven)
{
    EXPECT_EQ(base64_encode(nullptr, 3), "");
    EXPECT_EQ(sc_base64Encode(nullptr, 3) + sc_base64Encode("foo", 0) + sc_base64Encode("foo", -1), "");
    EXPECT_EQ(sc_base64Decode(nullptr, 4) + sc_base64Decode("Zm9v", 0) + sc_base64Decode("Zm9v", -1), "");
    EXPECT_EQ(_base64EncodeRaw(nullptr, nullptr) + _base64DecodeRaw(nullptr, nullptr), "");
}

} // namespace
} // namespace Marvane::FrameSift
