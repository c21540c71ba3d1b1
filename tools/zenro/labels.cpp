#include "tools/zenro/labels.h"

#include <algorithm>
#include <cmath>

#include "draw/device.h"
#include "runtime/gbk.h"
#include "zenromath/symbol.h"

namespace zm::tool {
namespace {

constexpr double kDegree = 3.141592653589793 / 180.0;
constexpr double kPi = 3.141592653589793;
constexpr double kCell = 0.5;  // millimetres of paper
constexpr double kMostCells = 16.0e6;
constexpr double kGap = 0.8;           // millimetres between a symbol and its label
constexpr double kRepeat = 90.0;       // millimetres between two labels of one name along lines
constexpr double kPad = 0.4;           // millimetres that a label keeps off strokes where it can
constexpr double kBarGap = 0.3;        // millimetres between the two texts of a fraction and its bar
constexpr double kDecimalInset = 1.0;  // widths: where a decimal point stands is for the library to say
constexpr double kTaken = 2.0;

// Crossings of a level line with an area, from left to right.
std::vector<double> Crossings(const Shape& shape, double y) {
    std::vector<double> xs;
    for (const Chain& ring : shape.chains)
        for (std::size_t i = 0; i + 1 < ring.size(); ++i) {
            const double y1 = ring.y[i], y2 = ring.y[i + 1];
            if ((y1 > y) == (y2 > y)) continue;
            xs.push_back(ring.x[i] + (ring.x[i + 1] - ring.x[i]) * (y - y1) / (y2 - y1));
        }
    std::sort(xs.begin(), xs.end());
    return xs;
}

// The middle of the widest stretch of a level line inside an area; false if it meets none.
bool WidestStretch(const Shape& shape, double y, double& middle, double& width) {
    const std::vector<double> xs = Crossings(shape, y);
    width = -1.0;
    for (std::size_t i = 0; i + 1 < xs.size(); i += 2)
        if (xs[i + 1] - xs[i] > width) {
            width = xs[i + 1] - xs[i];
            middle = (xs[i] + xs[i + 1]) / 2.0;
        }
    return width > 0.0;
}

// Places along a line by number, from the middle outwards: 0.5, 0.5 - step, 0.5 + step, 0.5 - 2 step ...
double FromTheMiddle(int number, double step) {
    const int steps = (number + 1) / 2;
    return 0.5 + (number % 2 == 0 ? steps : -steps) * step;
}

}  // namespace

double LengthOf(const Chain& chain) {
    double length = 0.0;
    for (std::size_t i = 0; i + 1 < chain.size(); ++i)
        length += std::hypot(chain.x[i + 1] - chain.x[i], chain.y[i + 1] - chain.y[i]);
    return length;
}

void PointAlong(const Chain& chain, double distance, double& x, double& y, double& direction) {
    for (std::size_t i = 0; i + 1 < chain.size(); ++i) {
        const double dx = chain.x[i + 1] - chain.x[i], dy = chain.y[i + 1] - chain.y[i], d = std::hypot(dx, dy);
        if (distance > d && i + 2 < chain.size()) {
            distance -= d;
            continue;
        }
        const double t = d > 0.0 ? std::min(1.0, std::max(0.0, distance / d)) : 0.0;
        x = chain.x[i] + t * dx;
        y = chain.y[i] + t * dy;
        direction = std::atan2(dy, dx);
        return;
    }
    x = chain.x.empty() ? 0.0 : chain.x[0];
    y = chain.y.empty() ? 0.0 : chain.y[0];
    direction = 0.0;
}

void InnerPoint(const Shape& shape, double& x, double& y) {
    const Box box = BoxOf(shape.chains.front());
    x = (box.x1 + box.x2) / 2.0;
    y = (box.y1 + box.y2) / 2.0;
    double best = -1.0;
    for (const double part : {0.5, 0.4, 0.6, 0.3, 0.7, 0.2, 0.8}) {
        const double level = box.y1 + (box.y2 - box.y1) * part;
        double middle = 0.0, width = 0.0;
        if (!WidestStretch(shape, level, middle, width) || width <= best * 1.2) continue;
        best = width;
        x = middle;
        y = level;
    }
}

Cover::Cover(const Page& page) : m_sheet(page.sheet), m_cell(page.Ground(kCell)) {
    const double width = m_sheet.x2 - m_sheet.x1, height = m_sheet.y2 - m_sheet.y1;
    m_cell = std::max(m_cell, std::sqrt(width * height / kMostCells));
    m_columns = static_cast<int>(width / m_cell) + 1;
    m_rows = static_cast<int>(height / m_cell) + 1;
    m_cells.assign(static_cast<std::size_t>(m_columns) * static_cast<std::size_t>(m_rows), 0);
}

const std::uint8_t* Cover::At(double x, double y) const {
    if (!(x >= m_sheet.x1 && x <= m_sheet.x2 && y >= m_sheet.y1 && y <= m_sheet.y2)) return nullptr;
    const int column = static_cast<int>((x - m_sheet.x1) / m_cell), row = static_cast<int>((y - m_sheet.y1) / m_cell);
    return &m_cells[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_columns) +
                    static_cast<std::size_t>(column)];
}

