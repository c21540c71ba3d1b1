// One open drawing: the output stream, the tables in memory, and what lasts as long as the session.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "dwg/format/bytes.h"
#include "dwg/format/file_layout.h"
#include "dwg/writer/drawing_template.h"
#include "dwg/writer/limits.h"
#include "dwg/writer/output_file.h"
#include "dwg/writer/state.h"
#include "dwg/writer/tables.h"

namespace zm::dwg {

struct TextStart {
    double x = 0.0;
    double y = 0.0;
};

class Session {
 public:
    /// Begins the file with what the template has before its entities. Throws std::bad_alloc.
    Session(const std::string& path, FileOwner file, const DrawingTemplate& drawing, std::size_t bufferSize);

    /// Writes what stayed in memory and closes the file; whether all of it was written.
    bool Finish();
    const std::string& path() const { return m_path; }

    Tables& tables() { return m_tables; }
    /// To be called after every change of the tables or the block section: how much the entities may still grow.
    void TablesChanged();
    /// How many bytes the file may still grow.
    std::uint64_t room() const { return m_room; }
    /// Whether a group of records fits into the file; if not, the limit is reported.
    bool Fits(std::uint64_t bytes) const {
        if (bytes <= m_room) [[likely]]
            return true;
        TellOnce(Limit::file);
        return false;
    }

    /// Where the next record goes in the file.
    std::uint32_t position() const { return static_cast<std::uint32_t>(m_end); }
    /// Counts one more record, writes its header and returns the record's first byte. The caller has asked Fits and
    /// fills the rest, all of it.
    std::uint8_t* Begin(const EntityLayout& layout, std::size_t length, unsigned layer) {
        std::uint8_t* record = m_out.Append(length);
        Store(record, layout.word);
        Store(record + 2, static_cast<std::uint16_t>(length));
        Store(record + 4, static_cast<std::uint16_t>(layer));
        Store(record + 6, layout.options);
        m_end += length;
        m_room -= length;
        ++m_entities;
        return record;
    }

    std::string wantedPath;  // where the file should have been made; empty if it is there
    bool hasJump = false;    // a jump marker is in the entity section
    std::uint8_t closing[kClosingRecordSize] = {};
    bool closingPending = false;  // closing goes to the file at close
    TextStart textStart;          // the position of the text before; zero before the first

 private:
    // Brings the header image up to what was written: only then are the other fields in force.
    void SettleHeader();

    std::string m_path;
    OutputFile m_out;
    Tables m_tables;
    std::uint64_t m_end;           // where the next record goes
    std::uint64_t m_settledEnd;    // the same as the header image has it
    std::uint32_t m_entities = 0;  // records that the header image does not count yet
    std::uint64_t m_room = 0;
    std::string m_gap;  // what the template has between its last entity and its tables
};

/// The open session; null, after a message, if there is none.
inline Session* OpenSession() {
    Session* session = state().session.get();
    if (session == nullptr) [[unlikely]]
        TellOnce(Limit::closed);
    return session;
}

}  // namespace zm::dwg
