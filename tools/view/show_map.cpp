#include "tools/view/show_map.h"

#include <QApplication>
#include <QPalette>
#include <QTimer>

#include "tools/view/phrases.h"
#include "tools/view/symbol_window.h"
#include "tools/view/view_window.h"
#include "zenromath/qt.h"

namespace zm::view {
namespace {

constexpr int kAskEvery = 100;   // milliseconds
constexpr int kHintAlpha = 140;  // of 255

QStringList ListOf(const char* const* texts) {
    QStringList list;
    for (; *texts != nullptr; ++texts) list << QString::fromUtf8(*texts);
    return list;
}

// Desktops that are dark may leave Qt's dark grey for the hint in an empty field, on a dark field.
void MendHints() {
    QPalette hints;
    QColor text = QApplication::palette().color(QPalette::Text);
    text.setAlpha(kHintAlpha);
    hints.setColor(QPalette::PlaceholderText, text);
    QApplication::setPalette(hints, "QLineEdit");
}

// Shows a window made of a job until it is closed.
template <class Window>
int Show(const ZenroQtMap& map, std::string& reason) {
    // Who names the platform that shows nothing knows what he does.
    const bool offscreen = qgetenv("QT_QPA_PLATFORM") == "offscreen";
    qt::EnsureApplication();
    if (!offscreen && !qt::HasDisplay()) {
        reason =
            "no window can be shown: there is no display, or it cannot be reached (DISPLAY, WAYLAND_DISPLAY). "
            "Draw the map to a file with zenro draw.";
        return 1;
    }
    QApplication::setOrganizationName("zenromath");
    QApplication::setApplicationName("zenro");
    TranslateQt();
    MendHints();
    ViewJob job;
    job.program = QString::fromUtf8(map.program);
    job.inputs = ListOf(map.inputs);
    job.options = ListOf(map.options);
    job.picture = QString::fromUtf8(map.picture);
    job.log = QString::fromUtf8(map.log);
    Window window(job);
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        if (map.stop != nullptr && map.stop() != 0) window.close();  // as by hand: what is remembered is written
    });
    timer.start(kAskEvery);
    // After this turn of the loop: the window may end before the loop begins.
    QObject::connect(
        &window, &Window::Ended, &window, [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
    window.show();
    QApplication::exec();
    reason = window.reason().toStdString();
    return window.status();
}

}  // namespace

int ShowMap(const ZenroQtMap& map, std::string& reason) {
    return Show<ViewWindow>(map, reason);
}

int ShowSymbols(const ZenroQtMap& library, std::string& reason) {
    return Show<SymbolWindow>(library, reason);
}

}  // namespace zm::view
