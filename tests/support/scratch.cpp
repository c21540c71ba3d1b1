#include "tests/support/scratch.h"

#include <cstring>
#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>

namespace fs = std::filesystem;

zm::test::ScratchDir::ScratchDir() {
    std::random_device device;
    for (int attempt = 0; attempt < 100; ++attempt) {
        m_path = fs::temp_directory_path() / u8"zm 测试 ";  // by no code page
        m_path += std::to_string(device());
        if (fs::create_directory(m_path)) return;
    }
    throw std::runtime_error("no scratch directory could be made in " + fs::temp_directory_path().string());
}

zm::test::ScratchDir::~ScratchDir() {
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

zm::test::ScopedCurrentDir::ScopedCurrentDir(const fs::path& dir) : m_previous(fs::current_path()) {
    fs::current_path(dir);
}

zm::test::ScopedCurrentDir::~ScopedCurrentDir() {
    std::error_code ignored;
    fs::current_path(m_previous, ignored);
}

void zm::test::WriteFile(const fs::path& path, std::string_view bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out.flush()) throw std::runtime_error("cannot write " + path.string());
}

std::string zm::test::ReadFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read " + path.string());
    std::ostringstream out;
    out << in.rdbuf();
    return std::move(out).str();
}

std::FILE* zm::test::OpenFile(const fs::path& path, const char* mode) {
#if defined(_WIN32)
    return ::_wfopen(path.c_str(), std::wstring(mode, mode + std::strlen(mode)).c_str());
#else
    return std::fopen(path.c_str(), mode);
#endif
}
