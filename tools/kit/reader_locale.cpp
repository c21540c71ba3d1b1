#include "tools/kit/reader_locale.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#ifdef _WIN32
#include <windows.h>
#else
#include <langinfo.h>
#endif

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

std::string Environment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

// The first that is set of LC_ALL, the category and LANG.
std::string LocaleOf(const char* category) {
    for (const char* name : {"LC_ALL", category, "LANG"})
        if (std::string value = Environment(name); !value.empty()) return value;
    return {};
}

bool IsEnglish(const std::string& locale) {
    return locale.empty() || locale == "C" || locale == "POSIX" || locale.starts_with("C.") || locale == "en" ||
           locale.starts_with("en_");
}

// "zh_CN.UTF-8@x" is asked for as zh_CN. "zh" alone and the other lands that write simplified characters are zh_CN.
std::string Language(std::string locale) {
    locale = locale.substr(0, locale.find_first_of(".@"));
    std::replace(locale.begin(), locale.end(), '-', '_');
    const bool simplified = locale == "zh" || locale == "zh_SG" || locale == "zh_Hans" || locale == "zh_Hans_CN";
    return simplified ? "zh_CN" : locale;
}

// English needs no catalogue, so what follows it in the list is not wanted. A name goes into a path: letters alone.
std::string Known(const std::string& list) {
    std::string known;
    for (std::size_t from = 0; from < list.size();) {
        const std::size_t to = std::min(list.find(':', from), list.size());
        const std::string language = Language(list.substr(from, to - from));
        if (IsEnglish(language) && !language.empty()) return known;
        const bool plain = std::all_of(language.begin(), language.end(),
                                       [](unsigned char c) { return c < 0x80 && (std::isalpha(c) != 0 || c == '_'); });
        if (plain && !language.empty()) known += (known.empty() ? "" : ":") + language;
        from = to + 1;
    }
    return known;
}

#ifdef _WIN32
std::string DesktopLanguage() {
    const LANGID language = GetUserDefaultUILanguage();
    const auto part = SUBLANGID(language);
    const bool simplified = part == SUBLANG_CHINESE_SIMPLIFIED || part == SUBLANG_CHINESE_SINGAPORE;
    return PRIMARYLANGID(language) == LANG_CHINESE && simplified ? "zh_CN" : "";
}
#else
std::string DesktopLanguage() {
    return {};
}
#endif

}  // namespace

std::string ReaderLanguages() {
    if (const std::string wanted = Environment("ZENRO_LANGUAGE"); !wanted.empty()) return Known(wanted);
    const std::string locale = LocaleOf("LC_MESSAGES");
    if (locale.empty()) return DesktopLanguage();
    // As gettext: a locale without a language of its own is not asked for another one.
    if (locale == "C" || locale == "POSIX" || locale.starts_with("C.")) return {};
    const std::string list = Environment("LANGUAGE");
    return Known(list.empty() ? locale : list);
}

#ifdef _WIN32
bool LocaleEncodingIsGbk() {
    return false;  // the console shows UTF-8
}

fs::path ProgramFolder() {
    std::wstring name(32768, L'\0');
    name.resize(GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size())));
    return fs::path(name).parent_path();
}
#else
bool LocaleEncodingIsGbk() {
    std::string encoding = nl_langinfo(CODESET);
    // A locale that is not generated on this machine is known by its name alone.
    if (encoding == "ANSI_X3.4-1968") {
        const std::string locale = LocaleOf("LC_CTYPE");
        const std::size_t dot = locale.find('.');
        if (dot != std::string::npos) encoding = locale.substr(dot + 1);
    }
    std::string name;
    for (const unsigned char c : encoding)
        if (std::isalnum(c) != 0) name += static_cast<char>(std::toupper(c));
    return name == "GBK" || name == "GB18030" || name == "GB2312" || name == "EUCCN" || name == "CP936";
}

fs::path ProgramFolder() {
    std::error_code error;
    return fs::read_symlink("/proc/self/exe", error).parent_path();
}
#endif

}  // namespace zm::tool
