#include "zenromath/qt.h"

#include <QApplication>
#include <QGuiApplication>
#include <clocale>

namespace zm::qt {
namespace {

QtMessageHandler g_previousHandler = nullptr;

// A service account without a runtime directory is no concern of somebody who draws a map.
void WithoutRuntimeDirectory(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (!message.startsWith(QLatin1String("QStandardPaths: "))) g_previousHandler(type, context, message);
}

// Qt takes the first that can be reached, so a display that is named and gone leaves the offscreen platform.
QByteArray WantedPlatforms() {
    QByteArray wanted;
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) wanted += "wayland;";
    if (!qEnvironmentVariableIsEmpty("DISPLAY")) wanted += "xcb;";
    return wanted + "offscreen";
}

}  // namespace

void EnsureApplication() {
    if (QCoreApplication::instance() != nullptr) return;
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", WantedPlatforms());
    g_previousHandler = qInstallMessageHandler(WithoutRuntimeDirectory);
    if (g_previousHandler == nullptr) qInstallMessageHandler(nullptr);
    static int argc = 1;
    static char name[] = "zenro";
    static char* argv[] = {name, nullptr};
    // Lives as long as the process: fonts and images are used until its very end.
    new QApplication(argc, argv);
    // Qt puts the environment's locale in force; numbers keep their point.
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the application is meant to outlive everything
    std::setlocale(LC_NUMERIC, "C");
}

bool HasDisplay() {
    EnsureApplication();
    return QGuiApplication::platformName() != QLatin1String("offscreen") &&
           QGuiApplication::platformName() != QLatin1String("minimal");
}

}  // namespace zm::qt
