#include "tools/kit/digest.h"

#include <openssl/evp.h>

#include <cstdio>
#include <new>
#include <vector>

namespace zm::tool {
namespace {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

// Adds the bytes of a file; false where it cannot be read.
bool AddBytes(Digest& digest, const std::filesystem::path& path) {
    const std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "rb"));
    if (file == nullptr) return false;
    std::vector<char> piece(1u << 18);
    while (const std::size_t got = std::fread(piece.data(), 1, piece.size(), file.get())) digest.Add(piece.data(), got);
    return std::ferror(file.get()) == 0;
}

}  // namespace

struct Digest::State {
    EVP_MD_CTX* context = EVP_MD_CTX_new();
    ~State() { EVP_MD_CTX_free(context); }
};

Digest::Digest() : m_state(std::make_unique<State>()) {
    if (m_state->context == nullptr || EVP_DigestInit_ex(m_state->context, EVP_sha256(), nullptr) != 1)
        throw std::bad_alloc();
}

Digest::~Digest() = default;

void Digest::Add(const char* bytes, std::size_t size) {
    EVP_DigestUpdate(m_state->context, bytes, size);
}

void Digest::AddText(std::string_view text) {
    const std::string head = std::to_string(text.size()) + ":";
    Add(head.data(), head.size());
    Add(text.data(), text.size());
}

void Digest::AddFile(const std::filesystem::path& path) {
    const std::string hash = HashOfFile(path);
    AddText(hash.empty() ? "no file" : hash);
}

std::string Digest::Hex() {
    unsigned char sum[EVP_MAX_MD_SIZE];
    unsigned int size = 0;
    EVP_DigestFinal_ex(m_state->context, sum, &size);
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string hex;
    for (unsigned int i = 0; i < size; ++i) hex.append(1, kDigits[sum[i] >> 4]).append(1, kDigits[sum[i] & 15]);
    return hex;
}

std::string HashOfFile(const std::filesystem::path& path) {
    Digest digest;
    return AddBytes(digest, path) ? digest.Hex() : std::string();
}

}  // namespace zm::tool
