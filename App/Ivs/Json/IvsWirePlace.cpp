#include "Ivs/Json/IvsWirePlace.h"

#include <fmt/format.h>

#include <charconv>

#include "Io/EscapeBytes.h"

namespace Marvane::FrameSift {

namespace {

using nlohmann::ordered_json;

const ordered_json& Nothing()
{
    static const ordered_json s_nothing;
    return s_nothing;
}

// False if text does not begin with a byte in two hexadecimal digits.
bool HexByte(std::string_view text, char& chByte)
{
    uint8_t nValue = 0;
    if (text.size() < 2)
        return false;
    const auto result = std::from_chars(text.data(), text.data() + 2, nValue, 16);
    chByte = static_cast<char>(nValue);
    return result.ec == std::errc() && result.ptr == text.data() + 2;
}

} // namespace

void CJsonPlace::Fail(const std::string& text) const
{
    throw CIvsJsonError(fmt::format("{}: {}", m_name, text));
}

void CJsonPlace::RequireObject() const
{
    if (!m_pJson->is_object())
        Fail("is no object");
}

bool CJsonPlace::Has(std::string_view key) const
{
    return m_pJson->is_object() && !At(key).Json().is_null();
}

CJsonPlace CJsonPlace::At(std::string_view key) const
{
    const std::string name(key);
    std::string place = fmt::format("{}{}{}", m_name, m_name.empty() ? "" : ".", EscapeBytes(name));
    if (m_pJson->is_null())
        return {Nothing(), std::move(place)};
    RequireObject();
    const auto found = m_pJson->find(name);
    return {found == m_pJson->end() ? Nothing() : *found, std::move(place)};
}

size_t CJsonPlace::Size(size_t nMost) const
{
    if (m_pJson->is_null())
        return 0;
    if (!m_pJson->is_array())
        Fail("is no list");
    if (m_pJson->size() > nMost)
        Fail(fmt::format("{} entries are too many: at most {}", m_pJson->size(), nMost));
    return m_pJson->size();
}

CJsonPlace CJsonPlace::At(size_t nIndex) const
{
    return {m_pJson->is_array() && nIndex < m_pJson->size() ? (*m_pJson)[nIndex] : Nothing(),
            fmt::format("{}[{}]", m_name, nIndex)};
}

int64_t CJsonPlace::Number(int64_t nLowest, int64_t nHighest) const
{
    const auto fail = [&](const std::string& value) {
        Fail(fmt::format("{} does not fit: {} to {}", value, nLowest, nHighest));
    };
    if (!m_pJson->is_null() && !m_pJson->is_number_integer())
        Fail("is no whole number");
    // One above INT64_MAX would read as one below 0.
    if (m_pJson->is_number_unsigned() && m_pJson->get<uint64_t>() > INT64_MAX)
        fail(m_pJson->dump());
    const int64_t nValue = m_pJson->is_null() ? 0 : m_pJson->get<int64_t>();
    if (nValue < nLowest || nValue > nHighest)
        fail(std::to_string(nValue));
    return nValue;
}

std::string_view CJsonPlace::Text() const
{
    if (m_pJson->is_null())
        return {};
    if (!m_pJson->is_string())
        Fail("is no text");
    return m_pJson->get_ref<const std::string&>();
}

std::string CJsonPlace::UnescapedText() const
{
    std::string_view text = Text();
    std::string bytes;
    while (!text.empty()) {
        char chByte = text.front();
        size_t nTaken = 1;
        if (text.starts_with("\\\\"))
            nTaken = 2;
        else if (text.starts_with("\\x") && HexByte(text.substr(2), chByte))
            nTaken = 4;
        else if (chByte == '\\')
            Fail("a backslash stands for itself as \\\\, and for a byte as \\xNN");
        bytes += chByte;
        text.remove_prefix(nTaken);
    }
    return bytes;
}

} // namespace Marvane::FrameSift