void Cover::MarkArea(const Shape& shape) {
    const Box box = BoxOf(shape.chains.front());
    const double low = std::max(box.y1, m_sheet.y1), high = std::min(box.y2, m_sheet.y2);
    for (double y = low + m_cell / 2; y < high; y += m_cell) {
        const std::vector<double> xs = Crossings(shape, y);
        for (std::size_t i = 0; i + 1 < xs.size(); i += 2)
            for (double x = std::max(xs[i], m_sheet.x1); x < std::min(xs[i + 1], m_sheet.x2); x += m_cell) {
                std::uint8_t* cell = At(x, y);
                if (cell != nullptr) *cell = std::max<std::uint8_t>(*cell, stroke);
            }
    }
}

std::uint8_t* Cover::At(double x, double y) {
    return const_cast<std::uint8_t*>(static_cast<const Cover&>(*this).At(x, y));
}

void Cover::MarkLine(const Chain& chain) {
    const double reach = (m_sheet.x2 - m_sheet.x1) + (m_sheet.y2 - m_sheet.y1);
    for (std::size_t i = 0; i + 1 < chain.size(); ++i) {
        Box segment;
        segment.Add(chain.x[i], chain.y[i]);
        segment.Add(chain.x[i + 1], chain.y[i + 1]);
        if (!segment.Meets(m_sheet)) continue;
        const double dx = chain.x[i + 1] - chain.x[i], dy = chain.y[i + 1] - chain.y[i];
        const double length = std::hypot(dx, dy);
        if (length > 50.0 * reach) continue;
        const int steps = static_cast<int>(length / m_cell) + 1;
        for (int k = 0; k <= steps; ++k) {
            std::uint8_t* cell = At(chain.x[i] + dx * k / steps, chain.y[i] + dy * k / steps);
            if (cell != nullptr) *cell = std::max<std::uint8_t>(*cell, stroke);
        }
    }
}

void Cover::MarkBox(double x, double y, double length, double height, double radians, Weight weight) {
    const double c = std::cos(radians), s = std::sin(radians), step = m_cell * 0.7;
    for (double u = 0.0; u <= length + step / 2; u += step)
        for (double v = 0.0; v <= height + step / 2; v += step) {
            std::uint8_t* cell = At(x + u * c - v * s, y + u * s + v * c);
            if (cell != nullptr) *cell = std::max<std::uint8_t>(*cell, weight);
        }
}

