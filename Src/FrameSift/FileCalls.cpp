// The exported calls of the file family: each looks its handle up, forwards, and gives the reference back.
#include "FrameSift/CallLog.h"
#include "FrameSift/FrameConvert.h"
#include "HandleMgr/HandleMgr.h"
#include "Memory/TryAlloc.h"
#include "ParserMethod/FileAnalyzer.h"
#include "framesift/framesift.h"

using namespace Marvane::FrameSift;

namespace {

// Runs the operation on the analyzer behind a file handle, which stays alive meanwhile. 1 for any other handle. Lack of
// memory is caught where it arises; what slipped through would otherwise end in a caller that may be C.
template <class Operation>
int WithFileAnalyzer(void* handle, Operation&& operation)
{
    CFileAnalyzer* pAnalyzer = g_handleMgr.GetFileAnalzyer(handle);
    if (pAnalyzer == nullptr)
        return KX_ERROR_INVALID_HANDLE;
    int nResult = KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    (void)TryAlloc([&] { nResult = operation(*pAnalyzer); });
    g_handleMgr.GiveBackFileAnalzyer(handle, pAnalyzer);
    return nResult;
}

} // namespace

void* KX_CreateFileHandle(int nType, const char* file)
{
    KX_WRITE_LOG(KX_LOG_LevelTrace, gsk_callPath, "KX_CreateFileHandle nType %d.\n", nType);
    return g_handleMgr.CreateFileParseHandle(nType, file);
}

int KX_FileParser(void* handle, fFileIndex fileIndex, fFileInfo fileInfo, void* userData)
{
    KX_WRITE_LOG(KX_LOG_LevelTrace, gsk_callPath, "KX_FileParser %ld.\n", HandleNumber(handle));
    return WithFileAnalyzer(handle,
                            [&](CFileAnalyzer& analyzer) { return analyzer.FileParse(fileIndex, fileInfo, userData); });
}

int KX_GetFileStreamType(void* handle, int* streamType)
{
    if (streamType == nullptr)
        return KX_ERROR_PARAMETER;
    *streamType = KX_STREAM_TYPE_UNKNOWN;
    const int nResult = WithFileAnalyzer(handle, [streamType](CFileAnalyzer& analyzer) {
        *streamType = analyzer.GetStreamType();
        return int{KX_SUCCESS};
    });
    if (nResult == KX_SUCCESS)
        KX_WRITE_LOG(KX_LOG_LevelTrace, gsk_callPath, "KX_GetFileStreamType %ld, streamType %d.\n",
                     HandleNumber(handle), *streamType);
    return nResult;
}

int KX_FileReadOneFrame(void* handle, KXint64* pFrameOffset, KX_FRAME_INFO* frameInfo)
{
    if (pFrameOffset == nullptr || frameInfo == nullptr) {
        // The reference that this takes is not given back, deliberately: such a call leaves the handle with one more,
        // and the memory stays when the handle is destroyed. On the parse thread there is none to leave.
        return g_handleMgr.GetFileAnalzyer(handle) != nullptr ? KX_ERROR_PARAMETER : KX_ERROR_INVALID_HANDLE;
    }
    return WithFileAnalyzer(handle, [&](CFileAnalyzer& analyzer) {
        FrameInfo frame{};
        ExtZOAVIFrameInfo ext{};
        int nResult = KX_ERROR_SYSTEM_OUT_OF_MEMORY;
        (void)TryAlloc([&] { nResult = analyzer.ReadOneFrame(pFrameOffset, &frame, &ext); });
        // Whatever the result: without a frame the caller's fields read zero.
        ChangeFrameToKXFrame(frame, ext, *frameInfo);
        return nResult;
    });
}

int KX_FileSeekByTime(void* handle, unsigned int time)
{
    KX_WRITE_LOG(KX_LOG_LevelTrace, gsk_callPath, "KX_FileSeekByTime %ld, time %d.\n", HandleNumber(handle),
                 static_cast<int>(time));
    return WithFileAnalyzer(handle, [&](CFileAnalyzer& analyzer) { return analyzer.SeekByTime(time); });
}

int KX_FileSeekByOffset(void* handle, KXint64 fileOffset, int seekType)
{
    KX_WRITE_LOG(KX_LOG_LevelTrace, gsk_callPath, "KX_FileSeekByOffset %ld, fileOffset %lld.\n", HandleNumber(handle),
                 static_cast<long long>(fileOffset));
    return WithFileAnalyzer(handle,
                            [&](CFileAnalyzer& analyzer) { return analyzer.SeekByFileOffset(fileOffset, seekType); });
}
