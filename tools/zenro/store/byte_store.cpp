#include "tools/zenro/store/byte_store.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "tools/kit/exit_codes.h"
#include "tools/kit/translation.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

constexpr std::size_t kPiece = 4u << 20;     // what goes into the file at once
constexpr std::size_t kWindow = 256u << 10;  // what is read at once

std::string TemporaryFolder() {
    std::error_code error;
    const fs::path folder = fs::temp_directory_path(error);
    return error ? std::string("/tmp") : folder.string();
}

[[noreturn]] void CannotWrite(int reason) {
    throw Failure(kNoOutput, Phrase("{0}: the features do not fit into memory, and no temporary file can be written "
                                    "there: {1}. Free some room, or name another folder in TMPDIR.",
                                    TemporaryFolder(), SystemError(reason)));
}

int OpenNameless() {
    std::string name = TemporaryFolder() + "/zenro-features-XXXXXX";
    const int file = mkostemp(name.data(), O_CLOEXEC);
    if (file < 0) CannotWrite(errno);
    unlink(name.c_str());  // it ends with the process, however that ends
    return file;
}

}  // namespace

ByteStore::~ByteStore() {
    if (m_file >= 0) close(m_file);
}

void ByteStore::File() {
    if (m_file < 0) m_file = OpenNameless();
    for (std::size_t done = 0; done < m_memory.size();) {
        const ssize_t written =
            pwrite(m_file, m_memory.data() + done, m_memory.size() - done, static_cast<off_t>(m_filed + done));
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) CannotWrite(errno);
        done += static_cast<std::size_t>(written);
    }
    m_filed += m_memory.size();
    m_memory.clear();
}

std::uint64_t ByteStore::Add(const std::string& bytes) {
    const std::uint64_t at = size();
    m_memory += bytes;
    if (m_memory.size() > (filed() ? std::min(kPiece, m_limit) : m_limit)) {
        File();
        m_memory.shrink_to_fit();
    }
    return at;
}

const char* ByteStore::Read(std::uint64_t at, std::size_t size) {
    if (at >= m_filed) return m_memory.data() + (at - m_filed);
    if (at >= m_windowAt && at + size <= m_windowAt + m_window.size()) return m_window.data() + (at - m_windowAt);
    // Readers go forward as a rule.
    m_windowAt = at;
    m_window.resize(static_cast<std::size_t>(std::min<std::uint64_t>(std::max(size, kWindow), m_filed - at)));
    for (std::size_t done = 0; done < m_window.size();) {
        const ssize_t got =
            pread(m_file, m_window.data() + done, m_window.size() - done, static_cast<off_t>(at + done));
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) throw Failure(kFailed, Phrase("the temporary file of features cannot be read back."));
        done += static_cast<std::size_t>(got);
    }
    return m_window.data();
}

}  // namespace zm::tool
