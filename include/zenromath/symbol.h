// Map symbology: the symbol library file and the interpreter that turns a code and coordinates into strokes.
//
// A symbol is addressed by an integer code from 1 to 999; what it draws is in the library file "symbol.dat", which
// TsymbolInit reads once (its format: docs/symbol/symbol-file.md). Everything here draws through the working context
// TqDC, with the pen in force, and reaches a device, a DWG file or a recording alike. Survey coordinates are metres on
// the ground; lengths in the library are millimetres on the paper and grow with the map scale (setgscale).
//
// All state is process-wide: one library, and in it one current symbol, which every lookup replaces. All functions are
// for the application's user-interface thread. None of them throws.
#pragma once

#include <cstdio>

#include "zenromath/platform.h"

/// What a symbol is: the values of TheHeadStatus.
enum SymbolStatus {
    SymbolStatusG = 1,   ///< graphic symbol, placed at a point
    SymbolStatusLC = 2,  ///< line-class symbol, a pattern along a line
    SymbolStatusL = 3,   ///< plain line; also every code that the library does not have
    SymbolStatusE = 4,   ///< special line
    SymbolStatusH = 5,   ///< hatch
    SymbolStatusY = 6    ///< coded ornament; its number selects the figure
};

/// The head of a symbol.
struct SymbolHead {
    int status;    ///< a SymbolStatus
    int position;  ///< G, H: index of the first record in the body table; LC: index of the pattern; else 0
    int number;    ///< G: drawing records; H: entries; LC: pattern tokens; L, E, Y: the integer of the header line
};

/// One record of a symbol's body: two 32-bit words, read in one of three ways.
///
/// The terminator, which closes every drawing record and every hatch entry, is the point (-100.0, -100.0).
union SYMBODY {
    /// A place.
    struct Point {
        float x;  ///< metres on the paper
        float y;  ///< metres on the paper
    } point;      ///< a place, metres on the paper
    /// An operator.
    struct Operator {
        float op;   ///< 1 to 9; 0, or a radius in metres on the paper
        float aux;  ///< 1 to 9; 0, or a radius in metres on the paper
    } op;           ///< an operator; aux is 0, for a circle its radius in metres on the paper
    /// Two words as they are.
    struct Raw {
        int first;   ///< of a brush: style and colour
        int second;  ///< of a brush: style and colour
    } raw;           ///< hatch brush style and colour; the eight rows of a bitmap, in the byte order of the platform
};
static_assert(sizeof(SYMBODY) == 8);

/// A line-class symbol: letters and numbers of its tokens.
///
/// Slots 0 to 15 hold the pattern in the order of the file, slots 19, 18, 17, 16 the header's first to fourth token.
/// value[17] is metres on the paper; all other values are as in the file. Unused slots are 0.
struct LCBODY {
    char code[20];     ///< letters
    double value[20];  ///< numbers
};

/// The records of the current symbol, if it is a graphic symbol or a hatch; else those of the last one that was, null
/// before the first. Read only: they are the library's own records, not a copy.
ZM_API extern SYMBODY* TheBody;
/// The number of records at TheBody.
///
/// Required: they are counted by terminators whose test looks to one side only: a record whose two floats are both
/// below -99.9999 ends one. An arc polyline's marker with a sweep of -100 degrees or less is counted so, and the
/// symbol's body then ends early.
ZM_API extern int nBody;
/// The current symbol, if it is a line-class symbol; else the last one that was.
ZM_API extern LCBODY TheLCBody;

/// Reads the symbol library, in place of any earlier one.
///
/// \param path  file, searched for as by _LFOpen; null for "symbol.dat". Where it cannot be opened "symbol.dat" is
///              tried too, and where that fails the process ends with status 0.
/// \return      1
///
/// TheBody, nBody and TheLCBody become null, 0 and all zero, and no symbol is current. Every code that the file does
/// not define is a plain line with number 0. Messages, all through _LMsg, and reading goes on where not said otherwise:
/// "symbol.dat code=%d err" for an operator outside 1 to 9, with the symbol's code;
/// a text that the library is too large, with 8000 or more body records, 1000 or more L, E and Y headers or 300 or more
/// line-class symbols in use at a header; reading stops and what was read stays, the last symbol whole;
/// a pattern of more than 16 tokens or with a token of more than 19 characters; what is beyond is left out.
ZM_API int TsymbolInit(const char* path);
/// Frees the library. TheBody, nBody and TheLCBody are not cleared, and what TheBody points to is gone.
///
/// Until the next TsymbolInit getsymbody returns 0, so nothing is drawn but the dots of insert.
ZM_API void TsymbolClose();
/// Non-zero between TsymbolInit and TsymbolClose.
ZM_API int IsTsymboled();

