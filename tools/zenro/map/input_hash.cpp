#include "tools/zenro/map/input_hash.h"

#include <filesystem>
#include <sstream>

#include "tools/kit/digest.h"
#include "tools/kit/text.h"
#include "tools/kit/tool_host.h"
#include "zenromath/runtime.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

// The list of blocks and the drawings that it names, beside it or beside the library.
void AddBlocks(const std::string& list, Digest& digest) {
    digest.AddFile(PathOf(list));
    std::istringstream lines(ReadWholeFile(PathOf(list), 1u << 20));
    for (std::string line; std::getline(lines, line);) {
        line = Trim(line);
        const std::size_t blank = line.find_first_of(" \t");
        if (blank == std::string::npos) continue;
        for (const fs::path& folder : {PathOf(list).parent_path(), fs::path(ModuleDirectory())}) {
            const fs::path drawing = folder / PathOf(Trim(line.substr(blank)) + ".dwg");
            std::error_code error;
            if (fs::is_regular_file(drawing, error)) digest.AddFile(drawing);
        }
    }
}

}  // namespace

std::string HashOfInput(const DrawJob& job, const Rules& rules, const Page& page, FeatureStore& store,
                        std::string_view version) {
    Digest digest;
    digest.AddText(version);
    store.AddTo(digest);
    digest.AddFile(rules.path);
    const fs::path data = ModuleDirectory();
    const auto file = [&](const std::string& given, const char* standard) {
        digest.AddFile(given.empty() ? data / standard : fs::path(given));
    };
    file(job.library.symbols, "symbol.dat");
    file(job.library.notes, "Orvnote.cod");
    file(job.library.project, "project.ini");
    if (!job.library.blocks.empty()) AddBlocks(job.library.blocks, digest);
    digest.AddText(job.library.blocksAsCopied ? "copied" : "imported");
    digest.AddText(job.library.symbolsAs);
    std::string page_text;
    for (const double number :
         {page.scale, page.sheet.x1, page.sheet.y1, page.sheet.x2, page.sheet.y2, page.rotation, page.margins.left,
          page.margins.right, page.margins.top, page.margins.bottom, job.sink.dpi})
        page_text += Fixed(number, 6) + " ";
    digest.AddText(page_text + (page.frame ? "frame " : "") + (job.sink.monochrome ? "mono " : "") +
                   (job.sink.utf8 ? "utf8 " : "") + (job.sink.thickness ? "thick" : ""));
    for (const Chain& clip : page.clip)
        for (std::size_t i = 0; i < clip.size(); ++i) digest.AddText(Fixed(clip.x[i], 4) + " " + Fixed(clip.y[i], 4));
    const FrameTexts& t = job.texts;
    for (const std::string& text : {t.title, t.number, t.system, t.heightSystem, t.interval, t.symbols, t.survey,
                                    t.remark, t.secrecy, t.unit, t.surveyor, t.draughtsman, t.checker, job.sink.title})
        digest.AddText(text);
    for (const std::string& text : t.neighbours) digest.AddText(text);
    for (const auto* list : {&job.hiddenLayers, &job.hiddenRules})
        for (const std::string& text : *list) digest.AddText("-" + text);
    digest.AddText(Fixed(t.outerWidth, 4) + (t.adjoining ? " adjoining" : "") + (t.barScale ? " bar" : "") +
                   (job.legend ? " legend" : ""));
    return digest.Hex();
}

}  // namespace zm::tool
