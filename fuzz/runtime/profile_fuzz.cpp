// Profile files of any content: what is read stays inside its buffers, what is written is there afterwards, and
// everything else of the file stays as it was.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "runtime/profile/profile_text.h"

namespace {

using zm::profile::Edit;
using zm::profile::Text;

void Check(bool good) {
    if (!good) std::abort();
}

// Takes the next piece of the input, up to a zero.
std::string Piece(std::string& input) {
    const std::size_t end = std::min(input.find('\0'), input.size());
    std::string piece = input.substr(0, end);
    input.erase(0, std::min(end + 1, input.size()));
    return piece;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string input(reinterpret_cast<const char*>(data), size);
    const std::string section = Piece(input);
    const std::string key = Piece(input);
    const std::string value = Piece(input);
    const std::string file = input;

    Text text(file);
    Check(text.Bytes() == file);
    std::size_t items = 0;
    text.ForEachSection([&](std::string_view name) {
        text.ForEachItem(name, [&](std::string_view, bool, std::string_view) { ++items; });
        if (items < 10000) text.Find(name, key);
    });
    if (!zm::profile::IsSectionName(section) || !zm::profile::IsKeyName(zm::profile::WithoutBlanks(key)) ||
        !zm::profile::IsValue(value))
        return 0;
    const bool utf16 = file.starts_with("\xFF\xFE");
    text.Apply({Edit::Kind::setKey, section, key, value});
    const Text again(text.Bytes());
    // A name that holds a closing bracket inside a character, or characters that UTF-16 has not, may read back
    // otherwise.
    if (!utf16 && section.find_first_of("[]") == std::string::npos && section.find('\xFF') == std::string::npos) {
        const std::string_view found = text.Find(section, key);
        Check(found.data() != nullptr);
        Check(found == zm::profile::WithoutBlanks(value));
    }
    text.Apply({Edit::Kind::replaceSection, section, {}, value + '\0' + key + '\0'});
    text.Apply({Edit::Kind::removeKey, section, key, {}});
    text.Apply({Edit::Kind::removeSection, section, {}, {}});
    const Text last(text.Bytes());
    Check(last.Bytes() == text.Bytes());
    return 0;
}
