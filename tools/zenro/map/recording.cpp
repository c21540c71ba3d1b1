#include "tools/zenro/map/recording.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <sstream>

#include "tools/kit/text.h"
#include "zenromath/draw.h"

namespace zm::tool {
namespace {

constexpr char kPenKey[] = "pen_mm", kTextKey[] = "text_mm", kAreaKey[] = "area";

// The fields of a command after its name, at most so many: the last one keeps its colons.
class Fields {
 public:
    explicit Fields(const std::string& line) : m_line(line), m_at(line.find(':')) {}
    std::string Next() {
        if (m_at == std::string::npos) {
            m_missing = true;
            return {};
        }
        const std::size_t from = m_at + 1;
        m_at = m_line.find(':', from);
        return m_line.substr(from, m_at == std::string::npos ? std::string::npos : m_at - from);
    }
    std::string Rest() {
        if (m_at == std::string::npos) {
            m_missing = true;
            return {};
        }
        const std::size_t from = m_at + 1;
        m_at = std::string::npos;
        return m_line.substr(from);
    }
    double Real() {
        double value = 0.0;
        if (!ReadReal(Next(), value)) m_bad = true;
        return value;
    }
    int Whole() {
        int value = 0;
        if (!ReadWhole(Next(), value)) m_bad = true;
        return value;
    }
    /// All fields were there and good, and none is left over.
    bool good() const { return !m_missing && !m_bad && m_at == std::string::npos; }

 private:
    const std::string& m_line;
    std::size_t m_at;
    bool m_missing = false, m_bad = false;
};

command::Font FontOf(Fields& f) {
    command::Font c{};
    c.font.lfHeight = f.Whole();
    c.font.lfWidth = f.Whole();
    c.font.lfEscapement = f.Whole();
    c.font.lfOrientation = f.Whole();
    c.font.lfWeight = f.Whole();
    for (BYTE* field : {&c.font.lfItalic, &c.font.lfUnderline, &c.font.lfStrikeOut, &c.font.lfCharSet,
                        &c.font.lfOutPrecision, &c.font.lfClipPrecision, &c.font.lfQuality, &c.font.lfPitchAndFamily})
        *field = static_cast<BYTE>(f.Whole());
    const std::string face = f.Rest();
    std::memcpy(c.font.lfFaceName, face.data(), std::min<std::size_t>(face.size(), LF_FACESIZE - 1));
    return c;
}

Command Read(const std::string& name, Fields& f, bool& known) {
    // Braces make the fields come in their order.
    if (name == "Line2") return command::Line{f.Real(), f.Real(), f.Real(), f.Real()};
    if (name == "Arc") return command::Arc{f.Real(), f.Real(), f.Real(), f.Real(), f.Real()};
    if (name == "Pixel") return command::Pixel{f.Real(), f.Real(), static_cast<COLORREF>(f.Whole())};
    if (name == "Text") return command::Text{f.Whole(), f.Real(), f.Real(), f.Real(), f.Rest()};
    if (name == "Pen") return command::Pen{f.Whole(), f.Whole(), static_cast<COLORREF>(f.Whole())};
    if (name == "Layer") return command::Layer{f.Whole()};
    if (name == "Font") return FontOf(f);
    known = false;
    return command::PolylineEnd{};
}

}  // namespace

std::optional<Command> ParseCommand(const std::string& line) {
    if (line == "PlineBgn") return command::PolylineBegin{};
    if (line == "PlineEnd") return command::PolylineEnd{};
    const std::size_t colon = line.find(':');
    if (colon == std::string::npos) return std::nullopt;
    Fields fields(line);
    bool known = true;
    Command c = Read(line.substr(0, colon), fields, known);
    if (!known || !fields.good()) return std::nullopt;
    return c;
}

void ReadHeadLine(const std::string& line, RecordingHead& head) {
    std::istringstream words(line);
    std::string hash, key, word;
    words >> hash >> key;
    std::vector<double> numbers;
    double number = 0.0;
    while (words >> word && ReadReal(word, number)) numbers.push_back(number);
    if (key == "scale" && numbers.size() == 1 && numbers[0] > 0.0) head.scale = numbers[0];
    if (numbers.size() != 4) return;
    if (key == "sheet" && numbers[0] < numbers[2] && numbers[1] < numbers[3])
        head.sheet = Box{numbers[0], numbers[1], numbers[2], numbers[3]};
    if (key == "margins_mm" && numbers[0] >= 0 && numbers[1] >= 0 && numbers[2] >= 0 && numbers[3] >= 0)
        head.margins = std::array<double, 4>{numbers[0], numbers[1], numbers[2], numbers[3]};
}

bool ReadExactly(const std::string& line, Exactly& exactly) {
    const std::size_t name = line.find_first_not_of("# ");
    if (name == std::string::npos) return false;
    std::istringstream words(line.substr(name));
    std::string key, word;
    words >> key;
    if (key != kPenKey && key != kTextKey && key != kAreaKey) return false;
    std::vector<double> numbers;
    double number = 0.0;
    while (words >> word && ReadReal(word, number)) numbers.push_back(number);
    const auto colour = [](double value) { return static_cast<COLORREF>(std::clamp(value, 0.0, 16777215.0)); };
    if (key == kPenKey && numbers.size() == 1) exactly.penWidth = numbers[0];
    if (key == kTextKey && numbers.size() == 3)
        exactly.text = Exactly::Text{numbers[0], numbers[1], colour(numbers[2])};
    if (key == kAreaKey && numbers.size() >= 7 && numbers.size() % 2 == 1)
        exactly.area = Exactly::Area{colour(numbers[0]), {numbers.begin() + 1, numbers.end()}};
    return true;
}

namespace {

double OnPaper(double ground) {
    return ground * 1000.0 / getcurgscale();
}

void Tell(const std::string& line) {
    TqDC->GetTqDCString()->Add(line.c_str());
}

}  // namespace

void TellPenWidth(double millimetres) {
    Tell(std::string("# ") + kPenKey + " " + Fixed(millimetres, 6));
}

void TellTextLook(double height, double width, COLORREF colour) {
    Tell(std::string("# ") + kTextKey + " " + Fixed(OnPaper(height), 6) + " " + Fixed(OnPaper(width), 6) + " " +
         std::to_string(colour));
}

void TellArea(COLORREF colour, const std::vector<double>& xy) {
    std::string line = std::string("# ") + kAreaKey + " " + std::to_string(colour);
    for (const double v : xy) line += " " + Fixed(v, 6);
    Tell(line);
}

}  // namespace zm::tool
