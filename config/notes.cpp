// Note classes and fonts: lookups by class character and by layer name.
#include <cstdlib>
#include <cstring>
#include <new>
#include <stdexcept>
#include <string>

#include "config/state.h"
#include "config/texts.h"
#include "runtime/profile/project.h"
#include "runtime/text/fixed_text.h"
#include "runtime/text/numbers.h"
#include "runtime/text/scan.h"
#include "zenromath/config.h"
#include "zenromath/runtime.h"

namespace {

using zm::scan::Fields;

constexpr char kDefaultClass = '0';
constexpr int kFarthestHeight = 100;  // 0.1 mm; a class must be nearer than that
constexpr int kDigit = 10;
char g_noText[] = "null";

}  // namespace

TqNoteLayBase::TqNoteLayBase() : m_classes(new ClassList), m_fonts(new FontList) {
    zm::runtime::WholeName(m_path, "Orvnote", "cod", 1);
    Load();
}

TqNoteLayBase::TqNoteLayBase(const char* path) : m_classes(new ClassList), m_fonts(new FontList) {
    if (path != nullptr && zm::runtime::CopyCut(m_path, path)) Load();
}

void TqNoteLayBase::Load() {
    if (ReadNoteClassInfo() == 0 || ReadNoteFontInfo() == 0) return;
    ChooseDefault();
    zm::config::state().notes = this;
}

TqNoteLayBase::~TqNoteLayBase() {
    m_ReleaseCObArray(m_classes);
    m_ReleaseCObArray(m_fonts);
    delete m_classes;
    delete m_fonts;
    zm::config::state().notes = nullptr;
}

TqNoteLayBase* GetTqNoteLayBasePt() {
    return zm::config::state().notes;
}

void TqNoteLayBase::ChooseDefault() {
    m_defaultIndex = m_GetClassn(kDefaultClass);
    if (m_defaultIndex < 0) m_defaultIndex = 0;
    m_defaultCode = m_classes->GetAt(m_defaultIndex)->code;
}

void TqNoteLayBase::m_ReleaseCObArray(ClassList* list) {
    for (int i = 0; i < list->GetSize(); ++i) std::free(list->GetAt(i));
    list->RemoveAll();
    m_current = nullptr;
}

void TqNoteLayBase::m_ReleaseCObArray(FontList* list) {
    for (int i = 0; i < list->GetSize(); ++i) std::free(list->GetAt(i));
    list->RemoveAll();
}

// Place of the class with this character, -1 for none.
int TqNoteLayBase::m_GetClassn(char code) const {
    for (int i = 0; i < m_classes->GetSize(); ++i)
        if (m_classes->GetAt(i)->code == code) return i;
    return -1;
}

// Makes the class of this character the current one, or the default class if there is none; its place.
int TqNoteLayBase::m_OrderCN(char code) {
    const int count = m_classes->GetSize();
    if (count == 0) throw std::invalid_argument("TqNoteLayBase: a lookup in a table without note classes");
    int place = m_GetClassn(code);
    if (place < 0) place = m_defaultIndex < count ? m_defaultIndex : 0;  // a later read may have found fewer classes
    m_current = m_classes->GetAt(place);
    return place;
}

NOTELAY* TqNoteLayBase::GetNoteLay(char code) {
    return m_OrderCN(code) >= 0 ? m_current : nullptr;
}

char* TqNoteLayBase::LayerName(char code) {
    NOTELAY* record = GetNoteLay(code);
    return record != nullptr ? record->layerName : g_noText;
}

char* TqNoteLayBase::Memo(char code) {
    NOTELAY* record = GetNoteLay(code);
    return record != nullptr ? record->memo : g_noText;
}

int TqNoteLayBase::Color(char code) {
    return GetNoteLay(code)->color;
}
int TqNoteLayBase::OutDcDwg(char code) {
    return GetNoteLay(code)->display;
}
int TqNoteLayBase::CharH(char code) {
    return GetNoteLay(code)->height;
}
int TqNoteLayBase::CharW(char code) {
    return GetNoteLay(code)->width;
}
int TqNoteLayBase::CharI(char code) {
    return GetNoteLay(code)->interval;
}
int TqNoteLayBase::Fontn(char code) {
    return GetNoteLay(code)->fontNumber;
}
NOTEFONT* TqNoteLayBase::FontInfo(char code) {
    return GetFontInfo(Fontn(code));
}
int TqNoteLayBase::OutNot(char code) {
    return GetNoteLay(code)->convert % kDigit;
}
int TqNoteLayBase::OutDxf(char code) {
    return GetNoteLay(code)->convert / kDigit % kDigit;
}
int TqNoteLayBase::OutAtt(char code) {
    return GetNoteLay(code)->convert / (kDigit * kDigit) % kDigit;
}

