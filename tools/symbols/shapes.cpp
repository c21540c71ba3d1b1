#include "tools/symbols/shapes.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <map>
#include <numbers>

#include "runtime/text/numbers.h"

namespace zm::tool::symbols {

namespace {

constexpr double kRadians = std::numbers::pi / 180.0;
constexpr std::size_t kRecordLength = 150;  // bytes; the reader cuts a line at 179
constexpr double kChordAngle = 15.0;        // degrees between the corners of a curve drawn by strokes

Millimetres OnCircle(Millimetres centre, double radius, double degrees) {
    return {centre.x + radius * std::cos(degrees * kRadians), centre.y + radius * std::sin(degrees * kRadians)};
}

/// One figure before it is mirrored, turned and moved: a chain of strokes, a circle, an arc or a dot.
struct Figure {
    enum class Kind { chain, circle, arc, dot };
    Kind kind = Kind::chain;
    std::vector<Millimetres> points;  // circle and dot: the centre; arc: centre, start, end, counter-clockwise
    double radius = 0.0;
};

using Figures = std::vector<Figure>;

Figure Chain(std::vector<Millimetres> points) {
    return {Figure::Kind::chain, std::move(points), 0.0};
}

std::vector<Millimetres> CurvePoints(Millimetres centre, double rx, double ry, double from, double to) {
    const int steps = std::max(1, static_cast<int>(std::ceil(std::abs(to - from) / kChordAngle - 1e-9)));
    std::vector<Millimetres> points;
    for (int i = 0; i <= steps; ++i) {
        const double angle = (from + (to - from) * i / steps) * kRadians;
        points.push_back({centre.x + rx * std::cos(angle), centre.y + ry * std::sin(angle)});
    }
    return points;
}

/// Where a horizontal line meets the edges of a polygon, from left to right.
std::vector<double> Crossings(const std::vector<Millimetres>& ring, double y) {
    std::vector<double> xs;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const Millimetres a = ring[i];
        const Millimetres b = ring[(i + 1) % ring.size()];
        if ((a.y <= y) == (b.y <= y)) continue;
        xs.push_back(a.x + (b.x - a.x) * (y - a.y) / (b.y - a.y));
    }
    std::sort(xs.begin(), xs.end());
    return xs;
}

/// A polygon's outline and, between its edges, strokes to and fro.
void FillPolygon(const std::vector<Millimetres>& ring, Figures& out) {
    std::vector<Millimetres> outline = ring;
    outline.push_back(ring.front());
    out.push_back(Chain(std::move(outline)));
    const auto [low, high] =
        std::minmax_element(ring.begin(), ring.end(), [](Millimetres a, Millimetres b) { return a.y < b.y; });
    const int rows = static_cast<int>(std::ceil((high->y - low->y) / kFillStep)) - 1;
    std::vector<Millimetres> zigzag;
    for (int row = 1; row <= rows; ++row) {
        const double y = low->y + (high->y - low->y) * row / (rows + 1);
        const std::vector<double> xs = Crossings(ring, y);
        if (xs.size() != 2) {  // several pieces side by side: strokes of their own
            if (zigzag.size() > 1) out.push_back(Chain(zigzag));
            zigzag.clear();
            for (std::size_t i = 0; i + 1 < xs.size(); i += 2) out.push_back(Chain({{xs[i], y}, {xs[i + 1], y}}));
            continue;
        }
        const bool back = row % 2 == 0;
        zigzag.push_back({back ? xs[1] : xs[0], y});
        zigzag.push_back({back ? xs[0] : xs[1], y});
    }
    if (zigzag.size() > 1) out.push_back(Chain(std::move(zigzag)));
}

/// The words of a line: its points and its plain numbers, each in order.
struct Arguments {
    std::vector<Millimetres> points;
    std::vector<double> numbers;
};

void CircleFilled(Millimetres centre, double radius, Figures& out) {
    // Rings from the rim inwards; the innermost is half a step wide, so that the pen closes the middle.
    const int rings = std::max(1, static_cast<int>(std::ceil(radius / kFillStep + 0.5 - 1e-9)));
    for (int ring = rings; ring > 0; --ring)
        out.push_back({Figure::Kind::circle, {centre}, radius * (2 * ring - 1) / (2 * rings - 1)});
}

void Wave(Millimetres a, Millimetres b, double amplitude, int halves, Figures& out) {
    constexpr int kStepsOfHalf = 6;
    const double length = std::hypot(b.x - a.x, b.y - a.y);
    const Millimetres across{-(b.y - a.y) / length, (b.x - a.x) / length};
    std::vector<Millimetres> points;
    for (int i = 0; i <= halves * kStepsOfHalf; ++i) {
        const double t = static_cast<double>(i) / (halves * kStepsOfHalf);
        const double swing = amplitude * std::sin(std::numbers::pi * i / kStepsOfHalf);
        points.push_back({a.x + (b.x - a.x) * t + across.x * swing, a.y + (b.y - a.y) * t + across.y * swing});
    }
    out.push_back(Chain(std::move(points)));
}

void Corners(Millimetres centre, double outer, double inner, int corners, double from, Figures& out) {
    std::vector<Millimetres> points;
    for (int i = 0; i <= corners; ++i)
        points.push_back(OnCircle(centre, i % 2 == 0 ? outer : inner, from + 360.0 * i / corners));
    out.push_back(Chain(std::move(points)));
}

/// A shape's name, how many points and numbers it needs (most of them exactly), and what draws it.
struct Shape {
    std::size_t minPoints, maxPoints, minNumbers, maxNumbers;
    std::function<void(const Arguments&, Figures&)> draw;
};

constexpr std::size_t kAny = static_cast<std::size_t>(-1);

const std::map<std::string, Shape, std::less<>>& Shapes() {
    static const std::map<std::string, Shape, std::less<>> shapes = {
        {"line", {2, kAny, 0, 0, [](const Arguments& a, Figures& out) { out.push_back(Chain(a.points)); }}},
        {"closed",
         {3, kAny, 0, 0,
          [](const Arguments& a, Figures& out) {
              out.push_back(Chain(a.points));
              out.back().points.push_back(a.points.front());
          }}},
        {"rect",
         {2, 2, 0, 0,
          [](const Arguments& a, Figures& out) {
              const Millimetres p = a.points[0], q = a.points[1];
              out.push_back(Chain({p, {q.x, p.y}, q, {p.x, q.y}, p}));
          }}},
        {"circle",
         {1, 1, 1, 1,
          [](const Arguments& a, Figures& out) {
              out.push_back({Figure::Kind::circle, a.points, a.numbers[0]});
          }}},
        {"arc",
         {1, 1, 3, 3,
          [](const Arguments& a, Figures& out) {
              const Millimetres c = a.points[0];
              const double r = a.numbers[0];
              out.push_back({Figure::Kind::arc, {c, OnCircle(c, r, a.numbers[1]), OnCircle(c, r, a.numbers[2])}, r});
          }}},
        {"oval",
         {1, 1, 2, 4,
          [](const Arguments& a, Figures& out) {
              const bool whole = a.numbers.size() < 4;
              out.push_back(Chain(CurvePoints(a.points[0], a.numbers[0], a.numbers[1], whole ? 0.0 : a.numbers[2],
                                              whole ? 360.0 : a.numbers[3])));
          }}},
        {"ngon",
         {1, 1, 3, 3,
          [](const Arguments& a, Figures& out) {
              Corners(a.points[0], a.numbers[0], a.numbers[0], static_cast<int>(a.numbers[1]), a.numbers[2], out);
          }}},
        {"star",
         {1, 1, 4, 4,
          [](const Arguments& a, Figures& out) {
              Corners(a.points[0], a.numbers[0], a.numbers[1], 2 * static_cast<int>(a.numbers[2]), a.numbers[3], out);
          }}},
        {"dot",
         {1, 1, 0, 0,
          [](const Arguments& a, Figures& out) {
              out.push_back({Figure::Kind::dot, a.points, 0.0});
          }}},
        {"disc", {1, 1, 1, 1, [](const Arguments& a, Figures& out) { CircleFilled(a.points[0], a.numbers[0], out); }}},
        {"wedge",
         {1, 1, 3, 3,
          [](const Arguments& a, Figures& out) {
              std::vector<Millimetres> ring =
                  CurvePoints(a.points[0], a.numbers[0], a.numbers[0], a.numbers[1], a.numbers[2]);
              ring.push_back(a.points[0]);
              FillPolygon(ring, out);
          }}},
        {"fill", {3, kAny, 0, 0, [](const Arguments& a, Figures& out) { FillPolygon(a.points, out); }}},
        {"wave",
         {2, 2, 2, 2,
          [](const Arguments& a, Figures& out) {
              Wave(a.points[0], a.points[1], a.numbers[0], static_cast<int>(a.numbers[1]), out);
          }}},
        {"flash",
         {1, 1, 1, 1,
          [](const Arguments& a, Figures& out) {  // a stroke of lightning with an arrowhead
              const Millimetres c = a.points[0];
              const double h = a.numbers[0] / 2.0;
              out.push_back(Chain({{c.x + 0.35 * h, c.y + h},
                                   {c.x - 0.4 * h, c.y},
                                   {c.x + 0.4 * h, c.y + 0.1 * h},
                                   {c.x - 0.25 * h, c.y - h}}));
              out.push_back(
                  Chain({{c.x - 0.4 * h, c.y - 0.4 * h}, {c.x - 0.25 * h, c.y - h}, {c.x + 0.25 * h, c.y - 0.55 * h}}));
          }}},
    };
    return shapes;
}

std::string PairText(Millimetres p) {
    return FileNumber(p.x) + "," + FileNumber(p.y);
}

void WriteChain(const std::vector<Millimetres>& points, std::vector<std::string>& records) {
    if (points.size() == 2) {
        records.push_back("1 " + PairText(points[0]) + " " + PairText(points[1]));
        return;
    }
    std::string record = "2";
    for (std::size_t i = 0; i < points.size(); ++i) {
        const std::string pair = " " + PairText(points[i]);
        if (record.size() + pair.size() > kRecordLength) {
            records.push_back(record);
            record = "2 " + PairText(points[i - 1]);
        }
        record += pair;
    }
    records.push_back(record);
}

void Write(const Figure& figure, std::vector<std::string>& records) {
    switch (figure.kind) {
        case Figure::Kind::chain:
            WriteChain(figure.points, records);
            break;
        case Figure::Kind::circle:
            records.push_back("3 " + PairText(figure.points[0]) + " " + FileNumber(figure.radius));
            break;
        case Figure::Kind::arc:
            records.push_back("4 " + PairText(figure.points[0]) + " " + PairText(figure.points[1]) + " " +
                              PairText(figure.points[2]));
            break;
        case Figure::Kind::dot:
            records.push_back("5 " + PairText(figure.points[0]));
            break;
    }
}

Figure Mirrored(Figure figure) {
    for (Millimetres& p : figure.points) p.x = -p.x;
    if (figure.kind == Figure::Kind::arc) std::swap(figure.points[1], figure.points[2]);  // still counter-clockwise
    return figure;
}

Figure Turned(Figure figure, double degrees) {
    const double c = std::cos(degrees * kRadians), s = std::sin(degrees * kRadians);
    for (Millimetres& p : figure.points) p = {c * p.x - s * p.y, s * p.x + c * p.y};
    return figure;
}

Figure Moved(Figure figure, Millimetres by) {
    for (Millimetres& p : figure.points) p = {p.x + by.x, p.y + by.y};
    return figure;
}

std::vector<std::string> Words(std::string_view line) {
    std::vector<std::string> words;
    std::string word;
    for (const char c : line) {
        if (c != ' ' && c != '\t' && c != '\r') {
            word += c;
        } else if (!word.empty()) {
            words.push_back(std::move(word));
            word.clear();
        }
    }
    if (!word.empty()) words.push_back(std::move(word));
    return words;
}

bool ReadNumber(const std::string& word, double& value) {
    const char* end = nullptr;
    value = numbers::ReadReal(word.c_str(), &end);
    return end != word.c_str() && *end == '\0';
}

bool ReadPoint(const std::string& word, Millimetres& point) {
    const std::size_t comma = word.find(',');
    return comma != std::string::npos && ReadNumber(word.substr(0, comma), point.x) &&
           ReadNumber(word.substr(comma + 1), point.y);
}

/// A shape with what is in front of it and after it.
struct Command {
    bool both = false;
    int turns = 1;
    std::string name;
    Arguments arguments;
    Millimetres at;
};

std::string Parse(const std::vector<std::string>& words, Command& command) {
    std::size_t i = 0;
    if (words[i] == "both") {
        command.both = true;
        ++i;
    } else if (words[i] == "turned") {
        double turns = 0.0;
        if (words.size() < 2 || !ReadNumber(words[1], turns) || turns < 1.0) return "\"turned\" needs a count";
        command.turns = static_cast<int>(turns);
        i = 2;
    }
    if (i >= words.size()) return "no shape is named";
    command.name = words[i++];
    for (; i < words.size(); ++i) {
        Millimetres point;
        double number = 0.0;
        if (words[i] == "at") {
            if (i + 2 != words.size() || !ReadPoint(words[i + 1], command.at)) return "\"at\" needs one point";
            break;
        }
        if (ReadPoint(words[i], point)) {
            command.arguments.points.push_back(point);
        } else if (ReadNumber(words[i], number)) {
            command.arguments.numbers.push_back(number);
        } else {
            return "\"" + words[i] + "\" is neither a point nor a number";
        }
    }
    return {};
}

}  // namespace

