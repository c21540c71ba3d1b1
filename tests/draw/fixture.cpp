#include "tests/draw/fixture.h"

#include "config/state.h"
#include "draw/state.h"
#include "dwg/writer/state.h"
#include "runtime/profile/project.h"
#include "runtime/state.h"
#include "runtime/text/gbk.h"
#include "zenromath/geometry.h"
#include "zenromath/runtime.h"

namespace zm::test {
namespace {

void ResetAll() {
    draw::ResetState();
    config::ResetState();
    runtime::state().project = {};
    runtime::state().projectStarted = false;
    SetMINI(1e-8);
}

std::string PathText(const std::filesystem::path& path) {
    std::string text = gbk::FromUtf8(path.string());
    for (char& c : text)
        if (c == '/') c = '\\';
    return text;
}

}  // namespace

DrawTest::DrawTest() {
    ResetAll();
}

DrawTest::~DrawTest() {
    notes.reset();
    context.reset();
    ResetAll();
}

CTqDraw& DrawTest::MakeContext(int type) {
    context.reset();
    SelectWorkingTqDC(nullptr);
    context = std::make_unique<CTqDraw>(type);
    context->SetViewDrawDC(&device, 10.0, 0.0, 0.0, 800, 600, 0);
    return *context;
}

void DrawTest::StartProject() {
    if (m_home != nullptr) return;
    m_home = std::make_unique<ScopedCurrentDir>(std::filesystem::current_path());
    runtime::Project();
    const std::string directory = PathText(scratch.path());
    numbers::Print(runtime::Project().moduleDirectory, 256, "%s", directory.c_str());
    numbers::Print(runtime::Project().machineDirectory, 256, "%s", directory.c_str());
    Writable name(directory + "\\project");
    Writable ext("ini");
    _LFInit(name, ext, nullptr);
}

void DrawTest::LoadLayers() {
    WriteFile(scratch / "project.ini", "[LayerSet]\nLayers=2\nLayer1=ROADS 100 199 4 1\nLayer2=WATER 200 299 9 1\n");
    WriteFile(scratch / "neworv.ini", "[PenWidth]\nDefault=25\n120=50\n200=35\n");
    StartProject();
    ReadCengCi();
}

void DrawTest::LoadFonts() {
    WriteFile(scratch / "Orvnote.cod",
              "[NOTE CLASS]\nTOTAL=3\nCWEIGHT=1\nC01=0,DEFAULT,7,3,20,18,2,1,321,default\n"
              "C02=A,NAMES,2,3,30,28,3,2,1,names\nC03=B,LEANS,2,3,30,28,3,4,1,names\n"
              "[SCRIPT BOX]\nDECMIN=5\nDGT1MIN=3\n[FONT NAME]\nSCREENFONT=Arial\n"
              "1=SimSun,STANDARD,hztxt,0,\n1C=400 0 0 134 1 2 3 49\n"
              "2=FangSong,NOTES,txt,1,\n2C=700 1 0 134 0 0 0 2\n"
              "4=Courier New,LEAN,romans,2,\n4C=300 0 1 0 3 2 1 10\n");
    StartProject();
    notes = std::make_unique<TqNoteLayBase>();
}

std::vector<std::string> DrawTest::Recorded(CTqDraw& dc) {
    std::vector<std::string> commands;
    CStringArray* list = dc.GetTqDCString();
    for (int i = 0; i < list->GetSize(); ++i) commands.emplace_back(list->GetAt(i).GetString());
    list->RemoveAll();
    return commands;
}

}  // namespace zm::test
