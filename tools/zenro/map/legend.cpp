#include "tools/zenro/map/legend.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "runtime/text/gbk.h"
#include "tools/symbols/ornament_table.h"
#include "tools/zenro/map/frame.h"
#include "tools/zenro/map/library_session.h"
#include "tools/zenro/map/map_masks.h"
#include "tools/zenro/map/map_pen.h"
#include "tools/zenro/map/painter.h"
#include "tools/zenro/map/symbol_extent.h"
#include "zenromath/symbol.h"

namespace zm::tool {
namespace {

// Millimetres of paper.
constexpr double kSampleWidth = 16.0, kSampleHeight = 7.0;  // below 100 mm², so that a fill shows one symbol
constexpr double kRowGap = 2.0, kTextGap = 3.0, kColumnGap = 6.0;
constexpr double kText = 2.5, kHeading = 4.0, kHeadingRoom = 9.0;
constexpr double kFromFrame = 10.0;  // between the outer frame and a legend right of it
constexpr double kEdge = 3.0;        // of paper beyond everything
constexpr double kRoadWidth = 4.0;   // the widest sample of a road

// Full characters count one, the others two thirds, as the lettering has them.
double WidthOf(const std::string& utf8) {
    double width = 0.0;
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80)
            width += 2.0 / 3.0;
        else if (byte >= 0xC0)
            width += 1.0;
    }
    return width * kText;
}

std::string NameOf(const Rule& rule) {
    if (!rule.legend.empty()) return rule.legend;
    const int code = rule.IsRoad() ? rule.layer : rule.symbol > 0 ? rule.symbol : rule.outline;
    const std::string note = gbk::ToUtf8(Get_Symbol_Note(code));
    return note.empty() ? std::to_string(code) : note;
}

Chain Rectangle(double x1, double y1, double x2, double y2) {
    return {{x1, x2, x2, x1, x1}, {y1, y1, y2, y2, y1}};
}

// The example of an ornament, made to fit a box about a middle.
Chain OrnamentSample(int number, double cx, double cy, double width, double height) {
    const auto points = symbols::Ornaments()[static_cast<std::size_t>(number) - 1].example;
    Chain chain;
    Box box;
    for (const auto& p : points) box.Add(p.x, p.y);
    const double factor = std::min(width / (box.x2 - box.x1), height / (box.y2 - box.y1));
    for (const auto& p : points) {
        chain.x.push_back(cx + (p.x - (box.x1 + box.x2) / 2) * factor);
        chain.y.push_back(cy + (p.y - (box.y1 + box.y2) / 2) * factor);
    }
    return chain;
}

int OrnamentNumber(int code) {
    getsymbody(code);
    return TheHeadNumber();
}

}  // namespace

Legend::Form Legend::FormOf(const Rule& rule, GeometryKind kind) {
    if (rule.IsRoad() && kind == GeometryKind::line) return Form::road;
    if (rule.symbol > 0) {
        const SymbolKind symbol = KindOfSymbol(rule.symbol);
        if (symbol.known && symbol.status == SymbolStatusG && rule.outline == 0) return Form::point;
        if (symbol.known && symbol.status == SymbolStatusY) return Form::structure;
    }
    return kind == GeometryKind::area ? Form::area : Form::line;
}

void Legend::Take(const Rule& rule, GeometryKind kind) {
    if (rule.symbol == 0 && rule.outline == 0 && !rule.IsRoad()) return;
    Entry entry;
    entry.rule = rule;
    entry.form = FormOf(rule, kind);
    if (kind == GeometryKind::point && entry.form != Form::point) return;  // draws nothing
    if (entry.form == Form::structure && !symbols::OrnamentDraws(OrnamentNumber(rule.symbol))) return;
    entry.name = NameOf(rule);
    if (entry.form == Form::area && rule.label.size() == 1 && !rule.label.front().field)
        entry.lettered = rule.label.front().text;
    entry.rule.lineType = 1;
    const auto key = [](const Entry& e) {
        return std::tie(e.form, e.rule.symbol, e.rule.layer, e.rule.outline, e.rule.penStyle, e.rule.penValue, e.name,
                        e.lettered);
    };
    const auto at = std::lower_bound(m_entries.begin(), m_entries.end(), entry,
                                     [&](const Entry& a, const Entry& b) { return key(a) < key(b); });
    if (at == m_entries.end() || key(*at) != key(entry)) m_entries.insert(at, std::move(entry));
}

double Legend::Fill(double height, double column) {
    double x = 0.0, y = 0.0, most = 0.0;
    for (Entry& entry : m_entries) {
        if (y > 0.0 && y + entry.height > height) {
            x += column + kColumnGap;
            y = 0.0;
        }
        entry.x = x;
        entry.y = kHeadingRoom + y + entry.height / 2;
        y += entry.height;
        most = std::max(most, y);
    }
    m_width = x + column;
    return most;
}

