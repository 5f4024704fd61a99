// The table that turns opaque handles into analyzers.
#ifndef FRAMESIFT_SRC_HANDLEMGR_HANDLEMGR_H
#define FRAMESIFT_SRC_HANDLEMGR_HANDLEMGR_H

#include <array>
#include <atomic>
#include <cstdint>

#include "IAnalyzer/IGetError.h"
#include "Tools/AutoLock.h"
#include "framesift/framesift.h"

namespace Marvane::FrameSift {

class CFileAnalyzer;
class CStreamAnalyzer;

// One slot, in one of three states. Free: hParser null, the other two -1. Live: at least one reference. Dying: no
// reference, and the object is being deleted; the slot refuses every question as if it were free, but its number is not
// handed out yet. Fields are written under csAccess; hParser is also looked at without it, to pass over free slots and
// bad handles fast, and looked at again under it.
struct HANDLE_NODE
{
    CKXMutex csAccess;
    std::atomic<IGetError*> hParser{nullptr};
    int32_t nParserType = -1;
    int32_t nRefCount = -1;
};

// A handle is a slot number from 1 to 4095, so that no valid handle is zero. The lowest free number is handed out
// first, and again at once after a destroy: a stale handle may reach a new analyzer.
class CHandleMgr
{
public:
    static constexpr int PARSER_TYPE_STREAM = 1;
    static constexpr int PARSER_TYPE_FILE = 2; // a CFileAnalyzer, and nothing else

    CHandleMgr();
    // What is still open at process exit is not deleted: its threads may run on.
    virtual ~CHandleMgr() = default;
    CHandleMgr(const CHandleMgr&) = delete;
    CHandleMgr& operator=(const CHandleMgr&) = delete;

    void Init();
    void Uninit();
    bool IsIdle() const; // no handle is live or dying, and no thread of one runs

    // A handle, or null.
    void* CreateStreamAnalyzer(int nBufferSize);
    // The same with the stream type fixed: nothing is detected. A type of 0 is not fixed.
    void* CreateStreamAnalyzer(int nType, int nBufferSize);

    // A handle for a file, or null, also for a null path. A type of 0 is found out when it is needed.
    void* CreateFileParseHandle(int nType, const char* file);
    // The same with the pass begun, over the whole file or a part of it; null too if it does not begin.
    void* CreateFileAnalyzer(int nType, const char* lpszFileName, fFileIndex pfnFileIndex, fFileInfo pfnFileInfo,
                             void* userData);
    void* CreateSliceAnalyzer(int nType, const char* lpszFileName, fFileIndex pfnFileIndex, void* userData,
                              int64_t sliceoffset, int64_t slicesize);

    // Takes the object over. The slot number, or -1 if all are in use.
    int InsertParser(IGetError* parser, int nType);

    // The object with one reference more, to be given back with ReleaseRefCount; null for a handle that is not live or
    // of another kind.
    CStreamAnalyzer* GetStreamAnalzyer(void* handle);

    // The same for files, to be given back with GiveBackFileAnalzyer. On the analyzer's own parse thread no reference
    // is taken: who deletes waits for that thread, and a reference in its hands would turn the wait into its own
    // deletion.
    CFileAnalyzer* GetFileAnalzyer(void* handle);
    void GiveBackFileAnalzyer(void* handle, CFileAnalyzer* pAnalyzer);

    // Gives a reference up; the last one deletes the object on this thread, without the slot's lock: a parse thread
    // that is waited for may be in a callback that asks for this very handle.
    bool ReleaseRefCount(void* handle);

    // Gives up the creator's reference. A call in progress on another thread keeps the object alive until it leaves.
    // Once only: a second time takes away somebody else's reference. From inside a callback it was the last callback.
    bool DestroyAnalyzer(void* handle);

    // Deletes the object, whoever holds references. Takes the slot's lock, but not while it deletes.
    bool DelHandle(void* handle);

    // The object's stored code; 1 for a handle that is not live.
    int GetLastError(void* handle);

private:
    HANDLE_NODE* FindOccupied(void* handle);
    IGetError* TakeReference(void* handle, int nParserType);
    void* InsertStreamAnalyzer(CStreamAnalyzer* pAnalyzer);
    void* BeginFileAnalyzer(int nType, const char* lpszFileName, fFileIndex pfnFileIndex, fFileInfo pfnFileInfo,
                            void* userData, int64_t sliceoffset, int64_t slicesize);

    std::array<HANDLE_NODE, 4096> m_hParserArray; // slot 0 is never handed out
};

// With handles still open it outlives the end of the process.
extern CHandleMgr& g_handleMgr;

} // namespace Marvane::FrameSift

#endif
