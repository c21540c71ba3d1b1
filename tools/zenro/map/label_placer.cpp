#include "tools/zenro/map/label_placer.h"

#include <algorithm>
#include <cmath>

#include "runtime/text/gbk.h"
#include "tools/kit/angles.h"
#include "tools/zenro/map/shapes.h"
#include "tools/zenro/map/symbol_extent.h"

namespace zm::tool {
namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kGap = 0.9;              // millimetres between a symbol and its label
constexpr double kTeeth = 1.4;            // millimetres that the teeth of a scarp reach
constexpr double kRepeat = 150.0;         // millimetres between two labels of one name along lines
constexpr double kContourLabels = 120.0;  // millimetres of a contour for each of its labels
constexpr double kMostLabels = 1e9;       // of one contour, however long; few of them are on a sheet
constexpr double kPad = 0.3;              // millimetres that a label keeps off strokes where it can
constexpr double kDecimalInset = 1.0;     // of the height: how far a decimal point is above the foot
constexpr double kTaken = 2.0;

// Places along a line by number, from the middle outwards: 0.5, 0.5 - step, 0.5 + step, 0.5 - 2 step ...
double FromTheMiddle(int number, double step) {
    const int steps = (number + 1) / 2;
    return 0.5 + (number % 2 == 0 ? steps : -steps) * step;
}

}  // namespace

// A place to try: the lower left corner of the box and its direction; penalty is added to what is covered.
struct LabelPlacer::Candidate {
    double x, y, radians, penalty;
};

// A label with its measures.
struct LabelPlacer::Text {
    const Use& use;
    Lettering lettering;
    LabelPlace place;
    double length;  // of the longer text
    double height;  // of all: one text, or two with a bar
};

bool LabelPlacer::Try(const std::vector<Candidate>& candidates, const Text& text) {
    double best = kTaken;
    const Candidate* chosen = nullptr;
    const double pad = m_page.Ground(kPad);
    for (const Candidate& c : candidates) {
        const double cosine = std::cos(c.radians), sine = std::sin(c.radians);
        const double covered = m_cover.Covered(c.x - pad * cosine + pad * sine, c.y - pad * sine - pad * cosine,
                                               text.length + 2 * pad, text.height + 2 * pad, c.radians);
        if (covered >= kTaken || covered + c.penalty >= best) continue;
        best = covered + c.penalty;
        chosen = &c;
    }
    if (chosen == nullptr) return false;
    m_cover.MarkBox(chosen->x, chosen->y, text.length, text.height, chosen->radians, Cover::label);
    PlacedLabel label;
    label.rule = text.use.rule;
    label.text = text.use.label;
    label.under = text.use.under;
    label.x = chosen->x - text.height * std::sin(chosen->radians);
    label.y = chosen->y + text.height * std::cos(chosen->radians);
    label.degrees = chosen->radians / kDegree;
    label.length = text.length;
    label.place = text.place;
    m_labels.push_back(std::move(label));
    return true;
}

// Right of the point, then above, below, left of it, off the true extent of its symbol.
void LabelPlacer::Beside(const Shape& shape, const Text& text) {
    const double px = shape.chains.front().x.front(), py = shape.chains.front().y.front();
    Box extent = ExtentOfSymbol(text.use.rule->symbol);
    if (extent.empty()) extent = {-0.3, -0.3, 0.3, 0.3};
    const double right = px + m_page.Ground(extent.x2 + kGap), left = px + m_page.Ground(extent.x1 - kGap);
    const double above = py + m_page.Ground(extent.y2 + kGap), below = py + m_page.Ground(extent.y1 - kGap);
    const double l = text.length, h = text.height;
    const double level = (extent.y2 - extent.y1 > 2.0 ? (above + below) / 2 : py) - h / 2;
    const double up = above - m_page.Ground(kGap) - h * 0.3, down = below + m_page.Ground(kGap) - h * 0.7;
    const bool placed = Try({{right, level, 0.0, 0.0},
                             {right, up, 0.0, 0.06},
                             {right, down, 0.0, 0.06},
                             {px - l / 2, above, 0.0, 0.08},
                             {px - l / 2, below - h, 0.0, 0.1},
                             {left - l, level, 0.0, 0.1},
                             {left - l, up, 0.0, 0.12},
                             {left - l, down, 0.0, 0.12}},
                            text);
    if (!placed) ++m_withoutRoom;
}

