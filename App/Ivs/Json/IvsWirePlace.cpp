#include "Ivs/Json/IvsWirePlace.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>

#include "Io/EscapeBytes.h"

namespace Marvane::FrameSift {

namespace {

using nlohmann::ordered_json;

const ordered_json& Nothing()
{
    static const ordered_json s_nothing;
    return s_nothing;
}

// Whole numbers that no integer holds are read as one with a fraction.
bool IsHuge(const ordered_json& json)
{
    return json.is_number_float() && std::abs(json.get<double>()) >= 0x1p63;
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

std::string ShortName(std::string_view bytes, size_t nMost)
{
    if (bytes.size() <= nMost)
        return EscapeBytes(bytes);
    while (nMost > 0 && (static_cast<uint8_t>(bytes[nMost]) & 0xC0) == 0x80) // inside of a character
        --nMost;
    return EscapeBytes(bytes.substr(0, nMost)).append("...");
}

void CJsonPlace::Fail(const std::string& text) const
{
    throw CIvsJsonError(fmt::format("{}: {}", m_name, text));
}

void CJsonPlace::RequireObject() const
{
    if (!m_pJson->is_object())
        Fail("is no object");
}

bool CJsonPlace::IsMissing() const
{
    return m_pJson == &Nothing();
}

void CJsonPlace::RequireGiven() const
{
    if (IsMissing())
        Fail("is missing");
}

bool CJsonPlace::Has(std::string_view key) const
{
    return m_pJson->is_object() && m_pJson->contains(key);
}

CJsonPlace CJsonPlace::At(std::string_view key) const
{
    const std::string name(key);
    std::string place = fmt::format("{}{}{}", m_name, m_name.empty() ? "" : ".", ShortName(name));
    if (IsMissing())
        return {Nothing(), std::move(place)};
    RequireObject();
    const auto found = m_pJson->find(name);
    return {found == m_pJson->end() ? Nothing() : *found, std::move(place)};
}

size_t CJsonPlace::Size(size_t nMost) const
{
    if (IsMissing())
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
    if (IsHuge(*m_pJson))
        fail(m_pJson->dump());
    if (!IsMissing() && !m_pJson->is_number_integer())
        Fail("is no whole number");
    // One above INT64_MAX would read as one below 0.
    if (m_pJson->is_number_unsigned() && m_pJson->get<uint64_t>() > INT64_MAX)
        fail(m_pJson->dump());
    const int64_t nValue = IsMissing() ? 0 : m_pJson->get<int64_t>();
    if (nValue < nLowest || nValue > nHighest)
        fail(std::to_string(nValue));
    return nValue;
}

std::string_view CJsonPlace::Text() const
{
    if (IsMissing())
        return {};
    if (!m_pJson->is_string())
        Fail("is no text");
    return m_pJson->get_ref<const std::string&>();
}

std::string CJsonPlace::UnescapedText() const
{
    std::string_view text = m_pJson->is_null() ? std::string_view() : Text();
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
