#include <algorithm>
#include <nlohmann/json.hpp>

#include "Frames/FrameFields.h"
#include "Frames/FramePrinter.h"
#include "Io/EscapeBytes.h"

namespace Marvane::FrameSift {

namespace {

using Json = nlohmann::ordered_json;

// Goes up when a field changes its meaning or goes away, not when one is added.
constexpr int sc_schemaVersion = 1;

Json JsonOf(const FIELD_VALUE& value)
{
    if (const auto* pNumber = std::get_if<int64_t>(&value))
        return *pNumber;
    const auto* pText = std::get_if<std::string>(&value);
    return pText == nullptr ? Json() : Json(*pText);
}

// "frameTime.nYear" becomes /frameTime/nYear.
Json::json_pointer PointerOf(std::string name)
{
    std::replace(name.begin(), name.end(), '.', '/');
    return Json::json_pointer("/" + name);
}

class CJsonPrinter : public CFramePrinter
{
public:
    explicit CJsonPrinter(const std::string& path) : m_file(EscapeBytes(path)) {}

    std::string Title() const override { return {}; }

    std::string Line(const LISTED_FRAME& listed) const override
    {
        Json object = {{"schema_version", sc_schemaVersion}, {"file", m_file}};
        for (const FRAME_FIELD& field : FrameFields())
            object[field.pName] = JsonOf(field.pfnValue(listed));
        Json& raw = object["raw"];
        for (const FRAME_FIELD& field : RawFrameFields())
            raw[PointerOf(field.pName)] = JsonOf(field.pfnValue(listed));
        return object.dump() + "\n";
    }

private:
    std::string m_file;
};

} // namespace

std::unique_ptr<CFramePrinter> MakeJsonPrinter(const std::string& path)
{
    return std::make_unique<CJsonPrinter>(path);
}

} // namespace Marvane::FrameSift
