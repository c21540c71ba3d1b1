// The profile service.
#include "runtime/profile/profile.h"

#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>

#include "runtime/files/files.h"
#include "runtime/files/system.h"
#include "runtime/profile/profile_cache.h"
#include "runtime/profile/profile_text.h"
#include "runtime/state.h"
#include "runtime/text/numbers.h"
#include "runtime/texts.h"
#include "zenromath/runtime.h"

namespace fs = std::filesystem;

namespace zm::profile {
namespace {

constexpr int kMostLinks = 40;  // one after the other

std::string_view View(const char* text) {
    return text != nullptr ? std::string_view(text) : std::string_view("");
}

bool IsBareName(std::string_view file) {
    return files::LastSeparator(file) == std::string_view::npos;
}

// Where a file lies: a bare name in the configuration directory. Empty where there is no such place.
fs::path PathOf(const char* file) {
    if (file == nullptr || *file == '\0') return {};
    if (!IsBareName(file)) return files::SystemPath(file);
    const fs::path directory = system::ConfigDirectory();
    if (directory.empty()) return {};
    return files::SystemPathIn(directory, file);
}

// Makes the configuration directory if that is where the file is to lie; no other directory is ever made.
void MakeDirectoryFor(const fs::path& path) {
    const fs::path directory = system::ConfigDirectory();
    std::error_code ignored;
    if (path.parent_path() == directory) fs::create_directories(directory, ignored);
}

// The file that a path means in the end: a link is followed, so that it stays a link.
fs::path Followed(fs::path path) {
    std::error_code ec;
    for (int links = 0; links < kMostLinks && fs::is_symlink(path, ec); ++links) {
        const fs::path target = fs::read_symlink(path, ec);
        if (ec) break;
        path = path.parent_path() / target;
    }
    return path;
}

// Says why nothing is saved, and which process to look at.
void SayHeld(const fs::path& path, long holder) {
    const std::string name = files::PathText(path);
    const std::string text = holder > 0 ? numbers::Text(runtime::texts::kHeldByProcess.gbk, name.c_str(), holder)
                                        : numbers::Text(runtime::texts::kHeld.gbk, name.c_str());
    _LMsg(text.c_str(), nullptr, 0);
}

// always: the file is written also where the edits change nothing.
bool Carry(const fs::path& name, const std::vector<Edit>& edits, bool always = false) {
    MakeDirectoryFor(name);
    const fs::path path = Followed(name);
    const system::WriteLock lock(path.parent_path());
    if (!lock.held()) {
        if (lock.waited()) SayHeld(path, lock.holder());
        return false;
    }
    std::string bytes;
    system::FileStamp stamp;
    std::error_code ec;
    // What is there and cannot be read, or is no file, is not to be written over.
    if (!system::ReadWholeFile(path, bytes, stamp) && fs::exists(path, ec)) return false;
    Text text(std::move(bytes));
    bool changed = always;
    for (const Edit& edit : edits) changed = text.Apply(edit) || changed;
    return !changed || system::ReplaceContent(path, text.Bytes());
}

bool Flush() {
    PendingWrites& pending = runtime::state().pendingWrites;
    const std::vector<PendingWrites::File> files = std::move(pending.files);
    pending.files.clear();
    for (const PendingWrites::File& file : files)
        if (!Carry(file.path, file.edits)) pending.failed = true;
    return !pending.failed;
}

bool Submit(const char* file, Edit edit) {
    const fs::path path = PathOf(file);
    if (path.empty()) return false;
    PendingWrites& pending = runtime::state().pendingWrites;
    if (pending.batches == 0) return Carry(path, {std::move(edit)});
    for (PendingWrites::File& waiting : pending.files) {
        if (waiting.path != path) continue;
        waiting.edits.push_back(std::move(edit));
        return true;
    }
    pending.files.push_back({path, {std::move(edit)}});
    return true;
}

const Text* ReadFile(const char* file) {
    if (!runtime::state().pendingWrites.files.empty()) Flush();
    if (file == nullptr || *file == '\0') return nullptr;
    Cache& profiles = runtime::state().profiles;
    return IsBareName(file) ? profiles.Read(PathOf(file)) : profiles.Read(file);
}

// Takes the list of texts, each with an end byte, into a buffer: all of it and one end byte more, or what fits and two.
class ListWriter {
 public:
    ListWriter(char* buffer, unsigned int size) : m_buffer(buffer), m_size(size) {}
    void Put(std::string_view bytes) {
        if (m_size > 0) {
            const std::size_t room = m_size - std::min<std::size_t>(m_size, m_length);
            std::memcpy(m_buffer + m_length, bytes.data(), std::min(room, bytes.size()));
        }
        m_length = std::min<std::size_t>(m_length + bytes.size(), kFull);
    }
    void End() { Put(std::string_view("\0", 1)); }
    bool empty() const { return m_length == 0; }
    unsigned int Finish() {
        if (m_size == 0) return 0;
        if (m_length < m_size) {
            // An empty list too ends in two zeros where there is room.
            m_buffer[m_length] = '\0';
            if (m_length == 0 && m_size > 1) m_buffer[1] = '\0';
            return static_cast<unsigned int>(m_length);
        }
        m_buffer[m_size - 1] = '\0';
        if (m_size < 2) return 0;
        m_buffer[m_size - 2] = '\0';
        return m_size - 2;
    }