// Level, beside a line: on the lower side of a scarp, clear of its teeth, above a slope whose hachures reach its foot;
// the nearer to the middle the better.
void LabelPlacer::BesideLine(const Shape& shape, const Text& text) {
    const Chain& chain = shape.chains.front();
    const double all = LengthOf(chain);
    const bool scarp = IsScarp(*text.use.rule);
    // The teeth lie to the right of the course where the heights around do not say otherwise.
    const bool toTheFoot = !text.use.slope.empty();
    const double side = (scarp && m_sense.UpperSide(chain) < 0) != toTheFoot ? 1.0 : -1.0;
    std::vector<Candidate> candidates;
    for (int i = 0; i <= 8; ++i) {
        double x, y, direction;
        PointAlong(chain, all * FromTheMiddle(i, 0.1), x, y, direction);
        const double nx = -std::sin(direction) * side, ny = std::cos(direction) * side;
        const double half = (std::fabs(nx) * text.length + std::fabs(ny) * text.height) / 2;
        for (const bool other : {false, true}) {
            const double off = half + m_page.Ground(scarp && other == toTheFoot ? kTeeth + kGap / 2 : kGap),
                         to = other ? -off : off;
            candidates.push_back(
                {x + nx * to - text.length / 2, y + ny * to - text.height / 2, 0.0, 0.02 * i + (other ? 0.5 : 0.0)});
        }
    }
    if (!Try(candidates, text)) ++m_withoutRoom;
}

void LabelPlacer::Centred(const Shape& shape, const Text& text) {
    std::vector<Candidate> candidates;
    const auto add = [&](double x, double y, double penalty) {
        candidates.push_back({x - text.length / 2, y - text.height / 2, 0.0, penalty});
    };
    if (shape.kind != GeometryKind::area) {
        const Chain& chain = shape.chains.front();
        double x = chain.x.front(), y = chain.y.front(), direction = 0.0;
        if (chain.size() > 1) PointAlong(chain, LengthOf(chain) / 2.0, x, y, direction);
        add(x, y, 0.0);
    } else {
        double x = 0.0, y = 0.0;
        InnerPoint(shape, x, y);
        add(x, y, 0.0);
        add(x, y - 0.6 * text.height, 0.02);
        add(x, y + 0.6 * text.height, 0.02);
        const Box box = BoxOf(shape.chains.front());
        for (int i = 1; i < 12; ++i) {
            const double level = box.y1 + (box.y2 - box.y1) * i / 12.0;
            double middle = 0.0, width = 0.0;
            if (!WidestStretch(shape, level, middle, width)) continue;
            const double spare = std::max(0.0, width - text.length) / 2.0;
            const double outside = width < text.length ? 0.3 : 0.0;
            for (const double part : {0.0, 0.35, -0.35, 0.7, -0.7})
                if (part == 0.0 || spare > 0.0) {
                    const double px = middle + part * spare;
                    const double away = std::hypot(px - x, level - y) / (box.x2 - box.x1 + box.y2 - box.y1);
                    add(px, level, 0.05 + outside + 0.5 * away);
                }
        }
    }
    if (!Try(candidates, text)) ++m_withoutRoom;
}

// A name of a place, which is written once; numbers and notes of kind are written as often as they come.
bool LabelPlacer::IsName(const std::string& label) {
    if (label.size() < 6) return false;
    return std::any_of(label.begin(), label.end(), [](char c) {
        return static_cast<unsigned char>(c) >= 0x80 || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    });
}

