// The reader's body lines of graphic symbols: one drawing record each.
#include <algorithm>

#include "runtime/text/numbers.h"
#include "runtime/text/scan.h"
#include "symbol/file/symbol_file.h"
#include "symbol/texts.h"
#include "zenromath/runtime.h"

namespace zm::symbol {
namespace {

constexpr float kNoSmallest = 99999.0F;
constexpr float kNoLargest = -99999.0F;

}  // namespace

void SymbolFileReader::ReadGraphic() {
    Head() = {SymbolStatusG, static_cast<int>(m_library.body.size()), 0};
    m_smallest = kNoSmallest;
    m_largest = kNoLargest;
    m_operator = kNoOperator;
    for (NextLine(); m_haveLine && !AtHeader(); NextLine()) {
        if (scan::Scanner(m_line.c_str()).Int(m_operator)) {
            StoreDrawing();
        } else if (scan::Scanner(m_line.c_str()).AtEnd()) {
            // Required: an empty line repeats the last operator with no coordinates. Ahead of the first there is none.
            Note(Remark::kOperatorRepeated);
            if (m_operator != kNoOperator) StoreDrawing();
        } else {
            Note(Remark::kBodyEndedByText);
            break;
        }
    }
    m_library.sizes[static_cast<std::size_t>(m_code)] = m_largest - m_smallest;
}

void SymbolFileReader::StoreDrawing() {
    if (m_operator >= 6 && m_operator <= 9) {
        Note(Remark::kOperatorIgnored);
        return;
    }
    if (m_operator > 9) {
        Tell(Remark::kUnknownOperator, texts::kUnknownOperator);
        return;
    }
    if (m_operator < 1) {
        Tell(Remark::kOperatorLosesRecord, texts::kUnknownOperator);
        // Required: the terminator alone, not counted, so that the lookup loses the symbol's last record by it.
        Put(Terminator());
        return;
    }
    const std::size_t word = m_library.body.size();
    Put(PointRecord(static_cast<float>(m_operator), 0.0F));
    switch (m_operator) {
        case 1:
            StoreSegment();
            break;
        case 2:
            StorePolyline();
            break;
        case 3:
            m_library.body[word].op.aux = StoreCircle();
            break;
        case 4:
            StoreArc();
            break;
        default:
            StoreDot();
            break;
    }
    Put(Terminator());
    ++Head().number;
}

void SymbolFileReader::StoreSegment() {
    scan::Scanner scanner = BehindOperator();
    if (!StorePair(scanner)) {
        Note(Remark::kNumbersMissing);
    } else if (!StorePair(scanner)) {
        Note(Remark::kSegmentWithoutEnd);
    }
}

// One pair after each blank of the line, up to the first blank that has none.
void SymbolFileReader::StorePolyline() {
    const auto behind = static_cast<std::size_t>(BehindOperator().rest().data() - m_line.c_str());
    if (m_line.find(' ') < behind) Note(Remark::kPolylineIndented);
    std::size_t pairs = 0;
    for (std::size_t blank = m_line.find(' '); blank != std::string::npos; blank = m_line.find(' ', blank + 1)) {
        scan::Scanner scanner(m_line.c_str() + blank);
        if (!StorePair(scanner)) break;
        ++pairs;
        if (m_line[blank + 1] == ' ') Note(Remark::kPairTwice);
        if (CountsAsTerminator(m_library.body.back())) Note(Remark::kSweepEndsBody);
    }
    if (pairs < 2) Note(Remark::kNumbersMissing);
}

// The radius, metres on the paper; 0 if it is missing.
float SymbolFileReader::StoreCircle() {
    scan::Scanner scanner = BehindOperator();
    float x = 0.0F;
    float y = 0.0F;
    float r = 0.0F;
    if (!scanner.Pair(x, y)) {
        Note(Remark::kNumbersMissing);
        return 0.0F;
    }
    if (!scanner.Real(r)) Note(Remark::kNumbersMissing);
    Put(PointRecord(Paper(x), Paper(y)));
    for (const float value : {x - r, x + r, y - r, y + r}) Widen(value);
    return Paper(r);
}

void SymbolFileReader::StoreArc() {
    scan::Scanner scanner = BehindOperator();
    float x[3] = {};
    float y[3] = {};
    for (int i = 0; i < 3; ++i)
        if (!scanner.Pair(x[i], y[i])) {
            Note(Remark::kNumbersMissing);
            return;
        }
    for (int i = 0; i < 3; ++i) PutPaperPoint(x[i], y[i]);
}

void SymbolFileReader::StoreDot() {
    scan::Scanner scanner = BehindOperator();
    if (!StorePair(scanner)) Note(Remark::kNumbersMissing);
}

scan::Scanner SymbolFileReader::BehindOperator() const {
    scan::Scanner scanner(m_line.c_str());
    int op = 0;
    scanner.Int(op);
    return scanner;
}

bool SymbolFileReader::StorePair(scan::Scanner& scanner) {
    float x = 0.0F;
    float y = 0.0F;
    if (!scanner.Pair(x, y)) return false;
    PutPaperPoint(x, y);
    return true;
}

void SymbolFileReader::PutPaperPoint(float x, float y) {
    Put(PointRecord(Paper(x), Paper(y)));
    Widen(x);
    Widen(y);
}

// Required: one range for x and y together; Get_G_Size is its length.
void SymbolFileReader::Widen(float value) {
    m_smallest = std::min(m_smallest, value);
    m_largest = std::max(m_largest, value);
}

}  // namespace zm::symbol