 private:
    static constexpr std::size_t kFull = static_cast<std::size_t>(-1) / 2;
    char* m_buffer;
    std::size_t m_size;
    std::size_t m_length = 0;
};

unsigned int CopyText(std::string_view text, char* buffer, unsigned int size) {
    if (size == 0) return 0;
    const std::size_t count = std::min<std::size_t>(text.size(), size - 1);
    if (count > 0) std::memcpy(buffer, text.data(), count);
    buffer[count] = '\0';
    return static_cast<unsigned int>(count);
}

// One pair of equal quotes around a value does not count.
std::string_view WithoutQuotes(std::string_view value) {
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front())
        return value.substr(1, value.size() - 2);
    return value;
}

std::string_view Default(const char* def) {
    std::string_view text = View(def);
    while (text.ends_with(' ')) text.remove_suffix(1);
    return text;
}

// The number that a text begins with, modulo 2 to the 32nd.
unsigned int NumberOf(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || (text.front() >= '\t' && text.front() <= '\r')))
        text.remove_prefix(1);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    unsigned int base = 10;
    if (text.starts_with("0x")) base = 16;
    if (text.starts_with("0o")) base = 8;
    if (text.starts_with("0b")) base = 2;
    if (base != 10) text.remove_prefix(2);
    unsigned int number = 0;
    for (const char c : text) {
        unsigned int digit = base;
        if (c >= '0' && c <= '9') digit = static_cast<unsigned int>(c - '0');
        if (c >= 'A' && c <= 'F') digit = static_cast<unsigned int>(c - 'A') + 10;
        if (c >= 'a' && c <= 'f') digit = static_cast<unsigned int>(c - 'a') + 10;
        if (digit >= base) break;
        number = number * base + digit;
    }
    return negative ? 0u - number : number;
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

}  // namespace

unsigned int GetInt(const char* section, const char* key, int def, const char* file) {
    const auto byDefault = static_cast<unsigned int>(def);
    // Without a name there is a list where a number would be.
    if (section == nullptr || key == nullptr) return 0;
    const Text* text = ReadFile(file);
    const std::string_view value = text != nullptr ? text->Find(section, key) : std::string_view();
    return value.data() == nullptr ? byDefault : NumberOf(WithoutQuotes(value));
}

unsigned int GetSection(const char* section, char* buffer, unsigned int size, const char* file) {
    if (buffer == nullptr) return 0;
    ListWriter list(buffer, size);
    if (const Text* text = section != nullptr ? ReadFile(file) : nullptr) {
        text->ForEachItem(section, [&](std::string_view key, bool hasValue, std::string_view value) {
            list.Put(key);
            if (hasValue) {
                list.Put("=");
                list.Put(value);
            }
            list.End();
        });
    }
    return list.Finish();
}