// A street in many pieces has its name once in a while, not on each.
bool LabelPlacer::IsNearItsLike(const std::string& label, double x, double y) {
    std::vector<PP>& places = m_repeated[label];
    const double reach = m_page.Ground(kRepeat);
    for (const PP& p : places)
        if (std::hypot(p.x - x, p.y - y) < reach) return true;
    places.push_back({x, y});
    return false;
}

void LabelPlacer::Along(const Shape& shape, const Text& text) {
    const Chain& chain = shape.chains.front();
    const double all = LengthOf(chain);
    if (all < text.length || chain.size() < 2) {
        ++m_withoutRoom;
        return;
    }
    std::vector<Candidate> candidates;
    for (int i = 0; i <= 16; ++i) {
        const double part = FromTheMiddle(i, 0.055);
        const double from = all * part - text.length / 2;
        if (from < 0.0 || from + text.length > all) continue;
        double x1, y1, x2, y2, mx, my, direction;
        PointAlong(chain, from, x1, y1, direction);
        PointAlong(chain, from + text.length, x2, y2, direction);
        PointAlong(chain, from + text.length / 2, mx, my, direction);
        const double span = std::hypot(x2 - x1, y2 - y1);
        if (span < 0.96 * text.length) continue;  // too bent to write along
        double radians = std::atan2(y2 - y1, x2 - x1);
        if (radians > kPi / 2 + 1e-6) radians -= kPi;
        if (radians <= -kPi / 2 + 1e-6) radians += kPi;
        const double cx = (x1 + x2) / 2 * 0.5 + mx * 0.5, cy = (y1 + y2) / 2 * 0.5 + my * 0.5;
        const double c = std::cos(radians), s = std::sin(radians);
        // In a road between its edges where there is room, else beside it.
        const double road = text.use.roadWidth;
        const double beside = road / 2 + m_page.Ground(kGap) * 0.6 + text.height / 2;
        for (const double off :
             road <= 0.0 || road >= 1.3 * text.height ? std::vector<double>{0.0} : std::vector<double>{beside, -beside})
            candidates.push_back({cx - text.length / 2 * c + (text.height / 2 - off) * s,
                                  cy - text.length / 2 * s - (text.height / 2 - off) * c, radians,
                                  (1.0 - span / text.length) * 2.0 + 0.01 * i});
    }
    double x = 0.0, y = 0.0, direction = 0.0;
    PointAlong(chain, all / 2, x, y, direction);
    if (candidates.empty() || IsNearItsLike(text.use.label, x, y)) return;
    if (!Try(candidates, text)) ++m_withoutRoom;
}

void LabelPlacer::Decimal(const Shape& shape, const Text& text) {
    const double px = shape.chains.front().x.front(), py = shape.chains.front().y.front();
    const std::size_t point = text.use.label.rfind('.');
    const double before =
        point == std::string::npos ? text.length / 2 : (static_cast<double>(point) + 0.5) * text.lettering.width;
    if (!Try({{px - before, py - 0.2 * text.height * kDecimalInset, 0.0, 0.0}}, text)) {
        ++m_withoutRoom;
        return;
    }
    m_labels.back().x = px;  // the library finds the decimal point by itself
    m_labels.back().y = py;
}

