// The worker of a window, without the window: a test speaks with it.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "tools/kit/shared_picture.h"
#include "tools/zenro/view/frames.h"

namespace zm::test {

class MapWorker {
 public:
    /// Starts zenro view with these arguments for a memory of its own.
    explicit MapWorker(const std::vector<std::string>& arguments);
    ~MapWorker();
    MapWorker(const MapWorker&) = delete;
    MapWorker& operator=(const MapWorker&) = delete;

    void Send(const nlohmann::json& message) const;
    /// The next message that is of this kind; those before it are dropped. Fails after a minute.
    nlohmann::json Await(const std::string& kind);
    /// Asks and awaits the answer.
    nlohmann::json Ask(nlohmann::json question);
    /// Asks for a picture; with labels, whatever the number of features.
    nlohmann::json Draw(double x, double y, double pixel, int width, int height, double scale, double rotation = 0.0);
    /// A picture that is wanted now, and not waited for.
    void Want(double x, double y, double pixel, int width, int height, double scale, double rotation = 0.0);
    const std::uint32_t* Pixels(int slot) const { return tool::PixelsOf(m_memory, slot); }
    tool::SharedHead& Head() const { return *static_cast<tool::SharedHead*>(m_memory); }
    pid_t process() const { return m_process; }
    /// As a window that goes away.
    void CloseInput();
    /// Its exit status; -1 where it runs on for a minute.
    int Wait();
    /// Why it ended, by its last message.
    std::string LastWords();

 private:
    void* m_memory = nullptr;
    int m_to = -1, m_from = -1;
    pid_t m_process = -1;
    std::uint32_t m_number = 0;
    std::optional<tool::FrameReader> m_reader;
};

}  // namespace zm::test
