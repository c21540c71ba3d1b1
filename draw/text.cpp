// Text: where it lies, how long it is, and how it goes to a sink.
#include <cmath>
#include <cstring>

#include "draw/device.h"
#include "draw/numbers.h"
#include "draw/state.h"
#include "draw/stroke/sinks.h"
#include "zenromath/config.h"
#include "zenromath/draw.h"

using namespace zm::draw;

namespace {

constexpr int kLeastFontHeight = 4;          // font units; smaller text is a dot
constexpr unsigned char kLastSingle = 0x7E;  // a greater first byte takes the font of halved width
constexpr double kLevel = 1e-5;              // radians; below it a direction runs along x
constexpr double kUpright = 0.999;           // a greater sine advances by height
constexpr double kNoRun = 0.001;             // a smaller cosine gives no advance in x
constexpr double kLeastShift = 1e-6;         // survey units; a smaller vertical shift is left out
constexpr double kDotHeight = 0.8;           // of the text height: where the middle of a decimal point is
constexpr double kFrameMargin = 0.2;         // survey units that textRout keeps from the clip rectangle
constexpr double kLevelSine = 0.001;         // textRout on a turned view

bool IsDouble(char c) {
    return (static_cast<unsigned char>(c) & 0x80) != 0;
}

int Length(const char* s) {
    return s != nullptr ? static_cast<int>(std::strlen(s)) : 0;
}

// The same, but no more than most: a run of a long text is not measured to its end.
int LengthUpTo(const char* s, int most) {
    const void* end = std::memchr(s, '\0', static_cast<std::size_t>(most));
    return end != nullptr ? static_cast<int>(static_cast<const char*>(end) - s) : most;
}

// Ends a text after len bytes while it lives.
class ScopedEnd {
 public:
    ScopedEnd(char* s, int len) : m_place(s + len), m_byte(*m_place) {
        if (m_byte != '\0') *m_place = '\0';
    }
    ~ScopedEnd() {
        if (m_byte != '\0') *m_place = m_byte;
    }
    ScopedEnd(const ScopedEnd&) = delete;
    ScopedEnd& operator=(const ScopedEnd&) = delete;

 private:
    char* m_place;
    char m_byte;
};

// Blanks every decimal point; the place of the last one among the characters, from 1, 0 if there is none.
int BlankPoints(char* s) {
    int last = 0;
    int character = 0;
    for (char* c = s; *c != '\0'; ++c) {
        ++character;
        if (*c == '.') {
            *c = ' ';
            last = character;
        } else if (IsDouble(*c) && c[1] != '\0') {
            ++c;
        }
    }
    return last;
}

struct Step {
    double x, y;
};

// From one character to the next along a direction.
Step StepOf(double angle, double w, double h) {
    const double sine = std::sin(angle);
    const double cosine = std::cos(angle);
    if (std::fabs(angle) < kLevel) return {w, 0.0};
    if (std::fabs(sine) <= kUpright && std::fabs(sine) * w <= std::fabs(cosine) * h)
        return {cosine < 0.0 ? -w : w, w * sine / cosine};
    return {std::fabs(cosine) < kNoRun ? 0.0 : h / sine * cosine, sine > 0.0 ? h : -h};
}

}  // namespace

int CTqDraw::textout(int px, int py, char* s, int len) {
    if (m_fontHeight < kLeastFontHeight) {
        zm::device::SetPixel(m_hdc, px, py, 0);
        return 1;
    }
    if (s == nullptr || len < 0) return 0;
    // Required: the first byte alone decides, also for a text that goes on in Chinese.
    if (len == 0 || static_cast<unsigned char>(s[0]) <= kLastSingle) return zm::device::TextOutA(m_hdc, px, py, s, len);
    const HFONT narrow = zm::device::CreateFontIndirectA(&state().currentFont);
    const HFONT selected = zm::device::SelectObject(m_hdc, narrow);
    const int result = zm::device::TextOutA(m_hdc, px, py, s, len);
    zm::device::SelectObject(m_hdc, selected);
    zm::device::DeleteObject(narrow);
    return result;
}

int CTqDraw::textout(double x, double y, char* s, int len, int rotate) {
    if (s == nullptr) return 0;
    if (rotate != 0) GetRMCoord(x, y);
    if (cutpoint(x, y) == 0) return 0;
    len = len > 0 ? LengthUpTo(s, len) : Length(s);
    switch (SinkOf(m_type)) {
        case Sink::dwg: {
            const ScopedEnd end(s, len);
            return zm::draw::sink::dwg::Text(*this, x, y, s);
        }
        case Sink::record: {
            // Required: unlike in a drawing file the anchor stays the top left corner.
            const ScopedEnd end(s, len);
            return zm::draw::sink::record::Text(*this, x, y, s);
        }
        case Sink::device:
            break;
    }
    return zm::draw::sink::device::Text(*this, x, y, s, len);
}

