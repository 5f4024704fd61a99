#include "HandleMgr/HandleMgr.h"

#include <memory>

#include "Memory/TryAlloc.h"
#include "ParserMethod/StreamAnalyzer.h"
#include "framesift/framesift.h"

namespace Marvane::FrameSift {

CHandleMgr g_handleMgr;

namespace {

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

} // namespace

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
        if (node.hParser == nullptr)
            continue;
        CKXAutoMutexLock lock(node.csAccess);
        if (node.hParser != nullptr)
            DelHandle(ToHandle(nSlot));
    }
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

CStreamAnalyzer* CHandleMgr::GetStreamAnalzyer(void* handle)
{
    HANDLE_NODE* pNode = FindOccupied(handle);
    if (pNode == nullptr)
        return nullptr;
    CKXAutoMutexLock lock(pNode->csAccess);
    if (pNode->nParserType != PARSER_TYPE_STREAM || pNode->hParser == nullptr)
        return nullptr;
    ++pNode->nRefCount;
    return static_cast<CStreamAnalyzer*>(pNode->hParser.load());
}

bool CHandleMgr::ReleaseRefCount(void* handle)
{
    HANDLE_NODE* pNode = FindOccupied(handle);
    if (pNode == nullptr)
        return false;
    CKXAutoMutexLock lock(pNode->csAccess);
    if (pNode->hParser == nullptr)
        return false;
    if (--pNode->nRefCount <= 0)
        DelHandle(handle);
    return true;
}

bool CHandleMgr::DelHandle(void* handle)
{
    HANDLE_NODE* pNode = FindOccupied(handle);
    if (pNode == nullptr)
        return false;
    delete pNode->hParser.load();
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
    return pParser != nullptr && bKnownKind ? pParser->GetLastError() : int{KX_ERROR_INVALID_HANDLE};
}

} // namespace Marvane::FrameSift
