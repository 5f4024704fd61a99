// The exported calls of the stream family: each looks its handle up, forwards, and gives the reference back.
#include "framesift/framesift.h"
#include "FrameSift/CallLog.h"
#include "FrameSift/FrameConvert.h"
#include "FrameSift/StreamTypeMap.h"
#include "HandleMgr/HandleMgr.h"
#include "Memory/TryAlloc.h"
#include "ParserMethod/StreamAnalyzer.h"
#include "Tools/KXSystem.h"

using namespace Marvane::FrameSift;

namespace {

// Runs the operation on the analyzer behind a stream handle, which stays alive meanwhile. 1 for any other handle. Lack
// of memory is caught where it arises; what slipped through would otherwise end in a caller that may be C.
template <class Operation>
int WithStreamAnalyzer(void* handle, Operation&& operation)
{
    CStreamAnalyzer* pAnalyzer = g_handleMgr.GetStreamAnalzyer(handle);
    if (pAnalyzer == nullptr)
        return KX_ERROR_INVALID_HANDLE;
    int nResult = KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    (void)TryAlloc([&] { nResult = operation(*pAnalyzer); });
    g_handleMgr.ReleaseRefCount(handle);
    return nResult;
}

} // namespace

const char* KX_GetVersion(void)
{
    return "1.3.44.55751";
}

int KX_LoadLibrary(KX_INIT_INFO* initInfo)
{
    if (initInfo != nullptr)
        CKXSystem::SetModuleHandle(initInfo->moduleHandle);
    return KX_SUCCESS;
}

int KX_ReleaseLibrary(void)
{
    return KX_SUCCESS;
}

void* KX_CreateFrameSift(int32_t nBufferSize)
{
    KX_WRITE_LOG(KX_LOG_LevelTrace, gsk_callPath, "KX_CreateFrameSift nBufferSize %d.\n", nBufferSize);
    return g_handleMgr.CreateStreamAnalyzer(nBufferSize);
}

int KX_GetStreamType(void* handle, int32_t* streamType)
{
    KX_WRITE_LOG(KX_LOG_LevelTrace, gsk_callPath, "KX_GetStreamType handle %ld, streamType pointer %p.\n",
                 HandleNumber(handle), static_cast<void*>(streamType));
    if (streamType == nullptr)
        return KX_ERROR_PARAMETER;
    *streamType = KX_STREAM_TYPE_UNKNOWN;
    const int nResult = WithStreamAnalyzer(handle, [streamType](CStreamAnalyzer& analyzer) {
        *streamType = analyzer.GetStreamType();
        return int{KX_SUCCESS};
    });
    KX_WRITE_LOG(KX_LOG_LevelTrace, gsk_callPath, "KX_GetStreamType handle %ld, streamType %d.\n", HandleNumber(handle),
                 *streamType);
    return nResult;
}

int KX_GetParseType(int32_t streamType, int32_t* parseType)
{
    KX_WRITE_LOG(KX_LOG_LevelTrace, gsk_callPath, "KX_GetParseType streamType %d, parseType pointer %p.\n", streamType,
                 static_cast<void*>(parseType));
    if (parseType == nullptr)
        return KX_ERROR_PARAMETER;
    *parseType = getParseType(streamType);
    // The line names another call; log readers know it by that name. Kept.
    KX_WRITE_LOG(KX_LOG_LevelTrace, gsk_callPath, "KX_GetStreamType streamType %d, parseType %d.\n", streamType,
                 *parseType);
    return KX_SUCCESS;
}

int KX_ParseData(void* handle, uint8_t* stream, int32_t length)
{
    KX_WRITE_LOG(KX_LOG_LevelHidden, gsk_callPath, "KX_ParseData handle %ld, stream %p, length %d.\n",
                 HandleNumber(handle), static_cast<void*>(stream), length);
    // A negative length passes: the window refuses it, and the handle stores the code.
    if (stream == nullptr || length == 0) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_callPath, "KX_ParseData Error Input Param, stream %p, length %d.\n",
                     static_cast<void*>(stream), length);
        return KX_ERROR_PARAMETER;
    }
    return WithStreamAnalyzer(handle, [&](CStreamAnalyzer& analyzer) { return analyzer.ParseData(stream, length); });
}

