#include "ParserMethod/StreamAnalyzer.h"

#include <algorithm>

namespace Marvane::FrameSift {

namespace {

// What is kept of a stream whose type does not show: a stream that shows itself late loses nothing up to here.
constexpr uint32_t sc_maxUnknownSize = 0x400000;
// And what is kept beyond it: enough to find a magic that the cut has split.
constexpr uint32_t sc_unknownTail = 4;
constexpr int sc_decryptDataSize = 1024;

// With a watermark in doubt streamLen is only what the stream claims.
int PayloadInFrame(const FrameInfo& frame)
{
    if (frame.streamPointer == nullptr || frame.framePointer == nullptr)
        return frame.streamLen;
    const int64_t nBehind = frame.framePointer + frame.frameLen - frame.streamPointer;
    return static_cast<int>(std::min<int64_t>(frame.streamLen, nBehind));
}

} // namespace

CStreamAnalyzer::CStreamAnalyzer(int nBufferSize) : m_nBufferSize(nBufferSize) {}

CStreamAnalyzer::~CStreamAnalyzer()
{
    Uninit();
}

int CStreamAnalyzer::Init()
{
    m_logicData.Init(m_nBufferSize);
    m_checkData.Init(m_nBufferSize);
    m_DecryptData.Init(sc_decryptDataSize);
    return KX_SUCCESS;
}

int CStreamAnalyzer::InitEx(int nType)
{
    m_nStreamType.store(nType, std::memory_order_relaxed);
    return Init();
}

int CStreamAnalyzer::ClearBuffer()
{
    m_frameStore.Clear();
    m_logicData.ClearBuffer();
    return KX_SUCCESS;
}

int CStreamAnalyzer::FlushBuffer()
{
    if (m_pStreamAnalzyer == nullptr)
        return KX_ERROR_UNGET_STREAM_TYPE;
    return m_pStreamAnalzyer->FlushBuffer(&m_logicData, this);
}

int CStreamAnalyzer::StoreError(int nResult)
{
    if (nResult != KX_SUCCESS)
        m_errorType.SetErrorType(nResult);
    return nResult;
}

int CStreamAnalyzer::ParseData(unsigned char* buffer, int length)
{
    m_streamSaveDebug.writeData(buffer, length);
    m_frameStore.Clear();
    if (const int nResult = m_logicData.JoinData(buffer, length); nResult != KX_SUCCESS)
        return StoreError(nResult);
    if (const int nResult = m_checkData.JoinData(buffer, length); nResult != KX_SUCCESS)
        return StoreError(nResult);
    return StoreError(ParseDataEx());
}

int CStreamAnalyzer::ParseDataEx()
{
    if (!m_bChoosedClass.load(std::memory_order_relaxed)) {
        if (const int nResult = ChooseClass(); nResult != KX_SUCCESS)
            return nResult;
    }
    if (m_pStreamAnalzyer == nullptr)
        return KX_SUCCESS;
    HandOverKeys();
    if (m_bLowCpuPercentage)
        m_pStreamAnalzyer->SetLowCpuPercentage(true);
    return m_pStreamAnalzyer->ParseData(&m_logicData, this);
}

int CStreamAnalyzer::ChooseClass()
{
    if (const int nResult = AnalyzeStreamType(); nResult != KX_SUCCESS) {
        const uint32_t nSize = m_logicData.Size();
        if (nSize <= sc_maxUnknownSize) {
            m_logicData.SetCurParseIndex(0);
        } else {
            m_logicData.SetCurParseIndex(static_cast<int>(nSize - sc_unknownTail));
            m_checkData.ClearBuffer();
        }
        return nResult;
    }
    TakeParser(std::move(m_pStreamAnalzyer));
    return KX_SUCCESS;
}

void CStreamAnalyzer::TakeParser(std::unique_ptr<IStreamAnalzyer> pStreamAnalzyer)
{
    m_pStreamAnalzyer = std::move(pStreamAnalzyer);
    if (m_pInfoCallback != nullptr)
        m_pStreamAnalzyer->SetInfoProcCallback(m_pInfoCallback, m_userData);
    m_bChoosedClass.store(true, std::memory_order_release);
}

int CStreamAnalyzer::AnalyzeStreamType()
{
    if (GetStreamType() == KX_STREAM_TYPE_UNKNOWN)
        m_nStreamType.store(static_cast<int32_t>(m_creator.GetAnalyType(&m_checkData)), std::memory_order_relaxed);
    if (GetStreamType() == KX_STREAM_TYPE_UNKNOWN)
        return StoreError(KX_ERROR_UNGET_STREAM_TYPE);
    m_pStreamAnalzyer = CParserCreator::CreateStreamAnalyzer(static_cast<uint32_t>(GetStreamType()));
    if (m_pStreamAnalzyer == nullptr)
        return StoreError(KX_ERROR_STREAM_NOSUPPORT);
    if (m_pStreamAnalzyer->Init() != KX_SUCCESS) {
        m_pStreamAnalzyer.reset();
        return StoreError(KX_ERROR_SYSTEM_OUT_OF_MEMORY);
    }
    return KX_SUCCESS;
}

int CStreamAnalyzer::OnFrame(FrameInfo* frame, ExtZOAVIFrameInfo* ext, void*)
{
    return m_frameStore.InputFrame(frame, ext);
}

int CStreamAnalyzer::GetOneFrame(FrameInfo* frame, ExtZOAVIFrameInfo* ext)
{
    // An empty queue is no error of the stream: it is answered, not stored.
    if (const int nResult = m_frameStore.GetFrame(frame, ext); nResult != KX_SUCCESS)
        return nResult;
    m_streamSaveDebugOut.writeData(frame->streamPointer, PayloadInFrame(*frame));
    CloseSensitiveBytesForRepublic(frame, ext);
    return KX_SUCCESS;
}

bool CStreamAnalyzer::WriteFileInfo(void* handle, const char* pWritePath, int nWriteType, int nWriteSize)
{
    if (nWriteType == 0)
        return m_streamSaveDebug.WriteFileInfo(handle, pWritePath, 0, nWriteSize);
    if (nWriteType != 1)
        m_streamSaveDebug.WriteFileInfo(handle, pWritePath, 0, nWriteSize);
    return m_streamSaveDebugOut.WriteFileInfo(handle, pWritePath, 1, nWriteSize);
}

int CStreamAnalyzer::SetInfoProcCallback(fKXInfoCallback pInfoCallback, void* userData)
{
    m_pInfoCallback = pInfoCallback;
    m_userData = userData;
    if (m_pStreamAnalzyer != nullptr)
        m_pStreamAnalzyer->SetInfoProcCallback(pInfoCallback, userData);
    return KX_SUCCESS;
}

} // namespace Marvane::FrameSift
