// Line-class symbols in pattern mode: the walk along the line.
#include "symbol/line/line_symbol.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "draw/state.h"
#include "draw/stroke/stream.h"
#include "geometry/exact/course.h"
#include "geometry/lines.h"
#include "runtime/text/numbers.h"
#include "symbol/file/library.h"
#include "symbol/line/pattern_limits.h"
#include "symbol/line/pen_run.h"
#include "symbol/paper.h"
#include "symbol/point/repeated_symbol.h"
#include "symbol/scratch.h"
#include "symbol/state.h"
#include "symbol/texts.h"
#include "zenromath/runtime.h"

namespace zm::symbol {
namespace {

constexpr double kFewSteps = 4.0;    // of the pattern's mean length, below which a segment is not worth aiming along
constexpr double kMostCycles = 1e7;  // of a pattern on one segment; one that needs more is taken for stuck

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
    int Walk();
    // What a token asks of the walk.
    enum class Act : std::uint8_t { kDash, kGap, kSymbol, kDot, kNothing };
    Act ActOf(char letter) const;
    enum class Halt { kNone, kBadSymbol, kStuck };
    Halt GoSegment();
    template <class Way>
    Halt GoOn(Way way, geometry::Pair to);
    void DrawDash(int from, int segment, geometry::Pair at, geometry::Pair end) {
        if (from == segment && m_side == kNoSide)  // as most are
            m_stream.Line(at, end);
        else
            DrawPenRun({m_x, m_y, from, segment, at, end, m_width, m_side}, m_stream);
    }
    void DrawMark(Act act, int token, const Standing& standing);
    void DrawDot(geometry::Pair at);
    void Place(const Standing& standing, double code);
    void PlaceTurned(geometry::Pair at, const geometry::Leg& leg, double code);
    double MostSteps(double distance) const;
    int TellBadSymbol();
    int TellStuck();

    const double* m_values;
    const char* m_letters;
    int m_tokens;
    double* m_x;
    double* m_y;
    int m_n;
    double m_g;
    int m_code;

    double m_lengths[kPatternTokens];  // of the tokens on the ground; set by ReadPattern
    Act m_acts[kPatternTokens];        // set by Walk

    int m_side = kNoSide;
    double m_width = 0.0;
    bool m_solid = true;
    double m_cycle = 0.0;     // length of the whole pattern on the ground
    double m_fewSteps = 0.0;  // a segment below this takes few steps

    int m_at = 0;  // the segment; its start is the place reached so far
    // How far the walk has come in the pattern.
    struct Progress {
        int token = 0;
        int marks = 0;      // tokens in a row without length
        int from = 0;       // vertex at which the current stretch begins
        double rest = 0.0;  // what is left of the current token
    } m_progress;

