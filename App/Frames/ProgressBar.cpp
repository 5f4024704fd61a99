#include "Frames/ProgressBar.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>

#include "Io/ErrorOutput.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint64_t sc_largeInput = uint64_t{64} * 1024 * 1024; // less is read before a bar could be looked at
constexpr auto sc_leastPause = std::chrono::milliseconds(200); // numbers that change faster cannot be read
constexpr double sc_mebibyte = 1024.0 * 1024.0;

// With the numbers behind it, the line has less than 80 columns.
constexpr size_t sc_width = 36;

// "0:05", "12:00", "1:00:00".
std::string LeftText(uint64_t nSeconds)
{
    const uint64_t nMinutes = nSeconds / 60;
    if (nMinutes < 60)
        return fmt::format("{}:{:02}", nMinutes, nSeconds % 60);
    return fmt::format("{}:{:02}:{:02}", nMinutes / 60, nMinutes % 60, nSeconds % 60);
}

} // namespace

CProgressBar::CProgressBar(uint64_t nTotal, bool bListingOnTerminal)
    : m_nTotal(nTotal), m_bShown(nTotal >= sc_largeInput && !bListingOnTerminal && isatty(STDERR_FILENO) == 1)
{}

CProgressBar::~CProgressBar()
{
    if (m_bShown)
        WriteError("\r\033[K");
}

void CProgressBar::Update(uint64_t nDone)
{
    if (!m_bShown)
        return;
    const auto now = CLOCK::now();
    if (now - m_drawn < sc_leastPause)
        return;
    m_drawn = now;
    const double dSeconds = std::chrono::duration<double>(now - m_begin).count();
    WriteError(fmt::format("\r{}\033[K", ProgressText(nDone, m_nTotal, dSeconds)));
}

std::string ProgressText(uint64_t nDone, uint64_t nTotal, double dSeconds)
{
    nDone = std::min(nDone, nTotal); // the file may have grown
    const double dShare = nTotal == 0 ? 1 : static_cast<double>(nDone) / static_cast<double>(nTotal);
    const auto nFilled = static_cast<size_t>(dShare * static_cast<double>(sc_width));
    std::string text = fmt::format("[{}{}] {:3} %", std::string(nFilled, '#'), std::string(sc_width - nFilled, ' '),
                                   static_cast<int>(dShare * 100));
    if (nDone == 0 || dSeconds <= 0)
        return text;
    const double dRate = static_cast<double>(nDone) / dSeconds;
    const double dLeft = static_cast<double>(nTotal - nDone) / dRate;
    text += fmt::format("  {:.1f} MiB/s", dRate / sc_mebibyte);
    constexpr double sc_mostSeconds = 100 * 3600.0; // a stalled disk; more digits tell nothing
    if (dLeft < sc_mostSeconds)
        text += fmt::format("  {} left", LeftText(static_cast<uint64_t>(std::llround(dLeft))));
    return text;
}

} // namespace Marvane::FrameSift
