#include "tools/zenro/view/frames.h"

#include <unistd.h>

#include <cerrno>
#include <cstdint>

namespace zm::tool {
namespace {

constexpr std::size_t kHead = 4, kMostBytes = std::size_t{256} << 20;

std::size_t LengthOf(const std::string& bytes) {
    std::size_t length = 0;
    for (std::size_t i = kHead; i-- > 0;) length = length << 8 | static_cast<unsigned char>(bytes[i]);
    return length;
}

}  // namespace

bool SendFrame(int file, const std::string& text) {
    std::string bytes;
    for (std::size_t i = 0; i < kHead; ++i) bytes += static_cast<char>(text.size() >> (8 * i));
    bytes += text;
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t written = write(file, bytes.data() + done, bytes.size() - done);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        done += static_cast<std::size_t>(written);
    }
    return true;
}

bool FrameReader::Take() {
    char piece[65536];
    ssize_t got = 0;
    do got = read(m_file, piece, sizeof piece);
    while (got < 0 && errno == EINTR);
    if (got <= 0) return false;
    m_bytes.append(piece, static_cast<std::size_t>(got));
    return m_bytes.size() < kHead || LengthOf(m_bytes) <= kMostBytes;
}

std::optional<std::string> FrameReader::Next() {
    if (m_bytes.size() < kHead || m_bytes.size() - kHead < LengthOf(m_bytes)) return std::nullopt;
    std::string text = m_bytes.substr(kHead, LengthOf(m_bytes));
    m_bytes.erase(0, kHead + text.size());
    return text;
}

}  // namespace zm::tool
