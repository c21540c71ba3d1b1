#include "tests/support/test_host.h"

#include <algorithm>
#include <cstring>

namespace zm::test {
namespace {

int CopyText(const std::string& text, char* buffer, int size) {
    if (size <= 0) return 0;
    const std::size_t count = std::min(text.size(), static_cast<std::size_t>(size) - 1);
    std::memcpy(buffer, text.data(), count);
    buffer[count] = '\0';
    return static_cast<int>(count);
}

}  // namespace

int TestHost::GetText(HWND window, char* buffer, int size) {
    const auto found = texts.find(window);
    return found != texts.end() ? CopyText(found->second, buffer, size) : 0;
}

bool TestHost::GetFrameTitle(HWND window, char* buffer, int size) {
    if (window == nullptr || window != frame) return false;
    CopyText(frameTitle, buffer, size);
    return true;
}

bool TestHost::TakeMessage(QueueMessage& message, HWND window, unsigned int first, unsigned int last) {
    const auto fits = [&](const QueueMessage& m) {
        return (window == nullptr || m.window == window) &&
               ((first == 0 && last == 0) || (m.message >= first && m.message <= last));
    };
    const auto found = std::find_if(queue.begin(), queue.end(), fits);
    if (found == queue.end()) return false;
    message = *found;
    queue.erase(found);
    return true;
}

HWND TestHost::MakeWindow(const std::string& text) {
    m_windows.push_back(0);
    HWND window = reinterpret_cast<HWND>(&m_windows.back());
    texts[window] = text;
    return window;
}

}  // namespace zm::test