void Legend::Lay(Page& page) {
    if (m_entries.empty()) return;
    double text = 0.0, tallest = 0.0, all = 0.0;
    for (Entry& entry : m_entries) {
        const Box& extent = ExtentOfSymbol(entry.form == Form::point ? entry.rule.symbol : 0);
        const double own = extent.empty() ? 0.0 : extent.y2 - extent.y1;
        entry.height = std::max(kSampleHeight, own) + kRowGap;
        text = std::max(text, WidthOf(entry.name));
        tallest = std::max(tallest, entry.height);
        all += entry.height;
    }
    const double column = kSampleWidth + kTextGap + text;
    const double sheetWidth = page.paperWidth() - page.margins.left - page.margins.right,
                 sheetHeight = page.paperHeight() - page.margins.top - page.margins.bottom;
    const double out = kOuterFrame + kNeatWidth;
    const double beside = std::max(tallest, sheetHeight + 2 * out - kHeadingRoom);
    Fill(beside, column);
    const double rightWidth = kFromFrame + m_width;
    const double columns = std::max(1.0, std::floor((sheetWidth + 2 * out + kColumnGap) / (column + kColumnGap)));
    double low = std::max(tallest, all / columns);
    double lowHeight = Fill(low, column);
    for (; m_width > columns * (column + kColumnGap); lowHeight = Fill(low, column)) low += kRowGap;
    m_below = rightWidth > kFromFrame + 2 * column + kColumnGap &&
              (lowHeight + kHeadingRoom) * page.paperWidth() < rightWidth * page.paperHeight();
    if (m_below) {
        m_height = kHeadingRoom + lowHeight;
        m_edge = page.margins.bottom;
        page.margins.bottom += m_height + kEdge;
        for (double* side : {&page.margins.left, &page.margins.right})
            *side = std::max(*side, (m_width - sheetWidth) / 2 + kEdge);
        return;
    }
    m_height = kHeadingRoom + Fill(beside, column);
    m_edge = page.margins.right - 2 * kEdge + kFromFrame;
    page.margins.right = m_edge + m_width + kEdge;
    page.margins.bottom = std::max(page.margins.bottom, m_height - sheetHeight - out + kEdge);
}

void Legend::DrawSample(const Entry& entry, const Page& page, double x, double y, Painter& painter,
                        TqNoteLayBase& notes) const {
    const double w = page.Ground(kSampleWidth), h = page.Ground(kSampleHeight), cx = x + w / 2;
    Shape shape;
    switch (entry.form) {
        case Form::point: {
            const Box& extent = ExtentOfSymbol(entry.rule.symbol);
            const double dx = extent.empty() ? 0.0 : page.Ground((extent.x1 + extent.x2) / 2),
                         dy = extent.empty() ? 0.0 : page.Ground((extent.y1 + extent.y2) / 2);
            shape = {GeometryKind::point, {{{cx - dx}, {y - dy}}}};
            break;
        }
        case Form::line:
            shape = {GeometryKind::line, {{{x, x + w}, {y, y}}}};
            break;
        case Form::area:
            shape = {GeometryKind::area, {Rectangle(cx - h, y - h / 2, cx + h, y + h / 2)}};
            break;
        case Form::structure:
            shape = {GeometryKind::line, {OrnamentSample(OrnamentNumber(entry.rule.symbol), cx, y, w * 0.8, h * 0.7)}};
            break;
        case Form::road: {
            const double real = entry.rule.roadWidth > 0.0 ? entry.rule.roadWidth : page.Ground(kRoadWidth);
            const double half = std::min(real, page.Ground(kRoadWidth)) / 2;
            const MapPen pen(entry.rule.layer, entry.rule.penStyle, entry.rule.penValue);
            TqDC->line(x, y - half, x + w, y - half);
            TqDC->line(x, y + half, x + w, y + half);
            return;
        }
    }
    painter.DrawSample(shape, entry.rule);
    if (!entry.lettered.empty()) PutText(page, notes, entry.lettered, kText, cx, y, Align::centre);
}

void Legend::Draw(const Page& page, TqNoteLayBase& notes, Report& report) const {
    if (m_entries.empty()) return;
    const int docut = TqDC->SetDoCut(0);
    Page level = page;  // samples are level on a sheet that is turned
    level.rotation = 0.0;
    const MapMasks nothing(level);
    Painter painter(level, report, nothing);
    const double out = kOuterFrame + kNeatWidth;
    const double left =
        m_below ? (page.sheet.x1 + page.sheet.x2 - page.Ground(m_width)) / 2 : page.sheet.x2 + page.Ground(m_edge);
    const double top = m_below ? page.sheet.y1 - page.Ground(m_edge) : page.sheet.y2 + page.Ground(out);
    {
        const WidthPen pen(page, kNeatWidth, FrameCode());
        PutText(page, notes, "图例", kHeading, left + page.Ground(m_width / 2), top - page.Ground(kHeading / 2),
                Align::centre);
    }
    for (const Entry& entry : m_entries) {
        const double x = left + page.Ground(entry.x), y = top - page.Ground(entry.y);
        DrawSample(entry, level, x, y, painter, notes);
        const WidthPen pen(page, kNeatWidth, FrameCode());
        PutText(page, notes, entry.name, kText, x + page.Ground(kSampleWidth + kTextGap), y, Align::left);
    }
    TqDC->SetDoCut(docut);
}

}  // namespace zm::tool
