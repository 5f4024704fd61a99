#include "Io/Interrupt.h"

#include <array>
#include <atomic>
#include <csignal>

#include "Io/AppError.h"

namespace Marvane::FrameSift {

namespace {

constexpr std::array<int, 2> sc_signals = {SIGINT, SIGTERM};

std::atomic<bool> s_bAsked{false};
static_assert(std::atomic<bool>::is_always_lock_free); // a signal handler may do no more

// Watches nest: the work of a verb may begin a step that watches by itself.
int s_nWatches = 0;
std::array<struct sigaction, sc_signals.size()> s_former;

void OnSignal(int nSignal)
{
    if (!s_bAsked.exchange(true))
        return;
    std::signal(nSignal, SIG_DFL); // it is blocked while we are here, and ends the process behind us
    std::raise(nSignal);
}

void Watch(size_t n)
{
    struct sigaction action = {};
    sigaction(sc_signals[n], nullptr, &s_former[n]);
    if (s_former[n].sa_handler == SIG_IGN) // who has started us wants it so, as nohup(1) does
        return;
    action.sa_handler = &OnSignal;
    action.sa_flags = SA_RESTART; // the library takes a read that is cut short for the end of the file
    sigemptyset(&action.sa_mask);
    sigaction(sc_signals[n], &action, nullptr);
}

} // namespace

CInterruptWatch::CInterruptWatch()
{
    if (s_nWatches++ > 0)
        return;
    s_bAsked.store(false);
    for (size_t n = 0; n < sc_signals.size(); ++n)
        Watch(n);
}

CInterruptWatch::~CInterruptWatch()
{
    if (--s_nWatches > 0)
        return;
    for (size_t n = 0; n < sc_signals.size(); ++n)
        sigaction(sc_signals[n], &s_former[n], nullptr);
}

void CInterruptWatch::ThrowIfAsked() const
{
    if (IsAsked())
        throw CAppError(EXIT_CODE::Interrupted, "interrupted");
}

bool CInterruptWatch::IsAsked() const
{
    return s_bAsked.load(std::memory_order_relaxed);
}

} // namespace Marvane::FrameSift
