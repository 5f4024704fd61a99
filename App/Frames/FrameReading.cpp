#include "Frames/FrameReading.h"

#include "Frames/CodeNames.h"
#include "Io/AppError.h"

namespace Marvane::FrameSift {

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
    const size_t nRead = m_input.Read(m_chunk);
    m_nBytes += nRead;
    m_bEnd = nRead == 0;
    JudgeResult(m_bEnd ? m_source.Flush() : m_source.Feed(std::span(m_chunk).first(nRead)));
    return true;
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
    if (m_bFixed)
        throw CAppError(EXIT_CODE::Format, m_input.Name() + ": no frame of a stream of type " +
                                               StreamTypeName(StreamType()) + " (" + std::to_string(StreamType()) +
                                               ") in " + std::to_string(m_nBytes) + " bytes");
    if (StreamType() != KX_STREAM_TYPE_UNKNOWN)
        return;
    throw CAppError(EXIT_CODE::Format,
                    m_input.Name() + ": no known stream format in " + std::to_string(m_nBytes) + " bytes");
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
