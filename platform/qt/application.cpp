#include "platform/qt/application.h"

#include <QApplication>
#include <QGuiApplication>
#include <clocale>

namespace zm::qt {

void EnsureApplication() {
    if (QCoreApplication::instance() != nullptr) return;
    const bool display = qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
    if (!display && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "zenro";
    static char* argv[] = {name, nullptr};
    // Lives as long as the process: fonts and images are used until its very end.
    new QApplication(argc, argv);
    // Qt puts the environment's locale in force; numbers keep their point.
    std::setlocale(LC_NUMERIC, "C");
}

bool HasDisplay() {
    EnsureApplication();
    return QGuiApplication::platformName() != QLatin1String("offscreen") &&
           QGuiApplication::platformName() != QLatin1String("minimal");
}

}  // namespace zm::qt
