// DWG output: one drawing file is written as a stream, on top of the template drawing "acad.dwg".
//
// The application opens a session with _LDBopendwg, draws through a CTqDraw of device type 1, or calls the selections
// below itself, and finishes with _LDBclosedwg. Every entity takes the current attributes: colour, layer, linetype,
// text style, elevation and thickness. They outlive a session: a second file begins with what the first one left.
//
// All texts are bytes in GBK. All functions are for the application's user-interface thread. A call with no session
// open does nothing but show one message; the attributes (_LDBsetcolor, _LDBsetelev, SetDwgElevation) need no session.
//
// Limits of a file: 200 layers, 100 linetypes, 10 text styles, 500 blocks, 64000 bytes of block definitions, names of
// 31 bytes, 32697 bytes in one text, coordinates that are finite numbers, 4 GiB. What goes beyond is left out or cut,
// and the first case of each kind in a session is reported in a message box.
#pragma once

#include "zenromath/platform.h"

/// Opens the session on an output file. The file is made from the template "acad.dwg", which is searched in the
/// project, the module and the ini directory.
///
/// \param path  the output; with a backslash it is taken as it is, without one it is made in the project directory.
///              An existing file is overwritten. Where the folder is missing or refuses writing the file goes by its
///              bare name to the first of the project, the module and the ini directory that takes it, and close says
///              so.
///
/// Errors: "cannot open acad.dwg!", a template that cannot be used (the message says why), "cannot write dwg!" and
/// "no space" (memory) end the process with status 1. A session that is still open is closed first, with a message.
ZM_API void _LDBopendwg(char* path);

/// Finishes the file: writes header, tables and block definitions, and closes it.
///
/// Errors: a file that could not be written whole (full disk, lost permission, closed by others) is reported with its path.
/// zm::dwg::LastFileComplete() then answers false.
ZM_API void _LDBclosedwg(void);

/// Sets the current colour. Takes effect on the next entity and on the next _LDBsetlay.
///
/// \param color  1 to 255 for entities, start value 7. The low 16 bits are kept; an entity holds the low 8 of them.
ZM_API void _LDBsetcolor(int color);

/// Sets the current elevation and thickness, both in survey metres, start values 0. A value that is no finite number
/// leaves the attribute as it is and is reported.
ZM_API void _LDBsetelev(double elevation, double thickness);

/// Sets the current elevation alone; as _LDBsetelev.
ZM_API void SetDwgElevation(double elevation);

/// Makes a layer current, and makes it first if the file has none of that name.
///
/// The layer's record takes the current colour and the current linetype, each time, also where the layer was in the
/// template: the last selection wins.
///
/// \param[in,out] name  upper-cased in place, a to z, byte by byte: the second byte of a Chinese character changes too
///                      if it lies in that range. Compared exactly with the upper-cased name, so a lower-case entry of
///                      the template is never found. Null shows "lay name null" and keeps the current layer.
ZM_API void _LDBsetlay(char* name);

/// Makes a linetype current. One that the file does not have is loaded from "ACAD.LIN", from the first entry whose name
/// begins with the wanted name, and stored under the wanted name.
///
/// \param[in,out] name  upper-cased in place like that of _LDBsetlay
///
/// Errors: without "ACAD.LIN" the message "CANNOT OPEN LINETYPE FILE!\n"; a linetype found nowhere is reported and ends the
/// process with status 13, as does a name or an element of 20 or more characters in the file.
ZM_API void _LDBsetltype(char* name);

/// Makes a text style current, and makes it first if the file has none of that name. Every call redefines the style:
/// text that was written with it before changes too, since texts refer to it by index.
///
/// \param type     0 to 7: {plain, vertical, backward, upside down, vertical backward, vertical upside down,
///                 backward upside down, vertical backward upside down}; other values leave the style's kind as it is
/// \param[in,out] name  upper-cased in place like that of _LDBsetlay
/// \param font     font file, or font file, a comma and the big font file; at most 63 bytes each
/// \param width    width factor
/// \param oblique  slant, degrees
ZM_API void _LDBsetstyle(int type, char* name, char* font, double width, double oblique);

namespace zm::dwg {
/// Whether the file of the last _LDBclosedwg was written whole and where it was asked for; true before the first one.
ZM_API bool LastFileComplete();

/// Makes the drawing of a file a block of the open drawing, whole: layers, linetypes and text styles by name, blocks
/// within blocks to any depth, attributes, dimensions, polylines, elevations, thicknesses and handles; every point moved
/// by the file's base point. Takes files of version digits 1006 and 1009. A block that is there already is not read
/// again.
///
/// \param name  of the file without ".dwg"; the block has it too
/// \return  the block's number; -1, after a message that says why, where it cannot be had; the drawing is then as it was
ZM_API int ImportBlock(const char* name);

/// How the references of symbols get a block that the drawing lacks: by the copying of block files (false, at load), or
/// by ImportBlock. The z scale of a reference is then its x scale, and it has the current colour, which strokes of the
/// block in the colour "by block" take.
ZM_API void SetBlockImport(bool on);

/// A folder where block files are looked for before the directories of the family; null or empty for none (at load).
ZM_API void SetBlockFolder(const char* folder);

/// What copying left in the block definitions since the last open that other programs read wrong, with file, offset and
/// reason, GBK. Null after the last one.
ZM_API const char* BlockCopyWarning(int index);

/// What imports left out of block files since the last open, though the files have it: records of paper space and
/// extended data, counted, one text for each file, GBK. Null after the last one.
ZM_API const char* BlockImportNote(int index);

/// A filled quadrangle (SOLID) on the current layer, its height that of the current elevation, without a thickness.
///
/// \param corners  four points x, y in order around it, the last two the same for a triangle; survey metres
///                 Must not be null. Nothing is written where one is not finite, or no drawing is open.
/// \param color    of the CAD palette, 1 to 255; 0 is the colour of the block, 256 that of the layer
ZM_API void PutSolid(const double* corners, int color);

/// Whether _LDBsetelev takes a thickness (true, at load). Hatches give their symbol code as thickness, which programs
/// show as walls when they look from the side; with false every entity has thickness 0.
ZM_API void SetThicknessKept(bool kept);

/// Whether _LDBpolyline writes a line of four points and more that ends where it begins as a closed polyline without its
/// last point, as CAD programs draw rings themselves; false at load: all points, open.
ZM_API void SetRingsClosed(bool closed);

/// Gives the current attributes their values of the process's start: colour 7, the first layer, linetype and text style,
/// elevation and thickness 0. Opening a session keeps what the one before left, which may be numbers that its own tables
/// lack; who draws several files in one process calls this before each.
ZM_API void ResetAttributes();
}  // namespace zm::dwg
