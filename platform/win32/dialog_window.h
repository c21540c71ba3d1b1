// The one window class for all settings dialogs: a dialog box made from the resource of the dialog's number.
#pragma once

#include "zenromath/dialog_view.h"

namespace zm::win32 {

/// Shows a dialog until its result is set, with Host::RunDialog's result and course. Controls are those of the resource
/// in the order of the template.
bool ShowDialog(dialogs::Dialog& dialog);

}  // namespace zm::win32
