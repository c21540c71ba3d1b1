// Profile files of the family: where each lies, the seven calls, and the copying of files.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

#include "runtime/files/files.h"
#include "runtime/profile/profile.h"
#include "runtime/text/gbk.h"
#include "zenromath/runtime.h"

namespace fs = std::filesystem;

namespace {

// Required: not the table of _LFWholeName. The library's own files are asked for with -1 and lie beside the module.
const char* DirectoryOf(int where) {
    switch (where) {
        case 0:
            return _LFPrjDir();
        case 2:
            return _LFIniDir();
        case 3:
            return _LFWndDir();
        default:
            return _LFModDir();
    }
}

// A name that is a path of its own: its first backslash, or for want of one first slash, is after its start, or it
// begins with two separators.
bool IsPath(std::string_view name) {
    std::size_t separator = std::string_view::npos;
    for (std::size_t i = 0; i < name.size() && separator == std::string_view::npos; ++i) {
        if (name[i] == '\\') separator = i;
        if (zm::gbk::IsLead(name[i])) ++i;  // a second byte may be a backslash
    }
    if (separator == std::string_view::npos) separator = name.find('/');
    if (separator == std::string_view::npos) return false;
    return separator != 0 || name.starts_with("\\\\") || name.starts_with("//");
}

void Tell(const char* path, const char* what) {
    _LMsg((std::string(path != nullptr ? path : "") + what).c_str(), nullptr, 0);
}

std::FILE* OpenOrTell(const char* path, const char* mode) {
    std::FILE* file = zm::files::Open(path, mode);
    if (file == nullptr) Tell(path, " no exist");
    return file;
}

// Copies at most so many bytes in blocks, to the end of the source; false where a block could not be written.
bool CopyBytes(std::FILE* source, std::FILE* copy, std::uintmax_t left) {
    char block[1024];
    while (left > 0) {
        const std::size_t count = std::fread(block, 1, std::min<std::uintmax_t>(sizeof block, left), source);
        if (std::fwrite(block, 1, count, copy) != count) return false;
        if (count < sizeof block) break;
        left -= count;
    }
    return true;
}

}  // namespace

CString GetZenroINIPath(const char* name, int where) {
    if (name == nullptr || *name == '\0') return {};
    if (IsPath(name)) return name;
    // Required: a separator always, so that a name with a leading one has two in a row; callers compare such paths.
    const std::string path = std::string(DirectoryOf(where)) + '\\' + name;
    if (path.size() <= zm::files::kPathLimit) return path.c_str();
    _LMsg(("The path is longer than 255 bytes and cannot be used. Use a shorter directory.\n" + path).c_str(), nullptr,
          0);
    return {};
}

unsigned int GetZenroProfileInt(const char* section, const char* key, int def, const char* file, int where) {
    return zm::profile::GetInt(section, key, def, GetZenroINIPath(file, where));
}

unsigned long GetZenroProfileSection(const char* section, char* buf, unsigned long size, const char* file, int where) {
    return zm::profile::GetSection(section, buf, static_cast<unsigned int>(size), GetZenroINIPath(file, where));
}

unsigned long GetZenroProfileString(const char* section, const char* key, const char* def, char* buf,
                                    unsigned long size, const char* file, int where) {
    return zm::profile::GetString(section, key, def, buf, static_cast<unsigned int>(size),
                                  GetZenroINIPath(file, where));
}

int GetZenroProfileStruct(const char* section, const char* key, void* data, unsigned int size, const char* file,
                          int where) {
    return zm::profile::GetStruct(section, key, data, size, GetZenroINIPath(file, where)) ? 1 : 0;
}

int WriteZenroProfileSection(const char* section, const char* text, const char* file, int where) {
    return zm::profile::WriteSection(section, text, GetZenroINIPath(file, where)) ? 1 : 0;
}

unsigned long WriteZenroProfileString(const char* section, const char* key, const char* value, const char* file,
                                      int where) {
    return zm::profile::WriteString(section, key, value, GetZenroINIPath(file, where)) ? 1 : 0;
}

int WriteZenroProfileStruct(const char* section, const char* key, void* data, unsigned int size, const char* file,
                            int where) {
    return zm::profile::WriteStruct(section, key, data, size, GetZenroINIPath(file, where)) ? 1 : 0;
}

int filescopy(char* from, char* to, char* mode) {
    std::FILE* source = OpenOrTell(from, "rb");
    if (source == nullptr) return 0;
    std::error_code ec;
    const bool same = to != nullptr && fs::equivalent(zm::files::SystemPath(from), zm::files::SystemPath(to), ec);
    if (same && (mode == nullptr || *mode == 'w')) {
        std::fclose(source);
        Tell(to, " was not copied: it would be emptied, since both names lead to it.");
        return 0;
    }
    // Where both are one file its end would flee before the copy: the bytes that it has now are what is copied.
    const auto length = fs::file_size(zm::files::SystemPath(from), ec);
    // Devices and files of the system say 0 and have bytes all the same: those are read to their end.
    std::uintmax_t left = ec || (length == 0 && !same) ? static_cast<std::uintmax_t>(-1) : length;
    std::FILE* copy = OpenOrTell(to, mode != nullptr ? mode : "w+b");
    if (copy == nullptr) {
        std::fclose(source);
        return 0;
    }
    if (mode != nullptr) std::fseek(copy, 0, SEEK_END);
    const bool good = CopyBytes(source, copy, left);
    std::fclose(source);
    if (std::fclose(copy) == 0 && good) return 1;
    Tell(to, " could not be written to its end. Free some space and copy again.");
    return 0;
}
