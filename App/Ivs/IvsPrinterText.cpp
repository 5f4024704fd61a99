#include <fmt/format.h>

#include <vector>

#include "Check/FindingText.h"
#include "Frames/CodeNames.h"
#include "Frames/FrameText.h"
#include "Ivs/IvsPrinter.h"
#include "Ivs/IvsPrinterLines.h"
#include "Ivs/IvsRecords.h"

namespace Marvane::FrameSift {

namespace {

std::string OrDash(const std::string& text)
{
    return text.empty() ? "-" : text;
}

template <class T>
std::string LinesOfAll(std::span<const T> records)
{
    std::string lines;
    for (const T& record : records)
        lines += LinesOf(record);
    return lines;
}

std::string RecordLines(KX_IVS_PARSE_TYPE eType, const void* pRecords, int nLen)
{
    switch (eType) {
    case IVS_TRACK:
        return LinesOfAll(RecordsOf<KX_IVS_OBJ>(pRecords, nLen));
    case IVS_TRACK_EX:
        return LinesOfAll(RecordsOf<KX_IVS_OBJ_EX>(pRecords, nLen));
    case IVS_TRACK_40:
        return LinesOfAll(RecordsOf<KX_IVS_COMMON_OBJ>(pRecords, nLen));
    case IVS_TRACK_A1:
        return LinesOfAll(RecordsOf<KX_IVS_OBJ_A0>(pRecords, nLen));
    case IVS_TRACK_A1_EX: {
        const auto wrapped = RecordsOf<KX_IVS_OBJ_ALL>(pRecords, nLen);
        return wrapped.empty() ? std::string() : LinesOfAll(ObjectsOf(wrapped[0]));
    }
    case IVS_TRACK_EX3:
        return LinesOfAll(RecordsOf<KX_IVS_TRACK_EX3_SCENE_POINTS_INFOR>(pRecords, nLen));
    case IVS_TRACK_ZOOP:
        return LinesOfAll(RecordsOf<KX_IVS_ZOOP_OBJ>(pRecords, nLen));
    case IVS_TRACK_B1:
        return LinesOfAll(RecordsOf<KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR>(pRecords, nLen));
    default:
        return {};
    }
}

class CIvsTextPrinter : public CIvsPrinter
{
public:
    void Take(KX_IVS_PARSE_TYPE eType, const void* pRecords, int nLen) override
    {
        const IVS_COUNT count = CountIvsRecords(eType, pRecords, nLen);
        m_nCount += count.nCount;
        m_pNoun = count.pNoun;
        m_lines += RecordLines(eType, pRecords, nLen);
    }

    std::string Finish(const IVS_FRAME& frame, const IVS_OUTCOME& outcome) override
    {
        std::string text = HeadText(frame);
        if (outcome.result)
            text += m_nCount == 0 ? ", nothing in it" : ", " + Counted(m_nCount, m_pNoun);
        if (outcome.nLeftOut > 0)
            text += fmt::format(" and {} left out", outcome.nLeftOut);
        const std::string error = IvsErrorAdvice(frame, outcome.result);
        const int nCode = outcome.result.value_or(0);
        if (!error.empty())
            text += "  ERROR: " + error + (nCode == 0 ? "" : fmt::format(" (code {})", nCode));
        text.append("\n").append(m_lines);
        m_lines.clear();
        m_nCount = 0;
        return text;
    }

private:
    static std::string HeadText(const IVS_FRAME& frame)
    {
        std::string text;
        if (frame.head)
            text = fmt::format("{}  seq {}  {}: ", OrDash(TimeText(frame.head->time)), frame.head->nSeq,
                               OrDash(SubTypeName(KX_FRAME_TYPE_DATA, frame.head->nSubType)));
        return text + fmt::format("{}, {}", frame.pFormat->name, Counted(frame.payload.size(), "byte"));
    }

    std::string m_lines;
    uint64_t m_nCount = 0;
    const char* m_pNoun = "";
};

} // namespace

std::unique_ptr<CIvsPrinter> MakeIvsTextPrinter()
{
    return std::make_unique<CIvsTextPrinter>();
}

} // namespace Marvane::FrameSift
