// Chinese for what Qt's own dialogs say: for files, for printing, for questions.
#pragma once

#include <QTranslator>

namespace zm::view {

/// Has Qt's dialogs speak the language of the window: by Qt's own texts where they are installed, else by ours.
void TranslateQt();

class QtPhrases : public QTranslator {
 public:
    using QTranslator::QTranslator;
    QString translate(const char* context, const char* text, const char* note, int number) const override;
    bool isEmpty() const override { return false; }
};

}  // namespace zm::view
