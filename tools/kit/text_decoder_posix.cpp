#include <iconv.h>

#include <memory>

#include "tools/kit/text_decoder.h"

namespace zm::tool {
namespace {

// What iconv_open returns for an encoding that it does not know.
const iconv_t kNoConverter = reinterpret_cast<iconv_t>(-1);  // NOLINT(performance-no-int-to-ptr)

bool ToUtf8(iconv_t converter, std::string& text) {
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
    std::string result(text.size() * 4 + 8, '\0');
    char* in = text.data();
    char* out = result.data();
    std::size_t inLeft = text.size(), outLeft = result.size();
    if (iconv(converter, &in, &inLeft, &out, &outLeft) == static_cast<std::size_t>(-1)) return false;
    result.resize(result.size() - outLeft);
    text = std::move(result);
    return true;
}

}  // namespace

TextDecoder::Convert SystemDecoder(const std::string& name) {
    const iconv_t converter = iconv_open("UTF-8", name.c_str());
    if (converter == kNoConverter) return nullptr;
    const std::shared_ptr<void> owner(converter, iconv_close);
    return [owner](std::string& text) { return ToUtf8(owner.get(), text); };
}

}  // namespace zm::tool
