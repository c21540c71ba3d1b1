// Reading of the symbol library file. The format is described in docs/symbol/symbol-file.md.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

#include "runtime/text/scan.h"
#include "symbol/file/library.h"

namespace zm::symbol {

constexpr std::size_t kLineBytes = 179;  // what a line buffer of 180 bytes holds, the line feed included

/// What an entry of a hatch has where its line ends early: angles and spacings of two families, and a code.
constexpr float kGridDefaults[5] = {45.0F, 10.0F, 135.0F, 10.0F, 830.0F};

/// What in a file may not come out as its author thinks. Reading goes on in every case.
enum class Remark {
    kHeaderWithoutCode,     // a line beginning with * that has no number
    kCodeOutOfRange,        // its code is not 1 to 999; the lines after it are ignored
    kUnknownKind,           // the kind is none of G, H, L, LC, E, Y
    kKindOfHeaderBefore,    // no kind is there, so that of the header before is taken
    kCodeTwice,             // the code was defined before; this definition counts
    kLineSplit,             // longer than 179 bytes: read as several lines
    kUnknownOperator,       // an operator above 9: no record
    kOperatorLosesRecord,   // an operator of 0 or below: its terminator hides the last record of the body
    kOperatorIgnored,       // operators 6 to 9: nothing is drawn
    kOperatorRepeated,      // an empty line repeats the operator before without coordinates
    kBodyEndedByText,       // a line without number ended the body; what follows is ignored
    kNumbersMissing,        // fewer numbers than the operator or entry has
    kSegmentWithoutEnd,     // a segment with one point: drawn to (-100 m, -100 m) on the paper
    kPolylineIndented,      // a polyline with a blank before its operator: no points are read
    kPairTwice,             // a doubled blank in a polyline: the pair after it is read twice
    kSweepEndsBody,         // an arc marker of -100 degrees or less: counted as a terminator
    kUnknownHatchEntry,     // a hatch entry that is none of 1 to 4
    kGridDividesByZero,     // a grid with a level family from bottom to top, or an upright one from left to right
    kHeaderTakenAsPattern,  // the line after an LC header begins with *
    kPatternEmpty,          // a pattern without tokens
    kPatternEndedByBlank,   // a doubled or leading blank ends the pattern before the line's end
    kTooManyTokens,         // more than 16 tokens; the rest is left out
    kTokenTooLong,          // a token of more than 19 characters is left out
    kTooManyLineClasses,    // the table of line classes is full
    kLibraryTooLarge        // reading stopped here
};

struct RemarkAt {
    int line = 0;  // of the file, from 1
    int code = 0;  // of the symbol it is in, 0 outside
    Remark what = Remark::kHeaderWithoutCode;
};

class ZM_API SymbolFileReader {
 public:
    /// \param library  an empty one, which the file fills
    /// \param remarks  receives what is noticed; null for none
    SymbolFileReader(std::FILE* file, Library& library, std::vector<RemarkAt>* remarks = nullptr);

    /// Reads to the end of the file or its end line; messages as the exported interface has them.
    void Read();

 private:
    static constexpr std::size_t kTokenBytes = 19;  // of a pattern token
    static constexpr int kNoOperator = 7;           // one of those that are accepted and draw nothing

    void NextLine();
    bool AtHeader() const { return !m_line.empty() && m_line[0] == '*'; }
    bool AtEndLine() const { return AtHeader() && m_line.size() > 1 && m_line[1] == '$'; }
    bool TableFull();

    // Each of these begins on the header line and ends on the first line that it does not take.
    void ReadHeader();
    void ReadGraphic();
    void ReadHatch(const std::string& fields);
    void ReadLineClass(const std::string& fields);
    void StoreNumber(const std::string& fields, int status);

    bool ScanHeader(std::string& fields);
    static int HeaderNumber(const std::string& fields);
    void StoreNote(std::size_t mark);
    int ReadPattern(LCBODY& symbol);

    void StoreDrawing();
    void StoreSegment();
    void StorePolyline();
    float StoreCircle();
    void StoreArc();
    void StoreDot();
    scan::Scanner BehindOperator() const;
    bool StorePair(scan::Scanner& scanner);
    void PutPaperPoint(float x, float y);
    void Widen(float value);

    void StoreHatchEntry(int type);
    void StoreFill(int type);
    void ReadReals(float* values, int count);

    SymbolHead& Head() { return m_library.heads[static_cast<std::size_t>(m_code)]; }
    void Put(const SYMBODY& record) { m_library.body.push_back(record); }
    void Note(Remark what) const;
    /// A remark that the user sees too; the format takes the code.
    void Tell(Remark what, const char* format) const;
    static float Paper(float millimetres) { return millimetres / 1000.0F; }

    Library& m_library;
    std::vector<RemarkAt>* m_remarks;
    std::string m_text;  // the whole file
    std::size_t m_at = 0;
    std::string m_line;  // the current line without its end
    bool m_haveLine = false;
    bool m_continued = false;  // the line filled the buffer before its end
    int m_lineNumber = 0;
    int m_code = 0;      // of the symbol being read
    std::string m_kind;  // of the last header that had one
    std::array<bool, kHeads> m_defined{};
    int m_lineHeaders = 0;  // L, E and Y headers, and LC headers beyond the table
    int m_operator = kNoOperator;
    float m_smallest = 0.0F;
    float m_largest = 0.0F;
};

}  // namespace zm::symbol
