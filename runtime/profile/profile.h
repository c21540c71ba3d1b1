// The profile service: reads and writes the keys of profile files.
//
// It has the text format and the results of the service of Windows, on every system and under every code page, and is
// written here; docs/runtime/profile-files.md has the format and every decision. Texts are GBK bytes. A file is a GBK path; a bare
// name lies in the configuration directory of the machine, which is made when it is first written to.
#pragma once

namespace zm::profile {

// Arguments and results are those of the GetZenroProfile and WriteZenroProfile functions in zenromath/runtime.h; a null
// or empty file is one that does not exist.

unsigned int GetInt(const char* section, const char* key, int def, const char* file);
unsigned int GetSection(const char* section, char* buffer, unsigned int size, const char* file);
unsigned int GetString(const char* section, const char* key, const char* def, char* buffer, unsigned int size,
                       const char* file);
bool GetStruct(const char* section, const char* key, void* data, unsigned int size, const char* file);

bool WriteString(const char* section, const char* key, const char* value, const char* file);
/// The same, and the file is written also where it has that value: shows whether it can be.
bool WriteStringAnew(const char* section, const char* key, const char* value, const char* file);
bool WriteSection(const char* section, const char* text, const char* file);
bool WriteStruct(const char* section, const char* key, const void* data, unsigned int size, const char* file);

/// While one lives, writes are collected, and each file is written once, at the end or before the next read of it. What
/// other processes write meanwhile is kept. A write that is collected counts as done; Commit reports failures.
class Batch {
 public:
    [[nodiscard]] Batch();
    ~Batch();
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;
    /// Writes what was collected; false if any file could not be written since the batch began.
    bool Commit();
};

}  // namespace zm::profile