std::string FileNumber(double millimetres) {
    std::string text = numbers::Text("%.3f", millimetres);
    while (text.back() == '0') text.pop_back();
    if (text.back() == '.') text.pop_back();
    return text == "-0" ? "0" : text;
}

std::string ExpandShape(std::string_view line, std::vector<std::string>& records) {
    const std::vector<std::string> words = Words(line);
    if (words.empty()) return {};
    if (words[0][0] >= '0' && words[0][0] <= '9') {
        records.emplace_back(line);
        return {};
    }
    Command command;
    if (std::string fault = Parse(words, command); !fault.empty()) return fault;
    const auto shape = Shapes().find(command.name);
    if (shape == Shapes().end()) return "there is no shape \"" + command.name + "\"";
    const Shape& s = shape->second;
    const Arguments& a = command.arguments;
    if (a.points.size() < s.minPoints || a.points.size() > s.maxPoints || a.numbers.size() < s.minNumbers ||
        a.numbers.size() > s.maxNumbers)
        return "\"" + command.name + "\" does not take " + std::to_string(a.points.size()) + " points and " +
               std::to_string(a.numbers.size()) + " numbers";

    Figures figures;
    s.draw(a, figures);
    for (int turn = 0; turn < command.turns; ++turn)
        for (const Figure& figure : figures)
            Write(Moved(Turned(figure, 360.0 * turn / command.turns), command.at), records);
    if (command.both)
        for (const Figure& figure : figures) Write(Moved(Mirrored(figure), command.at), records);
    return {};
}

}  // namespace zm::tool::symbols
