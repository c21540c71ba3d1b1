#include "tests/vector_runner/scenes.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <set>
#include <stdexcept>

#include "runtime/files/system.h"
#include "runtime/profile/project.h"
#include "runtime/state.h"
#include "runtime/text/gbk.h"
#include "runtime/text/numbers.h"
#include "zenromath/runtime.h"

namespace fs = std::filesystem;

namespace zm::vectors {
namespace {

constexpr double kTolerance = 2e-6;            // absolute; recorded coordinates have six decimals
constexpr double kSymbolSizeTolerance = 2e-7;  // relative, for Get_G_Size of large symbols

struct Step {
    int order;
    std::vector<std::string> keys;
    std::function<void(Scene&, const Json&)> run;
};

struct Tables {
    std::multimap<int, std::function<void()>> resets;
    std::vector<Step> steps;
    std::map<std::string, SceneHandler> calls;
    std::map<std::string, std::function<Json(Scene&)>> outputs;
};

Tables& TheTables() {
    static Tables tables;
    return tables;
}

void ResetAll() {
    for (const auto& [order, reset] : TheTables().resets) reset();
}

// ---- Comparing ----

std::string Shown(const Json& value) {
    std::string text = value.dump(-1, ' ', false, Json::error_handler_t::replace);
    return text.size() > 200 ? text.substr(0, 200) + "..." : text;
}

bool IsAny(const Json& value) {
    return value.is_object() && value.size() == 1 && value.contains("any");
}

bool Same(const Json& expected, const Json& found, double relative) {
    if (IsAny(expected)) return true;
    if (expected.is_number() && found.is_number()) {
        if (expected.is_number_integer() && found.is_number_integer()) return expected == found;
        const double e = expected.get<double>();
        return std::abs(found.get<double>() - e) <= kTolerance * (1.0 + 1e-6) + relative * std::abs(e);
    }
    if (expected.is_array()) {
        if (!found.is_array() || found.size() != expected.size()) return false;
        for (std::size_t i = 0; i < expected.size(); ++i)
            if (!Same(expected[i], found[i], relative)) return false;
        return true;
    }
    if (expected.is_object() && found.is_object() && expected.size() == found.size()) {
        for (const auto& [key, value] : expected.items())
            if (!found.contains(key) || !Same(value, found.at(key), relative)) return false;
        return true;
    }
    return expected == found;
}

std::string Mismatch(const std::string& where, const Json& expected, const Json& found) {
    return where + ": expected " + Shown(expected) + ", found " + Shown(found);
}

std::string InAnyOrder(const std::string& name, const Json& expected, const Json& found) {
    std::vector<bool> taken(found.size(), false);
    for (const Json& item : expected) {
        std::size_t at = 0;
        while (at < found.size() && (taken[at] || !Same(item, found[at], 0.0))) ++at;
        if (at == found.size()) return name + ": nothing found like " + Shown(item);
        taken[at] = true;
    }
    for (std::size_t i = 0; i < found.size(); ++i)
        if (!taken[i]) return name + ": not expected: " + Shown(found[i]);
    return {};
}

std::string InOrder(const std::string& name, const Json& expected, const Json& found) {
    const std::size_t count = std::min(expected.size(), found.size());
    for (std::size_t i = 0; i < count; ++i)
        if (!Same(expected[i], found[i], 0.0))
            return Mismatch(name + "[" + std::to_string(i) + "]", expected[i], found[i]);
    if (expected.size() > count)
        return name + ": missing from place " + std::to_string(count) + " on: " + Shown(expected[count]);
    if (found.size() > count)
        return name + ": too much from place " + std::to_string(count) + " on: " + Shown(found[count]);
    return {};
}

// A number printed with a point, as the recording has it.
bool IsPrintedReal(const std::string& field, double& value) {
    if (field.find('.') == std::string::npos) return false;
    const char* end = nullptr;
    value = numbers::ReadReal(field.c_str(), &end);
    return end == field.c_str() + field.size();
}

// How many fields stand before a text that may hold colons itself.
int FieldsBeforeText(const std::string& command) {
    if (command.starts_with("Text:")) return 5;
    if (command.starts_with("Font:")) return 14;
    return -1;
}

bool IsScene(const Json& record) {
    return record.is_object() && record.contains("name") && record.contains("setup") && record.contains("calls") &&
           record.contains("expect");
}

bool IsKnown(const Json& record) {
    const Tables& tables = TheTables();
    std::set<std::string> keys;
    for (const Step& step : tables.steps) keys.insert(step.keys.begin(), step.keys.end());
    for (const auto& [key, value] : record.at("setup").items())
        if (keys.count(key) == 0 && !(value.is_number_integer() && value == 0)) return false;
    for (const Json& call : record.at("calls"))
        if (tables.calls.count(call.at(0).get<std::string>()) == 0) return false;
    static const std::set<std::string> kOwn = {"results", "messages", "arrays"};
    for (const auto& [name, value] : record.at("expect").items())
        if (kOwn.count(name) == 0 && tables.outputs.count(name) == 0) return false;
    return true;
}

const Format kScenes(
    "scenes", [](const std::string&, const Json& record) { return IsScene(record) && IsKnown(record); },
    [](const std::string&, const Json& record) {
        Scene scene(record);
        return scene.Run();
    });

const SceneReset kRuntimeReset(0, [] { runtime::ResetState(); });

}  // namespace

SceneReset::SceneReset(int order, std::function<void()> reset) {
    TheTables().resets.emplace(order, std::move(reset));
}

SceneSetup::SceneSetup(int order, std::initializer_list<const char*> keys,
                       std::function<void(Scene&, const Json&)> run) {
    auto& steps = TheTables().steps;
    const auto behind = std::find_if(steps.begin(), steps.end(), [order](const Step& s) { return s.order > order; });
    steps.insert(behind, {order, {keys.begin(), keys.end()}, std::move(run)});
}

SceneCall::SceneCall(const char* name, SceneHandler handler) {
    TheTables().calls[name] = std::move(handler);
}

SceneOutput::SceneOutput(const char* name, std::function<Json(Scene&)> collect) {
    TheTables().outputs[name] = std::move(collect);
}

Json SceneText(const std::string& text) {
    const bool plain =
        std::all_of(text.begin(), text.end(), [](char c) { return (c >= 0x20 && c < 0x7F) || c == '\t' || c == '\n'; });
    if (plain) return text;
    return Json{{"gbk", ToHex(text)}};
}

Json SceneText(const char* text) {
    return text != nullptr ? SceneText(std::string(text)) : Json();
}

std::vector<char> SceneBytes(const Json& text) {
    const std::string bytes = Bytes(text);
    std::vector<char> buffer(bytes.begin(), bytes.end());
    buffer.push_back('\0');
    return buffer;
}

Json SceneCommand(const std::string& command) {
    Json fields = Json::array();
    const int limit = FieldsBeforeText(command);
    std::size_t at = 0;
    while (true) {
        const bool rest = limit >= 0 && static_cast<int>(fields.size()) == limit;
        const std::size_t colon = rest ? std::string::npos : command.find(':', at);
        const std::string field = command.substr(at, colon == std::string::npos ? colon : colon - at);
        double value = 0.0;
        if (!rest && IsPrintedReal(field, value))
            fields.push_back(value);
        else
            fields.push_back(SceneText(field));
        if (colon == std::string::npos) return fields;
        at = colon + 1;
    }
}

// The state is reset before the test host is put in force, which is part of the state.
Scene::Scene(const Json& record) : m_record((ResetAll(), record)) {
    PlaceFiles();
}

Scene::~Scene() {
    while (!m_kept.empty()) m_kept.pop_back();
    ResetAll();
}

fs::path Scene::WindowsDirectory() const {
    return m_scratch.path() / "config";
}

std::string Scene::PathText(const fs::path& path) {
    const std::u8string utf8 = path.u8string();
    std::string text = gbk::FromUtf8({reinterpret_cast<const char*>(utf8.data()), utf8.size()});
    // A backslash may be the second byte of a character; a slash never is.
    std::replace(text.begin(), text.end(), '/', '\\');
    return text;
}

void* Scene::KeptPointer(const std::string& name) const {
    for (auto at = m_kept.rbegin(); at != m_kept.rend(); ++at)
        if (at->first == name) return at->second.get();
    throw std::runtime_error("the scene uses an object that it did not make: " + name);
}

bool Scene::IsKept(const std::string& name) const {
    return std::any_of(m_kept.begin(), m_kept.end(), [&](const auto& item) { return item.first == name; });
}

void Scene::End(const std::string& name) {
    for (auto at = m_kept.rbegin(); at != m_kept.rend(); ++at) {
        if (at->first != name) continue;
        const std::shared_ptr<void> object = std::move(at->second);
        m_kept.erase(std::next(at).base());
        return;
    }
    throw std::runtime_error("the scene ends an object that it did not make: " + name);
}

void Scene::Array(const std::string& name, const std::vector<double>& before, const std::vector<double>& after) {
    m_callArrays[name] = FromReals(after.data(), after.size());
    if (!Same(FromReals(before.data(), before.size()), m_callArrays[name], 0.0)) m_callArrays["changed"] = true;
}

void Scene::PlaceFiles() {
    fs::create_directories(ProjectDirectory());
    fs::create_directories(ModuleDirectory());
    fs::create_directories(WindowsDirectory());
    const Json files = m_record.value("files", Json::object());
    for (const auto& [name, text] : files.items()) test::WriteFile(FilePath(name), Bytes(text));
}

fs::path Scene::FilePath(const std::string& name) const {
    const std::size_t slash = name.find('/');
    const std::string place = slash == std::string::npos ? "" : name.substr(0, slash);
    fs::path directory = ProjectDirectory();
    if (place == "module") directory = ModuleDirectory();
    if (place == "windows") directory = WindowsDirectory();
    return directory / (slash == std::string::npos ? name : name.substr(slash + 1));
}

void Scene::Start() {
    runtime::StartProjectFiles();
    runtime::TqFileContext& project = runtime::Project();
    const std::string module = PathText(ModuleDirectory());
    numbers::Print(project.moduleDirectory, sizeof project.moduleDirectory, "%s", module.c_str());
    numbers::Print(project.iniDirectory, sizeof project.iniDirectory, "%s\\ZenroIni", module.c_str());
    std::string name = PathText(ProjectDirectory() / "project");
    std::string ext = "ini";
    _LFInit(name.data(), ext.data(), nullptr);
    for (const Step& step : TheTables().steps) step.run(*this, setup());
}

Json Scene::MakeCall(const Json& call) {
    Json args = call;
    const auto name = args.at(0).get<std::string>();
    args.erase(0);
    return TheTables().calls.at(name)(*this, args);
}

Outcome Scene::Run() {
    const test::ScopedCurrentDir home(fs::current_path());  // _LFInit moves the process
    std::vector<Json> results;
    const Json& calls = m_record.at("calls");
    try {
        Start();
        for (std::size_t i = 0; i < calls.size(); ++i) {
            m_callArrays = Json::object();
            results.push_back(MakeCall(calls[i]));
            const bool changed = m_callArrays.erase("changed") != 0;
            m_arrays[std::to_string(i)] = m_callArrays;
            if (changed) m_changed[std::to_string(i)] = m_callArrays;
        }
    } catch (const test::ProcessEnded& end) {
        std::string text = "the process ended with status " + std::to_string(end.status) + " in call " +
                           std::to_string(results.size());
        if (!m_host.boxes.empty()) text += ", last message: " + Shown(SceneText(m_host.boxes.back().text));
        return {false, text};
    } catch (const std::exception& error) {
        return {false, "call " + std::to_string(results.size()) + ": " + error.what()};
    }
    const std::string difference = CompareAll(results);
    return {difference.empty(), difference};
}

std::string Scene::CompareAll(const std::vector<Json>& results) {
    const Json& expect = m_record.at("expect");
    const Json& calls = m_record.at("calls");
    const Json& expectedResults = expect.at("results");
    if (expectedResults.size() != results.size())
        return "the scene expects another number of results than it has calls";
    for (std::size_t i = 0; i < results.size(); ++i) {
        const double relative = calls[i].at(0) == "Get_G_Size" ? kSymbolSizeTolerance : 0.0;
        if (!Same(expectedResults[i], results[i], relative))
            return Mismatch("result " + std::to_string(i) + " of " + Shown(calls[i]), expectedResults[i], results[i]);
    }

    Json messages = Json::array();
    for (const auto& box : m_host.boxes) messages.push_back(SceneText(box.text));
    if (expect.contains("messages")) {
        const std::string text = InOrder("messages", expect.at("messages"), messages);
        if (!text.empty()) return text;
    }

    const Json expectedArrays = expect.value("arrays", Json::object());
    for (const auto& [index, arrays] : expectedArrays.items())
        for (const auto& [name, values] : arrays.items()) {
            const auto found = m_arrays.find(index);
            const Json now = found != m_arrays.end() ? found->second.value(name, Json()) : Json();
            if (!Same(values, now, 0.0)) return Mismatch("array " + name + " after call " + index, values, now);
        }
    for (const auto& [index, arrays] : m_changed)
        if (!expectedArrays.contains(index)) return "call " + index + " changed its arrays: " + Shown(arrays);

    for (const auto& [name, expected] : expect.items()) {
        const auto output = TheTables().outputs.find(name);
        if (output == TheTables().outputs.end()) continue;
        const Json found = output->second(*this);
        Json wanted = expected;
        if (name == "recording") {
            wanted = Json::array();
            for (const Json& command : expected) wanted.push_back(SceneCommand(Bytes(command)));
        }
        std::string text;
        if (!wanted.is_array())
            text = Same(wanted, found, 0.0) ? std::string() : Mismatch(name, wanted, found);
        else if (m_record.value("unordered", false) && (name == "recording" || name == "writer"))
            text = InAnyOrder(name, wanted, found);
        else
            text = InOrder(name, wanted, found);
        if (!text.empty()) return text;
    }
    return {};
}

}  // namespace zm::vectors
