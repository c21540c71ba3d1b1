#include "dwg/writer/session.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <new>
#include <utility>

#include "dwg/texts.h"
#include "runtime/files/files.h"
#include "runtime/profile/project.h"
#include "runtime/text/numbers.h"
#include "zenromath/dwg.h"
#include "zenromath/host.h"
#include "zenromath/runtime.h"

namespace zm::dwg {

Session::Session(const std::string& path, FileOwner file, const DrawingTemplate& drawing, std::size_t bufferSize)
    : hasJump(drawing.hasJump),
      m_path(path),
      m_out(std::move(file), bufferSize),
      m_tables(drawing.bytes),
      m_end(m_tables.Field(kEntitiesEnd)),
      m_settledEnd(m_end) {
    m_out.Write(drawing.bytes.data(), m_end);
    const std::size_t blockTable = m_tables.Field(LayoutOf(Table::block).addressField);
    m_gap.assign(drawing.bytes.begin() + static_cast<std::ptrdiff_t>(m_end),
                 drawing.bytes.begin() + static_cast<std::ptrdiff_t>(blockTable));
    TablesChanged();
}

void Session::SettleHeader() {
    m_tables.Move(kMovedByEntity, static_cast<std::uint32_t>(m_end - m_settledEnd));
    m_tables.AddToField(kEntityCount, m_entities);
    m_settledEnd = m_end;
    m_entities = 0;
}

void Session::TablesChanged() {
    SettleHeader();
    const std::uint64_t end = m_tables.FileEnd();
    const std::uint64_t longest = state().longestFile;
    m_room = end < longest ? longest - end : 0;
}

bool Session::Finish() {
    SettleHeader();
    m_out.Write(reinterpret_cast<const std::uint8_t*>(m_gap.data()), m_gap.size());
    for (int i = 0; i < kTableCount; ++i) {
        const auto records = m_tables.Records(static_cast<Table>(i));
        m_out.Write(records.data(), records.size());
    }
    m_out.Write(m_tables.tail().data(), m_tables.tail().size());
    std::vector<std::uint8_t>& section = m_tables.section();
    if (closingPending) {
        // Its place is field 36, which runs ahead of the block section once a second block file was copied, and stands
        // inside it where a nested block was copied with a reference in it.
        const std::size_t place = m_tables.Field(kExtraStart) - m_tables.Field(kBlocksStart);
        if (section.size() < place + kClosingRecordSize) section.resize(place + kClosingRecordSize);
        std::memcpy(section.data() + place, closing, kClosingRecordSize);
    }
    m_out.Write(section.data(), section.size());
    return m_out.Finish(m_tables.header(), kHeaderSize);
}

namespace {

// Shows a text and ends the process.
[[noreturn]] void Stop(const char* text) {
    _LMsg(text, nullptr, 0);
    CurrentHost().EndProcess(1);
    std::abort();  // never reached; a virtual call does not tell the compiler that it does not return
}

// Whether a file that was just made is at this place: it is there, and empty. What is no regular file has no size.
bool MadeAt(const char* path) {
    std::error_code unknown;
    const auto file = files::SystemPath(path);
    if (!std::filesystem::exists(file, unknown)) return false;
    const auto size = std::filesystem::file_size(file, unknown);
    return unknown || size == 0;
}

// The place that a path names.
std::string WantedPlace(const char* path) {
    if (path == nullptr) return {};
    char place[256];
    return files::LastSeparator(path) != std::string_view::npos ? path : runtime::WholeName(place, path, nullptr, 0);
}

// Makes the output. Where its place refuses, the search for its name goes on in other folders.
// \param[out] made  where it was made
FileOwner MakeOutput(const char* path, const std::string& wanted, std::string& made) {
    made = wanted;
    // Tried by itself: a file that was there, empty, before the search would look like one that was made there.
    FileOwner output(files::Open(wanted.c_str(), "wb+"));
    if (output != nullptr) return output;
    output.reset(_LFOpen(path, "wb+"));
    char place[256];
    for (const int where : {0, 1, 2})
        if (runtime::WholeName(place, path, nullptr, where) != wanted && MadeAt(place)) {
            made = place;
            break;
        }
    return output;
}

SessionOwner OpenDrawing(const char* path) {
    FileOwner source(_LFOpen("acad.dwg", "rb+"));
    if (source == nullptr) Stop(texts::kNoTemplate);
    try {
        std::string problem;
        const DrawingTemplate drawing = ReadTemplate(source.get(), problem);
        source.reset();
        if (!problem.empty()) Stop(numbers::Text(texts::kTemplateFault, problem.c_str()).c_str());
        const std::string wanted = WantedPlace(path);
        std::string made;
        FileOwner output = MakeOutput(path, wanted, made);
        if (output == nullptr) Stop(texts::kNoOutput);
        // A record is formed in one piece, so that the buffer has to hold the longest.
        const std::size_t buffer = std::max(state().outputBuffer, kLongestRecord);
        SessionOwner session(new Session(made, std::move(output), drawing, buffer));
        if (made != wanted) session->wantedPath = wanted;
        return session;
    } catch (const std::bad_alloc&) {
        Stop(texts::kNoSpace);
    }
}

void CloseDrawing() {
    const SessionOwner session = std::move(state().session);
    state().lastFileComplete = session->Finish();
    if (!state().lastFileComplete)
        _LMsg(numbers::Text(texts::kIncomplete, session->path().c_str()).c_str(), nullptr, 0);
    if (!session->wantedPath.empty()) {
        _LMsg(numbers::Text(texts::kElsewhere, session->wantedPath.c_str(), session->path().c_str()).c_str(), nullptr,
              0);
        state().lastFileComplete = false;
    }
}

}  // namespace
}  // namespace zm::dwg

void _LDBopendwg(char* path) {
    zm::dwg::State& state = zm::dwg::state();
    if (state.session != nullptr) {
        _LMsg(zm::numbers::Text(zm::dwg::texts::kStillOpen, state.session->path().c_str()).c_str(), nullptr, 0);
        zm::dwg::CloseDrawing();
    }
    state.reported = 0;
    state.copyWarnings.clear();
    state.importNotes.clear();
    state.refusedBlocks.clear();
    state.session = zm::dwg::OpenDrawing(path);
}

void _LDBclosedwg(void) {
    if (zm::dwg::OpenSession() != nullptr) zm::dwg::CloseDrawing();
}
