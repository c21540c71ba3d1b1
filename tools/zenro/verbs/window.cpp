#include "tools/zenro/verbs/window.h"

#include <cstdlib>
#include <filesystem>

#include "tools/kit/qt_module.h"
#include "tools/kit/reader_locale.h"
#include "tools/kit/tool_host.h"
#include "tools/kit/translation.h"
#include "tools/zenro/verbs/verbs.h"

namespace zm::tool {
namespace {

std::vector<const char*> Pointers(const std::vector<std::string>& texts) {
    std::vector<const char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (const std::string& text : texts) pointers.push_back(text.c_str());
    pointers.push_back(nullptr);
    return pointers;
}

// Qt takes LANGUAGE in the plain locale too, where gettext does not: the window, its processes and dialogs go by what the
// program found.
void SpeakOneLanguage() {
    const std::string found = ReaderLanguages();
    setenv("ZENRO_LANGUAGE", found.empty() ? "en" : found.c_str(), 1);
}

}  // namespace

void ShowInWindow(int (*ZenroQtBridge::*show)(const ZenroQtMap*, char*, std::size_t),
                  const std::vector<std::string>& inputs, const std::vector<std::string>& options,
                  const std::string& picture, const std::string& log, Context& context) {
    std::error_code error;
    const std::string program = std::filesystem::read_symlink("/proc/self/exe", error).string();
    const auto files = Pointers(inputs), given = Pointers(options);
    const ZenroQtMap map = {program.c_str(), files.data(), given.data(),
                            picture.c_str(), log.c_str(),  [] { return StopRequested() ? 1 : 0; }};
    const ZenroQtBridge* qt = TryLoadQt();
    if (qt == nullptr)
        throw Failure(kFailed,
                      Phrase("the window needs Qt 6 Widgets, which this program is built without or cannot load. "
                             "Install libqt6widgets6, or draw the map to a file with zenro draw."));
    SpeakOneLanguage();
    char reason[1024] = {};
    const int status = (qt->*show)(&map, reason, sizeof reason);
    CheckStop();
    if (status != kDone) throw Failure(static_cast<ExitCode>(status), reason);
    context.status = kDone;
}

}  // namespace zm::tool
