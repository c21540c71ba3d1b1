// Texts of the symbol folder that reach users, as GBK bytes. Each is beside its readable form; a test compares
// the two.
#pragma once

namespace zm::symbol::texts {

struct Text {
    const char* gbk;
    const char* readable;  // UTF-8
};

// "The symbol library is too large!"
inline constexpr Text kLibraryTooLarge = {"\xB7\xFB\xBA\xC5\xBF\xE2\xCC\xAB\xB4\xF3!", "符号库太大!"};
// "Out of memory"
inline constexpr Text kOutOfMemory = {"\xC4\xDA\xB4\xE6\xB2\xBB\xD7\xE3", "内存不足"};

inline constexpr Text kAll[] = {kLibraryTooLarge, kOutOfMemory};

// Texts in ASCII.
inline constexpr char kOutOfMemoryTitle[] = "SS";
inline constexpr char kNoTableSpace[] = "symwin space err";
inline constexpr char kUnknownOperator[] = "symbol.dat code=%d err";
inline constexpr char kTooManyLineClasses[] = "'LC' too large,change to 'L'";
inline constexpr char kUnknownStatus[] = "error symbol format";
inline constexpr char kShortBody[] = "cID error";
inline constexpr char kShortHatch[] = "cID ERROR";
inline constexpr char kNoScratch[] = "mem err";
inline constexpr char kNoHatchScratch[] = "no space";
inline constexpr char kBadPattern[] = "%d bad LC symbol";
inline constexpr char kBadVertexSymbol[] = "error LC D2 A0 ";
inline constexpr char kSamePoint[] = "yacc_change two p same";

// Texts of our own, for what the tables cannot hold.
inline constexpr char kTooManyTokens[] =
    "symbol.dat code=%d: a line pattern has at most 16 tokens; those after them are left out. Shorten the pattern.";
inline constexpr char kLongToken[] =
    "symbol.dat code=%d: a token of the line pattern is longer than 19 characters and is left out. Shorten it.";
inline constexpr char kNotReadToItsEnd[] =
    "The symbol library cannot be read to its end; symbols are missing. Check the file and its disk.";
inline constexpr char kCurveCut[] =
    "A curve has more than 4000 points; what comes after them is not drawn. Split the line.";
inline constexpr char kArcPolylineCut[] =
    "symbol.dat code=%d: an arc polyline has more than 4000 points; what comes after them is not drawn. Split it.";
inline constexpr char kPatternStuck[] =
    "symbol.dat code=%d: the lengths of the line pattern never come forward; the rest of the line is not drawn.";

}  // namespace zm::symbol::texts
