#include "Keys/KeyOption.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "Io/InputFile.h"

namespace Marvane::FrameSift {

namespace {

using Key = std::vector<uint8_t>;

constexpr const char* sc_name = "--key";
constexpr const char* sc_help =
    "AES key of 16, 24 or 32 bytes: HEX is 32, 48 or 64 hex digits; @FILE names a file that holds these digits or the "
    "bare bytes, and keeps the key out of the list of processes";
constexpr std::string_view sc_hexDigits = "0123456789abcdefABCDEF";
constexpr size_t sc_maxKeyFile = 4096; // 64 digits, and more white space than anybody needs

// Must not show the value, so it tells what would be right.
[[noreturn]] void Refuse(const std::string& text)
{
    throw CLI::ValidationError(sc_name, text);
}

bool IsKeySize(size_t nBytes)
{
    return nBytes == 16 || nBytes == 24 || nBytes == 32;
}

bool IsHex(std::string_view text)
{
    return text.find_first_not_of(sc_hexDigits) == std::string_view::npos;
}

uint8_t HexDigit(char chDigit)
{
    const size_t nPlace = sc_hexDigits.find(chDigit);
    return static_cast<uint8_t>(nPlace < 16 ? nPlace : nPlace - 6); // upper case stands behind lower case
}

std::optional<Key> ParseHex(std::string_view text)
{
    if (!IsHex(text) || text.size() % 2 != 0 || !IsKeySize(text.size() / 2))
        return std::nullopt;
    Key key;
    for (size_t n = 0; n < text.size(); n += 2)
        key.push_back(static_cast<uint8_t>(HexDigit(text[n]) << 4 | HexDigit(text[n + 1])));
    return key;
}

std::string ReadKeyFile(const std::string& path)
{
    CInputFile file(path);
    std::string bytes(sc_maxKeyFile, '\0');
    size_t nBytes = 0;
    // To the end, as a pipe may give its bytes one by one. A longer file is no key, so the rest does not matter.
    while (nBytes < bytes.size()) {
        const size_t nRead = file.Read({reinterpret_cast<uint8_t*>(bytes.data()) + nBytes, bytes.size() - nBytes});
        if (nRead == 0)
            break;
        nBytes += nRead;
    }
    bytes.resize(nBytes);
    return bytes;
}

Key KeyOfFile(const std::string& path)
{
    // Not a file's name, in all likelihood, and then an error line must not show it. "@./NAME" serves the odd file.
    if (ParseHex(path))
        Refuse("behind @ stands the name of a file, not the key");
    if (path.empty() || path == "-")
        Refuse("behind @ stands the name of a file");
    const std::string bytes = ReadKeyFile(path);
    const std::string_view text = std::string_view(bytes).substr(0, bytes.find_last_not_of(" \t\r\n") + 1);
    if (const auto key = ParseHex(text))
        return *key;
    // Digits and a line's end can add up to the size of a bare key. They are a key cut short, though.
    const bool bCutShort = text.size() < bytes.size() && IsHex(text);
    if (bCutShort || !IsKeySize(bytes.size()))
        Refuse("the file holds neither 16, 24 or 32 bytes nor 32, 48 or 64 hex digits");
    return {bytes.begin(), bytes.end()};
}

Key KeyOf(const std::string& text)
{
    if (text.starts_with('@'))
        return KeyOfFile(text.substr(1));
    const auto key = ParseHex(text);
    if (!key)
        Refuse(IsHex(text) ? "a key has 32, 48 or 64 hex digits, this text has " + std::to_string(text.size())
                           : "a key has 32, 48 or 64 hex digits and nothing else; a file's name stands behind @");
    return *key;
}

} // namespace

CLI::Option* AddKeyOption(CLI::App& verb, std::vector<uint8_t>& key)
{
    return verb
        .add_option_function<std::string>(
            sc_name, [&key](const std::string& text) { key = KeyOf(text); }, sc_help)
        ->type_name("HEX|@FILE");
}

} // namespace Marvane::FrameSift
