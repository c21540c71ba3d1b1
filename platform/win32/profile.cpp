// The profile service: the system's own.
#include "runtime/profile.h"

#include <windows.h>

namespace zm::profile {
namespace {

bool g_allWritten = true;  // since the outermost batch began

bool Noted(BOOL written) {
    if (written == 0) g_allWritten = false;
    return written != 0;
}

// A null or empty name is no file; the system would take it for its own "win.ini".
const char* OrNone(const char* file) {
    return file != nullptr && *file != '\0' ? file : "\\\\.\\none";
}

}  // namespace

unsigned int GetInt(const char* section, const char* key, int def, const char* file) {
    return GetPrivateProfileIntA(section, key, def, OrNone(file));
}
unsigned int GetSection(const char* section, char* buffer, unsigned int size, const char* file) {
    return GetPrivateProfileSectionA(section, buffer, size, OrNone(file));
}
unsigned int GetString(const char* section, const char* key, const char* def, char* buffer, unsigned int size,
                       const char* file) {
    return GetPrivateProfileStringA(section, key, def, buffer, size, OrNone(file));
}
bool GetStruct(const char* section, const char* key, void* data, unsigned int size, const char* file) {
    return GetPrivateProfileStructA(section, key, data, size, OrNone(file)) != 0;
}

bool WriteString(const char* section, const char* key, const char* value, const char* file) {
    return Noted(WritePrivateProfileStringA(section, key, value, OrNone(file)));
}
bool WriteSection(const char* section, const char* text, const char* file) {
    return Noted(WritePrivateProfileSectionA(section, text, OrNone(file)));
}
bool WriteStruct(const char* section, const char* key, const void* data, unsigned int size, const char* file) {
    return Noted(WritePrivateProfileStructA(section, key, const_cast<void*>(data), size, OrNone(file)));
}

// The system writes each key at once; a batch only remembers whether all of it went well.
Batch::Batch() {
    g_allWritten = true;
}
Batch::~Batch() = default;
bool Batch::Commit() {
    const bool whole = g_allWritten;
    g_allWritten = true;
    return whole;
}

}  // namespace zm::profile
