// The set-up and the calls of scenes that belong to layers, pens, colours and notes.
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "config/state.h"
#include "runtime/profile/profile.h"
#include "tests/vector_runner/scenes.h"
#include "zenromath/config.h"

namespace {

using zm::vectors::Json;
using zm::vectors::Scene;
using zm::vectors::SceneBytes;
using zm::vectors::SceneCall;
using zm::vectors::SceneReset;
using zm::vectors::SceneSetup;
using zm::vectors::SceneText;

constexpr int kOrder = 20;

const SceneReset kReset(kOrder, [] { zm::config::ResetState(); });

const SceneSetup kProject(kOrder, {"project"}, [](Scene&, const Json& setup) {
    if (setup.value("project", 0) == 1) ReadCengCi();
});
const SceneSetup kNotes(kOrder, {"notes"}, [](Scene& scene, const Json& setup) {
    if (setup.value("notes", 0) == 1) scene.Keep("notes", std::make_shared<TqNoteLayBase>());
});

Json ByCode(const Json& args, const std::function<Json(int)>& lookUp) {
    return lookUp(args.at(0).get<int>());
}

const SceneCall kRead("ReadCengCi", [](Scene&, const Json&) -> Json { return ReadCengCi(), Json(); });
const SceneCall kWrite("WriteCengCi", [](Scene&, const Json&) -> Json { return WriteCengCi(), Json(); });
const SceneCall kDelete("DeleteCengCi8Dlg", [](Scene&, const Json&) -> Json { return DeleteCengCi8Dlg(), Json(); });
const SceneCall kReadColors("ReadColorSetting", [](Scene&, const Json&) -> Json { return ReadColorSetting(), Json(); });
const SceneCall kWriteColors("WriteColorSetting",
                             [](Scene&, const Json&) -> Json { return WriteColorSetting(), Json(); });
const SceneCall kColorNo1("GetColorNo1", [](Scene&, const Json& args) { return ByCode(args, GetColorNo1); });
const SceneCall kRec("GetRec", [](Scene&, const Json& args) { return ByCode(args, GetRec); });
const SceneCall kPenWidth("GetPenWidth", [](Scene&, const Json& args) { return ByCode(args, GetPenWidth); });
const SceneCall kColorNo("GetColorNo", [](Scene&, const Json& args) { return ByCode(args, GetColorNo); });
const SceneCall kLayerName("GetLayerName", [](Scene&, const Json& args) {
    return ByCode(args, [](int code) { return SceneText(GetLayerName(code)); });
});

const SceneCall kLayerCount("LayerCount", [](Scene&, const Json&) -> Json {
    LayerCol* table = nullptr;
    int* count = nullptr;
    Get_CengCi(table, count);
    return *count;
});
const SceneCall kLayer("Layer", [](Scene&, const Json& args) -> Json {
    LayerCol* table = nullptr;
    int* count = nullptr;
    Get_CengCi(table, count);
    const LayerCol& layer = table[args.at(0).get<int>()];
    return Json{SceneText(layer.name), layer.start, layer.end, layer.color, layer.show};
});
const SceneCall kPalette("Palette", [](Scene&, const Json&) -> Json {
    unsigned long* palette = nullptr;
    const int count = Get_SysColor(palette);
    Json colors = Json::array();
    for (int i = 0; i < count; ++i) colors.push_back(palette[i]);
    return colors;
});

const SceneCall kProfileCall("profile", [](Scene& scene, const Json& args) -> Json {
    const std::filesystem::path file = scene.FilePath(args.at(0).get<std::string>());
    char value[1024];
    zm::profile::GetString(SceneBytes(args.at(1)).data(), SceneBytes(args.at(2)).data(), "", value, sizeof value,
                           Scene::PathText(file).c_str());
    return SceneText(value);
});

// ---- Notes ----

Json Character(char code) {
    return code != 0 ? SceneText(std::string(1, code)) : Json(0);
}

Json Class(const NOTELAY& r) {
    return Json{Character(r.code), SceneText(r.layerName), r.color,   r.display,        r.height, r.width,
                r.interval,        r.fontNumber,           r.convert, SceneText(r.memo)};
}

Json Font(const NOTEFONT* font) {
    if (font == nullptr) return nullptr;
    const LOGFONTA& f = font->logFont;
    return Json{font->number,
                SceneText(font->screenFont),
                SceneText(font->textStyle),
                SceneText(font->fontName),
                font->slant,
                Json{f.lfWeight, f.lfUnderline, f.lfStrikeOut, f.lfCharSet, f.lfOutPrecision, f.lfClipPrecision,
                     f.lfQuality, f.lfPitchAndFamily},
                SceneText(f.lfFaceName)};
}

Json Definition(TqNoteLayBase& notes, const Json& code) {
    SpOrvNoteDef d{};
    const NOTELAY* found = code.is_number() ? notes.GetNoteLayByOrvCode(code.get<int>(), d)
                                            : notes.GetNoteLayByOrvCode(SceneBytes(code).data(), d);
    return Json{Json{d.value1, Character(d.value2), d.value3, d.value4, d.value5, d.value6, d.value7},
                Character(found->code)};
}

using Notes = TqNoteLayBase;
using NoteMember = std::function<Json(Notes&, const Json& args)>;

char Code(const Json& args) {
    return zm::vectors::Bytes(args.at(0)).at(0);
}

template <class Result>
NoteMember ByClass(Result (Notes::*member)(char)) {
    return [member](Notes& notes, const Json& args) -> Json { return (notes.*member)(Code(args)); };
}

NoteMember TextByClass(char* (Notes::*member)(char)) {
    return [member](Notes& notes, const Json& args) { return SceneText((notes.*member)(Code(args))); };
}

const std::map<std::string, NoteMember>& NoteMembers() {
    static const std::map<std::string, NoteMember> members = {
        {"LayerName", TextByClass(&Notes::LayerName)},
        {"Memo", TextByClass(&Notes::Memo)},
        {"Color", ByClass(&Notes::Color)},
        {"OutDcDwg", ByClass(&Notes::OutDcDwg)},
        {"CharH", ByClass(&Notes::CharH)},
        {"CharW", ByClass(&Notes::CharW)},
        {"CharI", ByClass(&Notes::CharI)},
        {"Fontn", ByClass(&Notes::Fontn)},
        {"OutNot", ByClass(&Notes::OutNot)},
        {"OutDxf", ByClass(&Notes::OutDxf)},
        {"OutAtt", ByClass(&Notes::OutAtt)},
        {"ShowRcd", ByClass(&Notes::ShowRcd)},
        {"FontInfo", [](Notes& notes, const Json& args) { return Font(notes.FontInfo(Code(args))); }},
        {"GetFontInfo", [](Notes& notes, const Json& args) { return Font(notes.GetFontInfo(args.at(0).get<int>())); }},
        {"count", [](Notes& notes, const Json&) -> Json { return notes.GetCount(); }},
        {"default",
         [](Notes& notes, const Json&) {
             NOTELAY record{};
             notes.GetDefaultRcd(&record);
             return Character(record.code);
         }},
        {"class", [](Notes& notes, const Json& args) { return Class(*notes.GetNoteLay(Code(args))); }},
        {"values",
         [](Notes& notes, const Json&) {
             return Json{notes.GetCWeight(), notes.GetDecMin(), notes.GetDgt1Min(), notes.GetEnMinP(),
                         SceneText(notes.GetScreenFont())};
         }},
        {"MakeOneString",
         [](Notes& notes, const Json& args) {
             char line[Notes::kLineSize];
             notes.MakeOneString(line, notes.GetNoteLay(Code(args)));
             return SceneText(line);
         }},
        {"MatchLayCharH",
         [](Notes& notes, const Json& args) {
             return Character(notes.MatchLayCharH(SceneBytes(args.at(0)).data(), args.at(1).get<int>()));
         }},
        {"ReadFirstByLN",
         [](Notes& notes, const Json& args) {
             return Character(notes.ReadFirstByLN(SceneBytes(args.at(0)).data(), nullptr));
         }},
        {"ReadNextByLN", [](Notes& notes, const Json&) { return Character(notes.ReadNextByLN(nullptr)); }},
        {"GetNoteLayByOrvCode", [](Notes& notes, const Json& args) { return Definition(notes, args.at(0)); }},
    };
    return members;
}

const SceneCall kNewNotes("NewNotes", [](Scene& scene, const Json&) -> Json {
    const Notes& made = scene.Keep("notes", std::make_shared<Notes>());
    return GetTqNoteLayBasePt() == &made ? 1 : 0;
});
const SceneCall kNote("Note", [](Scene& scene, const Json& args) -> Json {
    Json rest = args;
    rest.erase(0);
    return NoteMembers().at(args.at(0).get<std::string>())(scene.Kept<Notes>("notes"), rest);
});

}  // namespace
