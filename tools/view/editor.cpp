#include "tools/view/editor.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>

namespace zm::view {

QStringList EditorCommand(const QString& editor, const QString& file, int line) {
    static const QStringList kInTerminal = {"vi", "vim", "nvim", "nano", "pico", "joe", "micro", "ne"};
    static const QStringList kGoTo = {"code", "codium"};
    QStringList command = QProcess::splitCommand(editor);
    if (command.isEmpty()) return {};
    const QString name = QFileInfo(command.front()).fileName(), number = QString::number(line);
    if (kGoTo.contains(name)) return command << "-g" << file + ":" + number;
    if (name == "kate") return command << "-l" << number << file;
    if (kInTerminal.contains(name)) command = QStringList{"x-terminal-emulator", "-e"} + command;
    return command << "+" + number << file;
}

bool OpenInEditor(const QString& file, int line) {
    const QString editor = qEnvironmentVariable("ZENRO_EDITOR", qEnvironmentVariable("VISUAL"));
    const QStringList command = EditorCommand(editor, file, line);
    if (!command.isEmpty() && QProcess::startDetached(command.front(), command.mid(1))) return true;
    return QDesktopServices::openUrl(QUrl::fromLocalFile(file));
}

}  // namespace zm::view
