// What the set-up and the calls of drawing mean in scenes, and what their sinks received.
#include "tests/support/writer_trace.h"
#include "tests/vector_runner/scenes.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <new>
#include <stdexcept>

#include "draw/access.h"
#include "draw/device.h"
#include "draw/state.h"
#include "dwg/writer/state.h"
#include "zenromath/draw.h"
#include "zenromath/log.h"

namespace {

using namespace zm::vectors;
using zm::draw::Access;

int Int(const Json& value) {
    return value.get<int>();
}
DWORD Word(const Json& value) {
    return static_cast<DWORD>(value.get<std::uint32_t>());
}

// ---- What the sinks received ----

// Writes the calls of the DWG writer down as the scenes have them.
class WriterLog : public zm::test::Trace {
 public:
    WriterLog() : m_previous(zm::test::SetTrace(this)) {}
    ~WriterLog() override { zm::test::SetTrace(m_previous); }
    WriterLog(const WriterLog&) = delete;
    WriterLog& operator=(const WriterLog&) = delete;

    void Line(double x1, double y1, double x2, double y2) override { Add({"_LDBline", x1, y1, x2, y2}); }
    void Polyline(const double* xy, int n) override {
        Add({"_LDBpolyline", FromReals(xy, 2 * static_cast<std::size_t>(n < 0 ? 0 : n))});
    }
    void Point(double x, double y) override { Add({"_LDBpoint", x, y}); }
    void Arc(double x, double y, double radius, double start, double end) override {
        Add({"_LDBarc", x, y, radius, start, end});
    }
    void Text(int justification, double x, double y, double height, double angle, const char* text) override {
        Add({"_LDBtext", justification, x, y, height, angle, SceneText(text)});
    }
    void SetLay(const char* name) override { Add({"_LDBsetlay", SceneText(name)}); }
    void SetColor(int color) override { Add({"_LDBsetcolor", color}); }
    void SetLtype(const char* name) override { Add({"_LDBsetltype", SceneText(name)}); }
    void SetStyle(int type, const char* name, const char* font, double width, double oblique) override {
        Add({"_LDBsetstyle", type, SceneText(name), SceneText(font), width, oblique});
    }
    void SetElev(double elevation, double thickness) override { Add({"_LDBsetelev", elevation, thickness}); }
    void Insert(double x, double y, double xScale, double yScale, double angle, const char* name) override {
        Add({"_LDBinsert", x, y, xScale, yScale, angle, SceneText(name)});
    }

    Json calls = Json::array();

