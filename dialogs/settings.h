// The logic of the six dialogs, one class each.
#pragma once

#include <string>

#include "dialogs/templates.h"
#include "zenromath/config.h"
#include "zenromath/dialog_view.h"

namespace zm::dialogs {

/// Layers. The list holds the table as text until OK.
class LayersDialog : public Dialog {
 public:
    LayersDialog() : Dialog(kLayersTemplate) {}
    void Open() override;
    void Pressed(int id) override;
    void RowChanged(int id) override;
    void AfterClose() override;

 private:
    void Insert();
    void Switch(int row);
    void SwitchAll();
    void Store();

    bool m_fromRow = false;  // the edits came from a row: asks before it goes in beside it
};

/// Pen widths. All its work on OK is done after the window is gone.
class WidthsDialog : public Dialog {
 public:
    WidthsDialog() : Dialog(kWidthsTemplate) {}
    void Open() override;
    void Pressed(int id) override;
    void AfterClose() override;

 private:
    void Add();
};

/// Note classes. Closing saves; there is no cancel.
class ClassesDialog : public Dialog {
 public:
    explicit ClassesDialog(TqNoteLayBase& notes) : Dialog(kClassesTemplate), m_notes(notes) {}
    void Open() override;
    void Pressed(int id) override;
    void RowChanged(int id) override;

 private:
    void Update();
    bool Save();

    TqNoteLayBase& m_notes;
};

/// Note fonts. Logical fonts are saved at once, the rest on OK.
class FontsDialog : public Dialog {
 public:
    explicit FontsDialog(TqNoteLayBase& notes) : Dialog(kFontsTemplate), m_notes(notes) {}
    void Open() override;
    void Pressed(int id) override;
    void RowChanged(int id) override;

 private:
    void Choose();
    void Update();
    bool Save();

    TqNoteLayBase& m_notes;
    LOGFONTA m_font{};
};

/// The palette.
class ColoursDialog : public Dialog {
 public:
    ColoursDialog();
    void Open() override;
    void Pressed(int id) override;
    void RowClicked(int id) override;
    const Sample* Painted() const override { return &m_sample; }

 private:
    bool Exchange();
    bool Number(int id, int& value);
    void ShowRow();
    void TakeRow();
    void Store();

    int m_parts[3] = {};  // red, green, blue of the edits at their last exchange
    Sample m_sample;
};

/// One line of text. value is emptied at once if it asks for a masked one.
class LineDialog : public Dialog {
 public:
    /// title may be null
    LineDialog(const char* title, CString& value);
    std::string Title() const override { return m_title; }
    void Open() override;
    void Pressed(int id) override;

 private:
    std::string m_title;
    CString& m_value;
    bool m_masked;
};

}  // namespace zm::dialogs
