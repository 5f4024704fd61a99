#include "Frames/FrameReading.h"

#include <algorithm>

#include "Frames/CodeNames.h"
#include "Io/AppError.h"

namespace Marvane::FrameSift {

namespace {

// Several frames in a row, or blocks of hb, must be there at once for the older formats to show: of a pipe that gives its
// bytes in crumbs so much is awaited. What comes behind is handed on as it comes.
constexpr size_t sc_leastAtFirst = size_t{256} * 1024;

} // namespace

CFrameReading::CFrameReading(const std::string& path, int32_t nChunk, std::span<const uint8_t> key,
                             bool bListingOnTerminal, int32_t nType)
    : m_input(path),
      m_progress(m_input.Size(), bListingOnTerminal),
      m_chunk(static_cast<size_t>(nChunk)),
      m_source(nType),
      m_bFixed(nType != KX_STREAM_TYPE_UNKNOWN)
{
    if (!key.empty())
        JudgeResult(m_source.SetKey(key));
}

bool CFrameReading::ReadChunk()
{
    if (m_bEnd)
        return false;
    const size_t nRead = Read();
    m_nBytes += nRead;
    m_start.Take(std::span(m_chunk).first(nRead));
    m_bEnd = nRead == 0;
    JudgeResult(m_bEnd ? m_source.Flush() : m_source.Feed(std::span(m_chunk).first(nRead)));
    return true;
}

size_t CFrameReading::Read()
{
    if (m_nBytes > 0)
        return m_input.Read(m_chunk);
    return m_input.ReadAtLeast(m_chunk, std::min(m_chunk.size(), sc_leastAtFirst));
}

bool CFrameReading::Next(LISTED_FRAME& listed)
{
    const bool bNext = m_source.Next(listed);
    m_bAnyFrame = m_bAnyFrame || bNext;
    return bNext;
}

void CFrameReading::RequireFormat()
{
    if (m_nBytes == 0)
        throw CAppError(EXIT_CODE::Format, m_input.Name() + " is empty");
    if (m_bAnyFrame)
        return;
    const int32_t nType = StreamType();
    if (NeedsFrame(nType, m_bFixed))
        throw CAppError(EXIT_CODE::Format, m_input.Name() + ": " + NoFrameText(nType, m_nBytes));
    if (nType == KX_STREAM_TYPE_UNKNOWN)
        throw CAppError(EXIT_CODE::Format, m_input.Name() + ": " + m_start.NoFormatText(m_nBytes));
}

void CFrameReading::JudgeResult(int nResult)
{
    if (nResult == KX_SUCCESS || nResult == KX_ERROR_UNGET_STREAM_TYPE)
        return; // the latter asks for more bytes
    const int32_t nType = StreamType();
    if (nResult == KX_ERROR_STREAM_NOSUPPORT)
        throw CAppError(EXIT_CODE::Format, m_input.Name() + " is a stream of type " + StreamTypeName(nType) + " (" +
                                               std::to_string(nType) + "), which is not supported");
    if (nResult == KX_ERROR_SYSTEM_OUT_OF_MEMORY)
        throw CAppError(EXIT_CODE::Io, "out of memory while reading " + m_input.Name());
    throw CAppError(EXIT_CODE::Io, "parsing " + m_input.Name() + " failed with code " + std::to_string(nResult));
}

} // namespace Marvane::FrameSift