// One character after the other along the line, the first where reading begins: on the left, or on top of a steep line.
// Each is turned with the line, by no more than 45 degrees: on a steep line its side runs along it.
void LabelPlacer::Spread(const Shape& shape, const Text& text) {
    Chain chain = shape.chains.front();
    const int n = Run{text.use.label, 0.0}.characters();
    const double w = text.lettering.width, h = text.lettering.height;
    const double all = LengthOf(chain);
    double step = w + (text.lettering.interval > 0.0 ? text.lettering.interval : 2.0 * w);
    if ((n - 1) * step + w > all * 0.9) step = 1.1 * std::max(w, h);  // closer on a short line
    const double span = (n - 1) * step;
    if (n < 1 || chain.size() < 2 || span + w > all) {
        ++m_withoutRoom;
        return;
    }
    const double dx = chain.x.back() - chain.x.front(), dy = chain.y.back() - chain.y.front();
    const bool steep = std::fabs(dy) > std::fabs(dx);
    if (steep ? dy > 0.0 : dx < 0.0) {
        std::reverse(chain.x.begin(), chain.x.end());
        std::reverse(chain.y.begin(), chain.y.end());
    }
    double best = kTaken;
    std::vector<TurnedBox> chosen;
    for (int i = 0; i <= 12; ++i) {
        const double part = FromTheMiddle(i, 0.06);
        const double from = all * part - span / 2;
        if (from < w / 2 || from + span + w / 2 > all) continue;
        double sum = 0.01 * i * n;
        std::vector<TurnedBox> boxes;
        for (int k = 0; k < n && sum < best * n; ++k) {
            double x, y, direction;
            PointAlong(chain, from + k * step, x, y, direction);
            const double turn = std::remainder(direction, kPi / 2);  // to the nearer of base and side
            const double c = std::cos(turn), s = std::sin(turn);
            boxes.push_back({x - w / 2 * c + h / 2 * s, y - w / 2 * s - h / 2 * c, w, h, turn});
            const double covered = m_cover.Covered(boxes.back().x, boxes.back().y, w, h, turn);
            sum += covered >= kTaken ? kTaken * n : covered;
        }
        if (sum >= best * n) continue;
        best = sum / n;
        chosen = std::move(boxes);
    }
    double x = 0.0, y = 0.0, direction = 0.0;
    PointAlong(chain, all / 2, x, y, direction);
    if (chosen.empty() || IsNearItsLike(text.use.label, x, y)) {
        if (chosen.empty()) ++m_withoutRoom;
        return;
    }
    PlacedLabel label;
    for (const TurnedBox& box : chosen) {
        m_cover.MarkBox(box.x, box.y, w, h, box.radians, Cover::label);
        label.spots.push_back(
            {box.x - h * std::sin(box.radians), box.y + h * std::cos(box.radians), box.radians / kDegree});
    }
    label.rule = text.use.rule;
    label.text = text.use.label;
    label.place = LabelPlace::spread;
    m_labels.push_back(std::move(label));
}

// On the contour itself, which is broken for it: the head points uphill, on slopes that face south where there are
// any, and in a column with the labels of the contours above and below.
void LabelPlacer::OnContour(const Shape& shape, const Text& text) {
    const Chain& chain = shape.chains.front();
    const double all = LengthOf(chain), room = text.length * 1.5;
    if (all < room * 2.0) return;
    const double wanted = std::floor(std::min(all / m_page.Ground(kContourLabels), kMostLabels)) + 1.0;
    const double apart = all / wanted;
    // A label reaches beyond its place, by no more than its length.
    double next = 0.0;
    for (const ChainPart& seen : PartsIn(chain, m_page.sheet.Widened(text.length))) {
        const double last = std::min(std::floor(seen.to / apart), wanted - 1.0);
        for (double k = std::max(next, std::floor(seen.from / apart)); k <= last; ++k) {
            LabelContour(chain, all, k * apart, apart, text);
            next = k + 1.0;
        }
    }
}

