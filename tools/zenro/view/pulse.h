// A sign of life of a process in shared memory: a number that counts on whatever the process does, as long as it is not
// stopped.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

namespace zm::tool {

class Pulse {
 public:
    explicit Pulse(std::atomic<std::uint32_t>& count);

 private:
    std::mutex m_mutex;
    std::condition_variable_any m_end;
    std::jthread m_thread;  // last: it ends before what it waits with
};

}  // namespace zm::tool
