// Line-class symbols in pattern mode: the walk along the line.
#include "symbol/line_class.h"

#include <algorithm>
#include <cmath>

#include "draw/state.h"
#include "geometry/lines.h"
#include "geometry/turn.h"
#include "runtime/numbers.h"
#include "symbol/library.h"
#include "symbol/paper.h"
#include "symbol/point_symbol.h"
#include "symbol/scratch.h"
#include "symbol/state.h"
#include "symbol/texts.h"
#include "zenromath/runtime.h"

namespace zm::symbol {
namespace {

constexpr double kVertexMode = 0.001;  // a value[19] above it
constexpr double kLeastWidth = 0.01;   // survey metres; companions narrower than this are not drawn
constexpr int kMarksInARow = 10;       // tokens without length before the pattern is given up
constexpr double kMostCycles = 1e7;    // of a pattern on one segment; one that needs more is taken for stuck

enum Side { kNoSide = -1, kRight = 0, kBoth = 1, kLeft = 2 };

class PatternWalk {
 public:
    PatternWalk(const double* values, const char* letters, int tokens, double* x, double* y, int n, double g, int code)
        : m_values(values), m_letters(letters), m_tokens(tokens), m_x(x), m_y(y), m_n(n), m_g(g), m_code(code) {}

    int Run(int flip, int sidesOff);

 private:
    double Length(int token) const { return m_lengths[token]; }
    bool IsRun(int token) const { return m_letters[token] == '+' || m_letters[token] == '-'; }
    void ReadPattern(int sidesOff);
    bool DrawSolid();
    void DrawParallel(double width, int flag, double* out) const;
    int Walk(int flip);
    // What a token asks of the walk.
    enum class Act { kDash, kGap, kSymbol, kDot, kNothing };
    Act ActOf(char letter) const;
    bool WalkSegment(int flip, int& result);
    void DrawRun(double x, double y) const { DrawPenRun(m_x, m_y, x, y, m_width, m_side, m_from, m_at); }
    static void Place(const Point& at, const geometry::Leg& leg, int flip, double code);
    void Advance() {
        if (++m_token > m_tokens - 1) m_token %= m_tokens;
        m_rest = Length(m_token);
    }
    double MostSteps(double distance) const;
    int TellBadSymbol() const { return _LMsg(numbers::Text(texts::kBadPattern, m_code).c_str(), nullptr, 0); }
    int TellStuck() const;

    const double* m_values;
    const char* m_letters;
    int m_tokens;
    double* m_x;
    double* m_y;
    int m_n;
    double m_g;
    int m_code;

    double m_lengths[kPatternTokens] = {};  // of the tokens on the ground
    Act m_acts[kPatternTokens] = {};

    int m_side = kNoSide;
    double m_width = 0.0;
    bool m_solid = true;
    double m_cycle = 0.0;  // length of the whole pattern on the ground

