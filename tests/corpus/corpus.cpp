#include "tests/corpus/corpus.h"

#include <cmath>
#include <cstring>
#include <fstream>
#include <limits>
#include <memory>
#include <random>
#include <sstream>
#include <vector>

#include "draw/device.h"
#include "draw/state.h"
#include "dwg/writer/state.h"
#include "symbol/state.h"
#include "tests/support/family_dirs.h"
#include "tests/support/test_host.h"
#include "zenromath/draw.h"
#include "zenromath/dwg.h"
#include "zenromath/dwg_reader.h"
#include "zenromath/log.h"
#include "zenromath/svg.h"
#include "zenromath/symbol.h"

namespace zm::test {
namespace {

constexpr int kFeatures = 160;
constexpr int kCurvePoints = 4000;  // room of the arrays of PROCESSALL

// Symbols of every kind of record, patterns of every letter, hatches of every entry, and what the ornaments lean on.
constexpr char kLibrary[] =
    "*3 G\n5 0,0\n5 8,8\n*16 G\n1 0,0 4,0\n"
    "*42 G\n1 -0.2,0 0.2,0\n1 0,-0.2 0,0.2\n1 -0.2,-0.2 0.3,0.1\n"
    "*43 G\n1 0,0 0.5,0\n3 0.5,0.5 0.25\n5 0,0\n"
    "*44 G\n1 0,0 1,0\n1 0,0 1,1\n1 0,0 0,1\n1 0,0 -1,1\n1 0,0 -1,0\n1 0,0 -1,-1\n1 0,0 0,-1\n1 0,0 1,-1\n"
    "1 1,0 1,1\n1 1,1 0,1\n1 0,1 -1,1\n1 -1,1 -1,0\n1 -1,0 -1,-1\n1 -1,-1 0,-1\n1 0,-1 1,-1\n1 1,-1 1,0\n1 0,0 2,0\n"
    "*45 G\n1 0.1,0.2\n*46 G\n*47 G\n2 0,0 1,0 1,1 0,1 0,2 1,2\n*48 G\n1 -1,-1 1,-1\n4 0,0 1,0 0,1\n2 0,0 2,2\n"
    "*49 G\n2 -10000000,90000 0,0 2,0 -10000000,-45000 2,3 -10000000,0 4,3\n1 0,0 3,3\n1 3,3 3,0\n"
    "*54 G\n1 0,0 4,0\n*90 G\n1 0,0 4,0\n*91 G\n1 0,0 4,0\n*93 G\n1 0,0 4,0\n*95 G\n1 0,0 4,0\n*984 G\n1 0,0 4,0\n"
    "*80 LC\n+0.6 -0.2 G42 -0.2\n*81 LC D2 A1\n+3 -1 P -1\n*82 LC\n+2 -0.5 G43 -0.5 W1.5 M\n*83 LC\n+4 +1 L W2\n"
    "*84 LC\n-0.3 G42 -0.3 G44 +0.2 G45 G46 G47 G999\n*85 LC\nG42 +1.5 -0.5 W0.8 R\n*86 LC D3 A1 I0.5\nG42 G44 G43\n"
    "*87 LC D1 A0\nG42\n*88 LC\n+2 W1 M\n*89 LC\n-5 G48 -5 +0.1\n*79 LC\n+8 -2\n"
    "*100 L 1\n*101 E 1\n*102 E 12\n*834 L 1\n*221 L 1\n*337 L 1\n*981 L 1\n"
    "*60 H 1\n1 35 2.3 125 3.1 42\n*61 H 1\n1 0 2 90 3 42\n*62 H 2\n2 30 3\n1 35 5 125 5 43\n*63 H 1\n2 45 1.5\n"
    "*64 H 0\n3 0 200 30 20\n*65 H 1\n3 4 -1 0 0\n*66 H 1\n4 1 10 20 30\n18244281 81422418\n*824 H 1\n2 0 0.7\n*$\n";

class Fnv {
 public:
    void Add(const void* data, std::size_t size) {
        const auto* bytes = static_cast<const unsigned char*>(data);
        for (std::size_t i = 0; i < size; ++i) m_hash = (m_hash ^ bytes[i]) * 1099511628211ULL;
        m_size += size;
    }
    void Add(const std::string& text) { Add(text.data(), text.size()); }
    // -0 is 0 here, and one not-a-number is like another.
    void Add(double value) {
        if (std::isnan(value)) value = 0.125;
        const double plain = value == 0.0 ? 0.0 : value;
        Add(&plain, sizeof plain);
    }
    void Add(const std::vector<double>& values) {
        for (const double value : values) Add(value);
    }
    void Add(int value) { Add(static_cast<double>(value)); }
    std::uint64_t hash() const { return m_hash; }
    std::size_t size() const { return m_size; }

