#include "tools/view/qt_phrases.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <cstring>

#include "tools/view/phrases.h"

namespace zm::view {
namespace {

struct Phrase {
    const char *english, *chinese;
};

// One text means the same in all of the dialogs.
constexpr Phrase kPhrases[] = {
    // files
    {"Look in:", "查找范围："},
    {"Directory:", "文件夹："},
    {"File &name:", "文件名(&N)："},
    {"Files of type:", "文件类型："},
    {"Computer", "计算机"},
    {"My Computer", "我的电脑"},
    {"Sidebar", "侧边栏"},
    {"Back", "后退"},
    {"Forward", "前进"},
    {"Go back", "后退"},
    {"Go forward", "前进"},
    {"Parent Directory", "上级文件夹"},
    {"Go to the parent directory", "转到上级文件夹"},
    {"Create New Folder", "新建文件夹"},
    {"Create a New Folder", "新建文件夹"},
    {"List View", "列表"},
    {"Change to list view mode", "以列表显示"},
    {"Detail View", "详细信息"},
    {"Change to detail view mode", "显示详细信息"},
    {"Recent Places", "最近的位置"},
    {"&Open", "打开(&O)"},
    {"&Save", "保存(&S)"},
    {"&Choose", "选择(&C)"},
    {"Open", "打开"},
    {"Save As", "另存为"},
    {"All Files (*)", "所有文件 (*)"},
    {"&New Folder", "新建文件夹(&N)"},
    {"New Folder", "新建文件夹"},
    {"&Rename", "重命名(&R)"},
    {"&Delete", "删除(&D)"},
    {"Show &hidden files", "显示隐藏文件(&H)"},
    {"%1 already exists.\nDo you want to replace it?", "%1 已存在。\n要替换它吗？"},
    {"%1\nFile not found.\nPlease verify the correct file name was given.", "%1\n找不到文件。\n请检查文件名是否正确。"},
    {"%1\nDirectory not found.\nPlease verify the correct directory name was given.",
     "%1\n找不到文件夹。\n请检查文件夹名是否正确。"},
    {"Name", "名称"},
    {"Size", "大小"},
    {"Type", "类型"},
    {"Date Modified", "修改日期"},
    {"Folder", "文件夹"},
    {"File", "文件"},
    {"%1 File", "%1 文件"},
    {"%1 bytes", "%1 字节"},
    // questions
    {"OK", "确定"},
    {"&OK", "确定(&O)"},
    {"Save", "保存"},
    {"Cancel", "取消"},
    {"&Cancel", "取消(&C)"},
    {"Close", "关闭"},
    {"&Close", "关闭(&C)"},
    {"Discard", "放弃"},
    {"Don't Save", "不保存"},
    {"Close without Saving", "不保存而关闭"},
    {"&Yes", "是(&Y)"},
    {"&No", "否(&N)"},
    {"Retry", "重试"},
    {"Apply", "应用"},
    {"Reset", "重置"},
    {"Help", "帮助"},
    // the preview of the printer
    {"Print Preview", "打印预览"},
    {"Print preview", "打印预览"},
    {"Next page", "下一页"},
    {"Previous page", "上一页"},
    {"First page", "第一页"},
    {"Last page", "最后一页"},
    {"Fit width", "适合宽度"},
    {"Fit page", "适合页面"},
    {"Zoom in", "放大"},
    {"Zoom out", "缩小"},
    {"Portrait", "纵向"},
    {"Landscape", "横向"},
    {"Show single page", "单页显示"},
    {"Show facing pages", "对页显示"},
    {"Show overview of all pages", "显示所有页"},
    {"Page setup", "页面设置"},
    {"Page Setup", "页面设置"},
    {"Print", "打印"},
    {"&Print", "打印(&P)"},
    {"Export to PDF", "导出为 PDF"},
    // printing
    {"Printer", "打印机"},
    {"&Name:", "名称(&N)："},
    {"P&roperties", "属性(&R)"},
    {"Location:", "位置："},
    {"Output &file:", "输出文件(&F)："},
    {"Print to File (PDF)", "打印到文件 (PDF)"},
    {"Print To File ...", "打印到文件..."},
    {"Local file", "本地文件"},
    {"Write PDF file", "写 PDF 文件"},
    {"&Options >>", "选项(&O) >>"},
    {"&Options <<", "选项(&O) <<"},
    {"Copies", "份数"},
    {"Copies:", "份数："},
    {"&Copies:", "份数(&C)："},
    {"Collate", "逐份打印"},
    {"Reverse", "逆序"},
    {"Options", "选项"},
    {"Print range", "打印范围"},
    {"Print all", "全部"},
    {"Pages from", "页码从"},
    {"to", "到"},
    {"Current Page", "当前页"},
    {"Selection", "所选内容"},
    {"Color Mode", "颜色模式"},
    {"Color", "彩色"},
    {"Grayscale", "灰度"},
    {"Double Sided Printing", "双面打印"},
    {"Off", "关"},
    {"None", "无"},
    {"Paper", "纸张"},
    {"Page size:", "纸张大小："},
    {"Width:", "宽："},
    {"Height:", "高："},
    {"Paper source:", "纸张来源："},
    {"Orientation", "方向"},
    {"Reverse landscape", "反向横向"},
    {"Reverse portrait", "反向纵向"},
    {"Margins", "边距"},
    {"Page", "页面"},
    {"Advanced", "高级"},
    {"Custom", "自定义"},
    {"Millimeters (mm)", "毫米 (mm)"},
    {"Inches (in)", "英寸 (in)"},
    {"Points (pt)", "点 (pt)"},
    // a line of text
    {"&Undo", "撤销(&U)"},
    {"&Redo", "重做(&R)"},
    {"Cu&t", "剪切(&T)"},
    {"&Copy", "复制(&C)"},
    {"&Paste", "粘贴(&P)"},
    {"Delete", "删除"},
    {"Select All", "全选"},
};

}  // namespace

QString QtPhrases::translate(const char* context, const char* text, const char*, int) const {
    if (context == nullptr || context[0] != 'Q' || text == nullptr) return {};
    for (const Phrase& phrase : kPhrases)
        if (std::strcmp(phrase.english, text) == 0) return QString::fromUtf8(phrase.chinese);
    return {};
}

void TranslateQt() {
    if (!SpeaksChinese()) return;
    auto* ours = new QtPhrases(QCoreApplication::instance());
    QCoreApplication::installTranslator(ours);
    auto* theirs = new QTranslator(QCoreApplication::instance());  // asked first, as it is installed last
    if (theirs->load("qtbase_zh_CN", QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(theirs);
}

}  // namespace zm::view
