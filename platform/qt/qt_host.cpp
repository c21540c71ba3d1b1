#include "zenromath/qt_host.h"

#include <QApplication>
#include <QFontDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QMainWindow>
#include <QMessageBox>
#include <QStatusBar>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "platform/qt/dialog_window.h"
#include "platform/qt/qt_text.h"
#include "runtime/text/gbk.h"
#include "zenromath/qt.h"

namespace zm::qt {
namespace {

constexpr int kPanes = 3;
constexpr int kEscape = 27;

std::string GbkOf(const QString& text) {
    return gbk::FromUtf8(text.toStdString());
}

int CopyText(const std::string& text, char* buffer, int size) {
    if (buffer == nullptr || size <= 0) return 0;
    const std::size_t count = std::min(text.size(), static_cast<std::size_t>(size) - 1);
    std::memcpy(buffer, text.data(), count);
    buffer[count] = '\0';
    return static_cast<int>(count);
}

// Cursors are kept apart by these two places.
char g_arrow;
char g_wait;

int KeyCode(const QKeyEvent& event) {
    return event.key() == Qt::Key_Escape ? kEscape : event.key();
}

}  // namespace

HWND HandleOf(QWidget* widget) {
    return reinterpret_cast<HWND>(widget);
}
QWidget* WidgetOf(HWND window) {
    return reinterpret_cast<QWidget*>(window);
}

QtHost::QtHost(QMainWindow* main) : m_main(main) {
    EnsureApplication();
    QCoreApplication::instance()->installEventFilter(this);
}

QtHost::~QtHost() = default;

QMainWindow* QtHost::Main() const {
    if (m_main != nullptr) return m_main;
    if (auto* active = qobject_cast<QMainWindow*>(QApplication::activeWindow())) return active;
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (auto* main = qobject_cast<QMainWindow*>(widget)) return main;
    return nullptr;
}

int QtHost::ShowBox(const char* text, const char* title, unsigned int type) {
    const bool question = (type & 0xF) == MB_YESNO;
    if (!HasDisplay()) {
        std::fprintf(stderr, "%s: %s\n", gbk::ToUtf8(title).c_str(), gbk::ToUtf8(text).c_str());
        return question ? IDNO : IDOK;
    }
    const unsigned int icon = type & 0x70;
    const auto shown = icon == MB_ICONQUESTION      ? QMessageBox::Question
                       : icon == MB_ICONSTOP        ? QMessageBox::Critical
                       : icon == MB_ICONINFORMATION ? QMessageBox::Information
                                                    : QMessageBox::NoIcon;
    QMessageBox box(shown, FromGbk(title), FromGbk(text),
                    question ? QMessageBox::Yes | QMessageBox::No : QMessageBox::Ok);
    return box.exec() == QMessageBox::Yes ? IDYES : question ? IDNO : IDOK;
}

void QtHost::Beep() {
    QApplication::beep();
}

HWND QtHost::MainWindow() {
    return HandleOf(Main());
}

bool QtHost::IsWindow(HWND window) {
    return window != nullptr && QApplication::allWidgets().contains(WidgetOf(window));
}

int QtHost::GetText(HWND window, char* buffer, int size) {
    if (!IsWindow(window)) return CopyText({}, buffer, size);
    const QWidget* widget = WidgetOf(window);
    const QVariant text = widget->property("text");
    return CopyText(GbkOf(text.isValid() ? text.toString() : widget->windowTitle()), buffer, size);
}

void QtHost::SetText(HWND window, const char* text) {
    if (!IsWindow(window)) return;
    QWidget* widget = WidgetOf(window);
    if (widget->property("text").isValid())
        widget->setProperty("text", FromGbk(text));
    else
        widget->setWindowTitle(FromGbk(text));
}

bool QtHost::SetStatusPane(int pane, const char* text) {
    QMainWindow* main = Main();
    if (main == nullptr || pane < 0 || pane >= kPanes) return false;
    auto* bar = main->findChild<QStatusBar*>(QString(), Qt::FindDirectChildrenOnly);
    if (bar == nullptr) return false;
    const QString name = QStringLiteral("zmPane%1");
    for (int i = 0; i < kPanes; ++i)
        if (bar->findChild<QLabel*>(name.arg(i)) == nullptr) {
            auto* label = new QLabel(bar);
            label->setObjectName(name.arg(i));
            bar->addWidget(label, i == 0 ? 1 : 0);
        }
    auto* label = bar->findChild<QLabel*>(name.arg(pane));
    label->setText(FromGbk(text));
    label->repaint();
    return true;
}

Int64 QtHost::Send(HWND window, unsigned int message, UInt64, Int64) {
    if (!IsWindow(window)) return 0;
    QEvent event(static_cast<QEvent::Type>(QEvent::User + static_cast<int>(message % 0x7000)));
    return QCoreApplication::sendEvent(WidgetOf(window), &event) ? 1 : 0;
}

HCURSOR QtHost::PutCursor(HCURSOR cursor) {
    const HCURSOR previous = m_cursor;
    if (previous == reinterpret_cast<HCURSOR>(&g_wait)) QApplication::restoreOverrideCursor();
    if (cursor == reinterpret_cast<HCURSOR>(&g_wait)) QApplication::setOverrideCursor(Qt::WaitCursor);
    m_cursor = cursor;
    return previous;
}

HCURSOR QtHost::StandardCursor(Cursor cursor) {
    return reinterpret_cast<HCURSOR>(cursor == Cursor::wait ? &g_wait : &g_arrow);
}

bool QtHost::eventFilter(QObject* watched, QEvent* event) {
    if (!m_taking) return QObject::eventFilter(watched, event);
    switch (event->type()) {
        case QEvent::KeyRelease: {
            const auto& key = *static_cast<QKeyEvent*>(event);
            // One key reaches the window object and its widget; only the widget's event is kept.
            if (auto* widget = qobject_cast<QWidget*>(watched); widget != nullptr && !key.isAutoRepeat())
                m_keys.push_back({HandleOf(widget->window()), WM_KEYUP, static_cast<UInt64>(KeyCode(key)), 0});
            return watched->isWidgetType();
        }
        case QEvent::KeyPress:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::Wheel:
            return watched->isWidgetType();  // lost on purpose while the work runs
        default:
            return QObject::eventFilter(watched, event);
    }
}

bool QtHost::TakeMessage(QueueMessage& message, HWND window, unsigned int first, unsigned int last) {
    if (m_taking) return false;
    m_taking = true;
    QCoreApplication::processEvents();
    m_taking = false;
    const bool any = first == 0 && last == 0;
    if (any) return false;  // everything but keys was dispatched by Qt already; the keys wait for the Esc test
    const HWND top = window != nullptr && IsWindow(window) ? HandleOf(WidgetOf(window)->window()) : nullptr;
    const auto found = std::find_if(m_keys.begin(), m_keys.end(), [&](const QueueMessage& m) {
        return (top == nullptr || m.window == top) && m.message >= first && m.message <= last;
    });
    if (found == m_keys.end()) return false;
    message = *found;
    m_keys.erase(found);
    return true;
}

bool QtHost::PickFont(HWND owner, LOGFONT& font) {
    if (!HasDisplay()) return false;
    bool picked = false;
    const QFont chosen = QFontDialog::getFont(&picked, FontFor(font).font, IsWindow(owner) ? WidgetOf(owner) : nullptr);
    if (!picked) return false;
    const QFontMetricsF metrics(chosen);
    font.lfHeight = static_cast<LONG>(std::lround(metrics.ascent() + metrics.descent()));
    font.lfWidth = 0;
    font.lfWeight = static_cast<LONG>(chosen.weight());
    font.lfItalic = chosen.italic() ? 255 : 0;
    font.lfUnderline = chosen.underline() ? 1 : 0;
    font.lfStrikeOut = chosen.strikeOut() ? 1 : 0;
    CopyText(GbkOf(chosen.family()), font.lfFaceName, LF_FACESIZE);
    return true;
}

bool QtHost::RunDialog(dialogs::Dialog& dialog) {
    if (HasDisplay()) return ShowDialog(dialog);
    dialog.obstacle = "there is no display, or it cannot be reached (DISPLAY, WAYLAND_DISPLAY)";
    return false;
}

}  // namespace zm::qt
