#include "platform/qt/application.h"

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

}  // namespace

void EnsureApplication() {
    if (QCoreApplication::instance() != nullptr) return;
    const bool display = qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
    if (!display && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
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
