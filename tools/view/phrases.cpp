#include "tools/view/phrases.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>
#include <cstring>
#include <memory>

namespace zm::view {
namespace {

struct Phrase {
    const char *english, *chinese;
};

constexpr Phrase kPhrases[] = {
    {"&File", "文件(&F)"},
    {"&View", "视图(&V)"},
    {"&Tools", "工具(&T)"},
    {"&Settings", "设置(&S)"},
    {"&Open data...", "打开数据(&O)..."},
    {"Open &rules...", "打开规则(&R)..."},
    {"Recent files", "最近的文件"},
    {"Read again", "重新读取"},
    {"&Export the view...", "导出视图(&E)..."},
    {"Export as a &sheet with frame...", "导出带图廓的图幅(&S)..."},
    {"&Margins of the sheet...", "图廓整饰文件(&M)..."},
    {"Margins of the sheet", "图廓整饰文件"},
    {"&Quit", "退出(&Q)"},
    {"Whole map", "全图"},
    {"Zoom in", "放大"},
    {"Zoom out", "缩小"},
    {"Previous view", "上一视图"},
    {"Next view", "下一视图"},
    {"Scale", "比例尺"},
    {"North up", "正北朝上"},
    {"Turn left", "左转"},
    {"Turn right", "右转"},
    {"Symbols as on the sheet", "符号按图幅比例尺"},
    {"Symbols by the scale of the view", "符号按视图比例尺"},
    {"Look and identify", "浏览与查询"},
    {"Zoom to a rectangle", "拉框放大"},
    {"Measure a distance", "量距离"},
    {"Measure an area", "量面积"},
    {"Snap to vertices", "捕捉顶点"},
    {"Copy the coordinate", "复制坐标"},
    {"Copy the picture", "复制图像"},
    {"Find", "查找"},
    {"Layers", "图层"},
    {"Feature", "要素"},
    {"Found", "查找结果"},
    {"Messages", "消息"},
    {"Name", "名称"},
    {"Number", "数量"},
    {"Only this one", "只显示此项"},
    {"Show all", "全部显示"},
    {"Name, code, sheet number, coordinate", "名称、编码、图号、坐标"},
    {"reading", "正在读取"},
    {"drawing", "正在绘制"},
    {"ready", "就绪"},
    {"features", "个要素"},
    {"At this place: ", "此处要素："},
    {"no feature at this place", "此处没有要素"},
    {"nothing found", "没有找到"},
    {"found", "个结果"},
    {"Attributes", "属性"},
    {"Rule", "规则"},
    {"Condition", "条件"},
    {"Symbol", "符号"},
    {"Layer code", "层编码"},
    {"Label", "注记"},
    {"Length", "长度"},
    {"Area", "面积"},
    {"Perimeter", "周长"},
    {"in the plane", "平面"},
    {"on the ellipsoid", "椭球面"},
    {"Edit this rule", "编辑此规则"},
    {"The process that draws ended and is started again.", "绘图进程已结束，正在重新启动。"},
    {"The process that draws ends again and again; it is not started any more. Read again: F5.",
     "绘图进程多次结束，不再启动。按 F5 重新读取。"},
    {"left out", "已略去"},
    {"The last good picture stays.", "保留上一次正确的图像。"},
    {"Map data", "地图数据"},
    {"Rules", "规则"},
    {"All files", "所有文件"},
    {"written", "已写出"},
    {"Layers and colours...", "层次颜色..."},
    {"Pen widths...", "线宽..."},
    {"Note classes...", "注记分类..."},
    {"Note fonts...", "注记字体..."},
    {"Palette...", "调色板..."},
    {"read again: a file has changed", "文件已改变，重新读取"},
    {"unknown system", "未知坐标系"},
    {"Measuring: click points, Backspace takes the last one back, Esc ends.",
     "量测：单击取点，退格撤销一点，Esc 结束。"},
    {"Snap", "捕捉"},
    {"Edit the rules", "编辑规则"},
    {"&Print the view...", "打印视图(&P)..."},
    {"Print as a sheet with &frame...", "打印带图廓的图幅(&F)..."},
    {"Print", "打印"},
    {"the picture of the sheet cannot be read", "无法读取图幅的图像"},
    {"mm of paper", "毫米纸面"},
    {"pages", "页"},
    {"The process that draws hung or ended at this text and is started again.",
     "绘图进程在此文本处停止或结束，正在重新启动。"},
    {"Drag measures, the wheel zooms, the middle button moves, a double click shows all.",
     "拖动量距，滚轮缩放，中键移动，双击显示全部。"},
    {"draws nothing", "不绘制任何内容"},
    {"Symbol library", "符号库"},
    {"Symbols", "符号"},
    {"&Open a library...", "打开符号库(&O)..."},
    {"&Save", "保存(&S)"},
    {"Save &as...", "另存为(&A)..."},
    {"&Take back the changes of this symbol", "撤销此符号的修改(&T)"},
    {"&Compare with another library...", "与另一符号库比较(&C)..."},
    {"Compare", "比较"},
    {"Compare &no more", "停止比较(&N)"},
    {"Close the window", "关闭窗口"},
    {"Code, note or kind", "编码、说明或类型"},
    {"Code", "编码"},
    {"Kind", "类型"},
    {"Note", "说明"},
    {"On a line", "在线上"},
    {"In an area", "在面内"},
    {"The map draws with what is saved here", "地图使用此处保存的符号库"},
    {"Line", "行"},
    {"nothing to remark", "没有意见"},
    {"line width", "线宽"},
    {"Symbols were changed and are not saved. Leave them?", "符号已修改但未保存。放弃修改吗？"},
    {"Save the library", "保存符号库"},
    {"changed", "已改变"},
    {"only here", "仅此库有"},
    {"only there", "仅另一库有"},
    {"has no such symbol", "没有此符号"},
    {"alike", "相同"},
    {"&Symbols...", "符号库(&S)..."},
    {"Edit this symbol", "编辑此符号"},
};

}  // namespace

const char* ChineseOf(const char* english) {
    for (const Phrase& phrase : kPhrases)
        if (std::strcmp(phrase.english, english) == 0) return phrase.chinese;
    return nullptr;
}

bool SpeaksChinese() {
    const QByteArray wanted = qgetenv("ZENRO_LANGUAGE");
    if (!wanted.isEmpty()) return wanted.startsWith("zh");
    return QLocale::system().language() == QLocale::Chinese;
}

QString Say(const char* english) {
    static const bool chinese = SpeaksChinese();
    const char* other = chinese ? ChineseOf(english) : nullptr;
    return QString::fromUtf8(other != nullptr ? other : english);
}

QTranslator* TranslateQt() {
    if (!SpeaksChinese()) return nullptr;
    auto texts = std::make_unique<QTranslator>();
    if (!texts->load("qtbase_zh_CN", QLibraryInfo::path(QLibraryInfo::TranslationsPath))) return nullptr;
    texts->setParent(QCoreApplication::instance());
    QCoreApplication::installTranslator(texts.get());
    return texts.release();
}

}  // namespace zm::view
