// What the window says, in the language of the system: Chinese or English.
#pragma once

#include <QString>

class QTranslator;

namespace zm::view {

/// The English phrase, or what it is in Chinese where the system speaks that.
QString Say(const char* english);
/// True where the system speaks Chinese. ZENRO_LANGUAGE=en or zh decides otherwise.
bool SpeaksChinese();
/// The Chinese of a phrase, null where there is none: each phrase of the window has one.
const char* ChineseOf(const char* english);
/// Has Qt's own dialogs, for files, printing and questions, speak the language of the window. Its texts are those of the
/// package qt6-translations-l10n; without it they stay English.
/// \return  the texts, owned by the application; null where there are none
QTranslator* TranslateQt();

}  // namespace zm::view
