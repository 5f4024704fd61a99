// What every object behind a handle can tell.
#ifndef FRAMESIFT_SRC_IANALYZER_IGETERROR_H
#define FRAMESIFT_SRC_IANALYZER_IGETERROR_H

#include <cstdint>

namespace Marvane::FrameSift {

class IGetError
{
public:
    virtual ~IGetError() = default;
    // Of a stream: the last nonzero code; a later success does not clear it. Of a recording: the last code stored, the
    // pass's own among them, which may be 0.
    virtual int32_t GetLastError() = 0;
};

} // namespace Marvane::FrameSift

#endif
