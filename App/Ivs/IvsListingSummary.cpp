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

std::string DamageLine(const IVS_STREAM_ACCOUNT& account)
{
    std::string damage;
    if (account.nDamagedFrames > 0)
        damage = Counted(account.nDamagedFrames, "damaged frame");
    if (account.nOutside > 0)
        damage += fmt::format("{}{} in no frame", damage.empty() ? "" : ", ", Counted(account.nOutside, "byte"));
    return damage.empty() ? damage : fmt::format("damage    {}; \"framesift check\" tells where\n", damage);
}

} // namespace

void CIvsSummary::CountRecords(const IVS_COUNT& count)
{
    if (count.nCount > 0)
        m_recordsByNoun[count.pNoun] += count.nCount;
}

void CIvsSummary::CountPayload(const IVS_FRAME& frame, const IVS_OUTCOME& outcome)
{
    ++m_nPayloads;
    m_nLeftOut += outcome.nLeftOut;
    ++m_payloadsByFormat[frame.pFormat->name];
    const std::string error = IvsErrorAdvice(frame, outcome.result);
    if (error.empty())
        return;
    ++m_nFailed;
    ++m_failures[error];
}

std::string CIvsSummary::Text(const IVS_STREAM_ACCOUNT& account) const
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
    if (m_nLeftOut > 0)
        text += fmt::format("left out  {}: a payload is shown up to {}\n", Counted(m_nLeftOut, "record"),
                            gsk_maxIvsRecords);
    text += DamageLine(account);
    if (!m_othersBySubType.empty())
        text += fmt::format("not read  other data frames: {} (--as SUBTYPE=FORMAT reads a subtype)\n",
                            CountsText(m_othersBySubType, &DataName));
    if (account.nUnfinished > 0)
        text += fmt::format("end       {} wait for the rest of a frame\n", Counted(account.nUnfinished, "byte"));
    return text;
}

} // namespace Marvane::FrameSift
