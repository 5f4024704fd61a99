#include "Mux/Track.h"

#include <charconv>

#include "FrameWriter/ExtHeads.h"
#include "Io/AppError.h"
#include "Mux/CodecTable.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint64_t sc_usPerSec = 1000000;
constexpr uint32_t sc_maxRate = 255;   // one byte on the wire
constexpr uint32_t sc_maxWord = 65535; // two bytes on the wire

std::optional<uint32_t> ParseWord(std::string_view text)
{
    uint32_t nValue = 0;
    const char* pEnd = text.data() + text.size();
    const auto result = std::from_chars(text.data(), pEnd, nValue);
    if (result.ec != std::errc() || result.ptr != pEnd || nValue == 0 || nValue > sc_maxWord)
        return std::nullopt;
    return nValue;
}

} // namespace

std::optional<FRAME_RATE> ParseFrameRate(std::string_view text)
{
    const size_t nSlash = text.find('/');
    const auto value = ParseWord(text.substr(0, nSlash));
    const auto denominator = nSlash == std::string_view::npos ? 1 : ParseWord(text.substr(nSlash + 1));
    if (!value || !denominator || *value > sc_maxRate * *denominator)
        return std::nullopt;
    return FRAME_RATE{*value, *denominator};
}

std::optional<PICTURE_SIZE> ParsePictureSize(std::string_view text)
{
    const size_t nCross = text.find('x');
    if (nCross == std::string_view::npos)
        return std::nullopt;
    const auto width = ParseWord(text.substr(0, nCross));
    const auto height = ParseWord(text.substr(nCross + 1));
    if (!width || !height)
        return std::nullopt;
    return PICTURE_SIZE{*width, *height};
}

const MediaUnit* CTrack::Front()
{
    while (!m_bFront) {
        if (!m_source.Next(m_unit))
            return nullptr;
        m_bFront = Accept(m_unit);
        m_nLeftOut += m_bFront ? 0 : 1;
    }
    return &m_unit;
}

void CTrack::Pop()
{
    ++m_nUnits;
    m_nKeyUnits += m_unit.bKey ? 1 : 0;
    m_nDueUs = DueAfter(m_unit);
    m_bFront = false;
}

CVideoTrack::CVideoTrack(CUnitSource& source, FRAME_RATE rate, std::optional<PICTURE_SIZE> size)
    : CTrack(source), m_rate(rate), m_size(size)
{}

bool CVideoTrack::Accept(MediaUnit& unit)
{
    if (m_size) {
        unit.nWidth = m_size->nWidth;
        unit.nHeight = m_size->nHeight;
    }
    return unit.nWidth != 0 && unit.nHeight != 0;
}

uint64_t CVideoTrack::DueAfter(const MediaUnit&)
{
    return Units() * sc_usPerSec * m_rate.nDenominator / m_rate.nValue;
}

bool CAudioTrack::Accept(MediaUnit& unit)
{
    if (!SampleTypeOf(unit.nSamplesPerSec))
        throw CAppError(EXIT_CODE::Format, Source().File().Name() + ": a sample rate of " +
                                               std::to_string(unit.nSamplesPerSec) +
                                               " Hz has no code; those that have one: " + SampleRates());
    return true;
}

uint64_t CAudioTrack::DueAfter(const MediaUnit& unit)
{
    if (unit.nSamplesPerSec != m_nSamplesPerSec) {
        if (m_nSamplesPerSec != 0)
            m_nBaseUs += m_nSamples * sc_usPerSec / m_nSamplesPerSec;
        m_nSamples = 0;
        m_nSamplesPerSec = unit.nSamplesPerSec;
    }
    m_nSamples += unit.nSamples;
    return m_nBaseUs + m_nSamples * sc_usPerSec / m_nSamplesPerSec;
}

} // namespace Marvane::FrameSift
