// Ctrl-C, as a wish to stop that is asked for between two steps of work.
#ifndef FRAMESIFT_APP_IO_INTERRUPT_H
#define FRAMESIFT_APP_IO_INTERRUPT_H

namespace Marvane::FrameSift {

// While one lives, SIGINT and SIGTERM no longer end the process, unless they were ignored before. A second signal does:
// the first was not enough. Watches may nest; they belong to one thread, and any thread may ask them.
class CInterruptWatch
{
public:
    CInterruptWatch();
    ~CInterruptWatch(); // signals do again what they did before
    CInterruptWatch(const CInterruptWatch&) = delete;
    CInterruptWatch& operator=(const CInterruptWatch&) = delete;

    // Throws CAppError with EXIT_CODE::Interrupted.
    void ThrowIfAsked() const;
    bool IsAsked() const;
};

} // namespace Marvane::FrameSift

#endif
