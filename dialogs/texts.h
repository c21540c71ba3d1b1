// Texts of the settings dialogs, as GBK bytes. Each is beside its readable form; a test compares the two.
#pragma once

namespace zm::dialogs::texts {

struct Text {
    const char* gbk;
    const char* readable;  // UTF-8
};

// ---- Buttons and words of several dialogs ----

// "confirm"
inline constexpr Text kConfirm = {"\xC8\xB7\xC8\xCF", "确认"};
// "cancel"
inline constexpr Text kCancel = {"\xC8\xA1\xCF\xFB", "取消"};
// "OK"
inline constexpr Text kOk = {"\xC8\xB7\xB6\xA8", "确定"};
// "delete"
inline constexpr Text kDelete = {"\xC9\xBE\xB3\xFD", "删除"};
// "update"
inline constexpr Text kUpdate = {"\xB8\xFC\xD0\xC2", "更新"};
// "confirm"
inline constexpr Text kConfirmSpaced = {"\xC8\xB7  \xC8\xCF", "确  认"};
// "not allowed"
inline constexpr Text kNotAllowed = {"\xB7\xC7\xB7\xA8", "非法"};
// "warning"
inline constexpr Text kWarning = {"\xBE\xAF\xB8\xE6", "警告"};

// ---- Layers ----

// "layers and colours"
inline constexpr Text kLayersTitle = {"\xB2\xE3\xB4\xCE\xD1\xD5\xC9\xAB\xC9\xE8\xB6\xA8", "层次颜色设定"};
// "layer"
inline constexpr Text kLayer = {"\xB2\xE3\xB4\xCE", "层次"};
// "first code"
inline constexpr Text kFirstCode = {"\xC6\xF0\xCA\xBC\xB1\xE0\xC2\xEB", "起始编码"};
// "last code"
inline constexpr Text kLastCode = {"\xD6\xD5\xD6\xB9\xB1\xE0\xC2\xEB", "终止编码"};
// "colour number"
inline constexpr Text kColourNumber = {"\xD1\xD5\xC9\xAB\xBA\xC5", "颜色号"};
// "layer name"
inline constexpr Text kLayerName = {"\xB2\xE3\xC3\xFB", "层名"};
// "layer is shown"
inline constexpr Text kLayerShown = {"\xB2\xE3\xB4\xCE\xCF\xD4\xCA\xBE", "层次显示"};
// "insert"
inline constexpr Text kInsert = {"\xB2\xE5\xC8\xEB", "插入"};
// "switch"
inline constexpr Text kSwitch = {"\xBF\xAA\xB9\xD8", "开关"};
// "turn all"
inline constexpr Text kSwitchAll = {"\xC8\xAB\xB7\xB4", "全反"};
// "layer data are incomplete"
inline constexpr Text kLayerIncomplete = {"\xB2\xE3\xCA\xFD\xBE\xDD\xB2\xBB\xD7\xE3", "层数据不足"};
// "Really replace the current record?"
inline constexpr Text kReplaceRow = {"\xC8\xB7\xD2\xAA\xCC\xE6\xBB\xBB\xB5\xB1\xC7\xB0\xBC\xC7\xC2\xBC\xC2\xF0?",
                                     "确要替换当前记录吗?"};

// ---- Pen widths ----

// "pen width settings"
inline constexpr Text kWidthsTitle = {"\xCF\xDF\xBF\xED\xC9\xE8\xD6\xC3\xB9\xDC\xC0\xED", "线宽设置管理"};
// "code"
inline constexpr Text kCode = {"\xB1\xE0\xC2\xEB", "编码"};
// "width"
inline constexpr Text kWidth = {"\xCF\xDF\xBF\xED", "线宽"};
// "default width"
inline constexpr Text kDefaultWidth = {"\xC4\xAC\xC8\xCF\xCF\xDF\xBF\xED(0.01mm)", "默认线宽(0.01mm)"};
// "add"
inline constexpr Text kAdd = {"\xBC\xD3\xC8\xEB", "加入"};
// "Please enter a correct code or width"
inline constexpr Text kCodeOrWidthWrong = {
    "\xC7\xEB\xCA\xE4\xC8\xEB\xD5\xFD\xC8\xB7\xB5\xC4\xB1\xE0\xC2\xEB\xBB\xF2\xBF\xED\xB6\xC8",
    "请输入正确的编码或宽度"};

// ---- Note classes ----

// "note classes"
inline constexpr Text kClassesTitle = {"\xD7\xA2\xBC\xC7\xB7\xD6\xC0\xE0\xD0\xC5\xCF\xA2\xB9\xDC\xC0\xED",
                                       "注记分类信息管理"};
// "the ten fields"
inline constexpr Text kClassesHeading = {
    "\xB7\xD6\xC0\xE0 \xB2\xE3\xC3\xFB  \xD1\xD5\xC9\xAB  \xCF\xD4\xCA\xBE  \xD7\xD6\xB8\xDF \xD7\xD6\xBF\xED "
    "\xD7\xD6\xB8\xF4 \xD7\xD6\xBA\xC5 \xD7\xAA\xBB\xBB  \xB1\xB8\xD7\xA2",
    "分类 层名  颜色  显示  字高 字宽 字隔 字号 转换  备注"};
// "close"
inline constexpr Text kClose = {"\xB9\xD8\xB1\xD5", "关闭"};
// "class"
inline constexpr Text kClass = {"\xB7\xD6\xC0\xE0", "分类"};
// "colour"
inline constexpr Text kColour = {"\xD1\xD5\xC9\xAB", "颜色"};
// "display"
inline constexpr Text kDisplay = {"\xCF\xD4\xCA\xBE", "显示"};
// "character height"
inline constexpr Text kCharHeight = {"\xD7\xD6\xB8\xDF", "字高"};
// "character width"
inline constexpr Text kCharWidth = {"\xD7\xD6\xBF\xED", "字宽"};
// "character interval"
inline constexpr Text kCharInterval = {"\xD7\xD6\xB8\xF4", "字隔"};
// "font number"
inline constexpr Text kFontOfClass = {"\xD7\xD6\xBA\xC5", "字号"};
// "conversion"
inline constexpr Text kConvert = {"\xD7\xAA\xBB\xBB", "转换"};
// "memo"
inline constexpr Text kMemo = {"\xB1\xB8\xD7\xA2", "备注"};
// "the class is the unit of notes: one character, 0 the default, @ elevations, # control points"
inline constexpr Text kClassHint = {
    "\xB7\xD6\xC0\xE0\xBA\xC5\xCA\xC7\xD7\xA2\xBC\xC7\xB5\xC4\xBB\xF9\xB1\xBE\xB9\xDC\xC0\xED\xB5\xA5\xCE\xBB."
    "\n\xCE\xAA\xB5\xA5\xB8\xF6\xD7\xD6\xB7\xFB,0-\xCE\xAA\xC4\xAC\xC8\xCF,@-\xCE\xAA\xB8\xDF\xB3\xCC,#-"
    "\xCE\xAA\xBF\xD8\xD6\xC6\xB5\xE3\n\xD3\xD0\xD0\xA7\xB7\xB6\xCE\xA7\xB4\xD3"
    "A-Z,a-z,0-9",
    "分类号是注记的基本管理单位.\n为单个字符,0-为默认,@-为高程,#-为控制点\n有效范围从A-Z,a-z,0-9"};
// "layer name, characters, no blanks"
inline constexpr Text kClassLayerHint = {
    "\xB2\xE3\xC3\xFB(\xB0\xFC\xBA\xAC\xC0\xE0,\xD7\xF7\xD3\xC3\xD4\xDD\xCA\xB1\xB1\xA3\xC1\xF4),"
    "\xD7\xD6\xB7\xFB\xD0\xCD,\xB2\xBB\xB5\xC3\xD3\xD0\xBF\xD5\xB8\xF1",
    "层名(包含类,作用暂时保留),字符型,不得有空格"};
// "colour number, 1 to 7"
inline constexpr Text kColourHint = {
    "\xD1\xD5\xC9\xAB\xBA\xC5,\xD3\xD0\xD0\xA7\xB7\xB6\xCE\xA7"
    "1-7",
    "颜色号,有效范围1-7"};
// "display switch, 0 no output, others output, please take 3"
inline constexpr Text kDisplayHint = {
    "\xCF\xD4\xCA\xBE\xBF\xAA\xB9\xD8,0-\xB2\xBB\xCA\xE4\xB3\xF6,\xB7\xC7"
    "0-\xCA\xE4\xB3\xF6(\xC7\xEB\xC9\xE8\xCE\xAA"
    "3)",
    "显示开关,0-不输出,非0-输出(请设为3)"};
// "character height, unit 0.1 mm"
inline constexpr Text kCharHeightHint = {
    "\xD7\xD6\xCC\xE5\xB8\xDF\xB6\xC8,\xD2\xD4"
    "0.1\xBA\xC1\xC3\xD7\xCE\xAA\xB5\xA5\xCE\xBB",
    "字体高度,以0.1毫米为单位"};
// "character width, unit 0.1 mm"
inline constexpr Text kCharWidthHint = {
    "\xD7\xD6\xCC\xE5\xBF\xED\xB6\xC8,\xD2\xD4"
    "0.1\xBA\xC1\xC3\xD7\xCE\xAA\xB5\xA5\xCE\xBB",
    "字体宽度,以0.1毫米为单位"};
// "character interval, unit 0.1 mm"
inline constexpr Text kCharIntervalHint = {
    "\xD7\xD6\xB7\xFB\xBC\xE4\xB8\xF4,\xD2\xD4"
    "0.1\xBA\xC1\xC3\xD7\xCE\xAA\xB5\xA5\xCE\xBB",
    "字符间隔,以0.1毫米为单位"};
// "font number, an integer, key of the fonts"
inline constexpr Text kFontOfClassHint = {
    "\xD7\xD6\xCC\xE5\xBA\xC5(\xD5\xFB\xD0\xCD),\xB6\xD4\xD3\xA6\xD7\xD6\xCC\xE5\xC3\xFB\xB5\xC8\xC9\xE8\xD6\xC3",
    "字体号(整型),对应字体名等设置"};
// "settings of the conversion of notes"
inline constexpr Text kConvertHint = {
    "\xD7\xA2\xBC\xC7\xD7\xAA\xBB\xBB\xC9\xE8\xD6\xC3,\xD7\xF7\xD3\xC3\xD4\xDD\xCA\xB1\xB1\xA3\xC1\xF4",
    "注记转换设置,作用暂时保留"};
// "additional remarks"
inline constexpr Text kMemoHint = {"\xB2\xB9\xB3\xE4\xCB\xB5\xC3\xF7", "补充说明"};

// ---- Note fonts ----

// "note fonts"
inline constexpr Text kFontsTitle = {"\xD7\xA2\xBC\xC7\xD7\xD6\xCC\xE5\xB9\xDC\xC0\xED", "注记字体管理"};
// "the five fields"
inline constexpr Text kFontsHeading = {
    "\xD7\xD6\xBA\xC5   \xCF\xD4\xCA\xBE\xD7\xD6\xCC\xE5\xC3\xFB   TEXT STYLE     \xD7\xD6\xCC\xE5\xC3\xFB    "
    "\xC7\xE3\xD0\xB1",
    "字号   显示字体名   TEXT STYLE     字体名    倾斜"};
// "font number"
inline constexpr Text kFontNumber = {"\xD7\xD6\xCC\xE5\xBA\xC5", "字体号"};
// "screen font"
inline constexpr Text kScreenFont = {"\xCF\xD4\xCA\xBE\xD7\xD6\xCC\xE5", "显示字体"};
// "CAD text style"
inline constexpr Text kCadStyle = {"CAD\xD7\xD6\xC0\xE0\xD0\xCD", "CAD字类型"};
// "CAD font name"
inline constexpr Text kCadFont = {"CAD\xD7\xD6\xCC\xE5\xC3\xFB", "CAD字体名"};
// "slant"
inline constexpr Text kSlant = {"\xC7\xE3\xD0\xB1", "倾斜"};
// "the font number of the note classes"
inline constexpr Text kFontNumberHint = {
    "\xB6\xD4\xD3\xA6\xD7\xA2\xBC\xC7\xB7\xD6\xC0\xE0\xD6\xD0\xB5\xC4\xD7\xD6\xCC\xE5\xBA\xC5",
    "对应注记分类中的字体号"};
// "text style of notes in DWG files, such as Standard"
inline constexpr Text kCadStyleHint = {
    "\xCA\xE4\xB3\xF6"
    "DWG\xCA\xB1\xD7\xA2\xBC\xC7\xB5\xC4\xCE\xC4\xD7\xD6\xC0\xE0\xD0\xCD,\xC8\xE7Standard",
    "输出DWG时注记的文字类型,如Standard"};
// "font name of notes in DWG files, such as Hztxt"
inline constexpr Text kCadFontHint = {
    "\xCA\xE4\xB3\xF6"
    "DWG\xCA\xB1\xD7\xA2\xBC\xC7\xB5\xC4\xD7\xD6\xCC\xE5\xC3\xFB,\xC8\xE7Hztxt",
    "输出DWG时注记的字体名,如Hztxt"};
// "0 upright, 1 left by 18 degrees, 2 right by 18 degrees"
inline constexpr Text kSlantHint = {
    "\xD7\xD6\xCA\xC7\xB7\xF1\xC7\xE3\xD0\xB1,0-\xB2\xBB\xC7\xE3\xD0\xB1,1-\xD7\xF3\xC7\xE3"
    "18\xB6\xC8,2-\xD3\xD2\xC7\xE3"
    "18\xB6\xC8",
    "字是否倾斜,0-不倾斜,1-左倾18度,2-右倾18度"};

// ---- Palette ----

// "colours"
inline constexpr Text kColoursTitle = {"\xCD\xBC\xD0\xCE\xD1\xD5\xC9\xAB\xC9\xE8\xD6\xC3", "图形颜色设置"};
// "number"
inline constexpr Text kColourPlace = {"\xC9\xAB\xBA\xC5", "色号"};
// "red"
inline constexpr Text kRed = {"\xBA\xEC", "红"};
// "green"
inline constexpr Text kGreen = {"\xC2\xCC", "绿"};
// "blue"
inline constexpr Text kBlue = {"\xC0\xB6", "蓝"};
// "try and update"
inline constexpr Text kTry = {"\xB2\xE2\xCA\xD4\xB8\xFC\xD0\xC2", "测试更新"};
// "give up"
inline constexpr Text kGiveUp = {"\xB3\xB7  \xCF\xFB", "撤  消"};
// "Please enter an integer."
inline constexpr Text kNeedNumber = {"\xC7\xEB\xCA\xE4\xC8\xEB\xD2\xBB\xB8\xF6\xD5\xFB\xCA\xFD\xA1\xA3",
                                     "请输入一个整数。"};
// "Please enter an integer between the two."
inline constexpr Text kNeedNumberBetween = {
    "\xC7\xEB\xCA\xE4\xC8\xEB\xD2\xBB\xB8\xF6\xD4\xDA %d \xBA\xCD %d \xD6\xAE\xBC\xE4\xB5\xC4\xD5\xFB\xCA\xFD\xA1\xA3",
    "请输入一个在 %d 和 %d 之间的整数。"};

// ---- One line of text ----

// the title where the caller has none
inline constexpr Text kLineTitle = {"Dialog", "Dialog"};
// "cancel"
inline constexpr Text kCancelSpaced = {"\xC8\xA1  \xCF\xFB", "取  消"};

inline constexpr Text kAll[] = {kConfirm,
                                kCancel,
                                kOk,
                                kDelete,
                                kUpdate,
                                kConfirmSpaced,
                                kNotAllowed,
                                kWarning,
                                kLayersTitle,
                                kLayer,
                                kFirstCode,
                                kLastCode,
                                kColourNumber,
                                kLayerName,
                                kLayerShown,
                                kInsert,
                                kSwitch,
                                kSwitchAll,
                                kLayerIncomplete,
                                kReplaceRow,
                                kWidthsTitle,
                                kCode,
                                kWidth,
                                kDefaultWidth,
                                kAdd,
                                kCodeOrWidthWrong,
                                kClassesTitle,
                                kClassesHeading,
                                kClose,
                                kClass,
                                kColour,
                                kDisplay,
                                kCharHeight,
                                kCharWidth,
                                kCharInterval,
                                kFontOfClass,
                                kConvert,
                                kMemo,
                                kClassHint,
                                kClassLayerHint,
                                kColourHint,
                                kDisplayHint,
                                kCharHeightHint,
                                kCharWidthHint,
                                kCharIntervalHint,
                                kFontOfClassHint,
                                kConvertHint,
                                kMemoHint,
                                kFontsTitle,
                                kFontsHeading,
                                kFontNumber,
                                kScreenFont,
                                kCadStyle,
                                kCadFont,
                                kSlant,
                                kFontNumberHint,
                                kCadStyleHint,
                                kCadFontHint,
                                kSlantHint,
                                kColoursTitle,
                                kColourPlace,
                                kRed,
                                kGreen,
                                kBlue,
                                kTry,
                                kGiveUp,
                                kNeedNumber,
                                kNeedNumberBetween,
                                kLineTitle,
                                kCancelSpaced};

}  // namespace zm::dialogs::texts