 private:
    std::uint64_t m_hash = 14695981039346656037ULL;
    std::size_t m_size = 0;
};

// No seed from outside: the digests are those of this one. No two throws stand among the arguments of one call, whose
// order is the compiler's.
class Dice {
 public:
    explicit Dice(std::uint64_t seed) : m_engine(seed) {}
    double Real(double low, double high) {
        return low + (high - low) * (static_cast<double>(m_engine() >> 11) * 0x1p-53);
    }
    int Int(int low, int high) {
        return low + static_cast<int>(m_engine() % static_cast<std::uint64_t>(high - low + 1));
    }

 private:
    std::mt19937_64 m_engine;
};

struct Points {
    std::vector<double> x, y;
    int size() const { return static_cast<int>(x.size()); }
    void Add(double px, double py) {
        x.push_back(px);
        y.push_back(py);
    }
    std::vector<double> Pairs() const {
        std::vector<double> xy;
        for (std::size_t i = 0; i < x.size(); ++i) {
            xy.push_back(x[i]);
            xy.push_back(y[i]);
        }
        return xy;
    }
};

// The features, one after another, on the working context.
class Corpus {
 public:
    Corpus(CTqDraw& dc, const CorpusView& view, Fnv& results)
        : m_dc(dc), m_view(view), m_dice(20240607), m_results(results) {}

    void Draw() {
        for (int i = 0; i < kFeatures; ++i) DrawFeature(m_dice.Int(0, 21));
        m_pen.reset();
    }

 private:
    double Width() const { return m_view.width / m_view.scale; }
    double Height() const { return m_view.height / m_view.scale; }
    // In and about the view, many on its edges or within a pixel of them.
    double Place(double from, double extent) {
        switch (m_dice.Int(0, 9)) {
            case 0:
                return from + m_dice.Int(0, 1) * extent;
            case 1: {
                const double edge = from + m_dice.Int(0, 1) * extent;
                return edge + m_dice.Real(-1.5, 1.5) / m_view.scale;
            }
            case 2:
                return from + m_dice.Real(-0.4, 1.4) * extent;
            case 3:
                return from + std::floor(m_dice.Real(0.0, 1.0) * extent);
            default:
                return from + m_dice.Real(0.02, 0.98) * extent;
        }
    }
    double X() { return Place(m_view.x, Width()); }
    double Y() { return Place(m_view.y, Height()); }
    struct Spot {
        double x, y;
    };
    Spot At() {
        const double y = Y();
        return {X(), y};
    }

    // A walk of n points; now and then along the axes.
    Points Walk(int n, double step) {
        Points points;
        const bool level = m_dice.Int(0, 3) == 0;
        double x = X();
        double y = Y();
        for (int i = 0; i < n; ++i) {
            points.Add(x, y);
            const bool sideways = m_dice.Int(0, 1) != 0;
            x += level && !sideways ? 0.0 : m_dice.Real(-step, step);
            y += level && sideways ? 0.0 : m_dice.Real(-step, step);
        }
        return points;
    }
    // A closed or open figure about a place.
    Points Ring(int corners, bool closed) {
        Points points;
        const double cx = X();
        const double cy = Y();
        const double r = m_dice.Real(0.05, 0.4) * Height();
        for (int i = 0; i < corners; ++i) {
            // Round the sides of a square, so that no cosine decides about a bit.
            const double t = 4.0 * i / corners;
            const double side = t - std::floor(t);
            const double way = m_dice.Real(0.5, 1.0) * r;
            const double u = t < 1 ? 1.0 : t < 2 ? 1.0 - 2.0 * side : t < 3 ? -1.0 : 2.0 * side - 1.0;
            const double v = t < 1 ? 2.0 * side - 1.0 : t < 2 ? 1.0 : t < 3 ? 1.0 - 2.0 * side : -1.0;
            points.Add(cx + u * way, cy + v * way);
        }
        if (closed) points.Add(points.x.front(), points.y.front());
        return points;
    }

    void Process(Points points, int lineType, int code) {
        const int n = points.size();
        points.x.resize(kCurvePoints);
        points.y.resize(kCurvePoints);
        m_results.Add(PROCESSALL(n, points.x.data(), points.y.data(), lineType, code));
        m_results.Add(points.x);
        m_results.Add(points.y);
    }
    void Lay(Points points, int code) {
        m_results.Add(getsymbody(code));
        m_results.Add(NewLC(points.x.data(), points.y.data(), points.size(), code));
        m_results.Add(points.x);
        m_results.Add(points.y);
    }

