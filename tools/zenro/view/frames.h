// Messages over pipes: four bytes of length, the lowest first, then a text.
#pragma once

#include <optional>
#include <string>

namespace zm::tool {

/// Writes a message whole. False where nobody reads any more.
bool SendFrame(int file, const std::string& text);

/// The messages that come from a pipe.
class FrameReader {
 public:
    explicit FrameReader(int file) : m_file(file) {}
    /// Takes what is there, and waits where there is nothing. False at the end, and for bytes that are no message.
    bool Take();
    /// The next message that is whole.
    std::optional<std::string> Next();

 private:
    int m_file;
    std::string m_bytes;
};

}  // namespace zm::tool