int KX_GetOneFrame(void* handle, KX_FRAME_INFO* frameInfo)
{
    KX_WRITE_LOG(KX_LOG_LevelHidden, gsk_callPath, "KX_GetOneFrame handle %ld, frameInfo pointer %p.\n",
                 HandleNumber(handle), static_cast<void*>(frameInfo));
    FrameInfo frame{};
    ExtZOAVIFrameInfo ext{};
    CStreamAnalyzer* pAnalyzer = g_handleMgr.GetStreamAnalzyer(handle);
    if (pAnalyzer == nullptr)
        return KX_ERROR_INVALID_HANDLE;
    const int nResult = pAnalyzer->GetOneFrame(&frame, &ext);
    // Whatever the result: with an empty queue the caller's fields read zero.
    ChangeFrameToKXFrame(frame, ext, *frameInfo);
    KX_WRITE_LOG(KX_LOG_LevelHidden, gsk_callPath,
                 "KX_GetOneFrame handle %ld, frameType %d, frameSubType %d,framePointer %p, streamPointer %p, "
                 "frameLen %d, streamLen %d.\n",
                 HandleNumber(handle), frameInfo->frameType, frameInfo->frameSubType,
                 static_cast<void*>(frameInfo->framePointer), static_cast<void*>(frameInfo->streamPointer),
                 frameInfo->frameLen, frameInfo->streamLen);
    g_handleMgr.ReleaseRefCount(handle);
    return nResult;
}

int KX_StreamEncryptKey(void* handle, uint32_t type, const uint8_t* key, int32_t keylen)
{
    KX_WRITE_LOG(KX_LOG_LevelTrace, gsk_callPath, "KX_StreamEncryptKey handle %ld, type %d, key %p, keylen %d.\n",
                 HandleNumber(handle), static_cast<int>(type), static_cast<const void*>(key), keylen);
    return WithStreamAnalyzer(handle,
                              [&](CStreamAnalyzer& analyzer) { return analyzer.SetExtInfo(type, key, keylen); });
}

int KX_Destroy(void* handle)
{
    KX_WRITE_LOG(KX_LOG_LevelTrace, gsk_callPath, "KX_Destroy handle %ld.\n", HandleNumber(handle));
    return g_handleMgr.DestroyAnalyzer(handle) ? KX_SUCCESS : KX_ERROR_INVALID_HANDLE;
}

int KX_GetLastError(void* handle)
{
    return g_handleMgr.GetLastError(handle);
}

int KX_SetInfoProcCallback(void* handle, fKXInfoCallback pInfoCallback, void* userData)
{
    KX_WRITE_LOG(KX_LOG_LevelTrace, gsk_callPath, "KX_SetInfoProcCallback handle %ld.\n", HandleNumber(handle));
    return WithStreamAnalyzer(
        handle, [&](CStreamAnalyzer& analyzer) { return analyzer.SetInfoProcCallback(pInfoCallback, userData); });
}

int KX_CreatePrintLog(const char* pLogPath, int32_t nLogPathLength, void* hModule, int32_t logLevel,
                      const KX_WRITE_FILE_INFO* pWriteFileInfo)
{
    if (pWriteFileInfo != nullptr) {
        // Takes a reference and gives none back, deliberately: a handle that has been passed here lives to the end of
        // the process, and its destroy only lowers the count.
        CStreamAnalyzer* pAnalyzer = g_handleMgr.GetStreamAnalzyer(pWriteFileInfo->handle);
        if (pAnalyzer != nullptr)
            pAnalyzer->WriteFileInfo(pWriteFileInfo->handle, pWriteFileInfo->pWritePath,
                                     static_cast<int>(pWriteFileInfo->nWriteType),
                                     static_cast<int>(pWriteFileInfo->nWriteSize));
    }
    return CKXLog::CreateLog(pLogPath, nLogPathLength, hModule, logLevel);
}
