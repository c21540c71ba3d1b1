// What the system says of its reader: the languages, the encoding of the terminal; and where the program lies.
#pragma once

#include <filesystem>
#include <string>

namespace zm::tool {

/// The languages to look for, the best first, with colons between: "zh_CN", "zh_TW:zh_CN"; empty for English.
/// ZENRO_LANGUAGE comes first; then LANGUAGE, LC_ALL, LC_MESSAGES and LANG, as gettext goes by them; on Windows, where
/// none of these is set, the language of the desktop. The locale need not be generated on the machine.
std::string ReaderLanguages();

/// The locale's encoding of characters is GBK, or one that holds it or is held by it.
bool LocaleEncodingIsGbk();

/// The folder that the program lies in; empty where the system does not say.
std::filesystem::path ProgramFolder();

}  // namespace zm::tool
