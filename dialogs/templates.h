// The templates of the six dialogs: every control with its id, caption, place and limits. Windows of all toolkits are
// laid out by them, and the resource script is compared with them.
#pragma once

#include <span>

#include "zenromath/dialog_view.h"

namespace zm::dialogs {

// Controls that the platform gives every dialog.
constexpr int kOkButton = 1;
constexpr int kCancelButton = 2;
constexpr int kNoId = -1;

namespace layers {
constexpr int kList = 2000, kShown = 2001, kName = 2002, kColour = 2003, kStart = 2004, kEnd = 2005;
constexpr int kInsert = 2100, kDelete = 2101, kSwitch = 1054, kSwitchAll = 1055;
}  // namespace layers

namespace widths {
constexpr int kTable = 1038, kDefault = 1003, kCode = 1004, kWidth = 1002, kAdd = 1032, kDelete = 1033;
}  // namespace widths

namespace classes {
constexpr int kList = 2000, kFirstEdit = 2001, kFirstHint = 1000, kFields = 10, kUpdate = 2100, kDelete = 2101;
}  // namespace classes

namespace fonts {
constexpr int kList = 2000, kFirstEdit = 2001, kFirstHint = 1000, kFields = 5, kChooser = 1001, kUpdate = 2100;
}  // namespace fonts

namespace colours {
constexpr int kTable = 1055, kRed = 1003, kGreen = 1004, kBlue = 1002, kFrame = 3000, kTry = 1032;
}  // namespace colours

namespace line {
constexpr int kPlain = 1003, kMasked = 1004;
}  // namespace line

extern const Template kLayersTemplate;   // 178
extern const Template kWidthsTemplate;   // 131
extern const Template kClassesTemplate;  // 198
extern const Template kFontsTemplate;    // 199
extern const Template kColoursTemplate;  // 300
extern const Template kLineTemplate;     // 301

/// All six.
std::span<const Template* const> AllTemplates();

}  // namespace zm::dialogs
