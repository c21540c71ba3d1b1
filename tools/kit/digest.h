// SHA-256 of bytes and files.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace zm::tool {

class Digest {
 public:
    Digest();
    ~Digest();
    Digest(const Digest&) = delete;
    Digest& operator=(const Digest&) = delete;
    /// Adds bytes as they are.
    void Add(const char* bytes, std::size_t size);
    /// Adds a text with its length, so that two texts are not one longer one.
    void AddText(std::string_view text);
    /// Adds the bytes of a file; a file that is not there is kept apart from an empty one.
    void AddFile(const std::filesystem::path& path);
    /// The hash in hex. Ends the digest.
    std::string Hex();

 private:
    struct State;
    std::unique_ptr<State> m_state;
};

/// The hash of a file in hex; empty where it cannot be read.
std::string HashOfFile(const std::filesystem::path& path);

}  // namespace zm::tool
