// A place in a JSON text that a payload is made from, which knows its name for the messages.
#ifndef FRAMESIFT_APP_IVS_JSON_IVSWIREPLACE_H
#define FRAMESIFT_APP_IVS_JSON_IVSWIREPLACE_H

#include <cstdint>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "Ivs/Json/IvsWire.h"

namespace Marvane::FrameSift {

// For messages: escaped, and cut if it is longer than that many bytes.
std::string ShortName(std::string_view bytes, size_t nMost = 60);

// All that asks throws CIvsJsonError if the JSON is of another form.
class CJsonPlace
{
public:
    // Borrows json.
    CJsonPlace(const nlohmann::ordered_json& json, std::string name) : m_pJson(&json), m_name(std::move(name)) {}

    [[noreturn]] void Fail(const std::string& text) const;

    // What is not there reads as 0, "" or an empty list or object. What is null is there, and of another form.
    bool IsMissing() const;
    void RequireGiven() const;

    // Of an object.
    bool Has(std::string_view key) const;
    CJsonPlace At(std::string_view key) const;
    void RequireObject() const;

    // Of a list.
    size_t Size(size_t nMost) const;
    CJsonPlace At(size_t nIndex) const;

    int64_t Number(int64_t nLowest, int64_t nHighest) const;
    std::string_view Text() const;
    // Text with \xNN and \\ put back to bytes. Here null is "": so a text is printed that a payload did not bring.
    std::string UnescapedText() const;

    const nlohmann::ordered_json& Json() const { return *m_pJson; }
    const std::string& Name() const { return m_name; }

private:
    const nlohmann::ordered_json* m_pJson;
    std::string m_name;
};

} // namespace Marvane::FrameSift

#endif
