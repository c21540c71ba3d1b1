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
// and the first case of each kind in a session is told in a message box.
#pragma once

#include "zenromath/platform.h"

/// Opens the session on an output file. The file is made from the template "acad.dwg", which is searched in the
/// project, the module and the ini directory.
///
/// \param path  the output; with a backslash it is taken as it stands, without one it is made in the project directory.
///              An existing file is overwritten. Where the folder is missing or refuses writing the file goes by its
///              bare name to the first of the project, the module and the ini directory that takes it, and close tells
///              so.
///
/// Errors: "cannot open acad.dwg!", a template that cannot be used (the message says why), "cannot write dwg!" and
/// "no space" (memory) end the process with status 1. A session that is still open is closed first, with a message.
ZM_API void _LDBopendwg(char* path);

/// Finishes the file: writes header, tables and block definitions, and closes it.
///
/// Errors: a file that could not be written whole (full disk, lost permission, closed by others) is told with its path.
/// zm::dwg::LastFileComplete() then answers false.
ZM_API void _LDBclosedwg(void);

/// Sets the current colour. Takes effect on the next entity and on the next _LDBsetlay.
///
/// \param color  1 to 255 for entities, start value 7. The low 16 bits are kept; an entity holds the low 8 of them.
ZM_API void _LDBsetcolor(int color);

/// Sets the current elevation and thickness, both in survey metres, start values 0. A value that is no finite number
/// leaves the attribute as it is and is told.
ZM_API void _LDBsetelev(double elevation, double thickness);

/// Sets the current elevation alone; as _LDBsetelev.
ZM_API void SetDwgElevation(double elevation);

/// Makes a layer current, and makes it first if the file has none of that name.
///
/// The layer's record takes the current colour and the current linetype, each time, also where the layer stood in the
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
/// Errors: without "ACAD.LIN" the message "CANNOT OPEN LINETYPE FILE!\n"; a linetype found nowhere is told and ends the
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
}  // namespace zm::dwg