unsigned int GetString(const char* section, const char* key, const char* def, char* buffer, unsigned int size,
                       const char* file) {
    if (buffer == nullptr || size == 0) return 0;
    const Text* text = ReadFile(file);
    if (section != nullptr && key != nullptr) {
        const std::string_view value = text != nullptr ? text->Find(section, key) : std::string_view();
        return CopyText(value.data() != nullptr ? WithoutQuotes(value) : Default(def), buffer, size);
    }
    ListWriter list(buffer, size);
    const auto add = [&](std::string_view name) {
        list.Put(name);
        list.End();
    };
    if (text != nullptr && section == nullptr) text->ForEachSection(add);
    if (text != nullptr && section != nullptr)
        text->ForEachItem(section, [&](std::string_view name, bool hasValue, std::string_view) {
            if (hasValue && !name.empty()) add(name);  // an empty name would end the list
        });
    if (section != nullptr && list.empty()) return CopyText(Default(def), buffer, size);
    return list.Finish();
}

bool GetStruct(const char* section, const char* key, void* data, unsigned int size, const char* file) {
    if (section == nullptr || key == nullptr || (data == nullptr && size > 0)) return false;
    const Text* text = ReadFile(file);
    const std::string_view value = text != nullptr ? WithoutQuotes(text->Find(section, key)) : std::string_view();
    if (value.size() != (static_cast<std::size_t>(size) + 1) * 2) return false;
    std::string bytes;
    unsigned int sum = 0;
    for (std::size_t i = 0; i < value.size(); i += 2) {
        const int high = HexDigit(value[i]);
        const int low = HexDigit(value[i + 1]);
        if (high < 0 || low < 0) return false;
        const auto byte = static_cast<unsigned int>(high * 16 + low);
        if (bytes.size() == size) {
            if (byte != (sum & 0xFF)) return false;
        } else {
            sum += byte;
            bytes += static_cast<char>(byte);
        }
    }
    if (bytes.size() > size) return false;
    if (size > 0) std::memcpy(data, bytes.data(), size);
    return true;
}

bool WriteString(const char* section, const char* key, const char* value, const char* file) {
    if (section == nullptr || !IsSectionName(section)) return false;
    if (key == nullptr) return Submit(file, {Edit::Kind::removeSection, section, {}, {}});
    if (value == nullptr) return Submit(file, {Edit::Kind::removeKey, section, key, {}});
    if (!IsKeyName(WithoutBlanks(key)) || !IsValue(value)) return false;
    return Submit(file, {Edit::Kind::setKey, section, key, value});
}

bool WriteSection(const char* section, const char* text, const char* file) {
    if (section == nullptr || !IsSectionName(section)) return false;
    if (text == nullptr) return Submit(file, {Edit::Kind::removeSection, section, {}, {}});
    std::string items;
    for (const char* item = text; *item != '\0'; item += std::strlen(item) + 1) {
        const std::string_view line = WithoutBlanks(item);
        // A line end or a header among the items would break the section in two.
        if (!IsValue(item) || (line.starts_with('[') && !IsKeyName(line.substr(0, line.find('='))))) return false;
        items += item;
        items += '\0';
    }
    return Submit(file, {Edit::Kind::replaceSection, section, {}, items});
}

bool WriteStruct(const char* section, const char* key, const void* data, unsigned int size, const char* file) {
    if (key == nullptr || data == nullptr) return WriteString(section, key, nullptr, file);
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string value;
    unsigned int sum = 0;
    const auto put = [&](unsigned int byte) {
        value += kDigits[byte >> 4 & 0xF];
        value += kDigits[byte & 0xF];
    };
    for (unsigned int i = 0; i < size; ++i) {
        const unsigned int byte = static_cast<const unsigned char*>(data)[i];
        put(byte);
        sum += byte;
    }
    put(sum);
    return WriteString(section, key, value.c_str(), file);
}

bool WriteStringAnew(const char* section, const char* key, const char* value, const char* file) {
    const fs::path path = PathOf(file);
    return !path.empty() && Carry(path, {{Edit::Kind::setKey, section, key, value}}, true);
}

Batch::Batch() {
    ++runtime::state().pendingWrites.batches;
}

Batch::~Batch() {
    PendingWrites& pending = runtime::state().pendingWrites;
    if (pending.batches > 0 && --pending.batches > 0) return;
    Flush();
    pending.failed = false;
}

bool Batch::Commit() {
    return Flush();
}

}  // namespace zm::profile