int CTqDraw::textout(double x, double y, char* s, double angle, double gap) {
    const Step step = StepOf(angle, gap + m_textWidth, m_textHeight);
    const int length = Length(s);
    for (int i = 0; i < length;) {
        const int bytes = IsDouble(s[i]) ? 2 : 1;
        textout(x, y, s + i, bytes, 1);
        state().firstCharacter = 0;
        x += step.x;
        y += step.y;
        i += bytes;
    }
    state().firstCharacter = 1;
    return 1;
}

int CTqDraw::GetStrLen(char* s) const {
    int bytes = 0;
    int high = 0;
    for (const char* c = s; c != nullptr && *c != '\0'; ++c) {
        ++bytes;
        if (IsDouble(*c)) ++high;
    }
    return bytes - high / 2;
}

double CTqDraw::GetLen(char* s) const {
    return GetStrLen(s) * m_textWidth;
}

void CTqDraw::ResetStringPos(double& x, double& y, char* s, int mode) {
    const double h = m_textHeight;
    const double w = m_textWidth;
    const double sn = m_textSin;
    const double cs = m_textCos;
    const int n = GetStrLen(s);
    if (mode == 0 || (mode > 1 && n == 0)) return;
    const int point = mode == 5 ? BlankPoints(s) : 0;
    if (mode == 1) {
        x -= sn * h;
        y += cs * h;
    } else if (mode == 4 || mode == 5) {
        const double up = point > 0 ? kDotHeight * h : h / 2.0;
        const double along = point > 0 ? (point - 0.5) * w : n / 2.0 * w;
        if (up > kLeastShift) {
            x -= sn * up;
            y += cs * up;
        }
        x -= along * cs;
        y -= along * sn;
    } else {
        x -= n * w * cs;
        y -= n * w * sn;
    }
}

void CTqDraw::textRectOff(double dx, double dy) {
    m_textOffsetX = dx;
    m_textOffsetY = dy;
}

int CTqDraw::textRout(double& x, double& y, char* s, int mode) {
    GetRMCoord(x, y);
    const int bytes = Length(s);
    if (cutpoint(x, y) == 0 || bytes == 0) return 0;
    x += m_textOffsetX;
    y += m_textOffsetY;
    if (mode != 0) ResetStringPos(x, y, s, mode);
    // Required: the length counts bytes, so Chinese text is held back twice as far as it needs.
    const double length = bytes * m_textWidth;
    const double height = m_textHeight;
    if (get_docut() != 0) {
        double left = 0.0;
        double top = 0.0;
        double right = 0.0;
        double bottom = 0.0;
        getcutarea(left, top, right, bottom);
        if (left > x - kFrameMargin)
            x = left + kFrameMargin;
        else if (length + x + kFrameMargin > right)
            x = right - length - kFrameMargin;
        if (y + kFrameMargin > top)
            y = top - kFrameMargin;
        else if (bottom > y - height - kFrameMargin)
            y = height + bottom + kFrameMargin;
    }
    // Required: a recording does not hold this text; it goes to the device in every type but 1.
    if (SinkOf(m_type) == Sink::dwg) return zm::draw::sink::dwg::Text(*this, x, y, s);
    if (m_flip != 0 && std::fabs(m_textSin) < kLevelSine) {
        x += length;
        y -= height;
    }
    return zm::draw::sink::device::Text(*this, x, y, s, bytes);
}

int CTqDraw::Get4CC(double x, double y, double* out, char* s) const {
    const int n = GetStrLen(s);
    if (n == 0 || out == nullptr) return 0;
    double length = n * m_textWidth;
    int points = 0;
    int ones = 0;
    bool narrow = true;
    for (const char* c = s; *c != '\0'; ++c) {
        points += *c == '.' ? 1 : 0;
        ones += *c == '1' ? 1 : 0;
        if (IsDouble(*c)) narrow = false;
    }
    const TqNoteLayBase* notes = GetTqNoteLayBasePt();
    if (narrow && notes != nullptr)
        length -= points * _To01mm(notes->GetDecMin()) + ones * _To01mm(notes->GetDgt1Min());
    const double rightX = x + length * m_textCos;
    const double rightY = y + length * m_textSin;
    const double lowX = rightX + m_textSin * m_textHeight;
    const double lowY = rightY - m_textCos * m_textHeight;
    const double corners[8] = {x, y, rightX, rightY, lowX, lowY, lowX - length * m_textCos, lowY - length * m_textSin};
    std::memcpy(out, corners, sizeof corners);
    return 1;
}
