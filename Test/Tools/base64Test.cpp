#include "Tools/base64.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {
namespace {

TEST(Base64, BothFamiliesRoundTrip)
{
    // RFC 4648, section 10, and the top of the alphabet.
    for (const auto& [bytes, text] : Rows<std::string, std::string>{{"", ""},
                                                                    {"f", "Zg=="},
                                                                    {"fo", "Zm8="},
                                                                    {"foo", "Zm9v"},
                                                                    {"foob", "Zm9vYg=="},
                                                                    {"fooba", "Zm9vYmE="},
                                                                    {"foobar", "Zm9vYmFy"},
                                                                    {"\xFF\xEF\xBE\xFF", "/+++/w=="}}) {
        const auto nLength = static_cast<unsigned int>(bytes.size());
        EXPECT_EQ(base64_encode(reinterpret_cast<const unsigned char*>(bytes.data()), nLength), text);
        EXPECT_EQ(sc_base64Encode(bytes.data(), static_cast<int>(nLength)), text);
        EXPECT_EQ(base64_decode(text), bytes);
        EXPECT_EQ(sc_base64Decode(text.data(), static_cast<int>(text.size())), bytes);
    }
}

TEST(Base64, EndOfText)
{
    for (const auto& [text, pPlain, pSkipping] :
         Rows<std::string, const char*, const char*>{{"Zm9vY", "foo", "foo"},     // a single character left over
                                                     {"Zm9vYm", "foob", "foob"},  // padding left out
                                                     {"Zm8=Zm9v", "fo", "fo"},    // nothing counts behind the padding
                                                     {"Zm9v-Zm9v", "foo", "foo"}, // the alphabet for URLs is another
                                                     {"Zm9v\r\n Ym\tFy", "foo", "foobar"}, // line ends
                                                     {"Zm9v\x80Zm9v", "foo", "foo"}}) {
        EXPECT_EQ(base64_decode(text), pPlain) << text;
        EXPECT_EQ(sc_base64Decode(text.data(), static_cast<int>(text.size())), pSkipping) << text;
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
