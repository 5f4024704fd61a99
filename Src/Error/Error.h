// The last error of a handle.
#ifndef FRAMESIFT_SRC_ERROR_ERROR_H
#define FRAMESIFT_SRC_ERROR_ERROR_H

#include <atomic>
#include <cstdint>

namespace Marvane::FrameSift {

// A caller may ask for it on any thread while another parses, so it is read and written in one piece.
class CError
{
public:
    virtual ~CError() = default;
    int32_t GetErrorType() const { return m_errType.load(std::memory_order_relaxed); }
    void SetErrorType(int32_t errType) { m_errType.store(errType, std::memory_order_relaxed); }

private:
    std::atomic<int32_t> m_errType{0};
};

} // namespace Marvane::FrameSift

#endif
