// Scenes: files, a set-up, a list of calls, and what must come of them. The frame places the files, runs the set-up and
// the calls and compares; what a set-up key or a call means is registered by the folder that it belongs to:
//
//   static const SceneReset kReset(20, [] { zm::config::ResetState(); });
//   static const SceneSetup kNotes(20, {"notes"}, [](Scene& scene, const Json& setup) {
//       if (setup.value("notes", 0) == 1) scene.Keep("notes", std::make_shared<TqNoteLayBase>());
//   });
//   static const SceneCall kWidth("GetPenWidth", [](Scene&, const Json& args) -> Json {
//       return GetPenWidth(args.at(0).get<int>());
//   });
//   static const SceneOutput kRecording("recording", [](Scene& scene) -> Json { ... });
//
// Orders: runtime 0, geometry 5, dwg 10, config 20, symbol 30, draw 40. Set-up keys without a step, calls without a
// handler and expectations without an output make a scene count as not known.
#pragma once

#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/family_dirs.h"
#include "tests/support/scratch.h"
#include "tests/support/test_host.h"
#include "tests/vector_runner/registry.h"

namespace zm::vectors {

/// One scene while it runs.
class Scene {
 public:
    explicit Scene(const Json& record);
    /// Ends what was kept, the last first.
    ~Scene();
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    test::TestHost& host() { return m_host; }
    const Json& record() const { return m_record; }
    const Json& setup() const { return m_record.at("setup"); }
    /// The project directory; the project's own file is project.ini in it.
    std::filesystem::path ProjectDirectory() const { return m_scratch.path() / "project"; }
    std::filesystem::path ModuleDirectory() const { return m_scratch.path() / "module"; }
    std::filesystem::path WindowsDirectory() const;
    /// A file by its name in a record: bare, or behind "module/" or "windows/".
    std::filesystem::path FilePath(const std::string& name) const;
    /// The GBK path text of a file.
    static std::string PathText(const std::filesystem::path& path);

    /// Keeps an object under a name until End or the end of the scene. A name may be taken again after its End.
    template <class Type>
    Type& Keep(const std::string& name, std::shared_ptr<Type> object) {
        Type& kept = *object;
        m_kept.emplace_back(name, std::move(object));
        return kept;
    }
    /// The object kept under a name; throws if there is none.
    template <class Type>
    Type& Kept(const std::string& name) {
        return *static_cast<Type*>(KeptPointer(name));
    }
    bool IsKept(const std::string& name) const;
    /// Destroys the object kept under a name; throws if there is none.
    void End(const std::string& name);

    /// Reports a caller's array after the call that is running: what it was, and what it is now.
    void Array(const std::string& name, const std::vector<double>& before, const std::vector<double>& after);

    /// What the folders remember during a scene, by names of their own.
    std::map<std::string, Json>& notes() { return m_notes; }

    /// Names the project and runs the steps of the set-up.
    void Start();
    /// Makes one call: its name and its arguments.
    Json MakeCall(const Json& call);

    /// Runs set-up and calls and compares.
    Outcome Run();

 private:
    void* KeptPointer(const std::string& name) const;
    void PlaceFiles();
    std::string CompareAll(const std::vector<Json>& results);

    const Json& m_record;
    test::TestHost m_host;
    test::ScratchDir m_scratch;
    test::OwnConfigDirectory m_config{WindowsDirectory()};
    std::vector<std::pair<std::string, std::shared_ptr<void>>> m_kept;
    std::map<std::string, Json> m_notes;
    Json m_callArrays;                      // of the call that is running
    std::map<std::string, Json> m_arrays;   // by the call's index
    std::map<std::string, Json> m_changed;  // arrays that moved, by the call's index
};

/// Puts the state of a folder back to its start values; runs before the set-up and after the scene, in rising order.
struct SceneReset {
    SceneReset(int order, std::function<void()> reset);
};

/// A step of the set-up and the keys of "setup" that it reads; steps run in rising order, each once, always.
struct SceneSetup {
    SceneSetup(int order, std::initializer_list<const char*> keys, std::function<void(Scene&, const Json& setup)> run);
};

/// A call: gets its arguments without the name, gives the result; null for none.
using SceneHandler = std::function<Json(Scene& scene, const Json& args)>;
struct SceneCall {
    SceneCall(const char* name, SceneHandler handler);
};

/// What a scene expects under a name beside "results", "messages" and "arrays"; a list is compared item by item.
struct SceneOutput {
    SceneOutput(const char* name, std::function<Json(Scene&)> collect);
};

/// A text as the files hold it: printable ASCII, tab and line feed as they stand, others as {"gbk": hex}; null for
/// null.
Json SceneText(const char* text);
Json SceneText(const std::string& text);

/// The writable bytes of a text argument, with an end byte.
std::vector<char> SceneBytes(const Json& text);

/// A recorded command as a list of its fields, reals as numbers; what the output "recording" collects.
Json SceneCommand(const std::string& command);

}  // namespace zm::vectors
