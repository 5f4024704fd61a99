// Queries for all records of some classes.
#include <algorithm>

#include "FileAnalzyer/SimulateByStream/IndexList.h"

namespace Marvane::FrameSift {

bool CIndexList::IsAccordWithFlags(FILE_INDEX_INFO* fileIndex, int32_t flags)
{
    return fileIndex != nullptr && IsClassInFlags(ClassOf(fileIndex->frameInfo), static_cast<uint32_t>(flags));
}

int32_t CIndexList::GetIndexCount(int32_t flags, int* indexCount)
{
    if (indexCount == nullptr)
        return KX_ERROR_PARAMETER;
    CKXAutoMutexLock lock(m_csFrameInfo);
    int64_t nCount = 0;
    for (size_t n = 0; n < gsk_indexClasses; ++n) {
        const auto eClass = static_cast<INDEX_CLASS>(n);
        nCount += IsClassInFlags(eClass, static_cast<uint32_t>(flags)) ? m_records.Count(eClass) : 0;
    }
    *indexCount = static_cast<int>(nCount);
    return KX_SUCCESS;
}

int32_t CIndexList::GetAllIndex(int32_t flags, KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, int32_t structCount,
                                int32_t* indexCount)
{
    if (indexCount == nullptr)
        return KX_ERROR_PARAMETER;
    CKXAutoMutexLock lock(m_csFrameInfo);
    int nMatching = 0;
    GetIndexCount(flags, &nMatching);
    const int32_t nWanted = std::min(nMatching, structCount); // a structCount below 0 comes back as it is
    *indexCount = nWanted;
    int32_t nTaken = 0;
    for (int64_t n = 0; n < m_records.Count() && nTaken < nWanted; ++n) {
        if (!IsClassInFlags(m_records.MoveTo(n), static_cast<uint32_t>(flags)))
            continue;
        const FILE_INDEX_INFO record = m_records.Current();
        if (frameInfo != nullptr)
            frameInfo[nTaken] = record.frameInfo;
        if (indexInfo != nullptr)
            indexInfo[nTaken] = record.indexInfo;
        ++nTaken;
    }
    return nTaken < nWanted ? KX_ERROR_PARAMETER : KX_SUCCESS;
}

} // namespace Marvane::FrameSift
