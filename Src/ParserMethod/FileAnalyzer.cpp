#include "ParserMethod/FileAnalyzer.h"

#include "IAnalyzer/ParamType.h"
#include "Memory/TryAlloc.h"
#include "ParserMethod/DecryptParam.h"
#include "Tools/FileFactory.h"

namespace Marvane::FrameSift {

namespace {

constexpr int sc_windowSize = 16384;
constexpr int sc_wholeProcess = 100;

} // namespace

CFileAnalyzer::~CFileAnalyzer()
{
    Uninit();
}

int CFileAnalyzer::Uninit()
{
    StopParse();
    CloseThread();
    CloseFile();
    for (KX_DECRYPT_PARAM& param : m_DecryptParam)
        FreeDecryptParam(param);
    m_pUserData = nullptr;
    m_pfnFileIndex = nullptr;
    m_pFileAnalzyer.reset();
    return KX_SUCCESS;
}

void CFileAnalyzer::Destroy()
{
    if (!IsOwnThread()) {
        delete this;
        return;
    }
    EndCallBacks();
    DeleteWhenDone();
}

void CFileAnalyzer::EndCallBacks()
{
    m_bEnded = true;
    if (IsOwnThread()) // elsewhere the parser may be about to be replaced
        StopParse();
}

void CFileAnalyzer::StopParse()
{
    if (m_pFileAnalzyer != nullptr)
        m_pFileAnalzyer->StopParse();
}

int CFileAnalyzer::StoreError(int nResult)
{
    m_errorType.SetErrorType(nResult);
    return nResult;
}

int CFileAnalyzer::InitEx(int nType, const char* fileName)
{
    if (fileName == nullptr)
        return KX_ERROR_PARAMETER;
    m_nStreamType.store(nType, std::memory_order_relaxed);
    if (const int nResult = m_logicData.Init(sc_windowSize); nResult != KX_SUCCESS)
        return nResult;
    return TryAlloc([&] { m_FileName = fileName; }) ? KX_SUCCESS : KX_ERROR_SYSTEM_OUT_OF_MEMORY;
}

int CFileAnalyzer::Init(int nType, const char* fileName, fFileIndex fileIndex, fFileInfo fileInfo, void* userData)
{
    m_nStreamType.store(nType, std::memory_order_relaxed);
    if (const int nResult = m_logicData.Init(sc_windowSize); nResult != KX_SUCCESS)
        return nResult;
    return Start(fileName, fileIndex, fileInfo, userData);
}

int CFileAnalyzer::FileParse(fFileIndex fileIndex, fFileInfo fileInfo, void* userData)
{
    if (IsOwnThread())
        return StoreError(KX_ERROR_THREAD_CREATE_FAILED);
    // Ahead of all else: the pass uses the parser, the file and the callbacks.
    StopParse();
    CloseThread();
    return Start(m_FileName.c_str(), fileIndex, fileInfo, userData);
}

int CFileAnalyzer::Start(const char* fileName, fFileIndex fileIndex, fFileInfo fileInfo, void* userData)
{
    m_pfnFileIndex = fileIndex;
    m_pfnFileInfo = fileInfo;
    m_pUserData = userData;
    m_opFile = OpenFile(fileName);
    if (m_opFile.get() == nullptr)
        return StoreError(KX_ERROR_SYSTEM_OUT_OF_MEMORY);
    if (!IsOpen())
        return StoreError(KX_ERROR_FILE_OPEN);
    if (!CreateFileAnalzyer() || m_pFileAnalzyer == nullptr)
        return StoreError(KX_ERROR_FILE_TYPE_NOSUPPORT);
    // Destroyed by another thread meanwhile: a pass would begin that nobody wants.
    if (m_bEnded)
        return KX_ERROR_INVALID_HANDLE;
    return BeginThread() ? int{KX_SUCCESS} : StoreError(KX_ERROR_THREAD_CREATE_FAILED);
}

IFileManipPtr CFileAnalyzer::OpenFile(const char* fileName) const
{
    return CFileFactory::createFileManipObj(fileName, IFileManipulate::READ_ONLY, m_nPathEncodeType);
}

void CFileAnalyzer::CloseFile()
{
    if (IsOpen())
        m_opFile->CloseFile();
}

// One negative value is enough to ignore both.
int CFileAnalyzer::SetSlice(int64_t sliceoffset, int64_t slicesize)
{
    if (sliceoffset >= 0 && slicesize >= 0) {
        m_nSliceStartPos = sliceoffset;
        m_nSliceLength = slicesize;
    }
    return KX_SUCCESS;
}

int CFileAnalyzer::SetExtCommonInfo(uint32_t type, const unsigned char* pExtData, int)
{
    if (type != KX_PARAM_PATH_ENCODE_TYPE)
        m_nExtCommonType = static_cast<int32_t>(type);
    else if (pExtData != nullptr)
        m_nPathEncodeType = *pExtData;
    return KX_SUCCESS;
}

// A file of a type that is not supported is done with.
int CFileAnalyzer::GetProcess(int* process)
{
    if (process == nullptr)
        return KX_ERROR_PARAMETER;
    if (m_errorType.GetErrorType() != KX_ERROR_FILE_TYPE_NOSUPPORT && m_pFileAnalzyer != nullptr)
        return m_pFileAnalzyer->GetProcess(process);
    *process = sc_wholeProcess;
    return KX_SUCCESS;
}

// Without a parser the questions about the index leave their code behind; reads and seeks do not. Kept.

int CFileAnalyzer::GetOneIndex(int index, KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo,
                               ExtZOAVIFrameInfo* frameInfoEx)
{
    if (m_pFileAnalzyer == nullptr)
        return StoreError(KX_ERROR_PARAMETER);
    return m_pFileAnalzyer->GetOneIndex(index, indexInfo, frameInfo, frameInfoEx);
}

int CFileAnalyzer::GetIndexCount(int flags, int* indexCount)
{
    if (m_pFileAnalzyer == nullptr)
        return StoreError(KX_ERROR_PARAMETER);
    return m_pFileAnalzyer->GetIndexCount(flags, indexCount);
}

int CFileAnalyzer::GetAllIndex(int flags, KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, int structCount,
                               int* indexCount)
{
    if (m_pFileAnalzyer == nullptr)
        return StoreError(KX_ERROR_PARAMETER);
    return m_pFileAnalzyer->GetAllIndex(flags, indexInfo, frameInfo, structCount, indexCount);
}

int CFileAnalyzer::GetFrameByIndex(KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx)
{
    if (m_pFileAnalzyer == nullptr)
        return KX_ERROR_PARAMETER;
    return m_pFileAnalzyer->GetFrameByIndex(indexInfo, frameInfo, frameInfoEx);
}

int CFileAnalyzer::ReadOneFrame(int64_t* pFrameOffset, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx)
{
    if (m_pFileAnalzyer == nullptr)
        return KX_ERROR_PARAMETER;
    return m_pFileAnalzyer->ReadOneFrame(pFrameOffset, frameInfo, frameInfoEx);
}

int CFileAnalyzer::SeekByTime(uint32_t nTime)
{
    return m_pFileAnalzyer != nullptr ? m_pFileAnalzyer->SeekByTime(nTime) : int{KX_ERROR_PARAMETER};
}

int CFileAnalyzer::SeekByFileOffset(int64_t fileOffset, int seekType)
{
    return m_pFileAnalzyer != nullptr ? m_pFileAnalzyer->SeekByFileOffset(fileOffset, seekType)
                                      : int{KX_ERROR_PARAMETER};
}

} // namespace Marvane::FrameSift
