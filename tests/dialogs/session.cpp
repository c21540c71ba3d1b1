#include "tests/dialogs/session.h"

#include <cstring>
#include <filesystem>
#include <sstream>
#include <stdexcept>

#include "runtime/text/gbk.h"
#include "tests/support/scratch.h"
#include "zenromath/dialogs.h"

namespace fs = std::filesystem;

namespace zm::vectors {
namespace {

constexpr int kWidthTable = 1038;

// A name with this mark tells a reading, and is not compared.
bool IsReading(const std::string& name) {
    return name.ends_with('?');
}

// The object under a name, an empty one if there is none.
const Json& Members(const Json& object, const std::string& name) {
    static const Json kNone = Json::object();
    return object.contains(name) ? object.at(name) : kNone;
}

std::string Trim(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// A list as it stands, or {"count", "at"} of a long one.
bool ListHas(const Json& expected, const Json& found) {
    if (expected.is_array()) return expected == found;
    if (expected.at("count") != found.size()) return false;
    for (const auto& [place, value] : expected.at("at").items())
        if (found.at(static_cast<std::size_t>(std::stoi(place))) != value) return false;
    return true;
}

// The sections of a profile file: lists of key and value.
Json Sections(const std::string& bytes) {
    Json sections = Json::object();
    std::string name;
    std::istringstream lines(bytes);
    for (std::string line; std::getline(lines, line);) {
        if (line.ends_with('\r')) line.pop_back();
        if (line.starts_with('[')) {
            name = line.substr(1, line.find(']') - 1);
            sections[name] = Json::array();
        } else if (const std::size_t equals = line.find('='); equals != std::string::npos) {
            sections[name].push_back(
                {SceneText(Trim(line.substr(0, equals))), SceneText(Trim(line.substr(equals + 1)))});
        }
    }
    return sections;
}

// A text of the record in the form of SceneText, whichever form it has there.
Json Canonical(const Json& value) {
    if (value.is_object() && value.contains("gbk")) return SceneText(FromHex(value.at("gbk").get<std::string>()));
    if (value.is_array()) {
        Json list = Json::array();
        for (const Json& item : value) list.push_back(Canonical(item));
        return list;
    }
    if (value.is_object()) {
        Json object = Json::object();
        for (const auto& [name, item] : value.items()) object[name] = Canonical(item);
        return object;
    }
    return value;
}

Json ChosenFont(const LOGFONTA& f) {
    return Json{Json{f.lfWeight, f.lfUnderline, f.lfStrikeOut, f.lfCharSet, f.lfOutPrecision, f.lfClipPrecision,
                     f.lfQuality, f.lfPitchAndFamily},
                SceneText(f.lfFaceName)};
}

void TakeFont(const Json& chosen, LOGFONTA& f) {
    const Json& numbers = chosen.at(0);
    f.lfWeight = numbers.at(0).get<LONG>();
    BYTE* const bytes[7] = {&f.lfUnderline,     &f.lfStrikeOut, &f.lfCharSet,       &f.lfOutPrecision,
                            &f.lfClipPrecision, &f.lfQuality,   &f.lfPitchAndFamily};
    for (std::size_t i = 0; i < 7; ++i) *bytes[i] = numbers.at(i + 1).get<BYTE>();
    std::memset(f.lfFaceName, 0, sizeof f.lfFaceName);
    const std::string face = Bytes(chosen.at(1));
    std::memcpy(f.lfFaceName, face.data(), std::min(face.size(), sizeof f.lfFaceName - 1));
}

const Format kSessions(
    "dialogs", [](const std::string&, const Json& record) { return Session::IsSession(record); },
    [](const std::string&, const Json& record) {
        Session session(record);
        return session.Play(Session::OnLogic);
    });

}  // namespace

// ---- The logic itself ----

const dialogs::Control& LogicHand::ControlOf(int id) const {
    for (const dialogs::Control& control : m_dialog.layout().controls)
        if (control.id == id) return control;
    throw std::runtime_error("no control " + std::to_string(id));
}

void LogicHand::Type(int id, const std::string& text) {
    const int limit = ControlOf(id).limit;
    std::size_t end = 0;
    for (int characters = 0; end < text.size() && (limit == 0 || characters < limit); ++characters)
        end += gbk::IsLead(text[end]) && end + 1 < text.size() ? 2 : 1;
    m_dialog.field(id).text = text.substr(0, end);
}

void LogicHand::Select(int id, int row) {
    m_dialog.field(id).rows.selected = row;
    m_dialog.RowChanged(id);
}

void LogicHand::Click(int id, int row) {
    dialogs::Rows& rows = m_dialog.field(id).rows;
    if (row >= 0) rows.selected = rows.focused = row;
    m_dialog.RowClicked(id);
}

void LogicHand::Press(int id) {
    for (const dialogs::Control& control : m_dialog.layout().controls)
        if (control.id != -1) m_dialog.field(control.id).rows.reveal = dialogs::Rows::kNone;
    m_dialog.Pressed(id);
}

std::vector<std::string> LogicHand::Rows(int id) const {
    std::vector<std::string> texts;
    const dialogs::Rows& rows = m_dialog.field(id).rows;
    for (int row = 0; row < rows.count(); ++row) texts.push_back(rows.at(row));
    return texts;
}

std::vector<std::pair<std::string, int>> LogicHand::Columns(int id) const {
    std::vector<std::pair<std::string, int>> columns;
    for (const dialogs::Column& column : ControlOf(id).columns) columns.emplace_back(column.title, column.width);
    return columns;
}

std::array<int, 3> LogicHand::Sample() const {
    const auto colour = static_cast<unsigned int>(m_dialog.Painted()->colour);
    return {static_cast<int>(colour & 0xFF), static_cast<int>(colour >> 8 & 0xFF),
            static_cast<int>(colour >> 16 & 0xFF)};
}

std::optional<int> LogicHand::Revealed(int id) const {
    return m_dialog.field(id).rows.reveal;
}

// ---- A session ----

class Session::SessionHost : public test::TestHost {
 public:
    SessionHost(Session& session, const Stage& stage) : m_session(session), m_stage(stage) {}