/// Makes a code the current symbol: TheHead..., and by its kind TheBody with nBody, or TheLCBody.
///
/// \return 1; 0 with nothing changed for a code below 1, or without a library
///
/// Not an error: a code that the library lacks is a plain line with number 0, and a code above 999 is that of 999.
/// The same code twice in a row is answered without work. Placing and drawing symbols looks up others: what is current
/// after insert or PROCESSALL is not reported.
ZM_API int getsymbody(int code);
/// The status of the current symbol, a SymbolStatus. Like position and number it is 0 before the first lookup and
/// without a library.
ZM_API int TheHeadStatus();
/// Where its body begins.
ZM_API int TheHeadPosition();
/// The number of its head, see SymbolHead.
ZM_API int TheHeadNumber();
/// The size of a graphic symbol, raw millimetres of the file: largest minus smallest of all its x and y together.
///
/// \return 0.0 for other kinds and for codes outside 1 to 999; -199998.0 for a graphic symbol without coordinates
///
/// Required: x and y are pooled, so it is the extent of neither axis (insert compares it with what a dot covers).
ZM_API double Get_G_Size(int code);
/// The note of a code from 1 to 999, GBK, an empty text if it has none; "null" for any other code or without a library.
/// Valid until the next TsymbolInit or TsymbolClose.
ZM_API const char* Get_Symbol_Note(int code);

/// Draws a line or area symbol along points: kinds LC, L, E, H and Y.
///
/// \param n            number of points. Kinds LC, E, H draw what GOTOPOINTS makes of them.
/// \param[in,out] x,y  the points, survey metres. Overwritten with the expanded curve where that has more points, and
///                     by the pattern of a line-class symbol in any case; see below for their room.
/// \param lineType     1 polyline, 2 smooth curve, 3 chain of three-point arcs, 4 and 5 circle through the points
///                     (about the second point if there are two). Kind Y takes the points as they are.
/// \param code         the symbol; the library knows its kind
/// \return             1 handled (a hatch of fewer than 3 points, an ornament of fewer than 4 and an unknown special
///                     line draw nothing); 0 if the code cannot be looked up or is of kind G; a plain circle gives the
///                     result of drawarc
///
/// Room: with lineType 2 to 5 the caller gives both arrays max(n, 4000) elements, since the curve is copied back into
/// them. A curve never takes more than 4000 points here; what is beyond is left out and reported once by a message.
/// Required: lineType 2 with 666 or more points is drawn as the raw polyline.
/// Null arrays or an n below 1 draw nothing.
ZM_API int PROCESSALL(int n, double* x, double* y, int lineType, int code);

/// Places a graphic symbol.
///
/// \param x, y   where its origin comes to lie, survey metres
/// \param angle  radians, anticlockwise from the x axis; below 1e-6 in size it counts as none
/// \param code   the symbol
/// \return  1 drawn, or a dot in its place; 0 outside the clip area, for a code of 1000 and above or of another kind;
///          the message's result after "cID error", which a body shorter than its head says gives
///
/// The symbol has the same size on the paper at every scale. Except in a DWG file a symbol smaller than 1.5 pixels is
/// drawn as a dot. Required: that compares Get_G_Size, millimetres of the file, with ground units as they stand; the
/// two agree at 1:1000 only. It comes before the code is looked up, so a code with no symbol gives a dot too.
/// In a DWG file a code with a text in the block table gives that block (SetSymbolBlockTable).
ZM_API int insert(double x, double y, double angle, int code);

/// Special line number 1: draws the points as a polyline.
///
/// \param code  not used
/// \param n     number of points
/// \param xy    2n interleaved coordinates, survey metres
/// \return      1
ZM_API int NewE(int code, int n, double* xy);

/// Places text by textRout, and draws its frame where the frame switch is on (nothing in the library sets it).
///
/// \param x, y   place, survey metres
/// \param text   GBK
/// \param flags  the mode of textRout
ZM_API void _LDExText(double x, double y, char* text, int flags);

