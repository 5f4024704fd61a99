// An object of the process that the end of the process leaves alone while it is in use.
#ifndef FRAMESIFT_SRC_TOOLS_NEVERDESTROYED_H
#define FRAMESIFT_SRC_TOOLS_NEVERDESTROYED_H

namespace Marvane::FrameSift {

// For what a parse thread may still use while the program exits. In static storage; what it holds stays reachable. A type
// that can say that nobody uses it any more is destroyed then: a library that is loaded and unloaded time and again must
// not leave it behind each time.
template <class T>
class CNeverDestroyed
{
public:
    CNeverDestroyed() : m_value() {}
    ~CNeverDestroyed() // never "= default": that would be deleted, as a union does not destroy its members
    {
        if constexpr (requires(T & value) { value.IsIdle(); }) {
            if (m_value.IsIdle())
                m_value.~T();
        }
    }
    CNeverDestroyed(const CNeverDestroyed&) = delete;
    CNeverDestroyed& operator=(const CNeverDestroyed&) = delete;

    T& Get() { return m_value; }

private:
    union {
        T m_value;
    };
};

} // namespace Marvane::FrameSift

#endif