 private:
    void Add(Json call) { calls.push_back(std::move(call)); }
    zm::test::Trace* m_previous;
};

// A line of the device log as the scenes have it: name, numbers, and for texts the text.
Json DeviceCall(const std::string& line) {
    Json call = Json::array();
    std::size_t at = 0;
    const bool isText = line.starts_with("TextOut ");
    while (true) {
        const std::size_t blank = isText && call.size() == 3 ? std::string::npos : line.find(' ', at);
        const std::string field = line.substr(at, blank == std::string::npos ? blank : blank - at);
        if (call.empty())
            call.push_back(field);
        else if (isText && call.size() == 3)
            call.push_back(SceneText(field));
        else
            call.push_back(std::stoll(field));
        if (blank == std::string::npos) return call;
        at = blank + 1;
    }
}

// The device that a scene draws on: the selected pen is solid, of width 0, black.
struct SceneDevice {
    SceneDevice() : pen(zm::device::CreatePen(PS_SOLID, 0, 0)) { zm::device::SelectObject(&device, pen); }
    ~SceneDevice() { zm::device::DeleteObject(pen); }
    SceneDevice(const SceneDevice&) = delete;
    SceneDevice& operator=(const SceneDevice&) = delete;
    zm::LogDevice device;
    HPEN pen;
};

constexpr char kDevice[] = "the device";
constexpr char kWriter[] = "the writer";

Json NameOf(Scene& scene, const CTqDraw* context) {
    if (context == nullptr) return Json();
    for (const auto& [name, address] : scene.notes()["contexts"].items())
        if (address.get<std::uintptr_t>() == reinterpret_cast<std::uintptr_t>(context)) return name;
    return "unknown";
}

// Contexts that a scene ends keep their memory until the scene is over: a destroyed context may stay published, and no
// other is to be taken for it.
struct ContextMemory {
    struct alignas(CTqDraw) Place {
        std::byte bytes[sizeof(CTqDraw)];
    };
    std::deque<Place> places;
};
constexpr char kContextMemory[] = "memory of contexts";

void MakeContext(Scene& scene, const std::string& name, int type) {
    auto& place = scene.Kept<ContextMemory>(kContextMemory).places.emplace_back();
    const std::shared_ptr<CTqDraw> context(new (place.bytes) CTqDraw(type), [](CTqDraw* dc) { dc->~CTqDraw(); });
    scene.Keep(name, context);
    scene.notes()["contexts"][name] = reinterpret_cast<std::uintptr_t>(context.get());
}

CTqDraw& Context() {
    CTqDraw* context = zm::draw::WorkingContext();
    if (context == nullptr) throw std::runtime_error("the scene draws without a working context");
    return *context;
}

void SetPolygon(const Json& area, CTqDraw& context) {
    const auto points = Reals(area.at("polygon"));
    std::vector<double> x;
    std::vector<double> y;
    for (std::size_t i = 0; i + 1 < points.size(); i += 2) {
        x.push_back(points[i]);
        y.push_back(points[i + 1]);
    }
    context.SetCutArea(static_cast<int>(x.size()), x.data(), y.data());
}

// ---- Set-up ----

const SceneReset kDwgReset(10, [] { zm::dwg::ResetState(); });
const SceneReset kDrawReset(40, [] { zm::draw::ResetState(); });

const SceneSetup kContext(40, {"type"}, [](Scene& scene, const Json& setup) {
    scene.Keep(kContextMemory, std::make_shared<ContextMemory>());
    scene.Keep(kWriter, std::make_shared<WriterLog>());
    scene.Keep(kDevice, std::make_shared<SceneDevice>());
    if (setup.contains("type")) MakeContext(scene, "main", Int(setup.at("type")));
});

const SceneSetup kView(41, {"scale", "origin", "view", "flip"}, [](Scene& scene, const Json& setup) {
    if (!setup.contains("scale")) return;
    const Json& origin = setup.at("origin");
    const Json& view = setup.at("view");
    Context().SetViewDrawDC(&scene.Kept<SceneDevice>(kDevice).device, Real(setup.at("scale")), Real(origin.at(0)),
                            Real(origin.at(1)), Int(view.at(0)), Int(view.at(1)), Int(setup.at("flip")));
});

const SceneSetup kArea(42, {"area"}, [](Scene&, const Json& setup) {
    const Json area = setup.value("area", Json());
    if (area.is_null()) return;
    if (area.contains("rect")) {
        const auto r = Reals(area.at("rect"));
        Context().SetCutArea(r.at(0), r.at(1), r.at(2), r.at(3));
    } else {
        SetPolygon(area, Context());
    }
});

const SceneSetup kRest(43, {"docut", "rotate", "gscale"}, [](Scene&, const Json& setup) {
    if (setup.contains("docut")) Context().SetDoCut(Int(setup.at("docut")));
    if (setup.contains("rotate") && !setup.at("rotate").is_null()) {
        const auto r = Reals(setup.at("rotate"));
        Context().SetRotateMoveP(r.at(0), r.at(1), r.at(2));
    }
    if (setup.contains("gscale")) setgscale(Real(setup.at("gscale")));
});

const SceneOutput kRecording("recording", [](Scene& scene) {
    Json commands = Json::array();
    CStringArray* list = scene.Kept<CTqDraw>("main").GetTqDCString();
    for (int i = 0; i < list->GetSize(); ++i) commands.push_back(SceneCommand(list->GetAt(i).GetString()));
    return commands;
});

const SceneOutput kWriterCalls("writer", [](Scene& scene) { return scene.Kept<WriterLog>(kWriter).calls; });

const SceneOutput kDeviceCalls("device", [](Scene& scene) {
    Json calls = Json::array();
    for (const std::string& line : scene.Kept<SceneDevice>(kDevice).device.lines()) calls.push_back(DeviceCall(line));
    return calls;
});

// ---- Primitives ----

const SceneCall kLine("line", [](Scene&, const Json& a) -> Json {
    return Context().line(Real(a.at(0)), Real(a.at(1)), Real(a.at(2)), Real(a.at(3)));
});
const SceneCall kLinePixels("line_px", [](Scene&, const Json& a) -> Json {
    return Context().line(Int(a.at(0)), Int(a.at(1)), Int(a.at(2)), Int(a.at(3)));
});
const SceneCall kLines("lines", [](Scene& scene, const Json& a) -> Json {
    const auto before = Reals(a.at(0));
    auto xy = before;
    const int result = Context().lines(static_cast<int>(xy.size() / 2), xy.data());
    scene.Array("xy", before, xy);
    return result;
});
const SceneCall kLines2("lines2", [](Scene& scene, const Json& a) -> Json {
    const auto x = Reals(a.at(0));
    const auto y = Reals(a.at(1));
    auto nowX = x;
    auto nowY = y;
    const int result = Context().lines(static_cast<int>(x.size()), nowX.data(), nowY.data());
    scene.Array("x", x, nowX);
    scene.Array("y", y, nowY);
    return result;
});
const SceneCall kPixel("pixel", [](Scene&, const Json& a) -> Json {
    return Context().pixel(Real(a.at(0)), Real(a.at(1)), Word(a.at(2)), Int(a.at(3)));
});
const SceneCall kArc("drawarc", [](Scene&, const Json& a) -> Json {
    const auto v = Reals(a);
    if (v.size() == 5) return Context().drawarc(v[0], v[1], v[2], v[3], v[4]);
    return Context().drawarc(v.at(0), v.at(1), v.at(2), v.at(3), v.at(4), v.at(5), v.at(6), v.at(7));
});
const SceneCall kDrawRect("drawrect", [](Scene&, const Json& a) -> Json {
    return Context().drawrect(Real(a.at(0)), Real(a.at(1)), Real(a.at(2)), Real(a.at(3)));
});
const SceneCall kDrawPolygon("DrawPolygon", [](Scene& scene, const Json& a) -> Json {
    const auto before = Reals(a.at(0));
    auto xy = before;
    const int result = Context().DrawPolygon(static_cast<int>(xy.size() / 2), xy.data(), zm::device::WhiteBrush());
    scene.Array("xy", before, xy);
    return result;
});
const SceneCall kRectangle("rectangle", [](Scene&, const Json& a) -> Json {
    return Context().rectangle(Real(a.at(0)), Real(a.at(1)), Real(a.at(2)), Real(a.at(3)));
});
const SceneCall kRectanglePixels("rectangle_px", [](Scene&, const Json& a) -> Json {
    return Context().rectangle(Int(a.at(0)), Int(a.at(1)), Int(a.at(2)), Int(a.at(3)));
});
const SceneCall kMoveTo("moveto",
                        [](Scene&, const Json& a) -> Json { return Context().moveto(Real(a.at(0)), Real(a.at(1))); });
const SceneCall kLineTo("lineto",
                        [](Scene&, const Json& a) -> Json { return Context().lineto(Real(a.at(0)), Real(a.at(1))); });

// ---- Text ----

const SceneCall kTextOut("textout", [](Scene&, const Json& a) -> Json {
    auto text = SceneBytes(a.at(2));
    const double x = Real(a.at(0));
    const double y = Real(a.at(1));
    if (a.at(3).is_number_integer()) return Context().textout(x, y, text.data(), Int(a.at(3)), Int(a.at(4)));
    return Context().textout(x, y, text.data(), Real(a.at(3)), Real(a.at(4)));
});
const SceneCall kTextRout("textRout", [](Scene&, const Json& a) -> Json {
    auto text = SceneBytes(a.at(2));
    double x = Real(a.at(0));
    double y = Real(a.at(1));
    const int result = Context().textRout(x, y, text.data(), Int(a.at(3)));
    return {result, x, y, SceneText(text.data())};
});
const SceneCall kResetStringPos("ResetStringPos", [](Scene&, const Json& a) -> Json {
    auto text = SceneBytes(a.at(2));
    double x = Real(a.at(0));
    double y = Real(a.at(1));
    Context().ResetStringPos(x, y, text.data(), Int(a.at(3)));
    return {x, y, SceneText(text.data())};
});
const SceneCall kTextRectOff("textRectOff", [](Scene&, const Json& a) -> Json {
    Context().textRectOff(Real(a.at(0)), Real(a.at(1)));
    return {};
});
const SceneCall kGetStrLen("GetStrLen", [](Scene&, const Json& a) -> Json {
    return Context().GetStrLen(SceneBytes(a.at(0)).data());
});
const SceneCall kGetLen("GetLen",
                        [](Scene&, const Json& a) -> Json { return Context().GetLen(SceneBytes(a.at(0)).data()); });
const SceneCall kGet4CC("Get4CC", [](Scene&, const Json& a) -> Json {
    double corners[8] = {};
    const int result = Context().Get4CC(Real(a.at(0)), Real(a.at(1)), corners, SceneBytes(a.at(2)).data());
    return {result, result != 0 ? FromReals(corners, 8) : Json()};
});
const SceneCall kTextState("TextState", [](Scene&, const Json&) -> Json {
    const CTqDraw& dc = Context();
    return {Access::TextHeight(dc),
            Access::TextWidth(dc),
            Access::TextAngle(dc),
            Access::FontHeight(dc),
            Access::FontWidth(dc),
            Access::FontEscapement(dc),
            zm::draw::state().currentFont.lfWidth};
});

// ---- The view, rotation, paper scale ----

const SceneCall kGetViewPos("GetViewPos", [](Scene&, const Json& a) -> Json {
    int px = 0;
    int py = 0;
    const int result = Context().GetViewPos(Real(a.at(0)), Real(a.at(1)), px, py);
    return {result, px, py};
});
const SceneCall kGetSurveyPos("GetSurveyPos", [](Scene&, const Json& a) -> Json {
    double x = 0.0;
    double y = 0.0;
    Context().GetSurveyPos(x, y, Int(a.at(0)), Int(a.at(1)));
    return {x, y};
});
const SceneCall kGetViewArea("GetViewArea", [](Scene&, const Json&) -> Json {
    double v[4];
    Context().GetViewArea(v[0], v[1], v[2], v[3]);
    return FromReals(v, 4);
});
const SceneCall kToIntPoints("ToIntPoints", [](Scene&, const Json& a) -> Json {
    auto xy = Reals(a.at(0));
    CArray<CPoint, CPoint&> points;
    const int count = Context().ToIntPoints(static_cast<int>(xy.size() / 2), xy.data(), &points);
    Json list = Json::array();
    for (int i = 0; i < points.GetSize(); ++i) list.push_back({points.GetAt(i).x, points.GetAt(i).y});
    return {count, count != 0 ? list : Json()};
});
const SceneCall kPixels("GetPixelsByRealen",
                        [](Scene&, const Json& a) -> Json { return Context().GetPixelsByRealen(Real(a.at(0))); });
const SceneCall kRealen("GetRealenByPixels",
                        [](Scene&, const Json& a) -> Json { return Context().GetRealenByPixels(Real(a.at(0))); });
const SceneCall kDrawable("Drawable", [](Scene&, const Json&) -> Json { return Context().Drawable(); });
const SceneCall kSetRotate("SetRotateMoveP", [](Scene&, const Json& a) -> Json {
    Context().SetRotateMoveP(Real(a.at(0)), Real(a.at(1)), Real(a.at(2)));
    return {};
});
const SceneCall kGetRotate("GetRotateMoveP", [](Scene&, const Json&) -> Json {
    double angle = 0.0;
    double x = 0.0;
    double y = 0.0;
    const int result = Context().GetRotateMoveP(angle, x, y);
    return {result, angle, x, y};
});
const SceneCall kIsRM("IsRM", [](Scene&, const Json&) -> Json { return Context().IsRM(); });
const SceneCall kGetRMCoord("GetRMCoord", [](Scene&, const Json& a) -> Json {
    double x = Real(a.at(0));
    double y = Real(a.at(1));
    Context().GetRMCoord(x, y);
    return {x, y};
});
const SceneCall kSetNeedRotate("SetNeedRotate", [](Scene&, const Json& a) -> Json {
    Context().SetNeedRotate(Int(a.at(0)));
    return {};
});
const SceneCall kIsNeedRotate("IsNeedRotate", [](Scene&, const Json&) -> Json { return Context().IsNeedRotate(); });
const SceneCall kSetGScale("setgscale", [](Scene&, const Json& a) -> Json { return setgscale(Real(a.at(0))); });
const SceneCall kGetGScale("getcurgscale", [](Scene&, const Json&) -> Json { return getcurgscale(); });
const SceneCall kTo01mm("_To01mm", [](Scene&, const Json& a) -> Json { return _To01mm(Int(a.at(0))); });
const SceneCall kFor01mm("_For01mm", [](Scene&, const Json& a) -> Json { return _For01mm(Real(a.at(0))); });
const SceneCall kSetInitAngle("SetInitRotateAngle",
                              [](Scene&, const Json& a) -> Json { return SetInitRotateAngle(Real(a.at(0))); });
const SceneCall kCharHLimit("_SetHdcCharHLimit",
                            [](Scene&, const Json& a) -> Json { return _SetHdcCharHLimit(Int(a.at(0))); });

// ---- The clip area ----

const SceneCall kSetCutArea("SetCutArea", [](Scene&, const Json& a) -> Json {
    if (a.empty()) {
        Context().SetCutArea();
    } else if (a.size() == 4) {
        Context().SetCutArea(Real(a.at(0)), Real(a.at(1)), Real(a.at(2)), Real(a.at(3)));
    } else {
        auto x = Reals(a.at(0));
        auto y = Reals(a.at(1));
        Context().SetCutArea(static_cast<int>(x.size()), x.data(), y.data());
    }
    return {};
});
const SceneCall kGetCutArea("GetCutArea", [](Scene&, const Json&) -> Json {
    double v[4];
    Context().GetCutArea(v[0], v[1], v[2], v[3]);
    return FromReals(v, 4);
});
const SceneCall kCutAreaKind("CutAreaKind", [](Scene&, const Json&) -> Json {
    int n = 0;
    PP* polygon = nullptr;
    const int kind = Context().getcutarea(n, polygon);
    return {kind, n};
});
const SceneCall kSetDoCut("SetDoCut", [](Scene&, const Json& a) -> Json { return Context().SetDoCut(Int(a.at(0))); });
const SceneCall kGetDoCut("GetDoCut", [](Scene&, const Json&) -> Json { return Context().GetDoCut(); });
const SceneCall kGetRotateAngle("GetRotateAngle",
                                [](Scene&, const Json&) -> Json { return Context().GetRotateAngle(); });
const SceneCall kCutPoint("cutpoint", [](Scene&, const Json& a) -> Json {
    return Context().cutpoint(Real(a.at(0)), Real(a.at(1)));
});
const SceneCall kCutLine("cutline", [](Scene&, const Json& a) -> Json {
    auto v = Reals(a);
    const int result = Context().cutline(v.at(0), v.at(1), v.at(2), v.at(3));
    return {result, v[0], v[1], v[2], v[3]};
});
const SceneCall kCutArc("cutarc", [](Scene&, const Json& a) -> Json {
    double angles[8] = {Real(a.at(3)), Real(a.at(4))};
    const int count = Context().cutarc(Real(a.at(0)), Real(a.at(1)), Real(a.at(2)), angles);
    return {count, FromReals(angles, static_cast<std::size_t>(count))};
});

// ---- Contexts, pens, fonts ----

const SceneCall kSetType("SetTqDCType",
                         [](Scene&, const Json& a) -> Json { return Context().SetTqDCType(Int(a.at(0))); });
const SceneCall kGetType("GetTqDCType", [](Scene&, const Json&) -> Json { return Context().GetTqDCType(); });
const SceneCall kNewContext("NewContext", [](Scene& scene, const Json& a) -> Json {
    MakeContext(scene, a.at(0).get<std::string>(), Int(a.at(1)));
    return {};
});
const SceneCall kEndContext("EndContext", [](Scene& scene, const Json& a) -> Json {
    scene.End(a.at(0).get<std::string>());  // it may stay published, and its name is known further on
    return {};
});
const SceneCall kSelectContext("SelectWorkingTqDC", [](Scene& scene, const Json& a) -> Json {
    CTqDraw* wanted = a.at(0).is_null() ? nullptr : &scene.Kept<CTqDraw>(a.at(0).get<std::string>());
    return NameOf(scene, SelectWorkingTqDC(wanted));
});
const SceneCall kWorkingContext("WorkingContext",
                                [](Scene& scene, const Json&) -> Json { return NameOf(scene, TqDC); });

const SceneCall kPenLayer("PenLayer", [](Scene& scene, const Json& a) -> Json {
    scene.Keep(a.at(0).get<std::string>(), std::make_shared<CTQPen>(Int(a.at(1)), Int(a.at(2)), Int(a.at(3))));
    return {};
});
const SceneCall kPenInt("PenInt", [](Scene& scene, const Json& a) -> Json {
    scene.Keep(a.at(0).get<std::string>(), std::make_shared<CTQPen>(Int(a.at(1)), Int(a.at(2)), Word(a.at(3))));
    return {};
});
const SceneCall kPenReal("PenReal", [](Scene& scene, const Json& a) -> Json {
    scene.Keep(a.at(0).get<std::string>(), std::make_shared<CTQPen>(Int(a.at(1)), Real(a.at(2)), Word(a.at(3))));
    return {};
});
const SceneCall kFont("Font", [](Scene& scene, const Json& a) -> Json {
    scene.Keep(a.at(0).get<std::string>(),
               std::make_shared<CTQFont>(Real(a.at(1)), Real(a.at(2)), Int(a.at(3)), Real(a.at(4)), Int(a.at(5))));
    return {};
});
const SceneCall kEnd("End", [](Scene& scene, const Json& a) -> Json {
    scene.End(a.at(0).get<std::string>());
    return {};
});
const SceneCall kTextColor("settextcolor", [](Scene& scene, const Json& a) -> Json {
    return scene.Kept<CTQFont>(a.at(0).get<std::string>())._settextcolor(Int(a.at(1)));
});
const SceneCall kTextColorLayer("settextcolor_layer", [](Scene& scene, const Json& a) -> Json {
    return scene.Kept<CTQFont>(a.at(0).get<std::string>())._settextcolor(Word(a.at(1)));
});
const SceneCall kGetCurLogpen("GetCurLogpen", [](Scene&, const Json&) -> Json {
    const tagLOGPEN pen = Context().GetCurLogpen();
    return {pen.lopnStyle, pen.lopnWidth.x, pen.lopnColor};
});

}  // namespace
