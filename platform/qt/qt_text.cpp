#include "platform/qt/qt_text.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGlyphRun>
#include <QSet>
#include <QTextLayout>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>

#include "runtime/text/gbk.h"
#include "zenromath/qt.h"

namespace zm::qt {
namespace {

// Faces that cover Chinese, in the order of preference; the first that is installed stands in for a missing one.
constexpr const char* kChineseFaces[] = {"WenQuanYi Zen Hei",   "Noto Sans CJK SC", "Noto Serif CJK SC",
                                         "WenQuanYi Micro Hei", "AR PL UMing CN",   "Droid Sans Fallback"};
constexpr double kProbeSize = 1000.0;  // pixels; sizes are measured at it once and scaled

std::function<void(const std::string&, const std::string&)>& Report() {
    static std::function<void(const std::string&, const std::string&)> report = [](const std::string& asked,
                                                                                   const std::string& used) {
        if (used.empty())
            std::fprintf(stderr, "No installed font has all characters of a text in \"%s\".\n", asked.c_str());
        else
            std::fprintf(stderr, "The font \"%s\" is not installed; \"%s\" is used instead.\n", asked.c_str(),
                         used.c_str());
    };
    return report;
}

const QSet<QString>& Installed() {
    static const QSet<QString> families = [] {
        const QStringList list = QFontDatabase::families();
        return QSet<QString>(list.begin(), list.end());
    }();
    return families;
}

bool CoversChinese(const QString& family) {
    return QFontDatabase::writingSystems(family).contains(QFontDatabase::SimplifiedChinese);
}

// The family that is used for a face name; reported once where it is another one.
QString FamilyFor(const QString& asked) {
    static std::map<QString, QString> known;
    const auto found = known.find(asked);
    if (found != known.end()) return found->second;
    QString used = asked;
    if (asked.isEmpty() || !Installed().contains(asked)) {
        used = ChineseFace();
        if (!asked.isEmpty() && Report())
            Report()(asked.toStdString(), used.isEmpty() ? "Qt's default" : used.toStdString());
    }
    return known[asked] = used;
}

QString FaceOf(const LOGFONTA& font) {
    return FromGbk(std::string_view(font.lfFaceName, strnlen(font.lfFaceName, sizeof font.lfFaceName)));
}

// Whether neither the font nor any that Qt takes in its place has a character.
bool IsDrawnAsABox(const QFont& font, QChar character) {
    QTextLayout layout(QString(character), font);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    for (const QGlyphRun& run : layout.glyphRuns())
        if (run.glyphIndexes().contains(0)) return true;
    return false;
}

// The answer is kept for each character: all faces are asked for it.
bool LacksAny(const QFont& font, const QString& text) {
    enum State : char { kUnknown, kThere, kLacking };
    static std::array<State, 0x10000> known{};
    bool lacks = false;
    for (const QChar character : text) {
        if (!character.isPrint() || character.isSpace() || character.isSurrogate()) continue;
        State& state = known[character.unicode()];
        if (state == kUnknown) state = IsDrawnAsABox(font, character) ? kLacking : kThere;
        lacks = lacks || state == kLacking;
    }
    return lacks;
}

// Those that were reported to the function in force.
QSet<QString>& FacesWithBoxes() {
    static QSet<QString> faces;
    return faces;
}

struct Key {
    LOGFONTA font;
    bool operator<(const Key& other) const { return std::memcmp(&font, &other.font, sizeof font) < 0; }
};

FittedFont Fitted(const LOGFONTA& description) {
    EnsureApplication();
    const QString family = FamilyFor(FaceOf(description));
    FittedFont fitted;
    if (!family.isEmpty()) fitted.font.setFamily(family);
    fitted.font.setItalic(description.lfItalic != 0);
    fitted.font.setUnderline(description.lfUnderline != 0);
    fitted.font.setStrikeOut(description.lfStrikeOut != 0);
    if (description.lfWeight > 0)
        fitted.font.setWeight(static_cast<QFont::Weight>(std::min<int>(description.lfWeight, 1000)));
    fitted.font.setStyleStrategy(QFont::PreferAntialias);
    fitted.font.setHintingPreference(QFont::PreferNoHinting);

    QFont probe = fitted.font;
    probe.setPixelSize(static_cast<int>(kProbeSize));
    const QFontMetricsF metrics(probe);
    constexpr int kDefaultHeight = 16;
    const double asked =
        description.lfHeight != 0 ? std::abs(static_cast<double>(description.lfHeight)) : kDefaultHeight;
    // A positive height is that of the cell, a negative one that of the characters, which is the size itself.
    const double cell = metrics.ascent() + metrics.descent();
    const double size = description.lfHeight < 0 || cell <= 0.0 ? asked : asked * kProbeSize / cell;
    fitted.font.setPixelSize(std::max(1, static_cast<int>(std::lround(size))));
    const double scale = size / kProbeSize;
    fitted.ascent = metrics.ascent() * scale;
    fitted.height = cell * scale;
    if (description.lfWidth != 0) {
        // The average width of a face for Chinese is half of its full character, of others what the face says.
        const double natural =
            (CoversChinese(family) ? metrics.horizontalAdvance(QChar(0x4E2D)) / 2 : metrics.averageCharWidth()) * scale;
        if (natural > 0.0) fitted.stretch = std::abs(static_cast<double>(description.lfWidth)) / natural;
    }
    return fitted;
}

}  // namespace

QString ChineseFace() {
    static const QString face = [] {
        for (const char* name : kChineseFaces)
            if (Installed().contains(QLatin1String(name))) return QString::fromLatin1(name);
        const QStringList covering = QFontDatabase::families(QFontDatabase::SimplifiedChinese);
        return covering.isEmpty() ? QString() : covering.first();
    }();
    return face;
}

void SetMissingFaceReport(std::function<void(const std::string& asked, const std::string& used)> report) {
    Report() = std::move(report);
    FacesWithBoxes().clear();
}

void ReportBoxes(const LOGFONTA& font, const QString& text) {
    if (!Report() || !LacksAny(FontFor(font).font, text)) return;
    const QString face = FaceOf(font);
    if (FacesWithBoxes().contains(face)) return;
    FacesWithBoxes().insert(face);
    Report()(face.toStdString(), {});
}

QString FromGbk(std::string_view text) {
    return QString::fromStdString(gbk::ToUtf8(text));
}

const FittedFont& FontFor(const LOGFONTA& font) {
    static std::map<Key, FittedFont> known;
    Key key{font};
    key.font.lfEscapement = key.font.lfOrientation = 0;
    const std::size_t length = strnlen(key.font.lfFaceName, sizeof key.font.lfFaceName);
    std::memset(key.font.lfFaceName + length, 0, sizeof key.font.lfFaceName - length);
    const auto found = known.find(key);
    if (found != known.end()) return found->second;
    constexpr std::size_t kMost = 500;
    if (known.size() >= kMost) known.clear();
    return known.emplace(key, Fitted(font)).first->second;
}

}  // namespace zm::qt
