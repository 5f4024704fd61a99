// The table that turns opaque handles into analyzers.
#ifndef FRAMESIFT_SRC_HANDLEMGR_HANDLEMGR_H
#define FRAMESIFT_SRC_HANDLEMGR_HANDLEMGR_H

#include <array>
#include <atomic>
#include <cstdint>

#include "IAnalyzer/IGetError.h"
#include "Tools/AutoLock.h"

namespace Marvane::FrameSift {

class CStreamAnalyzer;

// One slot. Free: hParser null, the other two -1. Fields are written under csAccess; hParser is also looked at without
// it, to pass over free slots and bad handles fast, and looked at again under it.
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
    static constexpr int PARSER_TYPE_FILE = 2;

    CHandleMgr();
    // What is still open at process exit is not deleted: its threads may run on.
    virtual ~CHandleMgr() = default;
    CHandleMgr(const CHandleMgr&) = delete;
    CHandleMgr& operator=(const CHandleMgr&) = delete;

    void Init();
    void Uninit();

    // A handle, or null.
    void* CreateStreamAnalyzer(int nBufferSize);
    // The same with the stream type fixed: nothing is detected. A type of 0 is not fixed.
    void* CreateStreamAnalyzer(int nType, int nBufferSize);

    // Takes the object over. The slot number, or -1 if all are in use.
    int InsertParser(IGetError* parser, int nType);

    // The object with one reference more, to be given back with ReleaseRefCount; null for a handle that is not live or
    // of another kind.
    CStreamAnalyzer* GetStreamAnalzyer(void* handle);

    // Gives a reference up; the last one deletes the object on this thread, under the slot's lock.
    bool ReleaseRefCount(void* handle);

    // Gives up the creator's reference. A call in progress on another thread keeps the object alive until it leaves.
    // Once only: a second time takes away somebody else's reference.
    bool DestroyAnalyzer(void* handle) { return ReleaseRefCount(handle); }

    // Takes no lock: the caller holds the slot's.
    bool DelHandle(void* handle);

    // The object's stored code; 1 for a handle that is not live.
    int GetLastError(void* handle);

private:
    HANDLE_NODE* FindOccupied(void* handle);
    void* InsertStreamAnalyzer(CStreamAnalyzer* pAnalyzer);

    std::array<HANDLE_NODE, 4096> m_hParserArray; // slot 0 is never handed out
};

extern CHandleMgr g_handleMgr;

} // namespace Marvane::FrameSift

#endif
