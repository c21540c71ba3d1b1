#include "tools/zenro/coord/angle_text.h"

#include <cmath>
#include <initializer_list>

#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "zenromath/geodesy.h"

namespace zm::tool {
namespace {

constexpr std::initializer_list<const char*> kDegreeMarks = {"\xC2\xB0", "\xC2\xBA", "\xE5\xBA\xA6",
                                                             "\xCB\x9A", "d",        "D"};
constexpr std::initializer_list<const char*> kMinuteMarks = {"'", "\xE2\x80\xB2", "\xE2\x80\x99", "\xE5\x88\x86", "m",
                                                             "M"};
constexpr std::initializer_list<const char*> kSecondMarks = {"\"",           "''",           "\xE2\x80\xB3",
                                                             "\xE2\x80\x9D", "\xE7\xA7\x92", "s"};

bool Take(std::string_view& text, std::string_view what) {
    if (text.substr(0, what.size()) != what) return false;
    text.remove_prefix(what.size());
    return true;
}

bool TakeAny(std::string_view& text, std::initializer_list<const char*> marks) {
    for (const char* mark : marks)
        if (Take(text, mark)) return true;
    return false;
}

void SkipBlanks(std::string_view& text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// Digits with at most one point; false and nothing taken where there are none.
bool TakeNumber(std::string_view& text, double& number, std::string_view& digits) {
    std::size_t n = 0;
    bool point = false, any = false;
    for (; n < text.size() && (IsDigit(text[n]) || (text[n] == '.' && !point)); ++n) {
        point = point || text[n] == '.';
        any = any || IsDigit(text[n]);
    }
    if (!any) return false;
    digits = text.substr(0, n);
    if (!ReadReal(digits.back() == '.' ? digits.substr(0, n - 1) : digits, number)) return false;
    text.remove_prefix(n);
    return true;
}

char TakeHemisphere(std::string_view& text, bool ends) {
    static constexpr struct {
        const char* name;
        char letter;
    } kNames[] = {{"\xE5\x8C\x97\xE7\xBA\xAC", 'N'},
                  {"\xE5\x8D\x97\xE7\xBA\xAC", 'S'},
                  {"\xE4\xB8\x9C\xE7\xBB\x8F", 'E'},
                  {"\xE8\xA5\xBF\xE7\xBB\x8F", 'W'},
                  {"N", 'N'},
                  {"S", 'S'},
                  {"E", 'E'},
                  {"W", 'W'}};
    for (const auto& [name, letter] : kNames) {
        std::string_view after = text;
        if (!Take(after, name)) continue;
        // A letter that goes on is a word, such as the name of a point.
        const char next = after.empty() ? ' ' : after.front();
        if (ends && ((next >= 'A' && next <= 'Z') || (next >= 'a' && next <= 'z') || IsDigit(next) || next == '_'))
            continue;
        text = after;
        return letter;
    }
    return '\0';
}

AngleText Wrong(const std::string& why) {
    AngleText angle;
    angle.wrong = why;
    return angle;
}

// Degrees.mmss: the digits decide, so that 30.5960 is refused and 30.6 is, too.
AngleText Packed(std::string_view digits, double value) {
    const std::size_t point = digits.find('.');
    std::string fraction(point == std::string_view::npos ? std::string_view() : digits.substr(point + 1));
    fraction.resize(std::max<std::size_t>(fraction.size(), 4), '0');
    if (fraction[0] > '5') return Wrong(Phrase("packed degrees with {0} minutes", fraction.substr(0, 2)));
    if (fraction[2] > '5') return Wrong(Phrase("packed degrees with {0} seconds", fraction.substr(2, 2)));
    AngleText angle;
    angle.degrees = dms_deg(value);
    return angle;
}

// Minutes and seconds after the degrees, with what parts them already known.
AngleText Sixties(std::string_view& text, double degrees, bool whole, char part) {
    double minutes = 0.0, seconds = 0.0;
    std::string_view digits;
    const auto next = [&](double& number) {
        std::string_view at = text;
        if (part == ' ') SkipBlanks(at);
        if (part == ':' || part == '-') {
            if (at.empty() || at.front() != part) return false;
            at.remove_prefix(1);
        } else {
            SkipBlanks(at);
        }
        if (!TakeNumber(at, number, digits)) return false;
        text = at;
        return true;
    };
    if (!next(minutes)) return part == 0 ? AngleText{degrees, '\0', {}} : Wrong(Phrase("degrees without minutes"));
    const bool wholeMinutes = digits.find('.') == std::string_view::npos;
    if (part == 0 && !TakeAny(text, kMinuteMarks)) return Wrong(Phrase("minutes without their mark"));
    if (next(seconds)) {
        if (part == 0 && !TakeAny(text, kSecondMarks)) return Wrong(Phrase("seconds without their mark"));
        if (!wholeMinutes) return Wrong(Phrase("minutes with a fraction, and seconds"));
    }
    if (!whole) return Wrong(Phrase("degrees with a fraction, and minutes"));
    if (minutes >= 60.0) return Wrong(Phrase("{0} minutes", Fixed(minutes, 2)));
    if (seconds >= 60.0) return Wrong(Phrase("{0} seconds", Fixed(seconds, 2)));
    return {degrees + minutes / 60.0 + seconds / 3600.0, '\0', {}};
}

}  // namespace

AngleText TakeAngle(std::string_view& text, AngleForm form) {
    SkipBlanks(text);
    char hemisphere = TakeHemisphere(text, false);
    if (hemisphere != '\0') SkipBlanks(text);
    const bool minus = Take(text, "-");
    if (!minus) Take(text, "+");
    double value = 0.0;
    std::string_view digits;
    if (!TakeNumber(text, value, digits)) return Wrong(Phrase("no number"));
    const bool whole = digits.find('.') == std::string_view::npos;
    // An exponent belongs to the number.
    if (!text.empty() && (text.front() == 'e' || text.front() == 'E') && text.size() > 1 &&
        (IsDigit(text[1]) || (text.size() > 2 && (text[1] == '-' || text[1] == '+') && IsDigit(text[2])))) {
        std::size_t n = 2;
        while (n < text.size() && IsDigit(text[n])) ++n;
        if (!ReadReal(std::string(digits) + std::string(text.substr(0, n)), value)) return Wrong(Phrase("no number"));
        text.remove_prefix(n);
    }
    AngleText angle;
    std::string_view after = text;
    SkipBlanks(after);
    if (TakeAny(after, kDegreeMarks)) {
        text = after;
        angle = Sixties(text, value, whole, 0);
    } else if (text.size() > 1 && (text[0] == ':' || text[0] == '-') && IsDigit(text[1])) {
        angle = Sixties(text, value, whole, text[0]);
    } else if (form == AngleForm::dms && !after.empty() && IsDigit(after.front()) && whole) {
        angle = Sixties(text, value, whole, ' ');
    } else if (form == AngleForm::packed) {
        angle = Packed(digits, value);
    } else {
        angle.degrees = value;
    }
    if (!angle.wrong.empty()) return angle;
    after = text;
    SkipBlanks(after);
    if (hemisphere == '\0' && (hemisphere = TakeHemisphere(after, true)) != '\0') text = after;
    if (minus && hemisphere != '\0') return Wrong(Phrase("a sign and a letter of the hemisphere"));
    angle.hemisphere = hemisphere;
    if (minus || hemisphere == 'S' || hemisphere == 'W') angle.degrees = -angle.degrees;
    return angle;
}

std::string AngleAs(double degrees, AngleForm form, int decimals) {
    if (form == AngleForm::decimal) return Fixed(degrees, decimals >= 0 ? decimals : 10);
    if (form == AngleForm::packed) return Fixed(deg_dms(degrees), decimals >= 0 ? decimals : 9);
    const int places = decimals >= 0 ? std::min(decimals, 9) : 5;
    // In whole units of the last place, so that 60 seconds never appear.
    const double unit = std::pow(10.0, places);
    const double total = std::round(std::fabs(degrees) * 3600.0 * unit);
    const double whole = std::floor(total / (3600.0 * unit));
    const double minutes = std::floor((total - whole * 3600.0 * unit) / (60.0 * unit));
    const double seconds = (total - whole * 3600.0 * unit - minutes * 60.0 * unit) / unit;
    const auto two = [](const std::string& text, std::size_t width) {
        return std::string(text.size() < width ? width - text.size() : 0, '0') + text;
    };
    return (degrees < 0.0 && total > 0.0 ? "-" : "") + Fixed(whole, 0) + "\xC2\xB0" + two(Fixed(minutes, 0), 2) + "'" +
           two(Fixed(seconds, places), places > 0 ? static_cast<std::size_t>(places) + 3 : 2) + "\"";
}

}  // namespace zm::tool
