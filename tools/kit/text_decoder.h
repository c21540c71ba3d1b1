// Attribute texts of map data to UTF-8, by the encoding that the user names.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace zm::tool {

/// True for text that is UTF-8 throughout.
bool IsUtf8(std::string_view text);

class TextDecoder {
 public:
    /// Makes a text UTF-8. False, and it stays as it is, where it is not of the encoding.
    using Convert = std::function<bool(std::string&)>;
    /// \param name  GBK, GB2312, CP936, 936, ANSI_936, GB18030, UTF-8, or another one that the system knows; empty: the
    ///              data is taken as UTF-8. Letters in either case. Throws Failure (kUsage) for an unknown name.
    explicit TextDecoder(const std::string& name);

    /// An encoding was named.
    bool named() const { return !m_name.empty(); }
    /// The texts are UTF-8 already, named so or not.
    bool plain() const { return m_plain; }
    const std::string& name() const { return m_name; }
    /// The text in UTF-8. False, and text stays as it is, where it is not of this encoding.
    bool Decode(std::string& text) const;

 private:
    std::string m_name;
    bool m_plain = true;
    Convert m_convert;
};

/// The system's way to UTF-8 from an encoding by its name in capitals; empty for an unknown name.
TextDecoder::Convert SystemDecoder(const std::string& name);

}  // namespace zm::tool