    int ShowBox(const char* text, const char* title, unsigned int type) override {
        const Json recorded = m_session.Step().value("answers", Json::array());
        const bool asks = (type & 0xF) == MB_YESNO;
        answers.clear();
        if (asks && m_asked < recorded.size()) answers.push_back(recorded[m_asked] == "yes" ? IDYES : IDNO);
        m_asked += asks ? 1 : 0;
        return TestHost::ShowBox(text, title, type);
    }
    bool RunDialog(dialogs::Dialog& dialog) override {
        inForce = m_source == &m_library;
        return m_stage(dialog, [this](Hand& hand) { m_session.PlayOpen(hand); });
    }
    void* PutResourceSource(void* source) override { return std::exchange(m_source, source); }
    void* LibraryModule() override { return &m_library; }
    bool PickFont(HWND, LOGFONTA& font) override {
        chooser = ChosenFont(font);
        const Json chosen = m_session.Step().value("font", Json());
        if (chosen.is_null()) return false;
        TakeFont(chosen, font);
        return true;
    }
    void BeginStep() {
        boxes.clear();
        beeps = 0;
        m_asked = 0;
        chooser = nullptr;
    }
    bool SourceIsBack() const { return m_source == &m_application; }

    Json chooser;
    bool inForce = false;

 private:
    Session& m_session;
    const Stage& m_stage;
    std::size_t m_asked = 0;
    char m_application = 0;
    char m_library = 0;
    void* m_source = &m_application;
};

bool Session::IsSession(const Json& record) {
    return record.is_object() && record.contains("dialog") && record.contains("steps");
}

bool Session::OnLogic(dialogs::Dialog& dialog, const std::function<void(Hand&)>& play) {
    LogicHand hand(dialog);
    play(hand);
    return true;
}

Session::Session(const Json& record) : m_record(record), m_scene(record) {}
Session::~Session() = default;

Outcome Session::Play(const Stage& stage) {
    const test::ScopedCurrentDir home(fs::current_path());
    try {
        m_scene.Start();
        m_host = std::make_unique<SessionHost>(*this, stage);
        for (m_step = 0; m_step < m_record.at("steps").size(); ++m_step) RunStep();
        CompareCalls();
    } catch (const std::exception& error) {
        return {false, "step " + std::to_string(m_step) + ": " + error.what()};
    }
    return {};
}

void Session::RunStep() {
    BeginStep();
    if (Step().at("do") == "file") {
        test::WriteFile(m_scene.FilePath(Step().at("name").get<std::string>()), Bytes(Step().at("text")));
        return;
    }
    if (Step().at("do") != "open") throw std::runtime_error("no dialog is open");
    CallEntry();
    if (!m_host->inForce) throw std::runtime_error("the library was not the source of resources");
    if (!m_host->SourceIsBack()) throw std::runtime_error("the previous source of resources did not come back");
}

void Session::CallEntry() {
    static const std::map<std::string, int (*)()> kEntries = {{"OpenCengciDlg", OpenCengciDlg},
                                                              {"OpenLineWidthDlg", OpenLineWidthDlg},
                                                              {"OpenNoteClassDlg", OpenNoteClassDlg},
                                                              {"OpenNoteFontDlg", OpenNoteFontDlg},
                                                              {"SetSysColorSet", SetSysColorSet}};
    const auto entry = Step().at("entry").get<std::string>();
    int result = 0;
    std::optional<std::string> value;
    if (entry == "ExecOneEdit") {
        CString text(Bytes(Step().at("value")).c_str());
        const Json title = Step().value("title", Json());
        const std::string titleText = title.is_null() ? "" : Bytes(title);
        result = ExecOneEdit(title.is_null() ? nullptr : titleText.c_str(), text);
        value = text.GetString();
    } else {
        result = kEntries.at(entry)();
    }
    // The step that closed the dialog.
    const Json& then = Step().at("then");
    Expect("open", then.at("open"), false);
    if (then.contains("result")) Expect("result", then.at("result"), result);
    if (then.contains("value")) Expect("value", Canonical(then.at("value")), SceneText(*value));
    CompareEvents(then);
}

// From the open window to the step that closes it; that one is compared when the entry function has returned.
void Session::PlayOpen(Hand& hand) {
    m_known = Json::object();
    const std::size_t end = m_record.at("steps").size();
    while (true) {
        const Json& then = Step().at("then");
        Expect("open", then.at("open"), true);
        CompareEvents(then);
        CompareView(hand, then);
        if (m_step + 1 >= end) throw std::runtime_error("the session ends with an open dialog");
        ++m_step;
        BeginStep();
        Do(hand);
        if (!hand.IsOpen()) return;
    }
}

void Session::Do(Hand& hand) {
    const Json& step = Step();
    const auto what = step.at("do").get<std::string>();
    const int id = step.value("id", 0);
    if (what == "type") return hand.Type(id, Bytes(step.at("text")));
    if (what == "check") return hand.Check(id, step.at("on") == 1);
    if (what == "select") return hand.Select(id, step.at("row").get<int>());
    if (what == "click") return hand.Click(id, step.at("row").get<int>());
    if (what == "focus") return hand.Focus(id, step.at("row").get<int>());
    if (what == "press") return hand.Press(id);
    if (what == "escape") return hand.Escape();
    if (what == "enter") return hand.Enter();
    if (what == "file")
        return test::WriteFile(m_scene.FilePath(step.at("name").get<std::string>()), Bytes(step.at("text")));
    throw std::runtime_error("nobody can do this: " + what);
}

void Session::BeginStep() {
    if (m_host != nullptr) m_host->BeginStep();
    m_files = Files();
}

void Session::Fail(const std::string& what, const Json& expected, const Json& found) const {
    const auto shown = [](const Json& value) { return value.dump(-1, ' ', false, Json::error_handler_t::replace); };
    throw std::runtime_error(what + ": expected " + shown(expected) + ", found " + shown(found));
}

void Session::Expect(const std::string& what, const Json& expected, const Json& found) const {
    if (expected != found) Fail(what, expected, found);
}

void Session::CompareEvents(const Json& then) {
    if (!then.contains("beeps?")) Expect("beeps", then.value("beeps", 0), m_host->beeps);
    const Json messages = then.value("messages", Json::array());
    if (!then.contains("messages?")) {
        Expect("number of messages", messages.size(), m_host->boxes.size());
        for (std::size_t i = 0; i < messages.size(); ++i) {
            const test::ShownBox& box = m_host->boxes[i];
            const Json found = {{"text", SceneText(box.text)}, {"title", SceneText(box.title)}, {"type", box.type}};
            for (const auto& [name, value] : messages[i].items())
                if (!IsReading(name)) Expect("message " + name, Canonical(value), found.at(name));
        }
    }
    if (!then.contains("chooser?")) Expect("chooser", Canonical(then.value("chooser", Json())), m_host->chooser);
    CompareFiles(then);
}

std::map<std::string, std::string> Session::Files() const {
    std::map<std::string, std::string> files;
    const auto collect = [&](const std::string& prefix, const fs::path& directory) {
        for (const auto& entry : fs::directory_iterator(directory))
            if (entry.is_regular_file())
                files[prefix + entry.path().filename().string()] = test::ReadFile(entry.path());
    };
    collect("", m_scene.ProjectDirectory());
    collect("module/", m_scene.ModuleDirectory());
    collect("windows/", m_scene.WindowsDirectory());
    return files;
}

void Session::CompareFiles(const Json& then) {
    if (then.contains("files?")) return;
    const Json expected = then.value("files", Json::object());
    const std::map<std::string, std::string> now = Files();
    for (const auto& [name, sections] : expected.items()) {
        if (now.count(name) == 0) Fail("file " + name, Canonical(sections), nullptr);
        const Json found = Sections(now.at(name));
        for (const auto& [section, keys] : sections.items()) {
            const Json foundKeys = found.value(section, Json());
            if (!ListHas(Canonical(keys), foundKeys))
                Fail("file " + name + ", section " + section, Canonical(keys), foundKeys);
        }
        Expect("number of sections of " + name, sections.size(), found.size());
    }
    for (const auto& [name, bytes] : now)
        if (!expected.contains(name) && (m_files.count(name) == 0 || m_files.at(name) != bytes))
            Fail("file " + name, "as before", SceneText(bytes));
    for (const auto& [name, bytes] : m_files)
        if (now.count(name) == 0) Fail("file " + name, "still there", nullptr);
}

void Session::CompareView(Hand& hand, const Json& then) {
    if (then.contains("title")) Expect("title", Canonical(then.at("title")), SceneText(hand.Title()));
    for (const auto& [id, label] : Members(then, "labels").items())
        Expect("label " + id, Canonical(label), SceneText(hand.Label(std::stoi(id))));
    for (const auto& [id, columns] : Members(then, "columns").items()) {
        Json found = Json::array();
        for (const auto& [title, width] : hand.Columns(std::stoi(id))) found.push_back({SceneText(title), width});
        Expect("columns " + id, Canonical(columns), found);
    }
    if (then.contains("reveal"))
        if (const std::optional<int> seen = hand.Revealed(kWidthTable)) Expect("reveal", then.at("reveal"), *seen);
    if (then.contains("sample")) {
        const std::array<int, 3> sample = hand.Sample();
        Expect("sample", then.at("sample"), Json(sample));
    }
    Learn(then);
    CompareKnown(hand);
}

// What is named stands from now on; what is named as a reading is not known until it is named again.
void Session::Learn(const Json& then) {
    for (const std::string kind : {"rows", "selected", "focused", "edits", "checks", "visible"}) {
        for (const auto& [id, value] : Members(then, kind).items()) {
            if (IsReading(id))
                m_known[kind].erase(id.substr(0, id.size() - 1));
            else
                m_known[kind][id] = Canonical(value);
        }
        for (const auto& [id, value] : Members(then, kind + "?").items())
            if (m_known.contains(kind)) m_known[kind].erase(id);
    }
}

void Session::CompareKnown(Hand& hand) const {
    const auto each = [this](const std::string& kind, const std::function<void(int, const Json&)>& compare) {
        if (!m_known.contains(kind)) return;
        for (const auto& [id, value] : m_known.at(kind).items()) compare(std::stoi(id), value);
    };
    each("rows", [&](int id, const Json& expected) {
        Json found = Json::array();
        for (const std::string& row : hand.Rows(id)) found.push_back(SceneText(row));
        if (!ListHas(expected, found)) Fail("rows " + std::to_string(id), expected, found);
    });
    each("selected",
         [&](int id, const Json& row) { Expect("selected " + std::to_string(id), row, hand.Selected(id)); });
    each("focused", [&](int id, const Json& row) { Expect("focused " + std::to_string(id), row, hand.Focused(id)); });
    each("edits", [&](int id, const Json& text) {
        if (!hand.IsVisible(id)) return;
        const auto trimmed = [](const Json& value) { return SceneText(Trim(Bytes(value))); };
        Expect("edit " + std::to_string(id), trimmed(text), trimmed(SceneText(hand.Edit(id))));
    });
    each("checks", [&](int id, const Json& on) { Expect("check " + std::to_string(id), on == 1, hand.IsChecked(id)); });
    each("visible",
         [&](int id, const Json& on) { Expect("visible " + std::to_string(id), on == 1, hand.IsVisible(id)); });
}

void Session::CompareCalls() {
    const Json calls = m_record.value("calls", Json::array());
    for (std::size_t i = 0; i < calls.size(); ++i)
        Expect("result of " + calls[i].dump(), Canonical(m_record.at("results").at(i)), m_scene.MakeCall(calls[i]));
}

}  // namespace zm::vectors
