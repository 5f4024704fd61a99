#include "Check/NumberWatch.h"

#include <algorithm>

namespace Marvane::FrameSift {

namespace {

// How far behind the highest number a late one may be. Recordings put one behind the other step back further.
constexpr uint32_t sc_window = 16;
constexpr uint32_t sc_regularRun = 4;

// Numbers wrap at 32 bits; of the two ways from one to the other, the shorter one was gone.
int32_t Ahead(uint32_t nSeq, uint32_t nFrom)
{
    return static_cast<int32_t>(nSeq - nFrom);
}

bool IsSeen(uint32_t nSeq, uint32_t nLast, uint32_t nRun)
{
    return nLast - nSeq < nRun;
}

} // namespace

void CNumberWatch::Follow(const FrameInfo& frame, const FRAME_MARK& mark)
{
    if (frame.totalChannels != 0)
        return;
    for (LINE& line : m_lines) {
        if (line.nFrameType == mark.nFrameType)
            TakeNumber(line, mark);
        else
            NoteOther(line, mark);
    }
}

void CNumberWatch::Finish()
{
    for (LINE& line : m_lines) {
        if (line.back && IsSeen(line.back->nSeq, line.last->nSeq, line.nRun))
            Tell(FINDING_KIND::RepeatedNumber, line, *line.back);
        else if (line.back)
            Restart(line, *line.back);
        if (!line.gaps.empty())
            line.gaps.back().bConfirmed = true;
        SettleGaps(line, 0);
    }
}

bool CNumberWatch::IsRegular(const LINE& line)
{
    return line.nFrameType == KX_FRAME_TYPE_VIDEO || line.nRun >= sc_regularRun;
}

bool CNumberWatch::IsOwnNumbering(const LINE& line)
{
    return std::all_of(line.others.begin(), line.others.end(),
                       [](const OTHER_KIND& other) { return !other.bSeen || other.bApart; });
}

void CNumberWatch::NoteOther(LINE& line, const FRAME_MARK& mark)
{
    OTHER_KIND& other = line.others.at(static_cast<size_t>(mark.nFrameType));
    other.bSeen = true;
    other.bSinceLast = true;
    if (other.bApart || Ahead(mark.nSeq, line.nHighestFilled) <= 0)
        return;
    ++line.nFilled;
    line.nHighestFilled = mark.nSeq;
}

void CNumberWatch::TakeNumber(LINE& line, const FRAME_MARK& mark)
{
    if (line.back)
        JudgeBack(line, mark);
    const int32_t nStep = line.last ? Ahead(mark.nSeq, line.last->nSeq) : 1;
    if (nStep == 1) {
        ++line.nRun;
        if (!line.gaps.empty())
            line.gaps.back().bConfirmed = true;
        ProveApart(line);
        Advance(line, mark);
    } else if (nStep > 1) {
        OpenGap(line, mark);
        line.nRun = 1;
        Advance(line, mark);
    } else if (nStep == 0) {
        Tell(FINDING_KIND::RepeatedNumber, line, mark);
    } else if (!FillGap(line, mark)) {
        line.back = mark;
    }
}

void CNumberWatch::Advance(LINE& line, const FRAME_MARK& mark)
{
    line.last = mark;
    line.nFilled = 0;
    line.nHighestFilled = mark.nSeq;
    for (OTHER_KIND& other : line.others)
        other.bSinceLast = false;
    SettleGaps(line, sc_window);
}

// Numbered together, a frame between two neighbours would have had the number of the second one.
void CNumberWatch::ProveApart(LINE& line)
{
    for (OTHER_KIND& other : line.others)
        other.bApart = other.bApart || (line.last && other.bSinceLast);
    for (LINE& other : m_lines) {
        if (line.others[static_cast<size_t>(other.nFrameType)].bApart)
            other.others[static_cast<size_t>(line.nFrameType)].bApart = true;
    }
}

void CNumberWatch::OpenGap(LINE& line, const FRAME_MARK& mark)
{
    if (!line.gaps.empty() && !line.gaps.back().bConfirmed)
        line.gaps.pop_back();
    const uint32_t nLeftOut = mark.nSeq - line.last->nSeq - 1;
    const uint32_t nFilled = Ahead(mark.nSeq, line.nHighestFilled) > 0 ? line.nFilled : 0;
    const bool bVideo = line.nFrameType == KX_FRAME_TYPE_VIDEO;
    const bool bOwnKind = IsOwnNumbering(line);
    if (nLeftOut == nFilled || !IsRegular(line) || (!bVideo && !bOwnKind))
        return;
    line.gaps.push_back({*line.last, mark, nLeftOut - nFilled, bOwnKind, bVideo, {}});
}

bool CNumberWatch::FillGap(LINE& line, const FRAME_MARK& mark)
{
    if (line.last->nSeq - mark.nSeq > sc_window)
        return false;
    for (GAP& gap : line.gaps) {
        if (Ahead(mark.nSeq, gap.before.nSeq) <= 0 || Ahead(gap.after.nSeq, mark.nSeq) <= 0)
            continue;
        const bool bNew = std::find(gap.late.begin(), gap.late.end(), mark.nSeq) == gap.late.end();
        Tell(bNew ? FINDING_KIND::OutOfOrder : FINDING_KIND::RepeatedNumber, line, mark);
        if (bNew)
            gap.late.push_back(mark.nSeq);
        return true;
    }
    return false;
}

// A single step back, and the numbers go on as if it had not been: a stray frame. Else they begin anew there.
void CNumberWatch::JudgeBack(LINE& line, const FRAME_MARK& next)
{
    const FRAME_MARK back = *line.back;
    line.back.reset();
    const int32_t nStep = Ahead(next.nSeq, line.last->nSeq);
    const bool bSeen = IsSeen(back.nSeq, line.last->nSeq, line.nRun);
    if (nStep >= 1 && nStep <= static_cast<int32_t>(sc_window))
        Tell(bSeen ? FINDING_KIND::RepeatedNumber : FINDING_KIND::OutOfOrder, line, back);
    else
        Restart(line, back);
}

// By value: the line holds it.
void CNumberWatch::Restart(LINE& line, FRAME_MARK mark)
{
    SettleGaps(line, 0);
    Tell(FINDING_KIND::SequenceRestart, line, mark);
    line = LINE{line.nFrameType};
    for (LINE& other : m_lines)
        other.others[static_cast<size_t>(line.nFrameType)] = {};
    line.nRun = 1;
    Advance(line, mark);
}

// Those that no number within nWindow can fill any more.
void CNumberWatch::SettleGaps(LINE& line, uint32_t nWindow)
{
    while (!line.gaps.empty() && line.last->nSeq - line.gaps.front().after.nSeq >= nWindow) {
        const GAP& gap = line.gaps.front();
        const auto nLate = static_cast<uint32_t>(gap.late.size());
        if (gap.bConfirmed && gap.nLost > nLate) {
            FINDING finding = FindingBetween(FINDING_KIND::LostFrames, gap.before, gap.after);
            finding.nLost = gap.nLost - nLate;
            finding.nLostType = gap.bOwnKind ? line.nFrameType : int32_t{KX_FRAME_TYPE_UNKNOWN};
            m_report.lostByType[finding.nLostType] += finding.nLost;
            m_report.findings.Add(finding);
        }
        line.gaps.pop_front();
    }
}

void CNumberWatch::Tell(FINDING_KIND eKind, const LINE& line, const FRAME_MARK& mark)
{
    if (IsRegular(line) || !line.gaps.empty()) // a gap was judged in a regular run
        m_report.findings.Add(FindingBetween(eKind, *line.last, mark));
}

} // namespace Marvane::FrameSift
