#include "tools/zenro/view/symbol_bench.h"

#include <algorithm>
#include <cmath>

#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/symbols/picture.h"
#include "tools/symbols/quiet_host.h"
#include "tools/zenro/map/library_session.h"
#include "tools/zenro/view/picture.h"
#include "tools/zenro/view/symbol_keeper.h"
#include "zenromath/draw.h"
#include "zenromath/symbol.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

namespace lib = symbols;

constexpr std::size_t kMostBytes = std::size_t{16} << 20;  // of a library
constexpr double kFilled = 0.8;                            // of a picture that a fitted sample takes
constexpr double kLeastMillimetres = 1.0, kMostPixels = 120.0, kLeastPixels = 1.0;

std::string StampOf(const fs::path& file) {
    std::error_code error;
    return std::to_string(fs::file_size(file, error)) + " " +
           std::to_string(fs::last_write_time(file, error).time_since_epoch().count());
}

// The middle and the scale at which all that a sample draws is seen.
void Fit(SampleView& view, const lib::Picture& picture) {
    const double width = std::max(picture.width, kLeastMillimetres),
                 height = std::max(picture.height, kLeastMillimetres);
    view.perMillimetre =
        std::clamp(kFilled * std::min(view.width / width, view.height / height), kLeastPixels, kMostPixels);
    view.x = picture.left + picture.width / 2.0;
    view.y = picture.top - picture.height / 2.0;
}

}  // namespace

void SymbolBench::Take(const std::string& file, const std::vector<lib::Edit>& edits) {
    const fs::path given = PathOf(file);
    std::string key = file + "\n" + StampOf(given);
    for (const lib::Edit& edit : edits) key += "\n" + std::to_string(edit.code) + "\n" + edit.text;
    if (key == m_key) return;
    m_key.clear();
    m_bytes = ReadWholeFile(given, kMostBytes);
    if (!IsSymbolLibrary(given))
        throw Failure(kNoInput, Phrase("{0}: is no symbol library; it has no line such as \"*12 G\".", file));
    m_file = file;
    m_original = LibraryPath(fs::absolute(given));
    std::string fault;
    lib::EditedLibrary edited = lib::PutEdits(m_original.c_str(), m_bytes, edits, fault);
    if (!fault.empty()) throw Failure(kFailed, fault);
    m_bytes = std::move(edited.bytes);
    m_places = std::move(edited.places);
    const fs::path copy = m_folder.path() / "edited.dat";
    WriteOutput(copy, true, m_bytes);
    m_path = LibraryPath(copy);
    m_symbols = lib::ReadSymbols(m_path.c_str());
    const lib::QuietHost quiet;
    TsymbolInit(m_path.c_str());
    m_key = std::move(key);
}

const lib::Symbol* SymbolBench::Find(int code) const {
    for (const lib::EditPlace& place : m_places)
        for (const lib::Symbol& symbol : m_symbols)
            if (place.code == code && symbol.firstLine >= place.first && symbol.firstLine < place.first + place.count)
                return &symbol;
    const auto found = std::find_if(m_symbols.begin(), m_symbols.end(),
                                    [code](const lib::Symbol& symbol) { return symbol.code == code; });
    return found == m_symbols.end() ? nullptr : &*found;
}

std::vector<lib::Finding> SymbolBench::Check(int code) {
    const auto findings = lib::Lint(m_path.c_str());
    const auto edit = std::find_if(m_places.begin(), m_places.end(),
                                   [code](const lib::EditPlace& place) { return place.code == code; });
    if (edit != m_places.end()) return lib::FindingsOf(lib::Lint(m_original.c_str()), findings, *edit);
    const lib::Symbol* symbol = Find(code);
    if (symbol == nullptr) return {};
    return lib::FindingsOf(findings, findings, {code, symbol->firstLine, symbol->lastLine - symbol->firstLine + 1});
}

bool SymbolBench::Draw(const lib::Symbol& symbol, const lib::SheetOptions::Look& look, SampleView& view,
                       std::uint32_t* pixels, std::string& message) const {
    const auto draw = [&] { lib::DrawSample(symbol, view.sample); };
    const lib::Picture shape = lib::TakePicture(lib::kSampleScale, look.width, draw);
    message = shape.message;
    if (view.perMillimetre <= 0.0) Fit(view, shape);
    ViewRequest request;
    request.width = view.width;
    request.height = view.height;
    request.x = view.x;
    request.y = view.y;
    request.pixel = 1.0 / view.perMillimetre;
    request.scale = lib::kSampleScale;
    const lib::QuietHost quiet;
    setgscale(lib::kSampleScale);
    const PictureContext picture(request, PageOf(request), pixels);
    const CTQPen ink(0, look.width, static_cast<DWORD>(look.color));
    draw();
    return !shape.body.empty();
}

void SymbolBench::Save(const std::string& to) const {
    std::error_code error;
    const fs::path place = PathOf(to), folder = fs::weakly_canonical(fs::absolute(place), error).parent_path();
    if (fs::equivalent(place, PathOf(ShippedSymbols()), error) ||
        folder == fs::weakly_canonical(PathOf(ModuleDirectory()), error))
        throw Failure(kNoOutput, Phrase("{0}: the library that ships with the program is not written over; save to a "
                                        "file of your own.",
                                        to));
    WriteOutput(place, true, m_bytes);
}

}  // namespace zm::tool
