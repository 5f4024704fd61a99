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

// All that asks throws CIvsJsonError if the JSON is of another form.
class CJsonPlace
{
public:
    // Borrows json.
    CJsonPlace(const nlohmann::ordered_json& json, std::string name) : m_pJson(&json), m_name(std::move(name)) {}

    [[noreturn]] void Fail(const std::string& text) const;

    // Of an object. What is not there, or null, reads as "nothing", which is 0, "" or an empty list or object.
    bool Has(std::string_view key) const;
    CJsonPlace At(std::string_view key) const;
    void RequireObject() const;

    // Of a list.
    size_t Size(size_t nMost) const;
    CJsonPlace At(size_t nIndex) const;

    int64_t Number(int64_t nLowest, int64_t nHighest) const;
    std::string_view Text() const;
    // Text with \xNN and \\ put back to bytes.
    std::string UnescapedText() const;

    const nlohmann::ordered_json& Json() const { return *m_pJson; }
    const std::string& Name() const { return m_name; }

private:
    const nlohmann::ordered_json* m_pJson;
    std::string m_name;
};

} // namespace Marvane::FrameSift

#endif
