#include "dialogs/templates.h"

#include "dialogs/texts.h"

namespace zm::dialogs {
namespace {

// A Chinese character is 8 units wide, a letter or digit 4, a line of text 8 high; edits and buttons are 14 high.
constexpr int kLine = 8;
constexpr int kEditHeight = 12;
constexpr int kButtonHeight = 14;

constexpr Control Label(texts::Text text, int x, int y, int width) {
    return {kNoId, Kind::label, text.gbk, {x, y, width, kLine}};
}
constexpr Control Edit(int id, int x, int y, int width, int limit = 0) {
    return {.id = id, .kind = Kind::edit, .text = "", .box = {x, y, width, kEditHeight}, .limit = limit};
}
constexpr Control Button(int id, texts::Text text, char key, int x, int y, int width) {
    return {id, Kind::button, text.gbk, {x, y, width, kButtonHeight}, key};
}
constexpr Control DefaultButton(int id, texts::Text text, char key, int x, int y, int width) {
    return {id, Kind::defaultButton, text.gbk, {x, y, width, kButtonHeight}, key};
}

// ---- Layers ----

// The cells are padded on the left to 8, 10, 10 and 8 characters, the name has at most 11 bytes.
constexpr int kLayerTabs[] = {48, 84, 128, 172};
constexpr int kLayerLimit = 8;

constexpr Control kLayers[] = {
    Label(texts::kLayer, 9, 7, 24),
    Label(texts::kFirstCode, 57, 7, 36),
    Label(texts::kLastCode, 101, 7, 36),
    Label(texts::kColourNumber, 153, 7, 28),
    {.id = layers::kList,
     .kind = Kind::list,
     .text = "",
     .box = {7, 17, 220, 156},
     .tabs = kLayerTabs,
     .fixedPitch = true},
    Label(texts::kLayerName, 236, 19, 36),
    Edit(layers::kName, 274, 17, 56, kLayerLimit),
    Label(texts::kFirstCode, 236, 36, 36),
    Edit(layers::kStart, 274, 34, 56, kLayerLimit),
    Label(texts::kLastCode, 236, 53, 36),
    Edit(layers::kEnd, 274, 51, 56, kLayerLimit),
    Label(texts::kColourNumber, 236, 70, 36),
    Edit(layers::kColour, 274, 68, 56, kLayerLimit),
    {layers::kShown, Kind::check, texts::kLayerShown.gbk, {274, 86, 56, 10}, 'V'},
    Button(layers::kInsert, texts::kInsert, 'I', 236, 104, 45),
    Button(layers::kDelete, texts::kDelete, 'D', 285, 104, 45),
    Button(layers::kSwitch, texts::kSwitch, 'S', 236, 122, 45),
    Button(layers::kSwitchAll, texts::kSwitchAll, 'A', 285, 122, 45),
    DefaultButton(kOkButton, texts::kConfirm, 'O', 236, 159, 45),
    Button(kCancelButton, texts::kCancel, 'C', 285, 159, 45),
};

// ---- Pen widths ----

constexpr Column kWidthColumns[] = {{texts::kCode.gbk, 54}, {texts::kWidth.gbk, 54}};

constexpr Control kWidths[] = {
    {.id = widths::kTable,
     .kind = Kind::table,
     .text = "",
     .box = {7, 7, 92, 142},
     .columns = kWidthColumns,
     .severalRows = true},
    Label(texts::kDefaultWidth, 108, 9, 76),
    Edit(widths::kDefault, 108, 20, 76),
    Label(texts::kCode, 108, 43, 24),
    Edit(widths::kCode, 136, 41, 48),
    Label(texts::kWidth, 108, 60, 24),
    Edit(widths::kWidth, 136, 58, 48),
    Button(widths::kAdd, texts::kAdd, 'A', 108, 78, 36),
    Button(widths::kDelete, texts::kDelete, 'D', 148, 78, 36),
    DefaultButton(kOkButton, texts::kOk, 'O', 108, 135, 36),
    Button(kCancelButton, texts::kCancel, 'C', 148, 135, 36),
};

// ---- Note classes ----

constexpr Control ClassHint(int number, texts::Text text, char key, int x, int width) {
    return Button(classes::kFirstHint + number, text, key, x, 160, width);
}
constexpr Control ClassEdit(int number, int x, int width) {
    return Edit(classes::kFirstEdit + number, x, 177, width);
}

constexpr Control kClasses[] = {
    {.id = kNoId, .kind = Kind::label, .text = texts::kClassesHeading.gbk, .box = {9, 7, 300, 8}, .fixedPitch = true},
    {.id = classes::kList, .kind = Kind::list, .text = "", .box = {7, 17, 384, 136}, .fixedPitch = true},
    ClassHint(0, texts::kClass, '1', 7, 28),
    ClassHint(1, texts::kLayerName, '2', 38, 46),
    ClassHint(2, texts::kColour, '3', 87, 28),
    ClassHint(3, texts::kDisplay, '4', 118, 28),
    ClassHint(4, texts::kCharHeight, '5', 149, 28),
    ClassHint(5, texts::kCharWidth, '6', 180, 28),
    ClassHint(6, texts::kCharInterval, '7', 211, 28),
    ClassHint(7, texts::kFontOfClass, '8', 242, 28),
    ClassHint(8, texts::kConvert, '9', 273, 28),
    ClassHint(9, texts::kMemo, '0', 304, 87),
    ClassEdit(0, 7, 28),
    ClassEdit(1, 38, 46),
    ClassEdit(2, 87, 28),
    ClassEdit(3, 118, 28),
    ClassEdit(4, 149, 28),
    ClassEdit(5, 180, 28),
    ClassEdit(6, 211, 28),
    ClassEdit(7, 242, 28),
    ClassEdit(8, 273, 28),
    ClassEdit(9, 304, 87),
    Button(classes::kUpdate, texts::kUpdate, 'U', 237, 199, 48),
    Button(classes::kDelete, texts::kDelete, 'D', 290, 199, 48),
    DefaultButton(kOkButton, texts::kClose, 'C', 343, 199, 48),
};

// ---- Note fonts ----

constexpr Control FontHint(int number, texts::Text text, char key, int x, int width) {
    return Button(fonts::kFirstHint + number, text, key, x, 130, width);
}
constexpr Control FontEdit(int number, int x, int width) {
    return Edit(fonts::kFirstEdit + number, x, 147, width);
}

constexpr Control kFonts[] = {
    {.id = kNoId, .kind = Kind::label, .text = texts::kFontsHeading.gbk, .box = {9, 7, 260, 8}, .fixedPitch = true},
    {.id = fonts::kList, .kind = Kind::list, .text = "", .box = {7, 17, 300, 106}, .fixedPitch = true},
    FontHint(0, texts::kFontNumber, '1', 7, 36),
    FontHint(1, texts::kScreenFont, '2', 46, 90),
    FontHint(2, texts::kCadStyle, '3', 139, 64),
    FontHint(3, texts::kCadFont, '4', 206, 64),
    FontHint(4, texts::kSlant, '5', 273, 34),
    FontEdit(0, 7, 36),
    FontEdit(1, 46, 90),
    FontEdit(2, 139, 64),
    FontEdit(3, 206, 64),
    FontEdit(4, 273, 34),
    Button(fonts::kUpdate, texts::kUpdate, 'U', 206, 169, 48),
    DefaultButton(kOkButton, texts::kConfirm, 'O', 259, 169, 48),
};

// ---- Palette ----

constexpr Column kColourColumns[] = {
    {texts::kColourPlace.gbk, 52}, {texts::kRed.gbk, 40}, {texts::kGreen.gbk, 40}, {texts::kBlue.gbk, 40}};

// The window is 116 units high, so that the units of the sample are those of the controls.
constexpr int kColoursHeight = 116;

constexpr Control kColours[] = {
    {.id = colours::kTable, .kind = Kind::table, .text = "", .box = {6, 6, 118, 104}, .columns = kColourColumns},
    {colours::kFrame, Kind::frame, "", {126, 10, 76, 58}},
    Label(texts::kRed, 162, 19, 10),
    Edit(colours::kRed, 174, 17, 24),
    Label(texts::kGreen, 162, 35, 10),
    Edit(colours::kGreen, 174, 33, 24),
    Label(texts::kBlue, 162, 51, 10),
    Edit(colours::kBlue, 174, 49, 24),
    Button(colours::kTry, texts::kTry, 'U', 128, 74, 74),
    DefaultButton(kOkButton, texts::kConfirmSpaced, 'O', 128, 95, 35),
    Button(kCancelButton, texts::kGiveUp, 'C', 167, 95, 35),
};

// ---- One line of text ----

constexpr Control kLineControls[] = {
    Edit(line::kPlain, 7, 9, 206),
    {.id = line::kMasked, .kind = Kind::masked, .text = "", .box = {7, 10, 206, kEditHeight}},
    DefaultButton(kOkButton, texts::kConfirmSpaced, 'O', 109, 30, 50),
    Button(kCancelButton, texts::kCancelSpaced, 'C', 163, 30, 50),
};

}  // namespace

const Template kLayersTemplate = {178, texts::kLayersTitle.gbk, 337, 180, kLayers};
const Template kWidthsTemplate = {131, texts::kWidthsTitle.gbk, 191, 156, kWidths};
const Template kClassesTemplate = {198, texts::kClassesTitle.gbk, 398, 220, kClasses};
const Template kFontsTemplate = {199, texts::kFontsTitle.gbk, 314, 190, kFonts};
const Template kColoursTemplate = {300, texts::kColoursTitle.gbk, 209, kColoursHeight, kColours};
const Template kLineTemplate = {301, texts::kLineTitle.gbk, 220, 51, kLineControls};

std::span<const Template* const> AllTemplates() {
    static constexpr const Template* kAll[] = {&kLayersTemplate, &kWidthsTemplate,  &kClassesTemplate,
                                               &kFontsTemplate,  &kColoursTemplate, &kLineTemplate};
    return kAll;
}

}  // namespace zm::dialogs
