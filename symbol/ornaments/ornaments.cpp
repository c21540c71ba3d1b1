// The rows of the ornament table. Points are named p1, p2 ... as in docs/symbol/ornaments.md; s is 1 mm on the paper.
#include "symbol/ornaments/ornaments.h"

#include <cmath>
#include <initializer_list>
#include <utility>

#include "symbol/ornaments/twin_lines.h"
#include "zenromath/symbol.h"

namespace zm::symbol {
namespace {

// Codes that the library has to define.
constexpr int kRail = 834;
constexpr int kEdge = 221;
constexpr int kZigzagRail = 337;
constexpr int kPost = 3;
constexpr int kRailEnd = 42;
constexpr int kSpanEnd = 90;
constexpr int kSpanEndOther = 91;

// Of a ladder, of rungs, of a zigzag. Further ones are left out: a step so short is no drawing but a mistake.
constexpr int kMostSteps = 100000;

void PutSymbol(const Point& a, int code, double angle) {
    insert(a.x, a.y, angle, code);
}

class Ornament {
 public:
    Ornament(const Point* p, double g) : p1(p[0]), p2(p[1]), p3(p[2]), p4(p[3]), s(g / 1000.0) {}

    void Draw(int number);

 private:
    using Strokes = std::initializer_list<std::pair<Point, Point>>;
    static void Thin(Strokes strokes) {
        for (const auto& [a, b] : strokes) ThinLine(a, b);
    }
    static void Coded(int code, Strokes strokes) {
        for (const auto& [a, b] : strokes) CodedSegment(a, b, code);
    }
    void Rails() const { Thin({{p1, p2}, {p3, p4}}); }
    void CodedRails(int code) const { Coded(code, {{p1, p2}, {p3, p4}}); }
    void Box() const { Thin({{p1, p2}, {p2, p3}, {p3, p4}, {p4, p1}}); }
    void PutAtRailEnds(int code) const;
    void PutAtCorners(int code) const;

    void DrawFrame();
    void DrawSpan(int endSymbol);
    void DrawNotch();
    void DrawEndTicks();
    void DrawDoubleRails();
    void DrawCrossBars();
    void DrawRungs();
    void DrawBars();
    void DrawWaist();
    void DrawRoofs();
    void DrawOuterRails();
    void DrawPassage();
    void DrawPostFrame();
    void DrawLadder();
    void DrawZigzag();
    void DrawHalfCircle(const Point& centre) const;
    void DrawRoundEnd();
    void DrawTickedRoundEnd();

