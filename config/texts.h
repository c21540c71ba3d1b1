// Texts of the tables, as GBK bytes. Each is beside its readable form; a test compares the two.
#pragma once

namespace zm::config::texts {

struct Text {
    const char* gbk;
    const char* readable;  // UTF-8
};

// "surface features", the default layer
inline constexpr Text kDefaultLayer = {"\xB5\xD8\xCE\xEF", "地物"};
// "The note layer file ORVNOTE.COD is not in its place"
inline constexpr Text kNoNotes = {
    "\xD7\xA2\xBC\xC7\xB2\xE3\xB9\xDC\xC0\xED\xCE\xC4\xBC\xFE"
    "ORVNOTE.COD"
    "\xCE\xBB\xD6\xC3\xB2\xBB\xB6\xD4",
    "注记层管理文件ORVNOTE.COD位置不对"};
// class, layer, colour number, display, height, width, interval, font number, conversion, memo
inline constexpr Text kNoteRecord = {
    "1.\xB7\xD6\xC0\xE0\xBA\xC5=%c\n2.\xB2\xE3\xC3\xFB=%s\n3.\xD1\xD5\xC9\xAB\xBA\xC5=%d\n"
    "4.\xCF\xD4\xCA\xBE\xBF\xAA\xB9\xD8=%d\n5.\xD7\xD6\xB8\xDF=%d\n6.\xD7\xD6\xBF\xED=%d\n7.\xD7\xD6\xB8\xF4=%d\n"
    "8.\xD7\xD6\xCC\xE5\xBA\xC5=%d\n9.\xD7\xAA\xBB\xBB\xB6\xA8\xD6\xC6=%d\n10.\xB1\xB8\xD7\xA2=%s",
    "1.分类号=%c\n2.层名=%s\n3.颜色号=%d\n4.显示开关=%d\n5.字高=%d\n6.字宽=%d\n7.字隔=%d\n8.字体号=%d\n"
    "9.转换定制=%d\n10.备注=%s"};

inline constexpr Text kAll[] = {kDefaultLayer, kNoNotes, kNoteRecord};

}  // namespace zm::config::texts
