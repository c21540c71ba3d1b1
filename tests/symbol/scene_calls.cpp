// The symbol calls of the recorded scenes.
#include <cstdio>
#include <cstring>
#include <vector>

#include "symbol/ornaments/hachures.h"
#include "symbol/state.h"
#include "tests/vector_runner/scenes.h"
#include "zenromath/symbol.h"

namespace zm::vectors {
namespace {

// More than a caller has to give for any curve.
constexpr std::size_t kRoom = 8192;
constexpr double kUntouched = 8.7654321e300;

// A caller's array with room behind its values; afterwards it counts as far as it was written.
class RoomyArray {
 public:
    explicit RoomyArray(const Json& values) : m_before(Reals(values)), m_values(m_before) {
        m_values.resize(m_before.size() + kRoom, kUntouched);
    }
    double* data() { return m_values.data(); }
    int count() const { return static_cast<int>(m_before.size()); }
    void Report(Scene& scene, const char* name) {
        std::size_t size = m_values.size();
        while (size > m_before.size() && m_values[size - 1] == kUntouched) --size;
        m_values.resize(size);
        scene.Array(name, m_before, m_values);
    }

 private:
    std::vector<double> m_before;
    std::vector<double> m_values;
};

symbol::Point PointOf(const Json& pair) {
    return {Real(pair.at(0)), Real(pair.at(1))};
}

struct LineFile {
    LineFile() : file(std::tmpfile()) {}
    ~LineFile() { std::fclose(file); }
    LineFile(const LineFile&) = delete;
    LineFile& operator=(const LineFile&) = delete;
    std::FILE* file;
};

LineFile& TheLineFile(Scene& scene) {
    if (!scene.IsKept("line file")) return scene.Keep("line file", std::make_shared<LineFile>());
    return scene.Kept<LineFile>("line file");
}

// The texts of a block table and the table that points to them.
struct BlockTable {
    std::vector<std::string> texts = std::vector<std::string>(1000);
    std::vector<const char*> pointers = std::vector<const char*>(1000, nullptr);
};

Json Head() {
    return Json::array({TheHeadStatus(), TheHeadPosition(), TheHeadNumber()});
}

Json BodyText() {
    std::string text;
    for (int i = 0; i < nBody; ++i) {
        unsigned words[2];
        std::memcpy(words, &TheBody[i], sizeof words);
        char record[24];
        std::snprintf(record, sizeof record, "%s%08x:%08x", i == 0 ? "" : " ", words[0], words[1]);
        text += record;
    }
    return text;
}

const SceneReset kReset(30, [] { symbol::ResetState(); });

const SceneSetup kSymbols(30, {"symbols"}, [](Scene&, const Json& setup) {
    if (setup.value("symbols", 0) == 1) TsymbolInit("symbol.dat");
});

const SceneCall kInit("TsymbolInit",
                      [](Scene&, const Json& args) -> Json { return TsymbolInit(SceneBytes(args.at(0)).data()); });
const SceneCall kLookUp("getsymbody",
                        [](Scene&, const Json& args) -> Json { return getsymbody(args.at(0).get<int>()); });
const SceneCall kTheHead("TheHead", [](Scene&, const Json&) -> Json { return Head(); });
const SceneCall kHeadStatus("HeadStatus", [](Scene&, const Json& args) -> Json {
    getsymbody(args.at(0).get<int>());
    return TheHeadStatus();
});
const SceneCall kTheBody("TheBody", [](Scene&, const Json&) -> Json { return BodyText(); });
const SceneCall kNBody("nBody", [](Scene&, const Json&) -> Json { return nBody; });
const SceneCall kTheLCBody("TheLCBody", [](Scene&, const Json&) -> Json {
    Json codes = Json::array();
    for (const char code : TheLCBody.code) codes.push_back(static_cast<int>(static_cast<unsigned char>(code)));
    return Json::array({codes, FromReals(TheLCBody.value, 20)});
});
const SceneCall kSize("Get_G_Size", [](Scene&, const Json& args) -> Json { return Get_G_Size(args.at(0).get<int>()); });
const SceneCall kNote("Get_Symbol_Note", [](Scene&, const Json& args) -> Json {
    return SceneText(Get_Symbol_Note(args.at(0).get<int>()));
});

const SceneCall kBlocks("SetSymbolBlockTable", [](Scene& scene, const Json& args) -> Json {
    if (args.at(0).empty()) {
        SetSymbolBlockTable(nullptr);
        return nullptr;
    }
    auto& table = scene.Keep("blocks", std::make_shared<BlockTable>());
    for (const Json& entry : args.at(0)) {
        const auto code = entry.at(0).get<std::size_t>();
        table.texts.at(code) = Bytes(entry.at(1));
        table.pointers.at(code) = table.texts.at(code).c_str();
    }
    SetSymbolBlockTable(table.pointers.data());
    return nullptr;
});

const SceneCall kProcessAll("PROCESSALL", [](Scene& scene, const Json& args) -> Json {
    RoomyArray x(args.at(0));
    RoomyArray y(args.at(1));
    const int result = PROCESSALL(x.count(), x.data(), y.data(), args.at(2).get<int>(), args.at(3).get<int>());
    x.Report(scene, "x");
    y.Report(scene, "y");
    return result;
});
const SceneCall kNewLC("NewLC", [](Scene& scene, const Json& args) -> Json {
    RoomyArray x(args.at(0));
    RoomyArray y(args.at(1));
    const int result = NewLC(x.data(), y.data(), x.count(), args.at(2).get<int>());
    x.Report(scene, "x");
    y.Report(scene, "y");
    return result;
});
const SceneCall kDrawCode("drawcode", [](Scene& scene, const Json& args) -> Json {
    RoomyArray x(args.at(2));
    RoomyArray y(args.at(3));
    const int result =
        drawcode(args.at(0).get<int>(), args.at(1).get<int>(), x.count(), x.data(), y.data(), Real(args.at(4)));
    x.Report(scene, "x");
    y.Report(scene, "y");
    return result;
});
const SceneCall kNewE("NewE", [](Scene& scene, const Json& args) -> Json {
    RoomyArray xy(args.at(1));
    const int result = NewE(args.at(0).get<int>(), xy.count() / 2, xy.data());
    xy.Report(scene, "xy");
    return result;
});
const SceneCall kDrawHatch("DrawHatch", [](Scene& scene, const Json& args) -> Json {
    RoomyArray xy(args.at(0));
    const int result = DrawHatch(xy.count() / 2, xy.data(), args.at(1).get<int>());
    xy.Report(scene, "xy");
    return result;
});
const SceneCall kInsert("insert", [](Scene&, const Json& args) -> Json {
    return insert(Real(args.at(0)), Real(args.at(1)), Real(args.at(2)), args.at(3).get<int>());
});
const SceneCall kExText("_LDExText", [](Scene&, const Json& args) -> Json {
    _LDExText(Real(args.at(0)), Real(args.at(1)), SceneBytes(args.at(2)).data(), args.at(3).get<int>());
    return nullptr;
});

const SceneCall kAppend("AppendLineCor", [](Scene& scene, const Json& args) -> Json {
    int no = args.at(4).get<int>();
    const int result = AppendLineCor(Real(args.at(0)), Real(args.at(1)), Real(args.at(2)), Real(args.at(3)), no,
                                     args.at(5).get<int>(), TheLineFile(scene).file);
    return Json::array({result, no});
});
const SceneOutput kLineFile("line_file", [](Scene& scene) -> Json {
    std::FILE* file = TheLineFile(scene).file;
    std::rewind(file);
    std::string text;
    for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) text += static_cast<char>(c);
    return SceneText(text);
});

const SceneCall kHachures("Hachures", [](Scene& scene, const Json& args) -> Json {
    auto hachures = std::make_shared<symbol::HachureState>();
    hachures->spacing = Real(args.at(1));
    scene.Keep(args.at(0).get<std::string>(), hachures);
    return nullptr;
});
const SceneCall kDrawHachures("DrawTriangleHachures", [](Scene& scene, const Json& args) -> Json {
    return symbol::DrawTriangleHachures(scene.Kept<symbol::HachureState>(args.at(0).get<std::string>()),
                                        PointOf(args.at(1)), PointOf(args.at(2)), PointOf(args.at(3)),
                                        args.at(4).get<int>());
});

}  // namespace
}  // namespace zm::vectors
