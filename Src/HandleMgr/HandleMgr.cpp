#include "HandleMgr/HandleMgr.h"

#include <algorithm>
#include <memory>

#include "Memory/TryAlloc.h"
#include "ParserMethod/FileAnalyzer.h"
#include "ParserMethod/StreamAnalyzer.h"
#include "Tools/NeverDestroyed.h"

namespace Marvane::FrameSift {

namespace {

CNeverDestroyed<CHandleMgr> s_handleMgr;

void* ToHandle(size_t nSlot)
{
    return reinterpret_cast<void*>(nSlot);
}

void EmptySlot(HANDLE_NODE& node)
{
    node.hParser = nullptr;
    node.nParserType = -1;
    node.nRefCount = -1;
}

// To be asked under the lock.
bool IsLive(const HANDLE_NODE& node)
{
    return node.hParser != nullptr && node.nRefCount > 0;
}

// A file analyzer may be destroyed by its own parse thread, and knows what to do then.
void Delete(IGetError* pParser, int nParserType)
{
    if (nParserType == CHandleMgr::PARSER_TYPE_FILE)
        static_cast<CFileAnalyzer*>(pParser)->Destroy();
    else
        delete pParser;
}

std::unique_ptr<CFileAnalyzer> MakeFileAnalyzer()
{
    std::unique_ptr<CFileAnalyzer> pAnalyzer;
    (void)TryAlloc([&] { pAnalyzer = std::make_unique<CFileAnalyzer>(); });
    return pAnalyzer;
}

} // namespace

CHandleMgr& g_handleMgr = s_handleMgr.Get();

CHandleMgr::CHandleMgr()
{
    Init();
}

void CHandleMgr::Init()
{
    for (HANDLE_NODE& node : m_hParserArray) {
        CKXAutoMutexLock lock(node.csAccess);
        EmptySlot(node);
    }
}

void CHandleMgr::Uninit()
{
    for (size_t nSlot = 1; nSlot < m_hParserArray.size(); ++nSlot) {
        HANDLE_NODE& node = m_hParserArray[nSlot];
        if (node.hParser != nullptr)
            DelHandle(ToHandle(nSlot));
    }
}

bool CHandleMgr::IsIdle() const
{
    // A handle that was destroyed in its own callback leaves its slot at once, and its thread a little later.
    return CKXThread::CountDeleting() == 0 &&
           std::all_of(m_hParserArray.begin(), m_hParserArray.end(),
                       [](const HANDLE_NODE& node) { return node.hParser == nullptr; });
}

HANDLE_NODE* CHandleMgr::FindOccupied(void* handle)
{
    const auto nSlot = reinterpret_cast<uintptr_t>(handle);
    if (nSlot < 1 || nSlot >= m_hParserArray.size() || m_hParserArray[nSlot].hParser == nullptr)
        return nullptr;
    return &m_hParserArray[nSlot];
}

void* CHandleMgr::CreateStreamAnalyzer(int nBufferSize)
{
    return CreateStreamAnalyzer(KX_STREAM_TYPE_UNKNOWN, nBufferSize);
}

void* CHandleMgr::CreateStreamAnalyzer(int nType, int nBufferSize)
{
    std::unique_ptr<CStreamAnalyzer> pAnalyzer;
    (void)TryAlloc([&] { pAnalyzer = std::make_unique<CStreamAnalyzer>(nBufferSize); });
    if (pAnalyzer != nullptr && pAnalyzer->InitEx(nType) != KX_SUCCESS)
        return nullptr;
    return InsertStreamAnalyzer(pAnalyzer.release());
}

// Without memory there is no object, and the slot stays free under a number that is handed out all the same: the caller
// gets a handle on which every call reports a bad handle. Kept.
void* CHandleMgr::InsertStreamAnalyzer(CStreamAnalyzer* pAnalyzer)
{
    const int nSlot = InsertParser(pAnalyzer, PARSER_TYPE_STREAM);
    if (nSlot == -1) {
        delete pAnalyzer;
        return nullptr;
    }
    return ToHandle(static_cast<size_t>(nSlot));
}

void* CHandleMgr::CreateFileParseHandle(int nType, const char* file)
{
    auto pAnalyzer = MakeFileAnalyzer();
    if (pAnalyzer == nullptr || pAnalyzer->InitEx(nType, file) != KX_SUCCESS)
        return nullptr;
    const int nSlot = InsertParser(pAnalyzer.get(), PARSER_TYPE_FILE);
    if (nSlot == -1)
        return nullptr;
    (void)pAnalyzer.release();
    return ToHandle(static_cast<size_t>(nSlot));
}

void* CHandleMgr::CreateFileAnalyzer(int nType, const char* lpszFileName, fFileIndex pfnFileIndex,
                                     fFileInfo pfnFileInfo, void* userData)
{
    return BeginFileAnalyzer(nType, lpszFileName, pfnFileIndex, pfnFileInfo, userData, -1, -1);
}

void* CHandleMgr::CreateSliceAnalyzer(int nType, const char* lpszFileName, fFileIndex pfnFileIndex, void* userData,
                                      int64_t sliceoffset, int64_t slicesize)
{
    return BeginFileAnalyzer(nType, lpszFileName, pfnFileIndex, nullptr, userData, sliceoffset, slicesize);
}

void* CHandleMgr::BeginFileAnalyzer(int nType, const char* lpszFileName, fFileIndex pfnFileIndex, fFileInfo pfnFileInfo,
                                    void* userData, int64_t sliceoffset, int64_t slicesize)
{
    auto pOwner = MakeFileAnalyzer();
    CFileAnalyzer* pAnalyzer = pOwner.get();
    const int nSlot = pAnalyzer != nullptr ? InsertParser(pAnalyzer, PARSER_TYPE_FILE) : -1;
    if (nSlot == -1)
        return nullptr;
    (void)pOwner.release(); // the slot's
    void* handle = ToHandle(static_cast<size_t>(nSlot));
    pAnalyzer->SetSlice(sliceoffset, slicesize); // below 0 it sets nothing: the whole file
    if (pAnalyzer->Init(nType, lpszFileName, pfnFileIndex, pfnFileInfo, userData) == KX_SUCCESS)
        return handle;
    DelHandle(handle);
    return nullptr;
}

int CHandleMgr::InsertParser(IGetError* parser, int nType)
{
    for (size_t nSlot = 1; nSlot < m_hParserArray.size(); ++nSlot) {
        HANDLE_NODE& node = m_hParserArray[nSlot];
        if (node.hParser != nullptr)
            continue;
        CKXAutoMutexLock lock(node.csAccess);
        if (node.hParser != nullptr)
            continue;
        node.hParser = parser;
        node.nRefCount = 1;
        node.nParserType = nType;
        return static_cast<int>(nSlot);
    }
    return -1;
}

IGetError* CHandleMgr::TakeReference(void* handle, int nParserType)
{
    HANDLE_NODE* pNode = FindOccupied(handle);
    if (pNode == nullptr)
        return nullptr;
    CKXAutoMutexLock lock(pNode->csAccess);
    if (pNode->nParserType != nParserType || !IsLive(*pNode))
        return nullptr;
    IGetError* pParser = pNode->hParser;
    if (nParserType != PARSER_TYPE_FILE || !static_cast<CFileAnalyzer*>(pParser)->IsOwnThread())
        ++pNode->nRefCount;
    return pParser;
}

CStreamAnalyzer* CHandleMgr::GetStreamAnalzyer(void* handle)
{
    return static_cast<CStreamAnalyzer*>(TakeReference(handle, PARSER_TYPE_STREAM));
}

CFileAnalyzer* CHandleMgr::GetFileAnalzyer(void* handle)
{
    return static_cast<CFileAnalyzer*>(TakeReference(handle, PARSER_TYPE_FILE));
}

void CHandleMgr::GiveBackFileAnalzyer(void* handle, CFileAnalyzer* pAnalyzer)
{
    if (!pAnalyzer->IsOwnThread())
        ReleaseRefCount(handle);
}

bool CHandleMgr::ReleaseRefCount(void* handle)
{
    HANDLE_NODE* pNode = FindOccupied(handle);
    if (pNode == nullptr)
        return false;
    {
        CKXAutoMutexLock lock(pNode->csAccess);
        if (!IsLive(*pNode))
            return false;
        if (--pNode->nRefCount > 0)
            return true;
    }
    return DelHandle(handle); // dying: nobody else gets at the object
}

bool CHandleMgr::DestroyAnalyzer(void* handle)
{
    if (HANDLE_NODE* pNode = FindOccupied(handle); pNode != nullptr) {
        CKXAutoMutexLock lock(pNode->csAccess);
        if (pNode->nParserType == PARSER_TYPE_FILE && IsLive(*pNode)) {
            auto* pAnalyzer = static_cast<CFileAnalyzer*>(pNode->hParser.load());
            // Nobody waits for the thread here: not the thread itself, and not while a call in progress holds the object.
            if (pNode->nRefCount > 1 || pAnalyzer->IsOwnThread())
                pAnalyzer->EndCallBacks();
        }
    }
    return ReleaseRefCount(handle);
}

bool CHandleMgr::DelHandle(void* handle)
{
    HANDLE_NODE* pNode = FindOccupied(handle);
    if (pNode == nullptr)
        return false;
    int nParserType = -1;
    {
        CKXAutoMutexLock lock(pNode->csAccess);
        pNode->nRefCount = 0;
        nParserType = pNode->nParserType;
    }
    Delete(pNode->hParser, nParserType);
    CKXAutoMutexLock lock(pNode->csAccess);
    EmptySlot(*pNode);
    return true;
}

int CHandleMgr::GetLastError(void* handle)
{
    HANDLE_NODE* pNode = FindOccupied(handle);
    if (pNode == nullptr)
        return KX_ERROR_INVALID_HANDLE;
    CKXAutoMutexLock lock(pNode->csAccess);
    const bool bKnownKind = pNode->nParserType == PARSER_TYPE_STREAM || pNode->nParserType == PARSER_TYPE_FILE;
    IGetError* pParser = pNode->hParser;
    return IsLive(*pNode) && bKnownKind ? pParser->GetLastError() : int{KX_ERROR_INVALID_HANDLE};
}

} // namespace Marvane::FrameSift
