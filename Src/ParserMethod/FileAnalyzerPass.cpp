// What runs on the parse thread.
#include "Memory/TryAlloc.h"
#include "ParserMethod/FileAnalyzer.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

constexpr auto sc_sourcePath = "Src/ParserMethod/FileAnalyzer";
constexpr int sc_wholeProcess = 100;

} // namespace

// The address is a token for the callback, never the handle.
int CFileAnalyzer::OnFileInfo(KX_FILE_INFO* fileInfo)
{
    return m_pfnFileInfo != nullptr && !m_bEnded ? m_pfnFileInfo(this, fileInfo, m_pUserData) : 1;
}

void CFileAnalyzer::SendEndMark()
{
    if (m_pfnFileIndex != nullptr && !m_bEnded)
        m_pfnFileIndex(this, nullptr, nullptr, sc_wholeProcess, m_pUserData);
}

int CFileAnalyzer::InsideThreadProc()
{
    if (m_pFileAnalzyer == nullptr)
        return StoreError(KX_ERROR_FILE_TYPE_NOSUPPORT);
    return m_bBaseRead ? FastPass() : FullPass();
}

int CFileAnalyzer::FastPass()
{
    if (const int nType = m_nStreamType.load(std::memory_order_relaxed); nType == KX_STREAM_TYPE_UNKNOWN) {
        KX_WRITE_LOG(KX_LOG_LevelError, sc_sourcePath, "stream type %d is not support base analyze.\n", nType);
        return KX_ERROR_FILE_TYPE_NOSUPPORT;
    }
    const int nResult = BaseParseFile();
    int nProcess = 0;
    if (nResult == KX_SUCCESS && GetProcess(&nProcess) == KX_SUCCESS && nProcess == sc_wholeProcess)
        SendEndMark();
    return nResult;
}

int CFileAnalyzer::BaseParseFile()
{
    if (m_pFileAnalzyer == nullptr)
        return -1;
    int nResult = KX_ERROR_SYSTEM_OUT_OF_MEMORY; // memory that was not to be had shows as an exception up to here
    (void)TryAlloc([&] { nResult = m_pFileAnalzyer->BaseParseFile(m_opFile, this, m_pfnFileIndex != nullptr); });
    CloseFile();
    return StoreError(nResult);
}

int CFileAnalyzer::FullPass()
{
    int nResult = KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    const auto parse = [&] {
        if (m_nSliceStartPos < 0)
            return m_pFileAnalzyer->ParseFile(m_opFile, this);
        if (m_nSliceLength >= 1)
            return m_pFileAnalzyer->ParseSlice(m_opFile, this, m_nSliceStartPos, m_nSliceLength);
        return int{KX_SUCCESS}; // a slice of no bytes
    };
    (void)TryAlloc([&] { nResult = parse(); });
    // Ahead of the result, deliberately: who asks for the last error in the end mark sees the one before.
    SendEndMark();
    CloseFile();
    return StoreError(nResult);
}

} // namespace Marvane::FrameSift
