#include "tools/zenro/view/symbol_keeper.h"

#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <algorithm>

#include "tools/kit/json_numbers.h"
#include "tools/kit/shared_picture.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/zenro/map/layer_looks.h"
#include "tools/zenro/map/library_session.h"
#include "tools/zenro/verbs/verbs.h"
#include "tools/zenro/view/answers.h"
#include "tools/zenro/view/frames.h"
#include "tools/zenro/view/symbol_bench.h"
#include "zenromath/config.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

namespace lib = symbols;

std::vector<lib::Edit> EditsOf(const Json& question) {
    std::vector<lib::Edit> edits;
    for (const Json& one : question.value("edits", Json::array()))
        edits.push_back({WholeOf<int>(one.at("code")), one.at("text").get<std::string>()});
    return edits;
}

Json AsJson(const lib::Symbol& s) {
    return {{"code", s.code}, {"kind", s.kind}, {"note", s.note}, {"text", lib::TextOf(s)}};
}

lib::Sample SampleOf(const std::string& name) {
    if (name == "line") return lib::Sample::line;
    return name == "area" ? lib::Sample::area : lib::Sample::alone;
}

class SymbolKeeper {
 public:
    SymbolKeeper(const std::string& project, int shared)
        : m_out(dup(STDOUT_FILENO)),
          m_memory(mmap(nullptr, kSharedBytes, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_NORESERVE, shared, 0)),
          m_requests(STDIN_FILENO) {
        dup2(STDERR_FILENO, STDOUT_FILENO);  // what the library prints is no message
        if (m_memory == MAP_FAILED) throw Failure(kFailed, Phrase("the window's memory cannot be reached."));
        m_looks = LooksOfLayers(project);
    }

    void Run() {
        while (m_requests.Take())
            while (const auto request = m_requests.Next()) On(Json::parse(*request));
    }

 private:
    void On(const Json& question) {
        Json answer = Json::object();
        try {
            answer = Answer(question.at("do").get<std::string>(), question);
        } catch (const std::exception& failure) {
            answer["error"] = failure.what();
        }
        answer["is"] = "answer";
        answer["id"] = question.value("id", 0);
        if (!SendFrame(m_out, answer.dump(-1, ' ', false, Json::error_handler_t::replace))) _exit(0);
    }

    Json Answer(const std::string& what, const Json& question) {
        m_bench.Take(question.at("file").get<std::string>(), EditsOf(question));
        if (what == "open") return Open(question.at("file").get<std::string>());
        if (what == "compare") return Compare(question.at("other").get<std::string>());
        if (what == "save") {
            m_bench.Save(question.at("to").get<std::string>());
            return Json::object();
        }
        const int code = WholeOf<int>(question.at("code"));
        return what == "draw" ? Draw(code, question) : Check(code);
    }

    Json Open(const std::string& file) {
        std::error_code error;
        Json list = Json::array();
        for (const lib::Symbol& s : m_bench.symbols()) list.push_back(AsJson(s));
        return {{"symbols", list}, {"shipped", fs::equivalent(PathOf(file), PathOf(ShippedSymbols()), error)}};
    }

    Json Check(int code) {
        Json findings = Json::array();
        for (const lib::Finding& f : m_bench.Check(code))
            findings.push_back(
                {{"line", f.line}, {"code", f.code}, {"lost", f.weight == lib::Weight::lost}, {"text", f.text}});
        Json answer = {{"findings", findings}};
        const lib::Symbol* symbol = m_bench.Find(code);
        if (symbol == nullptr) return answer;
        answer["kind"] = symbol->kind;
        answer["note"] = symbol->note;
        answer["size"] = symbol->size;
        answer["width"] = LookOf(*symbol).width;
        return answer;
    }

    Json Draw(int code, const Json& question) {
        const lib::Symbol* symbol = m_bench.Find(code);
        if (symbol == nullptr) return {{"nothing", true}};
        SampleView view;
        view.sample = SampleOf(question.at("sample").get<std::string>());
        view.width = WholeOf<int>(question.at("width"));
        view.height = WholeOf<int>(question.at("height"));
        view.x = question.at("x").get<double>();
        view.y = question.at("y").get<double>();
        view.perMillimetre = question.at("perMillimetre").get<double>();
        if (view.width < 1 || view.height < 1 ||
            static_cast<std::size_t>(view.width) * static_cast<std::size_t>(view.height) > kMostPixels)
            throw Failure(kUsage, Phrase("a picture needs a width and a height"));
        std::string message;
        const bool drawn = m_bench.Draw(*symbol, LookOf(*symbol), view, PixelsOf(m_memory, 0), message);
        return {
            {"nothing", !drawn},  {"x", view.x},         {"y", view.y},          {"perMillimetre", view.perMillimetre},
            {"message", message}, {"width", view.width}, {"height", view.height}};
    }

    Json Compare(const std::string& other) {
        const fs::path path = PathOf(other);
        if (!IsSymbolLibrary(path))
            throw Failure(kNoInput, Phrase("{0}: is no symbol library; it has no line such as \"*12 G\".", other));
        const lib::Comparison found =
            lib::Compare(m_bench.symbols(), lib::ReadSymbols(LibraryPath(fs::absolute(path)).c_str()));
        Json answer = {
            {"changed", Json::array()}, {"here", Json::array()}, {"there", Json::array()}, {"alike", found.alike}};
        for (const auto& [here, there] : found.changed)
            answer["changed"].push_back({{"code", here.code}, {"text", lib::ChangesOf(here, there)}});
        for (const lib::Symbol& s : found.onlyFirst) answer["here"].push_back(s.code);
        for (const lib::Symbol& s : found.onlySecond) answer["there"].push_back(AsJson(s));
        return answer;
    }

    const lib::SheetOptions::Look& LookOf(const lib::Symbol& symbol) const {
        return m_looks[static_cast<std::size_t>(symbol.code)];
    }

    int m_out;
    void* m_memory;
    FrameReader m_requests;
    std::vector<lib::SheetOptions::Look> m_looks;
    SymbolBench m_bench;
};

}  // namespace

std::string ShippedSymbols() {
    return (PathOf(ModuleDirectory()) / "symbol.dat").string();
}

void KeepSymbols(const std::string& project, int shared, Context&) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    signal(SIGPIPE, SIG_IGN);
    SymbolKeeper(project, shared).Run();
}

}  // namespace zm::tool
