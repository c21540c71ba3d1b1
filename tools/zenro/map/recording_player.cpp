#include "tools/zenro/map/recording_player.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "draw/device.h"
#include "tools/kit/angles.h"
#include "tools/kit/process.h"
#include "tools/kit/text.h"
#include "tools/kit/tool_host.h"
#include "tools/kit/translation.h"
#include "tools/zenro/map/area_fill.h"
#include "zenromath/dwg.h"

namespace zm::tool {
namespace {

constexpr int kDwg = 1, kMonochrome = 2, kRecording = 3;

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

}  // namespace

void ForEachLine(const std::filesystem::path& recording, const std::string& input,
                 const std::function<void(long number, const std::string& line)>& work) {
    const std::unique_ptr<std::FILE, FileCloser> file(OpenFile(recording, "rb"));
    if (file == nullptr) throw Failure(kNoInput, Phrase("{0}: cannot be opened: {1}.", input, SystemError(errno)));
    std::string line;
    for (long number = 1; NextLine(file.get(), input, line); ++number) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!line.empty()) work(number, line);
    }
}

Box BoxOf(const Command& c) {
    Box box;
    if (const auto* line = std::get_if<command::Line>(&c)) {
        box.Add(line->x1, line->y1);
        box.Add(line->x2, line->y2);
    } else if (const auto* arc = std::get_if<command::Arc>(&c)) {
        box.Add(arc->cx - arc->r, arc->cy - arc->r);
        box.Add(arc->cx + arc->r, arc->cy + arc->r);
    } else if (const auto* pixel = std::get_if<command::Pixel>(&c)) {
        box.Add(pixel->x, pixel->y);
    } else if (const auto* text = std::get_if<command::Text>(&c)) {
        box.Add(text->x, text->y);
    }
    return box;
}

void RecordingExtent::Add(const Command& c) {
    ++commands;
    const Box box = BoxOf(c);
    if (box.empty()) return;
    drawn.Add(box.x1, box.y1);
    drawn.Add(box.x2, box.y2);
}

RecordingPlayer::~RecordingPlayer() {
    if (m_font != nullptr) TqDC->ResetFont(m_previousFont);
    for (HFONT font : m_made) device::DeleteObject(font);
}

void RecordingPlayer::Tell(const std::string& line) {
    if (!ReadExactly(line, m_next) || !m_next.area) return;
    FillArea(m_next.area->xy, m_next.area->colour);
    m_next.area.reset();
}

void RecordingPlayer::Play(const Command& c) {
    std::visit([this](const auto& one) { On(one); }, c);
}

void RecordingPlayer::On(const command::Line& c) {
    if (!m_polyline) {
        TqDC->line(c.x1, c.y1, c.x2, c.y2);
        return;
    }
    if (m_points.empty() || m_points[m_points.size() - 2] != c.x1 || m_points.back() != c.y1) {
        EndRun();
        m_points = {c.x1, c.y1};
    }
    m_points.push_back(c.x2);
    m_points.push_back(c.y2);
}

void RecordingPlayer::On(const command::PolylineBegin&) {
    EndPolyline();
    m_polyline = true;
}

void RecordingPlayer::On(const command::PolylineEnd&) {
    EndPolyline();
}

void RecordingPlayer::On(const command::Arc& c) {
    // A recorded arc may pass a full turn: angles count modulo a turn, and none at all is the whole circle.
    double sweep = std::fmod(c.to - c.from, 360.0);
    if (360.0 - std::fabs(sweep) < 1e-6) sweep = 0.0;
    const double from = std::fmod(c.from, 360.0) * kDegree;
    TqDC->drawarc(c.cx, c.cy, c.r, from, from + sweep * kDegree);
}

void RecordingPlayer::On(const command::Pixel& c) {
    TqDC->pixel(c.x, c.y, c.color, 1);
}

void RecordingPlayer::On(const command::Layer& c) {
    m_pen.reset();
    m_layer = c.code;
    m_layerPen = std::make_unique<MapPen>(c.code);
}