double Cover::Covered(double x, double y, double length, double height, double radians) const {
    const double c = std::cos(radians), s = std::sin(radians), step = m_cell * 0.9;
    long all = 0, covered = 0;
    for (double u = 0.0; u <= length + step / 2; u += step)
        for (double v = 0.0; v <= height + step / 2; v += step) {
            const double uu = std::min(u, length), vv = std::min(v, height);
            const std::uint8_t* cell = At(x + uu * c - vv * s, y + uu * s + vv * c);
            if (cell == nullptr || *cell == label) return kTaken;
            ++all;
            covered += *cell;
        }
    return all > 0 ? static_cast<double>(covered) / static_cast<double>(all) : 0.0;
}

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
    double best = kTaken, coveredAtBest = 0.0;
    const Candidate* chosen = nullptr;
    const double pad = m_page.Ground(kPad);
    for (const Candidate& c : candidates) {
        const double cosine = std::cos(c.radians), sine = std::sin(c.radians);
        const double covered = m_cover.Covered(c.x - pad * cosine + pad * sine, c.y - pad * sine - pad * cosine,
                                               text.length + 2 * pad, text.height + 2 * pad, c.radians);
        if (covered >= kTaken || covered + c.penalty >= best) continue;
        best = covered + c.penalty;
        coveredAtBest = m_cover.Covered(c.x, c.y, text.length, text.height, c.radians);
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
    label.covers = coveredAtBest > 0.0;
    m_labels.push_back(std::move(label));
    return true;
}

