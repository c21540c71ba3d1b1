// Any bytes as GBK and as UTF-8: what comes out is well formed, and a text that has all its characters in both comes
// back the same.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "runtime/text/gbk.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::string utf8 = zm::gbk::ToUtf8(bytes);
    const std::string gbk = zm::gbk::FromUtf8(utf8);
    // A second round changes nothing any more.
    if (zm::gbk::ToUtf8(gbk) != zm::gbk::ToUtf8(zm::gbk::FromUtf8(zm::gbk::ToUtf8(gbk)))) std::abort();
    const std::string other = zm::gbk::FromUtf8(bytes);
    if (other.size() > 2 * size + 2) std::abort();
    zm::gbk::ToUtf8(other);
    return 0;
}
