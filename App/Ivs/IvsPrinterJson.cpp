#include <nlohmann/json.hpp>

#include "Frames/CodeNames.h"
#include "Frames/FrameText.h"
#include "Io/EscapeBytes.h"
#include "Ivs/IvsPrinter.h"
#include "Ivs/Json/IvsJson.h"

namespace Marvane::FrameSift {

namespace {

using Json = nlohmann::ordered_json;

// Goes up when a field changes its meaning or goes away, not when one is added.
constexpr int sc_schemaVersion = 1;

Json TextOrNull(std::string text)
{
    return text.empty() ? Json() : Json(std::move(text));
}

class CIvsJsonPrinter : public CIvsPrinter
{
public:
    explicit CIvsJsonPrinter(const std::string& path) : m_file(EscapeBytes(path)) {}

    void Take(KX_IVS_PARSE_TYPE eType, const void* pRecords, int nLen) override
    {
        m_records.push_back(IvsRecordsToJson(eType, pRecords, nLen));
    }

    std::string Finish(const IVS_FRAME& frame, std::optional<int> result) override
    {
        Json object = {{"schema_version", sc_schemaVersion}, {"file", m_file}};
        const auto& head = frame.head;
        object["offset"] = head ? Json(head->nOffset) : Json();
        object["time"] = head ? TextOrNull(TimeText(head->time)) : Json();
        object["sequence"] = head ? Json(head->nSeq) : Json();
        object["sub_type"] = head ? TextOrNull(SubTypeName(KX_FRAME_TYPE_DATA, head->nSubType)) : Json();
        object["format"] = frame.pFormat->name;
        object["result"] = result ? Json(*result) : Json();
        object["error"] = TextOrNull(IvsErrorText(frame, result));
        object["records"] = std::move(m_records);
        m_records = Json::array();
        return object.dump() + "\n";
    }

private:
    std::string m_file;
    Json m_records = Json::array();
};

} // namespace

std::unique_ptr<CIvsPrinter> MakeIvsJsonPrinter(const std::string& path)
{
    return std::make_unique<CIvsJsonPrinter>(path);
}

} // namespace Marvane::FrameSift
