// The extension records of an index's key frames.
#ifndef FRAMESIFT_SRC_FILEANALZYER_SIMULATEBYSTREAM_INDEXKEYFRAMES_H
#define FRAMESIFT_SRC_FILEANALZYER_SIMULATEBYSTREAM_INDEXKEYFRAMES_H

#include <cstddef>
#include <cstdint>

#include "FileAnalzyer/SimulateByStream/IndexChunks.h"
#include "IAnalyzer/FrameInfo.h"

namespace Marvane::FrameSift {

// In the order of their numbers, since frames come in that order.
class CIndexKeyFrames
{
public:
    [[nodiscard]] bool Reserve() { return m_keys.ReserveNext(); }
    // After Reserve. nIndex is above those that came before. The pointers are stored as null: what they led to is gone
    // when anybody reads the index. The lengths stay.
    void Append(int64_t nIndex, const ExtZOAVIFrameInfo& ext);

    // Null if there is none.
    const ExtZOAVIFrameInfo* Find(int64_t nIndex) const;
    const ExtZOAVIFrameInfo* FindBefore(int64_t nIndex) const;

private:
    struct KEY_FRAME
    {
        int64_t nIndex;
        ExtZOAVIFrameInfo ext;
    };

    size_t FirstNotBelow(int64_t nIndex) const;

    CIndexChunks<KEY_FRAME, 256> m_keys;
};

} // namespace Marvane::FrameSift

#endif