    int m_flip = 0;
    draw::StrokeStream m_stream;  // whatever else draws, or shows a message, flushes it first
    RepeatedSymbol m_symbol{m_stream};
};

void PatternWalk::ReadPattern(int sidesOff) {
    int runs = 0;
    for (int i = 0; i < m_tokens; ++i) {
        m_lengths[i] = m_g * m_values[i] / 1000.0;
        if (m_letters[i] == '-') m_solid = false;
        if (IsRun(i)) {
            m_cycle += Length(i);
            ++runs;
        }
        if (sidesOff != 0) continue;
        if (m_letters[i] == 'L') m_side = kRight;
        if (m_letters[i] == 'M') m_side = kBoth;
        if (m_letters[i] == 'R') m_side = kLeft;
        if (m_letters[i] == 'W') m_width = Length(i);
    }
    m_fewSteps = kFewSteps * m_cycle / std::max(runs, 1);
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
    m_flip = flip;
    return Walk();
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

int PatternWalk::Walk() {
    for (int i = 0; i < m_tokens; ++i) m_acts[i] = ActOf(m_letters[i]);
    m_progress.rest = Length(0);
    Halt halt = Halt::kNone;
    while (halt == Halt::kNone && m_at < m_n - 1) halt = GoSegment();
    if (halt == Halt::kBadSymbol) return TellBadSymbol();
    if (halt == Halt::kStuck) return TellStuck();
    // The last step left the place where it was, so the bearing is still that of the last leg.
    if (m_letters[0] == 'G' && m_width > kLeastWidth) {
        const int last = m_n - 1;
        const geometry::Leg leg(m_x[last] - m_x[last - 1], m_y[last] - m_y[last - 1]);
        PlaceTurned(geometry::Pair{m_x[last], m_y[last]}, leg, m_values[0]);
    }
    m_stream.Flush();
    return 2;
}

// More steps than this on one segment are none that end: the pattern's lengths add up to nothing, or to so little that
// the segment's end is not reached by adding them.
double PatternWalk::MostSteps(double distance) const {
    const double cycles = m_cycle > 0.0 ? distance / m_cycle : 0.0;
    return cycles < kMostCycles ? (2.0 * cycles + 3.0) * m_tokens + kMarksInARow : 3.0 * m_tokens;
}

int PatternWalk::TellBadSymbol() {
    m_stream.Flush();
    return _LMsg(numbers::Text(texts::kBadPattern, m_code).c_str(), nullptr, 0);
}

int PatternWalk::TellStuck() {
    m_stream.Flush();
    if (state().patternStuckReported) return 0;
    state().patternStuckReported = true;
    return _LMsg(numbers::Text(texts::kPatternStuck, m_code).c_str(), nullptr, 0);
}

PatternWalk::Halt PatternWalk::GoSegment() {
    const geometry::Pair from = {m_x[m_at], m_y[m_at]};
    const geometry::Pair to = {m_x[m_at + 1], m_y[m_at + 1]};
    const geometry::Legs legs(from, to);
    return legs.distance() < m_fewSteps ? GoOn(legs, to) : GoOn(geometry::Course(from, to), to);
}

// Goes on to the next vertex, unless the walk ends there.
template <class Way>
PatternWalk::Halt PatternWalk::GoOn(Way way, geometry::Pair to) {
    Progress now = m_progress;
    const auto advance = [&] {
        if (++now.token == m_tokens) now.token = 0;
        now.rest = Length(now.token);
    };
    Halt halt = Halt::kNone;
    int next = m_at;
    for (double stepsLeft = MostSteps(way.distance());; --stepsLeft) {
        if (m_at == 0 && now.marks == kMarksInARow) {
            halt = Halt::kBadSymbol;
            break;
        }
        if (!(stepsLeft >= 1.0)) {
            halt = Halt::kStuck;
            break;
        }
        const Act act = m_acts[now.token];
        if (act >= Act::kSymbol) {
            if (act != Act::kNothing) DrawMark(act, now.token, {way.at(), to, way.HasDirection(), way.direction()});
            advance();
            ++now.marks;
            now.from = m_at;
            continue;
        }
        now.marks = 0;
        const double distance = way.distance();
        if (distance < now.rest) {  // the token goes on past the vertex
            if (act == Act::kDash && m_at == m_n - 2) DrawDash(now.from, m_at, way.at(), to);
            now.rest -= distance;
            ++next;
            break;
        }
        const double step = now.rest;
        const geometry::Pair end = way.Ahead(step);
        if (act == Act::kDash) DrawDash(now.from, m_at, way.at(), end);
        advance();
        // Required: the new token's length against the old distance; where they are equal the walk goes on from the
        // vertex with the whole new length.
        if (now.rest == distance) {
            now.from = ++next;
            break;
        }
        way.GoTo(end, step);
        now.from = m_at;
    }
    m_progress = now;
    m_x[m_at] = way.at()[0];
    m_y[m_at] = way.at()[1];
    m_at = next;
    return halt;
}

void PatternWalk::DrawMark(Act act, int token, const Standing& standing) {
    if (act == Act::kSymbol)
        Place(standing, m_values[token]);
    else
        DrawDot(standing.at);
}

void PatternWalk::DrawDot(geometry::Pair at) {
    m_stream.Flush();
    if (CTqDraw* context = draw::WorkingContext()) context->pixel(at[0], at[1], 0, 1);
}

// A symbol turned with its leg.
void PatternWalk::Place(const Standing& standing, double code) {
    if (m_flip != 1)
        m_symbol.Place(standing, Truncated(code));
    else
        PlaceTurned(standing.at, standing.leg(), code);
}

void PatternWalk::PlaceTurned(geometry::Pair at, const geometry::Leg& leg, double code) {
    geometry::Turn turn(leg);
    geometry::Turn back(Turned(turn.Angle(), m_flip));
    m_symbol.PlaceAlone(at, m_flip == 1 ? back : turn, Truncated(code));
}

}  // namespace

int LayPattern(const double* values, const char* letters, int tokenCount, double* x, double* y, int n, int flip,
               int sidesOff, double g, int code) {
    return PatternWalk(values, letters, tokenCount, x, y, n, g, code).Run(flip, sidesOff);
}

}  // namespace zm::symbol