void LabelPlacer::Beside(const Shape& shape, const Text& text) {
    const double px = shape.chains.front().x.front(), py = shape.chains.front().y.front();
    const double size = text.use.rule->symbol > 0 ? Get_G_Size(text.use.rule->symbol) : 1.0;
    const double r = m_page.Ground(std::clamp(size / 2.0, 0.3, 3.0) + kGap);
    const double l = text.length, h = text.height;
    const bool placed = Try({{px + r, py - h / 2, 0.0, 0.0},
                             {px - r - l, py - h / 2, 0.0, 0.05},
                             {px + r * 0.8, py + r * 0.6, 0.0, 0.08},
                             {px + r * 0.8, py - r * 0.6 - h, 0.0, 0.08},
                             {px - l / 2, py + r, 0.0, 0.1},
                             {px - l / 2, py - r - h, 0.0, 0.1},
                             {px - r * 0.8 - l, py + r * 0.6, 0.0, 0.12},
                             {px - r * 0.8 - l, py - r * 0.6 - h, 0.0, 0.12}},
                            text);
    if (!placed) ++m_withoutRoom;
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
        const Box box = BoxOf(shape.chains.front());
        for (int i = 1; i < 12; ++i) {
            const double level = box.y1 + (box.y2 - box.y1) * i / 12.0;
            double middle = 0.0, width = 0.0;
            if (!WidestStretch(shape, level, middle, width)) continue;
            const double spare = std::max(0.0, width - text.length) / 2.0;
            const double outside = width < text.length ? 0.3 : 0.0;
            for (const double part : {0.0, 0.35, -0.35, 0.7, -0.7})
                if (part == 0.0 || spare > 0.0) add(middle + part * spare, level, 0.05 + outside);
        }
    }
    if (!Try(candidates, text)) ++m_withoutRoom;
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
        if (span < 0.8 * text.length) continue;  // too bent to write along
        double radians = std::atan2(y2 - y1, x2 - x1);
        if (radians > kPi / 2 + 1e-6) radians -= kPi;
        if (radians <= -kPi / 2 + 1e-6) radians += kPi;
        const double cx = (x1 + x2) / 2 * 0.5 + mx * 0.5, cy = (y1 + y2) / 2 * 0.5 + my * 0.5;
        const double c = std::cos(radians), s = std::sin(radians);
        candidates.push_back({cx - text.length / 2 * c + text.height / 2 * s,
                              cy - text.length / 2 * s - text.height / 2 * c, radians,
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

// Characters stand upright along the line, the first where reading begins: on the left, or on top of a steep line.
void LabelPlacer::Spread(const Shape& shape, const Text& text) {
    Chain chain = shape.chains.front();
    const int n = Run{text.use.label, 0.0, 0.0}.characters();
    const double w = text.lettering.width, h = text.lettering.height;
    const double all = LengthOf(chain);
    double step = w + (text.lettering.interval > 0.0 ? text.lettering.interval : 2.0 * w);
    if ((n - 1) * step + w > all) step = 1.2 * std::max(w, h);  // closer on a short line
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
    std::vector<PP> chosen;
    for (int i = 0; i <= 12; ++i) {
        const double part = FromTheMiddle(i, 0.06);
        const double from = all * part - span / 2;
        if (from < w / 2 || from + span + w / 2 > all) continue;
        double sum = 0.01 * i * n;
        std::vector<PP> spots;
        for (int k = 0; k < n && sum < best * n; ++k) {
            double x, y, direction;
            PointAlong(chain, from + k * step, x, y, direction);
            const double covered = m_cover.Covered(x - w / 2, y - h / 2, w, h, 0.0);
            sum += covered >= kTaken ? kTaken * n : covered;
            spots.push_back({x - w / 2, y + h / 2});
        }
        if (sum >= best * n) continue;
        best = sum / n;
        chosen = std::move(spots);
    }
    if (chosen.empty()) {
        ++m_withoutRoom;
        return;
    }
    for (const PP& spot : chosen) m_cover.MarkBox(spot.x, spot.y - h, w, h, 0.0, Cover::label);
    PlacedLabel label;
    label.rule = text.use.rule;
    label.text = text.use.label;
    label.place = LabelPlace::spread;
    label.spots = std::move(chosen);
    label.covers = best > 0.2;
    m_labels.push_back(std::move(label));
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
            return line ? Along(shape, text) : Centred(shape, text);
        case LabelPlace::decimal:
            return shape.kind == GeometryKind::point ? Decimal(shape, text) : Centred(shape, text);
        case LabelPlace::beside:
            return shape.kind == GeometryKind::point ? Beside(shape, text) : Centred(shape, text);
        default:
            return Centred(shape, text);
    }
}

namespace {

// Two texts with a bar between, as control points have name over height.
void DrawFraction(const PlacedLabel& label, const Lettering& lettering) {
    const double gap = _To01mm(10) * kBarGap;  // ten tenths are a millimetre
    const auto upper = RunsOf(label.text, lettering), lower = RunsOf(label.under, lettering);
    DrawRuns(upper, lettering, label.x + (label.length - LengthOf(upper)) / 2, label.y, 0.0);
    const double bar = label.y - lettering.height - gap;
    TqDC->line(label.x, bar, label.x + label.length, bar);
    DrawRuns(lower, lettering, label.x + (label.length - LengthOf(lower)) / 2, bar - gap, 0.0);
}

void DrawDecimal(const PlacedLabel& label, const Lettering& lettering) {
    CTQFont font(lettering.height, lettering.width, lettering.fontNumber, 0.0, 0);
    font._settextcolor(lettering.color);
    std::vector<char> text(label.text.c_str(), label.text.c_str() + label.text.size() + 1);
    double x = label.x, y = label.y;
    constexpr int kByDecimalPoint = 5, kRecording = 3;
    if (TqDC->textRout(x, y, text.data(), kByDecimalPoint) == 0) return;
    if (TqDC->GetTqDCType() == kRecording) TqDC->textout(x, y, text.data(), 0, 0);
}

}  // namespace

void DrawLabels(const std::vector<PlacedLabel>& labels, TqNoteLayBase& notes) {
    for (const PlacedLabel& label : labels) {
        // Over strokes the paper is left white around the characters, as a drawn map leaves a gap for its lettering.
        device::SetBkMode(TqDC->GetHdc(), label.covers ? OPAQUE : TRANSPARENT);
        const Lettering lettering = LetteringOf(notes, label.rule->note);
        const CTQPen pen(label.rule->layer, 0, 0);
        if (!label.under.empty()) {
            DrawFraction(label, lettering);
        } else if (label.place == LabelPlace::decimal) {
            DrawDecimal(label, lettering);
        } else if (!label.spots.empty()) {
            DrawSpread(label.text, lettering, label.spots);
        } else {
            DrawRuns(RunsOf(label.text, lettering), lettering, label.x, label.y, label.degrees);
        }
    }
}

}  // namespace zm::tool
