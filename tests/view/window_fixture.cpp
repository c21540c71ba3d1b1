#include "tests/view/window_fixture.h"

#include <QSettings>

namespace zm::test {
namespace {

constexpr char kRules[] =
    "[things : area]\nkind = 'house' -> layer 200, symbol 200, label name\n"
    "[things : line]\n* -> symbol 250, layer 250\n"
    "[things : point]\nkind = 'tree' -> symbol 17, layer 100\n* -> skip\n";

}  // namespace

void WindowTest::SetUpTestSuite() {
    if (QApplication::instance() != nullptr) return;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("ZENRO_LANGUAGE", "en");
    static int argc = 1;
    static char name[] = "window_tests";
    static char* argv[] = {name, nullptr};
    QApplication::setOrganizationName("zenromath");
    QApplication::setApplicationName("zenro");
    static auto* application = new QApplication(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    (void)application;
}

void WindowTest::SetUp() {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, Path("config"));
    qputenv("XDG_CONFIG_HOME", Path("config").toUtf8());
    rules = QString::fromStdString(zenro.File("town.rules", kRules));
    town = QString::fromStdString(zenro.File(
        "things.geojson",
        Collection(AreaFeature("[[40500010,3400010],[40500030,3400010],[40500030,3400040],[40500010,3400040],"
                               "[40500010,3400010]]",
                               R"("kind":"house","name":"Town Hall","floors":3)") +
                   "," + LineFeature("[40500000,3400050],[40500100,3400050]", R"("kind":"road")") + "," +
                   PointFeature(kTownX + 60, kTownY + 20, R"("kind":"tree")"))));
}

void WindowTest::TearDown() {
    if (m_window) Close();
}

view::ViewWindow& WindowTest::Open(QStringList inputs, const QStringList& options) {
    if (inputs.isEmpty()) inputs << town;
    view::ViewJob job;
    job.program = program;
    job.inputs = inputs;
    job.options = QStringList{"--rules=" + rules, "--scale=500"} + options;
    job.log = Path("log");
    m_window = std::make_unique<view::ViewWindow>(job);
    m_window->show();
    WaitForPicture();
    return *m_window;
}

void WindowTest::Close() {
    m_window->close();
    m_window.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QString WindowTest::Messages() const {
    QStringList lines;
    const auto* list = m_window->findChild<QListWidget*>("messages");
    for (int i = 0; i < list->count(); ++i) lines << list->item(i)->text();
    return lines.join('\n');
}

long WindowTest::Dark() const {
    const QImage image = map().Seen();
    long dark = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) dark += qGray(image.pixel(x, y)) < 200 ? 1 : 0;
    return dark;
}

}  // namespace zm::test