    int m_at = 0;  // the segment; its start is the place reached so far
    int m_token = 0;
    int m_marks = 0;      // tokens in a row without length
    int m_from = 0;       // vertex at which the current stretch begins
    double m_rest = 0.0;  // what is left of the current token
};

void PatternWalk::ReadPattern(int sidesOff) {
    for (int i = 0; i < m_tokens; ++i) {
        m_lengths[i] = m_g * m_values[i] / 1000.0;
        if (m_letters[i] == '-') m_solid = false;
        if (IsRun(i)) m_cycle += Length(i);
        if (sidesOff != 0) continue;
        if (m_letters[i] == 'L') m_side = kRight;
        if (m_letters[i] == 'M') m_side = kBoth;
        if (m_letters[i] == 'R') m_side = kLeft;
        if (m_letters[i] == 'W') m_width = Length(i);
    }
}

void PatternWalk::DrawParallel(double width, int flag, double* out) const {
    parallel(m_n, m_x, m_y, out, out + m_n, width, flag);
    TqDC->lines(m_n, out, out + m_n);
}

// The whole line at once; false without memory.
bool PatternWalk::DrawSolid() {
    const Scratch scratch(2 * (static_cast<std::size_t>(m_n) + 6));
    double* out = scratch.data();
    if (out == nullptr) return false;
    if (m_side == kBoth) {
        m_width /= 2.0;
        // Required: nothing at all where the half is not above 0.01, not even the line itself.
        if (m_width > kLeastWidth) {
            DrawParallel(m_width, 1, out);
            DrawParallel(m_width, 0, out);
        }
        return true;
    }
    TqDC->lines(m_n, m_x, m_y);
    if (m_width > kLeastWidth) DrawParallel(m_width, m_side == kRight ? 1 : 0, out);
    return true;
}

int PatternWalk::Run(int flip, int sidesOff) {
    ReadPattern(sidesOff);
    if (m_solid && !DrawSolid()) return _LMsg(texts::kNoScratch, nullptr, 0);
    if (m_tokens < 1) return 2;  // an empty pattern is a plain line
    return Walk(flip);
}

PatternWalk::Act PatternWalk::ActOf(char letter) const {
    switch (letter) {
        case '+':
            return m_solid ? Act::kGap : Act::kDash;
        case '-':
            return Act::kGap;
        case 'G':
            return Act::kSymbol;
        case 'P':
            return Act::kDot;
        default:
            return Act::kNothing;
    }
}

int PatternWalk::Walk(int flip) {
    for (int i = 0; i < m_tokens; ++i) m_acts[i] = ActOf(m_letters[i]);
    m_rest = Length(0);
    while (m_at < m_n - 1) {
        int result = 0;
        if (!WalkSegment(flip, result)) return result;
    }
    // The last step left the place at which it stood, so the bearing is still that of the last leg.
    if (m_letters[0] == 'G' && m_width > kLeastWidth) {
        const int last = m_n - 1;
        const geometry::Leg leg(m_x[last] - m_x[last - 1], m_y[last] - m_y[last - 1]);
        Place({m_x[last], m_y[last]}, leg, flip, m_values[0]);
    }
    return 2;
}

// More steps than this on one segment are none that end: the pattern's lengths add up to nothing, or to so little that
// the segment's end is not reached by adding them.
double PatternWalk::MostSteps(double distance) const {
    const double cycles = m_cycle > 0.0 ? distance / m_cycle : 0.0;
    return cycles < kMostCycles ? (2.0 * cycles + 3.0) * m_tokens + kMarksInARow : 3.0 * m_tokens;
}

int PatternWalk::TellStuck() const {
    if (state().patternStuckTold) return 0;
    state().patternStuckTold = true;
    return _LMsg(numbers::Text(texts::kPatternStuck, m_code).c_str(), nullptr, 0);
}

// Goes on to the next vertex. False where the walk ends with a message, whose result is set.
//
// The place reached is the start of the segment in the caller's arrays: dashes are drawn from there.
bool PatternWalk::WalkSegment(int flip, int& result) {
    const Point to = {m_x[m_at + 1], m_y[m_at + 1]};
    Point at = {m_x[m_at], m_y[m_at]};
    geometry::Leg leg(to.x - at.x, to.y - at.y);
    double stepsLeft = MostSteps(leg.distance());
    for (;; --stepsLeft) {
        if (m_at == 0 && m_marks == kMarksInARow) {
            result = TellBadSymbol();
            return false;
        }
        if (!(stepsLeft >= 1.0)) {
            result = TellStuck();
            return false;
        }
        const Act act = m_acts[m_token];
        if (act >= Act::kSymbol) {
            if (act == Act::kSymbol) Place(at, leg, flip, m_values[m_token]);
            if (act == Act::kDot) TqDC->pixel(at.x, at.y, 0, 1);
            Advance();
            ++m_marks;
            m_from = m_at;
            continue;
        }
        m_marks = 0;
        if (leg.distance() < m_rest) {  // the token goes on past the vertex
            if (act == Act::kDash && m_at == m_n - 2) DrawRun(to.x, to.y);
            m_rest -= leg.distance();
            ++m_at;
            return true;
        }
        const geometry::Place end = geometry::Step(leg, at.x, at.y, m_rest);
        if (act == Act::kDash) DrawRun(end.x, end.y);
        Advance();
        // Required: the new token's length against the old distance; where they are equal the walk goes on from the
        // vertex with the whole new length.
        if (m_rest == leg.distance()) {
            m_from = ++m_at;
            return true;
        }
        at = {end.x, end.y};
        m_x[m_at] = at.x;
        m_y[m_at] = at.y;
        m_from = m_at;
        leg = geometry::Leg(to.x - at.x, to.y - at.y);
    }
}

// A symbol turned with its leg.
void PatternWalk::Place(const Point& at, const geometry::Leg& leg, int flip, double code) {
    geometry::Turn turn(leg);
    if (flip != 1) {
        PlaceSymbol(at.x, at.y, turn, ToInt(code));
        return;
    }
    geometry::Turn back(Turned(turn.Angle(), flip));
    PlaceSymbol(at.x, at.y, back, ToInt(code));
}

}  // namespace

int LayLineSymbol(const double* values, const char* letters, int tokenCount, double* x, double* y, int n, int flip,
                  int sidesOff, double g, int code) {
    if (values[19] > kVertexMode) return LayVertexSymbols(values, letters, x, y, n, flip, g, code);
    if (n < 2 || x == nullptr || y == nullptr) return 0;
    return PatternWalk(values, letters, std::clamp(tokenCount, 0, kPatternTokens), x, y, n, g, code)
        .Run(flip, sidesOff);
}

}  // namespace zm::symbol

int NewLC(double* x, double* y, int n, int code) {
    if (zm::draw::NeedWorkingContext("NewLC") == nullptr) return 0;
    // A copy, since each placed symbol replaces the current one.
    const LCBODY symbol = TheLCBody;
    return zm::symbol::LayLineSymbol(symbol.value, symbol.code, TheHeadNumber(), x, y, n, 0, 0,
                                     zm::symbol::ScaleDenominator(), code);
}
