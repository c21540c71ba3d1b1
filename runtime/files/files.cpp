#include "runtime/files/files.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

#include "runtime/files/directory_names.h"
#include "runtime/files/path_escape.h"
#include "runtime/state.h"
#include "runtime/text/gbk.h"

namespace fs = std::filesystem;

namespace zm::files {
namespace {

#if !defined(_WIN32)
// The path with each component that does not exist replaced by the name that differs from it in case only.
fs::path FollowIgnoringCase(const fs::path& path) {
    fs::path found;
    bool exists = true;
    for (const fs::path& component : path) {
        fs::path next = found / component;
        std::error_code ignored;
        if (exists && component.native() != "/" && !fs::exists(next, ignored)) {
            const std::string name = runtime::state().directoryNames.Find(found, component.native());
            exists = !name.empty();
            if (exists) next = found / name;
        }
        found = std::move(next);
    }
    return found;
}
#endif

bool AccessRefused(int error) {
    return error == EACCES || error == EPERM || error == EROFS || error == ETXTBSY;
}

}  // namespace

fs::path PathAsWritten(const char* path) {
    std::string utf8 = gbk::ToUtf8(path != nullptr ? path : "");
#if !defined(_WIN32)
    std::replace(utf8.begin(), utf8.end(), '\\', '/');
#endif
    return fs::path(reinterpret_cast<const char8_t*>(utf8.c_str()));
}

fs::path SystemPath(const char* path) {
    fs::path raw = PathAsWritten(path);
#if !defined(_WIN32)
    std::error_code ignored;
    if (!raw.empty() && !fs::exists(raw, ignored)) return FollowIgnoringCase(raw);
#endif
    return raw;
}

fs::path SystemPathIn(const fs::path& directory, const char* name) {
    const std::string utf8 = gbk::ToUtf8(name != nullptr ? name : "");
    fs::path path = directory / fs::path(reinterpret_cast<const char8_t*>(utf8.c_str()));
#if !defined(_WIN32)
    std::error_code ignored;
    if (!fs::exists(path, ignored)) {
        const std::string found = runtime::state().directoryNames.Find(directory, utf8);
        if (!found.empty()) return directory / found;
    }
#endif
    return path;
}

std::string PathText(const fs::path& path, int* lost) {
    const std::u8string utf8 = path.u8string();
    if (lost != nullptr) *lost = 0;
    return WithBackslashes(EscapedPath({reinterpret_cast<const char*>(utf8.data()), utf8.size()}));
}

std::FILE* Open(const char* path, const char* mode) {
    if (path == nullptr || *path == '\0' || mode == nullptr) return nullptr;
    const fs::path file = SystemPath(path);
    std::error_code ignored;
    if (fs::is_directory(file, ignored)) {
        errno = EISDIR;
        return nullptr;
    }
#if defined(_WIN32)
    return _wfopen(file.c_str(), std::wstring(mode, mode + std::char_traits<char>::length(mode)).c_str());
#else
    std::string plain(mode);
    std::erase(plain, 't');
    return std::fopen(file.c_str(), plain.c_str());
#endif
}

std::FILE* OpenToRead(const char* path, const char* mode) {
    errno = 0;
    if (std::FILE* file = Open(path, mode)) return file;
    if (mode == nullptr || *mode != 'r' || std::strchr(mode, '+') == nullptr || !AccessRefused(errno)) return nullptr;
    std::string readOnly(mode);
    std::erase(readOnly, '+');
    return Open(path, readOnly.c_str());
}

std::size_t LastSeparator(std::string_view path) {
    std::size_t last = std::string_view::npos;
    for (std::size_t i = 0; i < path.size(); ++i) {
        if (path[i] == '\\' || path[i] == '/')
            last = i;
        else if (gbk::IsLead(path[i]))
            ++i;  // a second byte may be a backslash
    }
    return last;
}

std::size_t ExtensionDot(std::string_view path) {
    const std::size_t dot = path.rfind('.');  // no second byte of a character is a "."
    const std::size_t separator = LastSeparator(path);
    if (dot == std::string_view::npos || (separator != std::string_view::npos && dot < separator))
        return std::string_view::npos;
    return dot;
}

std::string WithBackslashes(std::string_view path) {
    std::string text(path);
    std::replace(text.begin(), text.end(), '/', '\\');  // no second byte of a character is a slash
    return text;
}

}  // namespace zm::files