// Once in the stretch of a contour that begins at from.
void LabelPlacer::LabelContour(const Chain& chain, double all, double from, double stretch, const Text& text) {
    const double room = text.length * 1.5;
    std::vector<Candidate> candidates;
    constexpr int kPlaces = 24;
    for (int i = 0; i < kPlaces; ++i) {
        const double at = from + stretch * (i + 0.5) / kPlaces;
        if (at < room / 2 || at > all - room / 2) continue;
        double x1, y1, x2, y2, x, y, direction;
        PointAlong(chain, at - text.length / 2, x1, y1, direction);
        PointAlong(chain, at + text.length / 2, x2, y2, direction);
        PointAlong(chain, at, x, y, direction);
        const double span = std::hypot(x2 - x1, y2 - y1);
        if (span < 0.9 * text.length) continue;
        double radians = std::atan2(y2 - y1, x2 - x1);
        const int side = m_sense.Uphill(x, y, radians, text.use.height);
        if (side < 0 || (side == 0 && std::cos(radians) < 0.0)) radians += kPi;
        const double head = std::cos(radians);  // below 0 the text is upside down
        const double c = std::cos(radians), s = std::sin(radians);
        double penalty = 2.0 * (1.0 - span / text.length) + (head < 0.2 ? 0.6 * (0.2 - head) : 0.0);
        double column = 0.3;
        for (const PP& other : m_contourLabels) {
            const double ex = other.x - x, ey = other.y - y, d = std::hypot(ex, ey);
            if (d > m_page.Ground(60.0)) continue;
            column = std::min(column, std::fabs(ex * c + ey * s) / m_page.Ground(30.0));
        }
        penalty += column;
        candidates.push_back({x - text.length / 2 * c + text.height / 2 * s,
                              y - text.length / 2 * s - text.height / 2 * c, radians, penalty});
    }
    if (candidates.empty()) return;
    if (!Try(candidates, text)) {
        ++m_withoutRoom;
        return;
    }
    const PlacedLabel& placed = m_labels.back();
    const double a = placed.degrees * kDegree;
    m_contourLabels.push_back({placed.x + text.length / 2 * std::cos(a) + text.height / 2 * std::sin(a),
                               placed.y + text.length / 2 * std::sin(a) - text.height / 2 * std::cos(a)});
}

void LabelPlacer::Place(const Shape& shape, const Use& use) {
    if (use.label.empty()) return;
    Text text{use, LetteringOf(m_notes, use.rule->note), use.rule->place, 0.0, 0.0};
    if (!text.lettering.shown) return;
    if (text.place == LabelPlace::byKind)
        text.place = shape.kind == GeometryKind::point  ? LabelPlace::beside
                     : shape.kind == GeometryKind::line ? LabelPlace::along
                                                        : LabelPlace::centre;
    text.height = text.lettering.height;
    if (shape.kind != GeometryKind::line && IsName(use.label) && use.under.empty() &&
        IsNearItsLike(use.label, shape.chains.front().x[0], shape.chains.front().y[0]))
        return;
    text.length = LengthOf(RunsOf(use.label, text.lettering));
    if (!use.under.empty()) {
        text.length = std::max(text.length, LengthOf(RunsOf(use.under, text.lettering)));
        text.height = 2.0 * text.lettering.height + 2.0 * m_page.Ground(kBarGap);
    }
    const bool line = shape.kind == GeometryKind::line;
    // Letters and digits are read as words; only Chinese is spread.
    if (text.place == LabelPlace::spread && gbk::ToUtf8(use.label).size() == use.label.size())
        text.place = LabelPlace::along;
    switch (text.place) {
        case LabelPlace::spread:
            return line ? Spread(shape, text) : Centred(shape, text);
        case LabelPlace::along:
            if (line && use.hasHeight && IsContour(*use.rule)) return OnContour(shape, text);
            return line ? Along(shape, text) : Centred(shape, text);
        case LabelPlace::decimal:
            return shape.kind == GeometryKind::point ? Decimal(shape, text) : Centred(shape, text);
        case LabelPlace::beside:
            if (line) return BesideLine(shape, text);
            return shape.kind == GeometryKind::point ? Beside(shape, text) : Centred(shape, text);
        default:
            return Centred(shape, text);
    }
}

}  // namespace zm::tool
