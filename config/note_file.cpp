// The file of note classes and fonts, "Orvnote.cod" beside the module: its reader and writer.
#include <cstdlib>
#include <cstring>
#include <string>

#include "config/state.h"
#include "config/texts.h"
#include "runtime/profile/profile.h"
#include "runtime/text/fixed_text.h"
#include "runtime/text/numbers.h"
#include "runtime/text/scan.h"
#include "zenromath/config.h"
#include "zenromath/runtime.h"

namespace {

using zm::runtime::CopyCut;
using zm::runtime::FieldText;
using zm::scan::Fields;
using zm::scan::LeadingInt;

constexpr char kClassSection[] = "NOTE CLASS";
constexpr char kScriptSection[] = "SCRIPT BOX";
constexpr char kOtherSection[] = "OTHER NOTE";
constexpr char kFontSection[] = "FONT NAME";
constexpr int kClassLines = 99;  // that are read
constexpr int kKeyWidth = 2;
constexpr int kFieldsNeeded = 9;  // of the ten of a class line: the memo may be missing
// Required: appended to every font line that is read. Behind a full line it has no effect; for an empty value it is the
// default, and a partial value runs into it. Font lines without a closing comma count on it as well.
constexpr char kDefaultFont[] = "System,Standard,Hztxt,0";

std::string ClassKey(int number) {
    return zm::numbers::Text("C%0*d", kKeyWidth, number);
}
std::string FontKey(int number) {
    return zm::numbers::Text("%d", number);
}
std::string LogFontKey(int number) {
    return zm::numbers::Text("%dC", number);
}

// The text up to the next comma, without the blanks before it; the rest loses both.
std::string_view TakeField(std::string_view& rest) {
    while (rest.starts_with(' ')) rest.remove_prefix(1);
    const std::size_t comma = std::min(rest.find(','), rest.size());  // no second byte of a character is a comma
    const std::string_view field = rest.substr(0, comma);
    rest.remove_prefix(std::min(comma + 1, rest.size()));
    return field;
}

void ParseFont(std::string_view line, NOTEFONT& font) {
    CopyCut(font.screenFont, TakeField(line));
    CopyCut(font.textStyle, TakeField(line));
    CopyCut(font.fontName, TakeField(line));
    font.slant = LeadingInt(line);
}

void ParseLogFont(std::string_view line, LOGFONTA& font) {
    int weight = 0;
    int bytes[7] = {};
    Fields fields(line);
    if (fields.Int(weight))
        for (int& byte : bytes)
            if (!fields.Int(byte)) break;
    font.lfWeight = weight;
    BYTE* const members[7] = {&font.lfUnderline,     &font.lfStrikeOut, &font.lfCharSet,       &font.lfOutPrecision,
                              &font.lfClipPrecision, &font.lfQuality,   &font.lfPitchAndFamily};
    for (int i = 0; i < 7; ++i) *members[i] = static_cast<BYTE>(bytes[i]);
}

template <class Record>
Record* NewRecord() {
    void* memory = zm::config::state().allocate(sizeof(Record));
    return memory != nullptr ? new (memory) Record{} : nullptr;
}

}  // namespace

int TqNoteLayBase::GetOneRcd(const char* section, const char* key, char* buffer, const char* def) {
    return static_cast<int>(zm::profile::GetString(section, key, def, buffer, kValueSize, m_path));
}

int TqNoteLayBase::WriteOneRcd(const char* section, const char* key, const char* value) {
    return zm::profile::WriteString(section, key, value, m_path) ? 1 : 0;
}

int TqNoteLayBase::ReadNoteClassInfo() {
    m_ReleaseCObArray(m_classes);
    char value[kValueSize];
    const auto readInt = [&](const char* section, const char* key, const char* def) {
        GetOneRcd(section, key, value, def);
        return LeadingInt(value);
    };
    const int total = readInt(kClassSection, "TOTAL", "");
    GetOneRcd(kClassSection, "CWEIGHT", value, "1");
    m_cweight = zm::numbers::ReadReal(value);
    m_decMin = readInt(kScriptSection, "DECMIN", "0");
    m_dgt1Min = readInt(kScriptSection, "DGT1MIN", "0");
    m_enMinP = readInt(kOtherSection, "ENMINP", "100");
    for (int i = 1; i <= total && i <= kClassLines; ++i) {
        if (GetOneRcd(kClassSection, ClassKey(i).c_str(), value, "") == 0) continue;
        NOTELAY* record = NewRecord<NOTELAY>();
        if (record == nullptr) {
            _LMsg("cod mem err", nullptr, 0);
            break;
        }
        if (ReadOneClass(value, record) != 0)
            m_classes->Add(record);
        else
            std::free(record);
    }
    m_count = m_classes->GetSize();
    if (m_count == 0) _LMsg(zm::config::texts::kNoNotes.gbk, nullptr, 0);
    return m_count;
}

