// The settings dialogs on a toolkit of one's own, here the terminal: a host shows a dialog, and the library decides.
// usage: settings_dialog < LINES      each line is what the user types: a text for OK, nothing for Cancel
#include <zenromath.h>
#include <zenromath/dialog_view.h>
#include <zenromath/gbk.h>
#include <zenromath/host.h>

#include <cstdio>
#include <iostream>
#include <string>

namespace {

class Terminal : public zm::Host {
 public:
    int ShowBox(const char* text, const char*, unsigned int) override {
        std::printf("! %s\n", zm::gbk::ToUtf8(text).c_str());
        return IDOK;
    }
    void Beep() override {}

    // A window in place of this would show all controls of the template; the terminal takes the first edit.
    bool RunDialog(zm::dialogs::Dialog& dialog) override {
        dialog.Open();
        const zm::dialogs::Control* edit = nullptr;
        for (const zm::dialogs::Control& control : dialog.layout().controls)
            if (edit == nullptr && control.kind == zm::dialogs::Kind::edit) edit = &control;
        if (edit == nullptr) return false;
        std::printf("%s [%s]: ", zm::gbk::ToUtf8(dialog.Title()).c_str(),
                    zm::gbk::ToUtf8(dialog.field(edit->id).text).c_str());
        std::string line;
        const bool ok = static_cast<bool>(std::getline(std::cin, line)) && !line.empty();
        if (ok) dialog.field(edit->id).text = zm::gbk::FromUtf8(line);
        std::printf("%s\n", line.c_str());
        constexpr int kOk = 1, kCancel = 2;
        dialog.Pressed(ok ? kOk : kCancel);
        return true;
    }
};

}  // namespace

int main() {
    Terminal terminal;
    zm::Host* before = zm::SetHost(&terminal);
    CString name(zm::gbk::FromUtf8("新村").c_str());
    const std::string title = zm::gbk::FromUtf8("图名");
    for (int i = 0; i < 2; ++i) {
        const int done = ExecOneEdit(title.c_str(), name);
        std::printf("%s: %s\n", done != 0 ? "OK" : "Cancel", zm::gbk::ToUtf8(name.GetString()).c_str());
    }
    zm::SetHost(before);
    return 0;
}
