#include "runtime/files.h"

#include <string>

#include "runtime/gbk.h"

namespace fs = std::filesystem;

fs::path zm::files::SystemPath(const char* path) {
    std::string utf8 = gbk::ToUtf8(path != nullptr ? path : "");
#if !defined(_WIN32)
    for (char& c : utf8)
        if (c == '\\') c = '/';
#endif
    return fs::path(reinterpret_cast<const char8_t*>(utf8.c_str()));
}

std::FILE* zm::files::Open(const char* path, const char* mode) {
    if (path == nullptr || *path == '\0' || mode == nullptr) return nullptr;
    const fs::path file = SystemPath(path);
#if defined(_WIN32)
    return _wfopen(file.c_str(), std::wstring(mode, mode + std::char_traits<char>::length(mode)).c_str());
#else
    std::string plain;
    for (const char* c = mode; *c != '\0'; ++c)
        if (*c != 't') plain += *c;
    return std::fopen(file.c_str(), plain.c_str());
#endif
}
