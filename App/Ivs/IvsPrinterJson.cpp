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
        // As text at once, which takes a fraction of the memory.
        m_records.append(m_records.empty() ? "" : ",").append(IvsRecordsToJson(eType, pRecords, nLen).dump());
    }

    std::string Finish(const IVS_FRAME& frame, const IVS_OUTCOME& outcome) override
    {
        Json object = {{"schema_version", sc_schemaVersion}, {"file", m_file}};
        const auto& head = frame.head;
        object["offset"] = head ? Json(head->nOffset) : Json();
        object["time"] = head ? TextOrNull(TimeText(head->time)) : Json();
        object["sequence"] = head ? Json(head->nSeq) : Json();
        object["subtype"] = head ? TextOrNull(SubTypeName(KX_FRAME_TYPE_DATA, head->nSubType)) : Json();
        object["format"] = frame.pFormat->name;
        object["result"] = outcome.result ? Json(*outcome.result) : Json();
        object["error"] = TextOrNull(IvsErrorText(frame, outcome.result));
        object["left_out"] = outcome.nLeftOut;
        std::string line = object.dump();
        line.back() = ','; // instead of the closing brace
        line.append("\"records\":[").append(m_records).append("]}\n");
        m_records.clear();
        return line;
    }

private:
    std::string m_file;
    std::string m_records;
};

} // namespace

std::unique_ptr<CIvsPrinter> MakeIvsJsonPrinter(const std::string& path)
{
    return std::make_unique<CIvsJsonPrinter>(path);
}

} // namespace Marvane::FrameSift
