#include "Ivs/IvsListingSummary.h"

#include <fmt/format.h>

#include "Check/FindingText.h"
#include "Frames/CodeNames.h"
#include "Frames/FrameText.h"

namespace Marvane::FrameSift {

namespace {

std::string DataName(int32_t nSubType)
{
    const std::string name = SubTypeName(KX_FRAME_TYPE_DATA, nSubType);
    return name.empty() ? "of no subtype" : name;
}

} // namespace

void CIvsSummary::CountRecords(const IVS_COUNT& count)
{
    if (count.nCount > 0)
        m_recordsByNoun[count.pNoun] += count.nCount;
}

void CIvsSummary::CountPayload(const IVS_FRAME& frame, const std::string& error)
{
    ++m_nPayloads;
    ++m_payloadsByFormat[frame.pFormat->name];
    if (error.empty())
        return;
    ++m_nFailed;
    ++m_failures[error];
}

std::string CIvsSummary::Text(uint64_t nUnfinished) const
{
    std::string formats;
    for (const auto& [name, nCount] : m_payloadsByFormat)
        formats += fmt::format("{}{} {}", formats.empty() ? ": " : ", ", nCount, name);
    std::string records;
    for (const auto& [noun, nCount] : m_recordsByNoun)
        records += fmt::format("{}{} of {}s", records.empty() ? "" : ", ", nCount, noun);
    std::string text =
        fmt::format("metadata  {}{}\nrecords   {}\nfailures  {}\n", Counted(m_nPayloads, "payload"), formats,
                    records.empty() ? "none" : records, m_nFailed == 0 ? "none" : Counted(m_nFailed, "payload"));
    for (const auto& [error, nCount] : m_failures)
        text += fmt::format("          {}: {}\n", nCount, error);
    if (!m_othersBySubType.empty())
        text += fmt::format("not read  other data frames: {} (--as SUBTYPE=FORMAT reads a subtype)\n",
                            CountsText(m_othersBySubType, &DataName));
    if (nUnfinished > 0)
        text += fmt::format("end       {} wait for the rest of a frame\n", Counted(nUnfinished, "byte"));
    return text;
}

} // namespace Marvane::FrameSift