int TqNoteLayBase::ReadOneClass(char* line, NOTELAY* record) {
    if (line == nullptr || record == nullptr) return 0;
    std::string text(line);
    // The comma after the layer name becomes a blank, so that the name ends there.
    if (const std::size_t comma = text.find(',', 2); comma != std::string::npos) text[comma] = ' ';
    NOTELAY r{};
    Fields fields(text);
    std::string_view name;
    std::string_view memo;
    if (!fields.Byte(r.code) || !fields.Literal(',') || !fields.Word(name)) return 0;
    CopyCut(r.layerName, name);
    int converted = 2;
    for (int* number : {&r.color, &r.display, &r.height, &r.width, &r.interval, &r.fontNumber, &r.convert}) {
        if (converted > 2 && !fields.Literal(',')) break;
        if (!fields.Int(*number)) break;
        ++converted;
    }
    if (converted == kFieldsNeeded && fields.Literal(',') && fields.Word(memo)) CopyCut(r.memo, memo);
    *record = r;
    return converted >= kFieldsNeeded ? 1 : 0;
}

int TqNoteLayBase::MakeOneString(char* line, NOTELAY* record) {
    if (line == nullptr || record == nullptr) return 0;
    const NOTELAY& r = *record;
    return zm::numbers::Print(line, kLineSize, "%c,%s,%d,%d,%d,%d,%d,%d,%d,%s", r.code,
                              std::string(FieldText(r.layerName)).c_str(), r.color, r.display, r.height, r.width,
                              r.interval, r.fontNumber, r.convert, std::string(FieldText(r.memo)).c_str());
}

int TqNoteLayBase::WriteNoteClassInfo() {
    zm::profile::Batch file;
    WriteOneRcd(kClassSection, "TOTAL", zm::numbers::Text("%d", m_classes->GetSize()).c_str());
    WriteOneRcd(kClassSection, "CWEIGHT", zm::numbers::Text("%.3lf", m_cweight).c_str());
    for (int i = 0; i < m_classes->GetSize(); ++i) {
        char line[kLineSize];
        MakeOneString(line, m_classes->GetAt(i));
        WriteOneRcd(kClassSection, ClassKey(i + 1).c_str(), line);
    }
    return file.Commit() ? 1 : 0;
}

int TqNoteLayBase::ReadNoteFontInfo() {
    m_ReleaseCObArray(m_fonts);
    zm::profile::GetString(kFontSection, "SCREENFONT", "System", m_screenFont, sizeof m_screenFont, m_path);
    for (int i = 0; i < m_classes->GetSize(); ++i) {
        const int number = m_classes->GetAt(i)->fontNumber;
        if (GetFontInfo(number) != nullptr) continue;
        NOTEFONT* font = NewRecord<NOTEFONT>();
        if (font == nullptr) {
            _LMsg("font info mem err", nullptr, 0);
            break;
        }
        font->number = number;
        char value[kValueSize];
        GetOneRcd(kFontSection, FontKey(number).c_str(), value, "");
        ParseFont(std::string(value) + kDefaultFont, *font);
        GetOneRcd(kFontSection, LogFontKey(number).c_str(), value, "");
        ParseLogFont(value, font->logFont);
        CopyCut(font->logFont.lfFaceName, font->screenFont);
        m_fonts->Add(font);
    }
    return m_fonts->GetSize();
}

int TqNoteLayBase::WriteNoteFontInfo() {
    zm::profile::Batch file;
    WriteOneRcd(kFontSection, "SCREENFONT", m_screenFont);
    for (int i = 0; i < m_fonts->GetSize(); ++i) {
        const NOTEFONT& font = *m_fonts->GetAt(i);
        const auto text = [](const auto& field) { return std::string(FieldText(field)); };
        WriteOneRcd(kFontSection, FontKey(font.number).c_str(),
                    zm::numbers::Text("%s,%s,%s,%d,", text(font.screenFont).c_str(), text(font.textStyle).c_str(),
                                      text(font.fontName).c_str(), font.slant)
                        .c_str());
        WriteLogFontInfo(font.number, font.logFont);
    }
    return file.Commit() ? 1 : 0;
}

int TqNoteLayBase::WriteLogFontInfo(int number, LOGFONTA font) {
    return WriteOneRcd(kFontSection, LogFontKey(number).c_str(),
                       zm::numbers::Text("%d %d %d %d %d %d %d %d", static_cast<int>(font.lfWeight), font.lfUnderline,
                                         font.lfStrikeOut, font.lfCharSet, font.lfOutPrecision, font.lfClipPrecision,
                                         font.lfQuality, font.lfPitchAndFamily)
                           .c_str());
}