void RecordingPlayer::On(const command::Pen& c) {
    m_pen.reset();
    const double width = m_next.penWidth ? _To01mm(1) * 10.0 * *m_next.penWidth : _To01mm(c.width);
    if (TqDC->GetTqDCType() == kRecording && m_next.penWidth) TellPenWidth(*m_next.penWidth);
    m_next.penWidth.reset();
    if (TqDC->GetTqDCType() == kDwg && m_layer != 0) {
        m_layerPen = std::make_unique<MapPen>(m_layer, c.style);
    } else {
        m_pen = std::make_unique<CTQPen>(c.style, width, DWORD{c.color});
    }
}

void RecordingPlayer::On(const command::Font& c) {
    if (m_next.text) return SetExactFont(c);
    m_exact.reset();
    const double height = _To01mm(c.font.lfHeight), width = _To01mm(c.font.lfWidth);
    const double degrees = c.font.lfEscapement / 10.0;
    std::vector<char> face(c.font.lfFaceName, c.font.lfFaceName + LF_FACESIZE);
    SetPlainFont(c, face, height, width, degrees);
}

void RecordingPlayer::SetPlainFont(const command::Font& c, std::vector<char>& face, double height, double width,
                                   double degrees) {
    if (TqDC->GetTqDCType() == kDwg) {
        SetDwgFont(face.data(), height, width, degrees);
        return;
    }
    HFONT old = nullptr;
    HFONT made = TqDC->SetFont(height, width, face.data(), degrees, c.font.lfItalic, old);
    if (m_font == nullptr) m_previousFont = old;
    m_font = made;
    m_made.push_back(made);
}

// The next text in the height of its capitals and in its colour.
void RecordingPlayer::SetExactFont(const command::Font& c) {
    const double millimetre = _To01mm(10);
    const Exactly::Text exact = *m_next.text;
    m_next.text.reset();
    const double height = exact.height * millimetre, width = exact.width * millimetre;
    std::vector<char> face(c.font.lfFaceName, c.font.lfFaceName + LF_FACESIZE);
    const int type = TqDC->GetTqDCType();
    m_exact.reset();
    if (type == kRecording) TellTextLook(height, width, exact.colour);
    if (type == kDwg || type == kRecording) return SetPlainFont(c, face, height, width, c.font.lfEscapement / 10.0);
    m_exact = TextLook{face.data(), height, width, c.font.lfEscapement / 10.0, c.font.lfItalic != 0};
    device::SetTextColor(TqDC->GetHdc(), type == kMonochrome ? 0 : exact.colour);
}

void RecordingPlayer::On(const command::Text& c) {
    if (m_exact) return DrawOnDevice(c.text, *m_exact, c.x, c.y);
    std::vector<char> text(c.text.c_str(), c.text.c_str() + c.text.size() + 1);
    TqDC->textout(c.x, c.y, text.data(), 0, 0);
}

// A DWG style of the note classes that has this face.
void RecordingPlayer::SetDwgFont(const char* face, double height, double width, double degrees) {
    auto& fonts = *m_notes.GetFontTbl();
    NOTEFONT* font = m_notes.FontInfo('0');
    for (int i = 0; i < fonts.GetSize(); ++i)
        if (std::strcmp(fonts[i]->screenFont, face) == 0) font = fonts[i];
    if (font == nullptr) return;
    std::string file = font->fontName;
    if (file != "txt") file = "txt," + file;
    std::vector<char> name(font->textStyle, font->textStyle + std::strlen(font->textStyle) + 1);
    std::vector<char> files(file.c_str(), file.c_str() + file.size() + 1);
    const double h = height < 0.001 ? 2.0 : height;
    TqDC->SetFont(0, name.data(), files.data(), h, width / h, 0.0, degrees);
}

void RecordingPlayer::EndRun() {
    if (m_points.size() >= 4) TqDC->lines(static_cast<int>(m_points.size() / 2), m_points.data());
    m_points.clear();
}

void RecordingPlayer::EndPolyline() {
    EndRun();
    m_polyline = false;
}

}  // namespace zm::tool
