// Line-class symbols in pattern mode: the walk along the line.
#include "symbol/line_class.h"

#include <algorithm>
#include <cmath>

#include "draw/state.h"
#include "geometry/lines.h"
#include "runtime/numbers.h"
#include "symbol/library.h"
#include "symbol/paper.h"
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
    void WalkRun(double distance);
    void Mark(int flip);
    // Distance and bearing from the place reached to the next vertex, known until the place changes. The bearing is
    // asked for where a token ends or a symbol stands: it costs more than all the rest of a step.
    double Ahead() {
        if (!m_aheadKnown) m_ahead = geometry::Distance(m_x[m_at], m_y[m_at], m_x[m_at + 1], m_y[m_at + 1]);
        m_aheadKnown = true;
        return m_ahead;
    }
    double BearingAhead() {
        if (!m_bearingKnown) m_bearing = Bearing({m_x[m_at], m_y[m_at]}, {m_x[m_at + 1], m_y[m_at + 1]}, Ahead());
        m_bearingKnown = true;
        return m_bearing;
    }
    void MovedTo(int vertex) {
        m_at = vertex;
        m_aheadKnown = m_bearingKnown = false;
    }
    void Advance() {
        if (++m_token > m_tokens - 1) m_token %= m_tokens;
        m_rest = Length(m_token);
    }
    bool Stuck(double distance);
    int TellBadSymbol() const { return _LMsg(numbers::Text(texts::kBadPattern, m_code).c_str(), nullptr, 0); }

    const double* m_values;
    const char* m_letters;
    int m_tokens;
    double* m_x;
    double* m_y;
    int m_n;
    double m_g;
    int m_code;

    double m_lengths[kPatternTokens] = {};  // of the tokens on the ground
    double m_ahead = 0.0;
    double m_bearing = 0.0;
    bool m_aheadKnown = false;
    bool m_bearingKnown = false;

    int m_side = kNoSide;
    double m_width = 0.0;
    bool m_solid = true;
    double m_cycle = 0.0;  // length of the whole pattern on the ground

    int m_at = 0;  // the segment; its start is the place reached so far
    int m_token = 0;
    int m_marks = 0;      // tokens in a row without length
    int m_from = 0;       // vertex at which the current stretch begins
    double m_rest = 0.0;  // what is left of the current token

    int m_segment = -1;  // the segment on which steps are counted
    double m_steps = 0.0;
    double m_allowed = 0.0;
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

// Whether the pattern goes round and round on one segment: its lengths add up to nothing, or to so little that the
// segment's end is not reached by adding them.
bool PatternWalk::Stuck(double distance) {
    if (m_segment != m_at) {
        m_segment = m_at;
        m_steps = 0.0;
        const double cycles = m_cycle > 0.0 ? distance / m_cycle : 0.0;
        m_allowed = cycles < kMostCycles ? (2.0 * cycles + 3.0) * m_tokens + kMarksInARow : 3.0 * m_tokens;
    }
    return ++m_steps > m_allowed;
}

int PatternWalk::Walk(int flip) {
    m_rest = Length(0);
    while (m_at < m_n - 1) {
        if (m_at == 0 && m_marks == kMarksInARow) return TellBadSymbol();
        if (Stuck(Ahead())) {
            if (state().patternStuckTold) return 0;
            state().patternStuckTold = true;
            return _LMsg(numbers::Text(texts::kPatternStuck, m_code).c_str(), nullptr, 0);
        }
        if (IsRun(m_token))
            WalkRun(Ahead());
        else
            Mark(flip);
    }
    // The last step left the place at which it stood, so the bearing is still that of the last leg.
    if (m_letters[0] == 'G' && m_width > kLeastWidth) {
        MovedTo(m_n - 2);
        insert(m_x[m_n - 1], m_y[m_n - 1], Turned(BearingAhead(), flip), ToInt(m_values[0]));
    }
    return 2;
}

// A token with a length: it ends on this segment, or goes on past the vertex.
void PatternWalk::WalkRun(double distance) {
    m_marks = 0;
    const bool drawn = !m_solid && m_letters[m_token] == '+';
    if (distance < m_rest) {
        if (drawn && m_at == m_n - 2) DrawPenRun(m_x, m_y, m_x[m_at + 1], m_y[m_at + 1], m_width, m_side, m_from, m_at);
        m_rest -= distance;
        MovedTo(m_at + 1);
        return;
    }
    const Point end = At({m_x[m_at], m_y[m_at]}, m_rest, BearingAhead());
    if (drawn) DrawPenRun(m_x, m_y, end.x, end.y, m_width, m_side, m_from, m_at);
    Advance();
    // Required: the new token's length against the old distance; where they are equal the walk goes on from the vertex
    // with the whole new length.
    if (m_rest == distance) {
        MovedTo(m_at + 1);
    } else {
        m_x[m_at] = end.x;
        m_y[m_at] = end.y;
        MovedTo(m_at);
    }
    m_from = m_at;
}

void PatternWalk::Mark(int flip) {
    const double x = m_x[m_at];
    const double y = m_y[m_at];
    if (m_letters[m_token] == 'G') insert(x, y, Turned(BearingAhead(), flip), ToInt(m_values[m_token]));
    if (m_letters[m_token] == 'P') TqDC->pixel(x, y, 0, 1);
    Advance();
    ++m_marks;
    m_from = m_at;
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