    void DrawFeature(int kind);
    void DrawText();
    void DrawPlain(int kind);
    void DrawFilled();

    CTqDraw& m_dc;
    const CorpusView& m_view;
    Dice m_dice;
    Fnv& m_results;
    std::unique_ptr<CTQPen> m_pen;
};

void Corpus::DrawFeature(int kind) {
    const double step = 0.2 * Width();
    switch (kind) {
        case 0:
        case 1:
        case 2:
        case 3:
        case 4:
            DrawPlain(kind);
            break;
        case 5: {
            const int type = m_dice.Int(1, 5);
            Process(Walk(m_dice.Int(3, 12), step), type, 100);
            break;
        }
        case 6:
        case 7: {
            const int code = m_dice.Int(79, 89);
            Process(Walk(m_dice.Int(2, 7), step), 1, code);
            break;
        }
        case 8: {
            const int code = m_dice.Int(79, 85);
            const double length = m_dice.Int(0, 1) != 0 ? 0.9 : 12.0;
            Lay(Walk(m_dice.Int(2, 60), length), code);
            break;
        }
        case 9: {
            const int code = m_dice.Int(79, 89);
            Process(Walk(m_dice.Int(3, 6), step), 2, code);
            break;
        }
        case 10:
        case 11: {
            const int code = m_dice.Int(42, 49);
            const double angle = m_dice.Int(0, 2) == 0 ? 0.0 : m_dice.Real(-1.0, 7.0);
            const Spot at = At();
            m_results.Add(insert(at.x, at.y, angle, code));
            break;
        }
        case 12: {
            const int code = m_dice.Int(0, 7) == 0 ? 824 : m_dice.Int(60, 66);
            const bool closed = m_dice.Int(0, 1) != 0;
            Process(Ring(m_dice.Int(3, 20), closed), 1, code);
            break;
        }
        case 13: {
            const Points points = Ring(4, false);
            std::vector<double> x = points.x;
            std::vector<double> y = points.y;
            m_results.Add(drawcode(m_dice.Int(1, 39), 0, 4, x.data(), y.data(), 1000.0));
            break;
        }
        case 14:
            DrawText();
            break;
        case 15: {
            const double end = m_dice.Real(-1.0, 7.0);
            const double start = m_dice.Real(-1.0, 7.0);
            const double radius = m_dice.Real(0.001, 0.3) * Width();
            const Spot at = At();
            m_results.Add(m_dc.drawarc(at.x, at.y, radius, start, end));
            break;
        }
        case 16: {
            const Spot d = At();
            const Spot c = At();
            const Spot b = At();
            const Spot a = At();
            m_results.Add(m_dc.drawarc(a.x, a.y, b.x, b.y, c.x, c.y, d.x, d.y));
            break;
        }
        case 17:
            DrawFilled();
            break;
        case 18: {
            const int size = m_dice.Int(1, 3);
            const auto color = static_cast<DWORD>(m_dice.Int(0, 0xFFFFFF));
            const Spot at = At();
            m_results.Add(static_cast<int>(m_dc.pixel(at.x, at.y, color, size)));
            break;
        }
        case 19: {
            m_pen.reset();
            const auto color = static_cast<DWORD>(m_dice.Int(0, 0xFFFFFF));
            const int width = m_dice.Int(0, 3);
            m_pen = std::make_unique<CTQPen>(m_dice.Int(0, 6), width, color);
            break;
        }
        case 20: {
            setgscale(m_dice.Int(0, 2) == 0 ? 2000.0 : 1000.0);
            const int code = m_dice.Int(100, 102);
            Process(Walk(m_dice.Int(2, 20), step), 1, code);
            break;
        }
        default: {
            const int code = m_dice.Int(79, 85);
            Process(Walk(m_dice.Int(2, 4), 0.7 * Width()), 1, code);
            break;
        }
    }
}

void Corpus::DrawPlain(int kind) {
    if (kind == 0) {
        for (int i = 0; i < 4; ++i) {
            const Spot b = At();
            const Spot a = At();
            m_results.Add(m_dc.line(a.x, a.y, b.x, b.y));
        }
    } else if (kind == 1) {
        std::vector<double> xy = Walk(m_dice.Int(1, 90), 0.1 * Width()).Pairs();
        if (m_dice.Int(0, 5) == 0) {
            const double bad = m_dice.Int(0, 1) != 0 ? HUGE_VAL : std::numeric_limits<double>::quiet_NaN();
            xy[static_cast<std::size_t>(m_dice.Int(0, static_cast<int>(xy.size()) - 1))] = bad;
        }
        m_results.Add(m_dc.lines(static_cast<int>(xy.size() / 2), xy.data()));
        m_results.Add(xy);
    } else if (kind == 2) {
        Points points = Walk(m_dice.Int(1, 30), 0.3 * Width());
        m_results.Add(m_dc.lines(points.size(), points.x.data(), points.y.data()));
    } else if (kind == 3) {
        const Spot b = At();
        const Spot a = At();
        m_results.Add(m_dc.drawrect(a.x, a.y, b.x, b.y));
        const Spot d = At();
        const Spot c = At();
        m_results.Add(m_dc.rectangle(c.x, c.y, d.x, d.y));
    } else {
        const Spot from = At();
        m_results.Add(static_cast<int>(m_dc.moveto(from.x, from.y)));
        const Spot to = At();
        m_results.Add(m_dc.lineto(to.x, to.y));
        const auto pixel = [&] { return m_dice.Int(-200, 1000); };
        const int x1 = pixel();
        const int y1 = pixel();
        const int x2 = pixel();
        m_results.Add(m_dc.line(x1, y1, x2, pixel()));
    }
}

void Corpus::DrawText() {
    static char face[] = "SimSun";
    static char style[] = "STANDARD";
    static char file[] = "txt";
    const double height = m_dice.Real(0.01, 0.08) * Height();
    const double angle = m_dice.Int(0, 1) != 0 ? 0.0 : m_dice.Real(-90.0, 90.0);
    HFONT old = nullptr;
    HFONT font = nullptr;
    if (m_dc.GetTqDCType() == 1)
        m_dc.SetFont(0, style, file, height, 0.8, 0.0, angle);
    else
        font = m_dc.SetFont(height, 0.6 * height, face, angle, 0, old);
    char text[] = "12.50 \xB9\xAB\xC2\xB7 a<b";
    double x = X();
    double y = Y();
    switch (m_dice.Int(0, 2)) {
        case 0:
            m_results.Add(m_dc.textout(x, y, text, 0, m_dice.Int(0, 1)));
            break;
        case 1:
            m_results.Add(m_dc.textout(x, y, text, m_dice.Real(-1.5, 1.5), 0.2 * height));
            break;
        default:
            m_results.Add(m_dc.textRout(x, y, text, m_dice.Int(0, 5)));
            break;
    }
    m_results.Add(x);
    m_results.Add(y);
    if (font == nullptr) return;
    m_dc.ResetFont(old);
    device::DeleteObject(font);
}

void Corpus::DrawFilled() {
    std::vector<double> xy = Ring(m_dice.Int(3, 12), true).Pairs();
    const bool solid = m_dice.Int(0, 1) != 0;
    const auto color = static_cast<COLORREF>(m_dice.Int(0, 0xFFFFFF));
    HBRUSH brush = solid ? device::CreateSolidBrush(color) : device::CreateHatchBrush(m_dice.Int(0, 5), color);
    m_results.Add(m_dc.DrawPolygon(static_cast<int>(xy.size() / 2), xy.data(), brush));
    device::DeleteObject(brush);
}

int TypeOf(CorpusSink sink) {
    return sink == CorpusSink::drawing ? 1 : sink == CorpusSink::monochrome ? 2 : sink == CorpusSink::recording ? 3 : 0;
}

void SetClip(CTqDraw& dc, const CorpusView& view, CorpusClip clip) {
    const double w = view.width / view.scale;
    const double h = view.height / view.scale;
    const auto polygon = [&](const std::vector<double>& u, const std::vector<double>& v) {
        Points points;
        for (std::size_t i = 0; i < u.size(); ++i) points.Add(view.x + u[i] * w, view.y + v[i] * h);
        dc.SetCutArea(points.size(), points.x.data(), points.y.data());
    };
    dc.SetCutArea();
    if (clip == CorpusClip::part) dc.SetCutArea(view.x + 0.2 * w, view.y + 0.3 * h, view.x + 0.9 * w, view.y + 0.8 * h);
    if (clip == CorpusClip::wide) dc.SetCutArea(view.x - w, view.y - h, view.x + 2.0 * w, view.y + 2.0 * h);
    if (clip == CorpusClip::concave)
        polygon({0.1, 0.9, 0.95, 0.6, 0.5, 0.4, 0.05}, {0.1, 0.05, 0.9, 0.95, 0.3, 0.9, 0.7});
    if (clip == CorpusClip::star) {
        std::vector<double> u;
        std::vector<double> v;
        Dice dice(5);
        for (int side = 0; side < 4; ++side)
            for (int i = 0; i < 20; ++i) {
                const double along = i / 20.0;
                const double in = dice.Real(0.0, 0.25);
                u.push_back(side == 0 ? along : side == 1 ? 1.0 - in : side == 2 ? 1.0 - along : in);
                v.push_back(side == 0 ? in : side == 1 ? along : side == 2 ? 1.0 - in : 1.0 - along);
            }
        polygon(u, v);
    }
    dc.SetDoCut(clip == CorpusClip::off ? 0 : clip == CorpusClip::star ? 2 : 1);
}

// The template drawing of the recorded files.
std::string TemplateDrawing() {
    std::ifstream file(ZM_SOURCE_DIR "/tests/vectors/dwg-files.json");
    std::stringstream all;
    all << file.rdbuf();
    const std::string text = all.str();
    const std::string key = "\"plain\"";
    std::size_t at = text.find('"', text.find(':', text.find(key, text.find("\"templates\"")) + key.size())) + 1;
    std::string bytes;
    const auto digit = [](char c) { return c <= '9' ? c - '0' : c - 'a' + 10; };
    for (; text.at(at) != '"'; at += 2) bytes += static_cast<char>(digit(text.at(at)) << 4 | digit(text.at(at + 1)));
    return bytes;
}

// The entity section of a drawing: the header has its begin and end.
std::string EntitiesOf(const std::string& file) {
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
    std::memcpy(&begin, file.substr(20, 4).data(), 4);
    std::memcpy(&end, file.substr(24, 4).data(), 4);
    return file.substr(begin, end - begin);
}

// What a drawing holds, its numbers to six decimals.
std::uint64_t RoundedDigest(const std::string& file) {
    constexpr double kSteps = 1e6;
    Fnv digest;
    const auto add = [&](double value) { digest.Add(std::round(value * kSteps)); };
    const DrawingFile drawing(std::vector<std::uint8_t>(file.begin(), file.end()));
    drawing.ForEachEntity([&](const DrawingEntity& entity) {
        digest.Add(entity.kind + entity.layer + entity.linetype.value_or(""));
        digest.Add(entity.color.value_or(-1));
        add(entity.elevation.value_or(0.0));
        add(entity.thickness.value_or(0.0));
        for (const DrawingPoint& point : entity.points)
            for (const double ordinate : {point.x, point.y, point.z}) add(ordinate);
        for (const DrawingField& field : entity.fields) {
            digest.Add(field.name + field.text);
            add(field.number);
        }
        return true;
    });
    return digest.hash();
}

}  // namespace

CorpusDigest DrawCorpus(CorpusSink sink, const CorpusView& view, CorpusClip clip) {
    const FamilyDirs dirs;
    TestHost host;
    draw::ResetState();
    symbol::ResetState();
    dwg::ResetState();
    WriteFile(dirs.Project("symbol.dat"), kLibrary);
    WriteFile(dirs.Project("acad.dwg"), TemplateDrawing());
    TsymbolInit("symbol.dat");
    LogDevice log(LogDevice::Detail::styles);
    SvgDevice svg(view.width, view.height, 210.0, 148.0);
    Device* device = &log;
    if (sink == CorpusSink::svg) device = &svg;
    Fnv output;
    Fnv results;
    std::uint64_t rounded = 0;
    {
        CTqDraw dc(TypeOf(sink));
        dc.SetViewDrawDC(device, view.scale, view.x, view.y, view.width, view.height, view.flipped ? 1 : 0);
        if (view.rotated) dc.SetRotateMoveP(20.0, view.x + 10.0, view.y + 5.0);
        SetClip(dc, view, clip);
        char name[] = "out.dwg";
        if (sink == CorpusSink::drawing) _LDBopendwg(name);
        Corpus(dc, view, results).Draw();
        if (sink == CorpusSink::drawing) {
            _LDBclosedwg();
            const std::string file = ReadFile(dirs.Project("out.dwg"));
            output.Add(EntitiesOf(file));
            rounded = RoundedDigest(file);
        }
        for (int i = 0; i < dc.GetTqDCString()->GetSize(); ++i)
            output.Add(std::string(static_cast<const char*>(dc.GetTqDCString()->GetAt(i))) + "\n");
        SelectWorkingTqDC(nullptr);
    }
    for (const std::string& line : log.lines()) output.Add(line + "\n");
    if (sink == CorpusSink::svg) output.Add(svg.Document());
    for (const ShownBox& box : host.boxes) results.Add(box.text);
    TsymbolClose();
    draw::ResetState();
    symbol::ResetState();
    dwg::ResetState();
    return {output.hash(), results.hash(), output.size(), rounded};
}

}  // namespace zm::test