/// Names DWG blocks for symbols: with a DWG context such a code is placed as a block instead of strokes.
///
/// \param table  array of 1000 texts indexed by the code, entry 0 included, null for none; null takes it away. It is
///               the caller's and stays in use. A text names a block file without ".dwg".
///
/// Blocks are scaled by the scale denominator / 1000 if the twelfth character of entry 0 is a zero byte, or entry 0 is
/// null or shorter, else by 1.0. A line-class symbol in vertex mode whose own code has a text calls insert with it at
/// every vertex, besides its strokes; a block comes of that where the code given to NewLC is a graphic symbol.
ZM_API void SetSymbolBlockTable(const char* const* table);

namespace zm::symbol {
/// How far symbols reach from their anchors, so that one that the limit of the clip area may run through is placed as
/// strokes, which are cut, though it has a block: a reference is whole or not there.
///
/// \param reach  array of 1000 lengths indexed by the code, metres of paper; it is the caller's and stays in use. Null,
///               as at load: a block is placed wherever its anchor lies inside.
ZM_API void SetSymbolBlockReach(const double* reach);
}  // namespace zm::symbol

/// Lays the current line-class symbol along a polyline; getsymbody(code) was called before.
///
/// \param[in,out] x,y  n points, survey metres. Required: in pattern mode the way along the line is kept in them, so
///                     they are overwritten (a dash that turns a corner reads its vertices from there).
/// \param n     number of points
/// \param code  for the message and the block table only
/// \return      pattern mode: 2, or 0 if n is below 2. Vertex mode: 1. After a message, its result: "%d bad LC symbol"
///              for ten tokens in a row that do not advance, "error LC D2 A0 " for a vertex symbol whose letters are
///              not
///              G
ZM_API int NewLC(double* x, double* y, int n, int code);

/// Draws a coded ornament: one of 39 structures built from a few control points.
///
/// \param number  1 to 39; 21, 27, 29, 31 and all others draw nothing
/// \param code    not used
/// \param n       3 to 120 points; of three the fourth is made, the parallelogram's
/// \param x, y    control points, survey metres, read only
/// \param g       scale denominator: 1 mm on the paper is g / 1000
/// \return        1; 0 with nothing drawn for an n outside 3 to 120
///
/// Uses the line symbols 834, 221, 337, 981 and the graphic symbols 3, 16, 42, 54, 90, 91, 93, 95, 984 of the library.
/// Coincident points give the message "yacc_change two p same", once for each coordinate, and drawing goes on.
ZM_API int drawcode(int number, int code, int n, double* x, double* y, double g);

/// Fills a polygon with a hatch symbol and draws its outline.
///
/// \param n     number of vertices
/// \param xy    2n interleaved coordinates, survey metres; the closing edge is implied. Brushes fill closed rings only.
/// \param code  a code of kind H
/// \return      1; 0 if n is below 3 or the code is not a hatch; a message's result. On a DWG sink a brush or bitmap
///              gives the result of the outline.
///
/// Lines and grids are strokes, alike on every sink; a first entry of brush or bitmap is the platform's fill on a
/// device, the outline alone in a DWG file, and ends the symbol. In a DWG file all entities from here on carry the code
/// as elevation and thickness. Holes are seams: filling is even-odd along each line.
/// Caps: 18 crossings of a line, 494 lines of a pass, 495 segments of a family, 4000 points of an entry. What they cut
/// is counted, not reported in a message (symbol/area/hatch_statistics.h).
ZM_API int DrawHatch(int n, double* xy, int code);

/// Writes one two-point line into a text file of line coordinates.
///
/// \param x1, y1, x2, y2  the points
/// \param[in,out] no  number of the first point; 2 more after a record
/// \param group       the record's group; below 0 nothing is written and (x1, y1) becomes the file's offset, which is
///                    added to all later points
/// \param f           the caller's open file; null writes nothing
/// \return            no after the record; 0 for an offset and for a null file
///
/// A record is "%3d 2 1" with the group and twice "%d %.3lf %.3lf 9999.0 " with number, x and y, a line each, with a
/// decimal point in every locale.
ZM_API int AppendLineCor(double x1, double y1, double x2, double y2, int& no, int group, FILE* f);
