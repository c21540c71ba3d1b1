// zenro settings: the settings dialogs in windows, and their tables as lists.
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "config/not_saved.h"
#include "tools/kit/qt_module.h"
#include "tools/kit/report.h"
#include "tools/kit/text.h"
#include "tools/kit/tool_host.h"
#include "tools/kit/translation.h"
#include "tools/zenro/map/library_session.h"
#include "tools/zenro/settings/listing.h"
#include "tools/zenro/verbs/verbs.h"
#include "zenromath/config.h"
#include "zenromath/dialogs.h"
#include "zenromath/runtime.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

struct SettingsJob {
    std::string project, notes;
    bool list = false;
};

// The tables of the project and of the user's own files, as long as one works on them.
class Tables {
 public:
    Tables(const SettingsJob& job, bool needsNotes, ToolHost& host) {
        NameProject(job.project);
        ReadLayers();
        if (needsNotes) m_notes = OpenNotes(job.notes, host);
    }
    ~Tables() {
        m_notes.reset();
        DeleteCengCi8Dlg();
    }
    Tables(const Tables&) = delete;
    Tables& operator=(const Tables&) = delete;
    TqNoteLayBase& notes() { return *m_notes; }

 private:
    std::unique_ptr<TqNoteLayBase> m_notes;
};

// One of the five: its window, its table, the file that it saves.
struct Kind {
    const char* name;
    const char* help;
    bool needsNotes;
    int (*open)();
    Listing (*list)(Tables&);
    std::string (*file)(Tables&);
};

std::string ProjectFile(Tables&) {
    char path[256] = {};
    char extension[] = ".ini";
    _LFExt(path, extension);
    return FromLibraryPath(path).string();
}

std::string NotesFile(Tables& tables) {
    return FromLibraryPath(tables.notes().GetFile()).string();
}

constexpr char kPensFile[] = "neworv.ini";

const Kind kKinds[] = {
    {"layers", N_("Layers of the project: names, codes, colours, shown or not"), false, OpenCengciDlg,
     [](Tables&) { return ListLayers(); }, ProjectFile},
    {"pens", N_("Pen widths by feature code, 0.01 mm"), false, OpenLineWidthDlg, [](Tables&) { return ListPens(); },
     [](Tables&) { return FromLibraryPath(GetZenroINIPath(kPensFile, -1)).string(); }},
    {"notes", N_("Note classes"), true, OpenNoteClassDlg, [](Tables& tables) { return ListNotes(tables.notes()); },
     NotesFile},
    {"fonts", N_("Fonts of the notes"), true, OpenNoteFontDlg, [](Tables& tables) { return ListFonts(tables.notes()); },
     NotesFile},
    {"colours", N_("The palette of the layers' colour numbers"), false, SetSysColorSet,
     [](Tables&) { return ListColours(); },
     [](Tables&) { return FromLibraryPath(GetZenroINIPath(kPensFile, 3)).string(); }},
};

// A host with windows that hands the boxes on and remembers whether one named a file that could not be written.
class WatchedHost : public Host {
 public:
    explicit WatchedHost(Host& windows) : m_windows(windows), m_previous(SetHost(this)) {}
    ~WatchedHost() override { SetHost(m_previous); }
    WatchedHost(const WatchedHost&) = delete;
    WatchedHost& operator=(const WatchedHost&) = delete;

    int ShowBox(const char* text, const char* title, unsigned int type) override {
        m_failed = m_failed || std::string(text).find(config::kNotWritten) != std::string::npos;
        return m_windows.ShowBox(text, title, type);
    }
    int ShowAppBox(const char* text, unsigned int type, unsigned int help) override {
        return m_windows.ShowAppBox(text, type, help);
    }
    void Beep() override { m_windows.Beep(); }
    bool IsWindow(HWND window) override { return m_windows.IsWindow(window); }
    bool PickFont(HWND owner, LOGFONTA& font) override { return m_windows.PickFont(owner, font); }
    bool RunDialog(dialogs::Dialog& dialog) override { return m_windows.RunDialog(dialog); }
    void* PutResourceSource(void* module) override { return m_windows.PutResourceSource(module); }
    void* LibraryModule() override { return m_windows.LibraryModule(); }
    [[noreturn]] void EndProcess(int status) override { throw LibraryStop{status}; }
    bool failed() const { return m_failed; }

 private:
    Host& m_windows;
    Host* m_previous;
    bool m_failed = false;
};

Host& Windows() {
    char error[256] = {};
    Host* host = LoadQt().windowHost([] { return StopRequested() ? 1 : 0; }, error, sizeof error);
    if (host == nullptr)
        throw Failure(kFailed,
                      Phrase("no window can be shown: {0}. Set DISPLAY, or take --list to read the table.", error));
    return *host;
}

std::string Content(const fs::path& file) {
    std::error_code error;
    return fs::is_regular_file(file, error) ? ReadWholeFile(file, 1u << 26) : std::string();
}

void Tell(Context& context, const std::string& file, bool saved) {
    if (context.json) {
        const nlohmann::ordered_json out = {{"saved", saved}, {"file", file}};
        WriteLine(out.dump(2, ' ', false, nlohmann::json::error_handler_t::replace));
    } else {
        PrintText(Phrase(saved ? N_("{0} written") : N_("{0} left as it was"), file));
    }
}

void Open(Context& context, const Kind& kind, Tables& tables) {
    Host& windows = Windows();
    const std::string file = kind.file(tables);
    const std::string before = Content(PathOf(file));
    bool failed = false;
    int result = 0;
    {
        WatchedHost host(windows);
        result = kind.open();
        failed = host.failed();
    }
    CheckStop();
    if (failed) throw Failure(kNoOutput, Phrase("{0}{1}the changes are not saved.", file, config::kNotWritten));
    Tell(context, file, result == 1 || Content(PathOf(file)) != before);
}

void List(Context& context, const Kind& kind, Tables& tables) {
    const Listing listing = kind.list(tables);
    if (!context.json) {
        WriteLines(AsText(listing));
        return;
    }
    nlohmann::ordered_json out = {{"file", kind.file(tables)}};
    out.update(AsJson(listing, kind.name));
    WriteLine(out.dump(2, ' ', false, nlohmann::json::error_handler_t::replace));
}

void Settings(Context& context, const Kind& kind, const SettingsJob& job) {
    if (!job.list) Windows();  // before anything is read
    Tables tables(job, kind.needsNotes, context.host);
    job.list ? List(context, kind, tables) : Open(context, kind, tables);
}

}  // namespace

void AddSettingsVerb(Verb app, Context& context) {
    const Verb verb = app.AddVerb("settings", "Edit layers, pen widths, notes, fonts and colours in a window");
    verb.NeedsVerb();
    for (const Kind& kind : kKinds) {
        const Verb sub = verb.AddVerb(kind.name, kind.help);
        const auto job = std::make_shared<SettingsJob>();
        sub.AddOption("--project", job->project, "Project file with the layers");
        if (kind.needsNotes) sub.AddOption("--notes", job->notes, "Note classes").Default("Orvnote.cod");
        sub.AddFlag("--list", job->list, "Print the table and open no window");
        AddCommonOptions(sub, context);
        sub.OnRun([&context, &kind, job] { Settings(context, kind, *job); });
    }
}

}  // namespace zm::tool