    Point p1, p2, p3, p4;
    double s;
};

void Ornament::PutAtRailEnds(int code) const {
    PutSymbol(p1, code, Bearing(p1, p2));
    PutSymbol(p2, code, Bearing(p2, p1));
    PutSymbol(p3, code, Bearing(p3, p4));
    PutSymbol(p4, code, Bearing(p4, p3));
}

void Ornament::PutAtCorners(int code) const {
    for (const Point& p : {p1, p2, p3, p4}) PutSymbol(p, code, 0.0);
}

// 3
void Ornament::DrawFrame() {
    Coded(kRail, {{p1, p2}, {p2, p3}, {p3, p4}});
    PutAtRailEnds(kRailEnd);
}

// 4, 5
void Ornament::DrawSpan(int endSymbol) {
    constexpr double kHalfSpan = 0.288;
    const double a = Distance(p1, p2);
    const double b = Distance(p1, p4);
    const double c = Distance(p3, p4);
    const double e = Distance(p3, p2);
    const Point p5 = AlongPoint(p1, p2, a / 2.0 - kHalfSpan * b, 0.0);
    const Point p6 = AlongPoint(p1, p2, a / 2.0 + kHalfSpan * b, 0.0);
    const Point p7 = AlongPoint(p3, p4, c / 2.0 - kHalfSpan * e, 0.0);
    const Point p8 = AlongPoint(p3, p4, c / 2.0 + kHalfSpan * e, 0.0);
    Thin({{p1, p2}, {p3, p4}, {p5, p8}, {p6, p7}});
    Coded(kRail, {{p5, p7}, {p6, p8}});
    PutAtRailEnds(endSymbol);
}

// 7
void Ornament::DrawNotch() {
    const Point p5 = Middle(p3, p4);
    const Point p6 = Middle(p5, p1);
    const Point p7 = Middle(p5, p2);
    Thin({{p1, p2}, {p3, p4}, {p1, p4}, {p2, p3}, {p1, p5}, {p2, p5}, {p6, p7}});
}

// 12
void Ornament::DrawEndTicks() {
    const Point p5 = AlongPoint(p2, p3, -s, 0.0);
    const Point p6 = AlongPoint(p3, p2, -s, 0.0);
    const Point p7 = AlongPoint(p4, p1, -s, 0.0);
    const Point p8 = AlongPoint(p1, p4, -s, 0.0);
    Thin({{p5, p6}, {p7, p8}});
}

// 13
void Ornament::DrawDoubleRails() {
    const Point p5 = AlongPoint(p1, p2, 0.0, -s);
    const Point p6 = AlongPoint(p1, p2, Distance(p1, p2), -s);
    const Point p7 = AlongPoint(p3, p4, 0.0, -s);
    const Point p8 = AlongPoint(p3, p4, Distance(p3, p4), -s);
    // Required: the stroke p5 p6 goes out twice; recordings and drawings hold both.
    Thin({{p1, p2}, {p1, p5}, {p5, p6}, {p6, p2}, {p5, p6}, {p3, p4}, {p3, p7}, {p7, p8}, {p8, p4}});
    CodedRails(kEdge);
}

// 15
void Ornament::DrawCrossBars() {
    const Point p5 = AlongPoint(p1, p2, s, 0.0);
    const Point p6 = AlongPoint(p1, p2, 2.0 * s, 0.0);
    const Point p7 = AlongPoint(p2, p1, s, 0.0);
    const Point p8 = AlongPoint(p2, p1, 2.0 * s, 0.0);
    const Point p9 = AlongPoint(p3, p4, s, 0.0);
    const Point p10 = AlongPoint(p3, p4, 2.0 * s, 0.0);
    const Point p11 = AlongPoint(p4, p3, s, 0.0);
    const Point p12 = AlongPoint(p4, p3, 2.0 * s, 0.0);
    Thin({{p1, p2}, {p3, p4}, {p1, p4}, {p2, p3}, {p5, p11}, {p6, p12}, {p7, p9}, {p8, p10}});
    CodedRails(kEdge);
}

// 16
void Ornament::DrawRungs() {
    const double h = s / 2.0;
    const Point p5 = AlongPoint(p1, p2, h, 0.0);
    const Point p6 = AlongPoint(p2, p1, h, 0.0);
    const Point p7 = AlongPoint(p3, p4, h, 0.0);
    const Point p8 = AlongPoint(p4, p3, h, 0.0);
    Thin({{p5, p6}, {p7, p8}});
    PutAtCorners(kPost);
    const double o = -s / 2.0;
    const double a = Distance(p1, p2);
    const double b = Distance(p3, p4);
    double d = 3.0 * s;
    Point p9 = AlongPoint(p1, p2, d, o);
    Point p10 = AlongPoint(p4, p3, d, h);
    for (int step = 0; d != 0.0 && step < kMostSteps; ++step) {
        if (a - Distance(p1, p9) < 2.0 * s || b - Distance(p10, p4) < 2.0 * s) break;
        ThinLine(p9, p10);
        d += 1.6 * s;
        p9 = AlongPoint(p1, p2, d, o);
        p10 = AlongPoint(p4, p3, d, h);
    }
}

// 17
void Ornament::DrawBars() {
    const Point p5 = AlongPoint(p1, p2, s, 0.0);
    const Point p6 = AlongPoint(p2, p1, s, 0.0);
    const Point p7 = AlongPoint(p3, p4, s, 0.0);
    const Point p8 = AlongPoint(p4, p3, s, 0.0);
    Thin({{p1, p2}, {p3, p4}, {p5, p8}, {p6, p7}});
    CodedRails(kEdge);
}

// 19, 20
void Ornament::DrawWaist() {
    const double a = Distance(p1, p2);
    const double c = Distance(p3, p4);
    const double w = Distance(p2, p3) + Distance(p1, p4);
    const Point p5 = AlongPoint(p1, p2, a / 2.0 - 0.175 * w, 0.0);
    const Point p6 = AlongPoint(p1, p2, a / 2.0 + 0.175 * w, 0.0);
    const Point p8 = AlongPoint(p3, p4, c / 2.0 - 0.035 * w, 0.0);
    const Point p7 = AlongPoint(p3, p4, c / 2.0 + 0.035 * w, 0.0);
    const Point p9 = AlongPoint(p3, p4, c / 2.0, -0.125 * w);
    Thin({{p1, p5}, {p5, p7}, {p7, p9}, {p9, p8}, {p8, p6}, {p6, p2}, {p3, p8}, {p7, p4}});
}

// 23
void Ornament::DrawRoofs() {
    const double a = Distance(p1, p2);
    const double b = Distance(p3, p4);
    const Point p5 = AlongPoint(p1, p2, 0.5 * a, 1.2 * a);
    const Point p6 = AlongPoint(p1, p2, 0.25 * a, 0.6 * a);
    const Point p7 = AlongPoint(p1, p2, 0.75 * a, 0.6 * a);
    const Point p8 = AlongPoint(p3, p4, 0.5 * b, 1.2 * b);
    const Point p9 = AlongPoint(p3, p4, 0.25 * b, 0.6 * b);
    const Point p10 = AlongPoint(p3, p4, 0.75 * b, 0.6 * b);
    Box();
    Thin({{p1, p5}, {p5, p2}, {p3, p8}, {p8, p4}, {p6, p7}, {p9, p10}});
}

// 24, 25
void Ornament::DrawOuterRails() {
    const Point p5 = AlongPoint(p1, p2, 0.0, s);
    const Point p6 = AlongPoint(p1, p2, Distance(p1, p2), s);
    const Point p7 = AlongPoint(p3, p4, 0.0, s);
    const Point p8 = AlongPoint(p3, p4, Distance(p3, p4), s);
    Thin({{p1, p2}, {p1, p5}, {p6, p2}, {p3, p4}, {p3, p7}, {p8, p4}});
    CodedRails(kEdge);
}

// 26
void Ornament::DrawPassage() {
    Rails();
    PutSymbol(p1, kFirstEnd, Bearing(p1, p2));
    PutSymbol(p2, kLastEnd, Bearing(p1, p2));
    PutSymbol(p3, kFirstEnd, Bearing(p3, p4));
    PutSymbol(p4, kLastEnd, Bearing(p3, p4));
}

// 32
void Ornament::DrawPostFrame() {
    const double h = s / 2.0;
    // Required: the bare 0.5 in the x of p5, half a metre on the ground; the two agree at 1:1000 only.
    const Point p5 = {AlongX(p1, p2, 0.5, 0.0), AlongY(p1, p2, h, 0.0)};
    const Point p6 = AlongPoint(p2, p1, h, 0.0);
    const Point p7 = AlongPoint(p3, p4, h, 0.0);
    const Point p8 = AlongPoint(p4, p3, h, 0.0);
    const Point p9 = AlongPoint(p1, p4, h, 0.0);
    const Point p10 = AlongPoint(p2, p3, h, 0.0);
    const Point p11 = AlongPoint(p3, p4, 0.0, h);
    const Point p12 = AlongPoint(p4, p1, h, 0.0);
    Coded(kRail, {{p5, p6}, {p7, p8}, {p9, p12}, {p10, p11}});
    PutAtCorners(kPost);
}

// 33
void Ornament::DrawLadder() {
    Thin({{p2, p3}, {p1, p2}, {p3, p4}});
    const double a = Distance(p1, p2);
    const double b = Distance(p3, p4);
    double d = s;
    Point p5 = AlongPoint(p1, p2, d, 0.0);
    Point p6 = AlongPoint(p4, p3, d, 0.0);
    for (int step = 0; d != 0.0 && step < kMostSteps; ++step) {
        if (std::fabs(a - Distance(p1, p5)) < s || std::fabs(b - Distance(p6, p4)) < s) break;
        ThinLine(p5, p6);
        d += s;
        p5 = AlongPoint(p1, p2, d, 0.0);
        p6 = AlongPoint(p4, p3, d, 0.0);
    }
}

// 34 to 36, after the rails
void Ornament::DrawZigzag() {
    const double w = Distance(p1, p4);
    const double a = Distance(p1, p2);
    const double b = Distance(p3, p4);
    // Computed ahead of the loop and not used: its message says where rails have no width.
    Point p5 = AlongPoint(p4, p3, w, 0.0);
    Point p6 = p1;
    double u = w;
    double v = 2.0 * w;
    for (int step = 0; u != 0.0 && step < kMostSteps; ++step) {
        p5 = AlongPoint(p4, p3, u, 0.0);
        // The second test ends the zigzag of a rail without length, along which nothing advances.
        if (Distance(p5, p4) > b || u > b + 2.0 * w) break;
        ThinLine(p6, p5);
        p6 = AlongPoint(p1, p2, v, 0.0);
        if (Distance(p6, p1) > a || v > a + 2.0 * w) break;
        ThinLine(p5, p6);
        u += 2.0 * w;
        v += 2.0 * w;
    }
}

void Ornament::DrawHalfCircle(const Point& centre) const {
    const double radius = Distance(p2, p3) / 2.0;
    double t1 = Bearing(p2, p3);
    double t2 = Bearing(p3, p2);
    double t3 = Bearing(p2, p1);
    // Required: radians against degrees; the two angles are exchanged exactly when t1 is less than t3.
    if (t1 - t3 < 0.0) t3 -= 360.0;
    if (t1 - t3 > 180.0) std::swap(t1, t2);
    TqDC->drawarc(centre.x, centre.y, radius, t1, t2);
}

// 37
void Ornament::DrawRoundEnd() {
    const Point p5 = Middle(p4, p1);
    const Point p6 = Middle(p2, p3);
    Thin({{p1, p2}, {p3, p4}, {p5, p6}});
    DrawHalfCircle(p6);
}

// 39
void Ornament::DrawTickedRoundEnd() {
    const Point p5 = Middle(p2, p3);
    const Point p6 = AlongPoint(p1, p4, -s, 0.0);
    const Point p7 = AlongPoint(p4, p1, -s, 0.0);
    Thin({{p6, p1}, {p7, p4}, {p1, p2}, {p3, p4}});
    DrawHalfCircle(p5);
}

void Ornament::Draw(int number) {
    switch (number) {
        case 1:
            Thin({{p1, p3}, {p2, p4}});
            CodedRails(kRail);
            break;
        case 2:
            CodedRails(kRail);
            CodedRails(kEdge);
            break;
        case 3:
            DrawFrame();
            break;
        case 4:
            DrawSpan(kSpanEnd);
            break;
        case 5:
            DrawSpan(kSpanEndOther);
            break;
        case 6:
            CodedRails(kRail);
            Coded(kEdge, {{p4, p1}});
            break;
        case 7:
            DrawNotch();
            break;
        case 8:
            Thin({{p1, p4}, {p2, p3}});
            CodedRails(kRail);
            Coded(kEdge, {{p4, p1}, {p2, p3}});
            break;
        case 10:
            Rails();
            CodedRails(kEdge);
            break;
        case 12:
            DrawEndTicks();
            break;
        case 13:
            DrawDoubleRails();
            break;
        case 14:
            ThinLine(Middle(p1, p2), Middle(p3, p4));
            Rails();
            CodedRails(kEdge);
            break;
        case 15:
            DrawCrossBars();
            break;
        case 16:
            DrawRungs();
            break;
        case 17:
            DrawBars();
            break;
        case 18:
            Box();
            Thin({{p1, p3}, {p2, p4}});
            break;
        case 19:
            DrawWaist();
            CodedRails(kEdge);
            break;
        case 20:
            DrawWaist();
            break;
        case 23:
            DrawRoofs();
            break;
        case 24:
        case 25:
            DrawOuterRails();
            break;
        case 26:
            DrawPassage();
            break;
        case 28:
            Rails();
            Thin({{p1, p3}, {p2, p4}});
            break;
        case 30:
            Box();
            Coded(kRail, {{p1, p3}, {p2, p4}});
            break;
        case 32:
            DrawPostFrame();
            break;
        case 33:
            DrawLadder();
            break;
        case 34:
            CodedRails(kRail);
            DrawZigzag();
            break;
        case 35:
            CodedRails(kZigzagRail);
            DrawZigzag();
            break;
        case 36:
            Rails();
            DrawZigzag();
            break;
        case 37:
            DrawRoundEnd();
            break;
        case 38:
            Rails();
            DrawHalfCircle(Middle(p2, p3));
            break;
        case 39:
            DrawTickedRoundEnd();
            break;
        default:
            break;  // 21, 27, 29, 31 and all others
    }
}

}  // namespace

void DrawCodedOrnament(int number, int n, const Point* points, double g) {
    switch (number) {
        case 9:
        case 11:
        case 22:
            DrawTwinLines(number, n, points, g / 1000.0);
            break;
        default:
            Ornament(points, g).Draw(number);
            break;
    }
}

}  // namespace zm::symbol
