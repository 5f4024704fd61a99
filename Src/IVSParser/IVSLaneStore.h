// Memory for the records of lanes that are too large to stand in every object.
#ifndef FRAMESIFT_SRC_IVSPARSER_IVSLANESTORE_H
#define FRAMESIFT_SRC_IVSPARSER_IVSLANESTORE_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <memory>

#include "Memory/TryAlloc.h"
#include "framesift/ivs_lanes.h"

namespace Marvane::FrameSift {

// Records that are all taken back at once, and handed out again. A record of 100 KB that is allocated for each object and
// freed behind each group makes the heap return its pages to the system and fault them in again, which takes ten times as
// long as reading the lanes.
template <class RECORD>
class CRecordStore
{
public:
    // The next record, all 0; null if there is no memory. It stays the store's.
    RECORD* Take()
    {
        if (m_nSlab == m_slabs.size())
            return nullptr; // more than a group has objects
        auto& slab = m_slabs[m_nSlab];
        if (slab == nullptr)
            slab = TRY_ALLOC_ARRAY<RECORD>(SizeOf(m_nSlab));
        if (slab == nullptr)
            return nullptr;
        RECORD* pRecord = &slab[m_nRecord];
        if (++m_nRecord == SizeOf(m_nSlab)) {
            ++m_nSlab;
            m_nRecord = 0;
        }
        std::memset(pRecord, 0, sizeof *pRecord);
        return pRecord;
    }

    void TakeAllBack()
    {
        m_nSlab = 0;
        m_nRecord = 0;
    }

private:
    // 1, 2, 4, 8, 16, 16, ...: one object costs one record, and many cost few allocations.
    static size_t SizeOf(size_t nSlab) { return size_t{1} << std::min<size_t>(nSlab, 4); }

    std::array<std::unique_ptr<RECORD[]>, 20> m_slabs; // 271 records in all; a group has at most 255 objects
    size_t m_nSlab = 0;
    size_t m_nRecord = 0;
};

// What the objects of a group lead to. Made once for a payload, so that its groups share the memory.
struct IVS_LANE_STORE
{
    CRecordStore<KX_IVS_ATTRIBUTE_95> lanes95;
    CRecordStore<KX_IVS_ATTRIBUTE_96> lanes96;

    void TakeAllBack()
    {
        lanes95.TakeAllBack();
        lanes96.TakeAllBack();
    }
};

} // namespace Marvane::FrameSift

#endif
