#include "tools/zenro/output_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "tools/zenro/exit_codes.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

// The names of unfinished files, in plain memory so that a signal handler may read them.
constexpr int kSlots = 64;
constexpr int kPathSize = 4096;
char g_unfinished[kSlots][kPathSize];

int TakeSlot(const std::string& path) {
    if (path.size() >= kPathSize) return -1;
    for (int i = 0; i < kSlots; ++i) {
        if (g_unfinished[i][0] != '\0') continue;
        std::memcpy(g_unfinished[i], path.c_str(), path.size() + 1);
        return i;
    }
    return -1;
}

void FreeSlot(int slot) {
    if (slot >= 0) g_unfinished[slot][0] = '\0';
}

[[noreturn]] void CannotWrite(const fs::path& target, const std::string& why) {
    throw Failure(kNoOutput, target.string() + ": cannot be written: " + why + ".");
}

}  // namespace

void RemoveUnfinishedOutputs() {
    for (auto& path : g_unfinished)
        if (path[0] != '\0') unlink(path);
}

OutputFile::OutputFile(fs::path target, bool overwrite) : m_target(std::move(target)), m_overwrite(overwrite) {
    std::error_code error;
    const fs::file_status there = fs::status(m_target, error);
    if (fs::is_directory(there)) CannotWrite(m_target, "it is a directory; give a file name");
    if (fs::exists(there) && !overwrite) CannotWrite(m_target, "it exists; give --overwrite to replace it");
    fs::path folder = m_target.parent_path();
    if (folder.empty()) folder = ".";
    if (!fs::is_directory(folder, error)) CannotWrite(m_target, "the directory " + folder.string() + " is missing");
    // Hidden, and with the extension last, since readers of formats go by it.
    std::string name(1, '.');
    name.append(m_target.stem().string()).append(1, '.').append(std::to_string(getpid())).append(".part");
    m_temporary = folder / name.append(m_target.extension().string());
    const int file = open(m_temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (file < 0) CannotWrite(m_target, std::strerror(errno));
    close(file);
    m_slot = TakeSlot(fs::absolute(m_temporary).string());
    m_temporary = fs::absolute(m_temporary);
    m_target = fs::absolute(m_target);
}

OutputFile::~OutputFile() {
    if (m_temporary.empty()) return;
    std::error_code ignored;
    fs::remove(m_temporary, ignored);
    FreeSlot(m_slot);
}

void OutputFile::Commit() {
    std::error_code error;
    if (!m_overwrite && fs::exists(m_target, error)) CannotWrite(m_target, "it came into being meanwhile");
    fs::rename(m_temporary, m_target, error);
    if (error) CannotWrite(m_target, error.message());
    m_temporary.clear();
    FreeSlot(m_slot);
}

void CheckOutput(const fs::path& target, bool overwrite) {
    const OutputFile probe(target, overwrite);
}

void WriteOutput(const fs::path& target, bool overwrite, const std::string& bytes) {
    OutputFile out(target, overwrite);
    std::FILE* file = std::fopen(out.path().c_str(), "wb");
    if (file == nullptr) CannotWrite(target, std::strerror(errno));
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    const int reason = errno;
    const bool closed = std::fclose(file) == 0;
    if (!written || !closed) CannotWrite(target, std::strerror(written ? errno : reason));
    out.Commit();
}

}  // namespace zm::tool
