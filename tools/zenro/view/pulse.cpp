#include "tools/zenro/view/pulse.h"

#include <signal.h>

#include <chrono>

namespace zm::tool {
namespace {

constexpr std::chrono::milliseconds kBeat{100};

}  // namespace

// The thread takes no signal, and calls nothing of the library: a fork meets no lock that it holds.
Pulse::Pulse(std::atomic<std::uint32_t>& count) {
    sigset_t all, before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    m_thread = std::jthread([this, &count](const std::stop_token& stop) {
        std::unique_lock lock(m_mutex);
        while (!stop.stop_requested()) {
            count.fetch_add(1, std::memory_order_relaxed);
            m_end.wait_for(lock, stop, kBeat, [] { return false; });
        }
    });
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

}  // namespace zm::tool
