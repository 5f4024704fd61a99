// What every object behind a handle can tell.
#ifndef FRAMESIFT_SRC_IANALYZER_IGETERROR_H
#define FRAMESIFT_SRC_IANALYZER_IGETERROR_H

#include <cstdint>

namespace Marvane::FrameSift {

class IGetError
{
public:
    virtual ~IGetError() = default;
    // The last nonzero code that a call stored; a later success does not clear it.
    virtual int32_t GetLastError() = 0;
};

} // namespace Marvane::FrameSift

#endif