int TqNoteLayBase::ReadRcdByCN(char code, NOTELAY* record) {
    const NOTELAY* found = GetNoteLay(code);
    if (record != nullptr) *record = *found;
    return 1;
}

int TqNoteLayBase::ShowRcd(char code) {
    const NOTELAY& r = *GetNoteLay(code);
    _LMsg(zm::numbers::Text(zm::config::texts::kNoteRecord.gbk, r.code, r.layerName, r.color, r.display, r.height,
                            r.width, r.interval, r.fontNumber, r.convert, r.memo)
              .c_str(),
          nullptr, 0);
    return 1;
}

int TqNoteLayBase::GetCount() {
    return m_count;
}

NOTEFONT* TqNoteLayBase::GetFontInfo(int number) {
    for (int i = 0; i < m_fonts->GetSize(); ++i)
        if (m_fonts->GetAt(i)->number == number) return m_fonts->GetAt(i);
    return nullptr;
}

TqNoteLayBase::ClassList* TqNoteLayBase::GetNLayTbl() {
    return m_classes;
}

TqNoteLayBase::FontList* TqNoteLayBase::GetFontTbl() {
    return m_fonts;
}

int TqNoteLayBase::GetDefaultRcd(NOTELAY* record) {
    if (m_classes->GetSize() == 0 || record == nullptr) return 0;
    *record = *m_classes->GetAt(m_defaultIndex < m_classes->GetSize() ? m_defaultIndex : 0);
    return 1;
}

int TqNoteLayBase::SetDefaultRcd(NOTELAY* record) {
    if (record == nullptr) return 0;
    if (m_classes->GetSize() == 0) {
        _LMsg("system inner err in notelay-1", nullptr, 0);
        return 0;
    }
    *m_classes->GetAt(m_defaultIndex < m_classes->GetSize() ? m_defaultIndex : 0) = *record;
    m_defaultCode = record->code;
    return 1;
}

NOTELAY* TqNoteLayBase::GetNoteLayByOrvCode(int code, SpOrvNoteDef& definition) {
    std::string text = zm::numbers::Text("%d", code);
    return GetNoteLayByOrvCode(text.data(), definition);
}

NOTELAY* TqNoteLayBase::GetNoteLayByOrvCode(char* code, SpOrvNoteDef& definition) {
    char line[kValueSize];
    GetOneRcd("OTHER NOTE", code, line, "0,0,0,0,66,10,1");
    definition = SpOrvNoteDef{};
    SpOrvNoteDef& d = definition;
    Fields fields(line);
    if (fields.Int(d.value1) && fields.Literal(',') && fields.Byte(d.value2) && fields.Literal(',')) {
        for (int* value : {&d.value3, &d.value4, &d.value5, &d.value6, &d.value7})
            if (!fields.Int(*value) || !fields.Literal(',')) break;
    }
    if (d.value7 < 1) d.value7 = 1;
    // Required: the first byte once more, now as a class character; definitions are written with it in mind.
    return GetNoteLay(line[0]);
}

char TqNoteLayBase::MatchLayCharH(char* layer, int height) {
    char best = m_defaultCode;
    zm::Int64 nearest = kFarthestHeight;
    if (layer == nullptr) return best;
    for (int i = 0; i < m_classes->GetSize(); ++i) {
        const NOTELAY& record = *m_classes->GetAt(i);
        if (std::strcmp(record.layerName, layer) != 0) continue;
        const zm::Int64 distance = std::llabs(static_cast<zm::Int64>(record.height) - height);
        if (distance >= nearest) continue;
        nearest = distance;
        best = record.code;
    }
    return best;
}

char TqNoteLayBase::ReadFirstByLN(char* layer, NOTELAY* record) {
    m_searchCursor = -1;
    // A name that no field can hold is no class's; cut it could become one's.
    m_searchFits = zm::runtime::CopyCut(m_searchLayer, layer != nullptr ? layer : "");
    return ReadNextByLN(record);
}

char TqNoteLayBase::ReadNextByLN(NOTELAY* record) {
    while (m_searchFits && m_searchCursor + 1 < m_classes->GetSize()) {
        const NOTELAY& found = *m_classes->GetAt(++m_searchCursor);
        if (std::strcmp(found.layerName, m_searchLayer) != 0) continue;
        if (record != nullptr) *record = found;
        return found.code;
    }
    return 0;
}
