// The header variables of the template drawing: place, type, name and value of each.
#pragma once

#include <cstddef>

namespace zm::tool {

enum class Type {
    u8,
    u16,
    i16,
    u32,
    f64,
    f64x2,
    f64x3,
    time,   // u32 Julian day, u32 milliseconds
    table,  // u16 record size, u16 count, u16 0, u32 address; the last three are 0
    text    // filled with zero bytes
};

struct Variable {
    std::size_t offset;  // in the file
    std::size_t size;    // bytes
    Type type;
    const char* name;
    double values[3];
    const char* text;
};

// clang-format off
// Lengths in metres. The extents say that nothing is drawn yet; limits and view show 420 x 297 m from the origin.
inline constexpr Variable kVariables[] = {
    {94, 24, Type::f64x3, "INSBASE", {}, ""},  // insertion base point
    {118, 2, Type::u16, "PLINEGEN", {}, ""},  // linetype runs through polyline vertices
    {120, 24, Type::f64x3, "EXTMIN", {1e20, 1e20, 1e20}, ""},  // drawing extents, lower corner; 1e20 says none
    {144, 24, Type::f64x3, "EXTMAX", {-1e20, -1e20, -1e20}, ""},  // drawing extents, upper corner; -1e20 says none
    {168, 16, Type::f64x2, "LIMMIN", {}, ""},  // drawing limits, lower left
    {184, 16, Type::f64x2, "LIMMAX", {420, 297}, ""},  // drawing limits, upper right
    {200, 24, Type::f64x3, "VIEWCTR", {210, 148.5, 0}, ""},  // centre of the current view
    {224, 8, Type::f64, "VIEWSIZE", {297}, ""},  // height of the current view
    {232, 2, Type::u16, "SNAPMODE", {}, ""},  // snap on
    {234, 16, Type::f64x2, "SNAPUNIT", {1, 1}, ""},  // snap spacing
    {250, 16, Type::f64x2, "SNAPBASE", {}, ""},  // snap base point
    {266, 8, Type::f64, "SNAPANG", {}, ""},  // snap angle
    {274, 2, Type::u16, "SNAPSTYLE", {}, ""},  // snap style, 1 isometric
    {276, 2, Type::u16, "SNAPISOPAIR", {}, ""},  // isometric plane
    {278, 2, Type::u16, "GRIDMODE", {}, ""},  // grid on
    {280, 16, Type::f64x2, "GRIDUNIT", {}, ""},  // grid spacing
    {296, 2, Type::u16, "ORTHOMODE", {}, ""},  // ortho on
    {298, 2, Type::u16, "REGENMODE", {1}, ""},  // automatic regeneration
    {300, 2, Type::u16, "FILLMODE", {1}, ""},  // solids filled
    {302, 2, Type::u16, "QTEXTMODE", {}, ""},  // quick text
    {304, 2, Type::u16, "DRAGMODE", {2}, ""},  // dragging, 2 automatic
    {306, 8, Type::f64, "LTSCALE", {1}, ""},  // linetype scale
    {314, 8, Type::f64, "TEXTSIZE", {2.5}, ""},  // default text height
    {322, 8, Type::f64, "TRACEWID", {1}, ""},  // default trace width
    {330, 2, Type::u16, "CLAYER", {}, ""},  // current layer, index
    {332, 4, Type::u32, "old colour, low", {15}, ""},  // left from older files; 15 in every sample
    {336, 4, Type::u32, "old colour, high", {}, ""},  // left from older files
    {340, 2, Type::u16, "unknown 1", {}, ""},  // 0 in every sample
    {342, 2, Type::u16, "PSLTSCALE", {}, ""},  // 0 in every sample
    {344, 2, Type::u16, "TREEDEPTH", {}, ""},  // 0 in every sample
    {346, 2, Type::u16, "unknown 2", {}, ""},  // 0 in every sample
    {348, 8, Type::f64, "aspect ratio", {420.0 / 297.0}, ""},  // width over height of the drawing screen
    {356, 2, Type::u16, "LUNITS", {2}, ""},  // linear units, 2 decimal
    {358, 2, Type::u16, "LUPREC", {4}, ""},  // decimal places
    {360, 2, Type::u16, "AXISMODE", {}, ""},  // axis on
    {362, 16, Type::f64x2, "AXISUNIT", {}, ""},  // axis tick spacing
    {378, 8, Type::f64, "SKETCHINC", {1}, ""},  // sketch increment
    {386, 8, Type::f64, "FILLETRAD", {}, ""},  // fillet radius
    {394, 2, Type::u16, "AUNITS", {}, ""},  // angular units, 0 decimal degrees
    {396, 2, Type::u16, "AUPREC", {}, ""},  // angular places
    {398, 2, Type::u16, "TEXTSTYLE", {}, ""},  // current text style, index
    {400, 2, Type::u16, "OSMODE", {}, ""},  // object snap bits
    {402, 2, Type::u16, "ATTMODE", {1}, ""},  // attribute display, 1 normal
    {404, 15, Type::text, "MENU", {}, "acad"},  // menu file name
    {419, 8, Type::f64, "DIMSCALE", {1}, ""},  // overall dimension scale
    {427, 8, Type::f64, "DIMASZ", {0.18}, ""},  // arrow size
    {435, 8, Type::f64, "DIMEXO", {0.0625}, ""},  // extension line offset
    {443, 8, Type::f64, "DIMDLI", {0.38}, ""},  // baseline spacing
    {451, 8, Type::f64, "DIMEXE", {0.18}, ""},  // extension line extension
    {459, 8, Type::f64, "DIMTP", {}, ""},  // plus tolerance
    {467, 8, Type::f64, "DIMTM", {}, ""},  // minus tolerance
    {475, 8, Type::f64, "DIMTXT", {0.18}, ""},  // dimension text height
    {483, 8, Type::f64, "DIMCEN", {0.09}, ""},  // centre mark size
    {491, 8, Type::f64, "DIMTSZ", {}, ""},  // tick size
    {499, 1, Type::u8, "DIMTOL", {}, ""},  // tolerances shown
    {500, 1, Type::u8, "DIMLIM", {}, ""},  // limits shown
    {501, 1, Type::u8, "DIMTIH", {1}, ""},  // text inside is horizontal
    {502, 1, Type::u8, "DIMTOH", {1}, ""},  // text outside is horizontal
    {503, 1, Type::u8, "DIMSE1", {}, ""},  // first extension line suppressed
    {504, 1, Type::u8, "DIMSE2", {}, ""},  // second extension line suppressed
    {505, 1, Type::u8, "DIMTAD", {}, ""},  // text above the dimension line
    {506, 1, Type::u8, "LIMCHECK", {}, ""},  // limits checked (some readers take this and the next byte as one u16)
    {507, 46, Type::text, "MENU, continued", {}, ""},  // rest of a long menu name
    {553, 8, Type::f64, "ELEVATION", {}, ""},  // current elevation
    {561, 8, Type::f64, "THICKNESS", {}, ""},  // current thickness
    {569, 24, Type::f64x3, "VIEWDIR", {0, 0, 1}, ""},  // view direction
    {593, 24, Type::f64x3, "view x axis", {}, ""},  // 0 in every sample
    {617, 24, Type::f64x3, "view y axis", {}, ""},  // 0 in every sample
    {641, 24, Type::f64x3, "view z axis", {}, ""},  // 0 in every sample
    {665, 24, Type::f64x3, "view x axis, second", {}, ""},  // 0 in every sample
    {689, 24, Type::f64x3, "view y axis, second", {}, ""},  // 0 in every sample
    {713, 24, Type::f64x3, "view z axis, second", {}, ""},  // 0 in every sample
    {737, 2, Type::u16, "3D flag", {}, ""},  // 0 in every sample
    {739, 2, Type::u16, "BLIPMODE", {1}, ""},  // blips
    {741, 1, Type::u8, "DIMZIN", {}, ""},  // zero suppression
    {742, 8, Type::f64, "DIMRND", {}, ""},  // dimension rounding
    {750, 8, Type::f64, "DIMDLE", {}, ""},  // dimension line extension
    {758, 33, Type::text, "DIMBLK", {}, ""},  // arrow block name
    {791, 2, Type::u16, "circle zoom", {100}, ""},  // circle smoothness in percent
    {793, 2, Type::u16, "COORDS", {}, ""},  // coordinate display
    {795, 2, Type::u16, "CECOLOR", {256}, ""},  // current colour, 256 by layer, 0 by block
    {797, 2, Type::u16, "CELTYPE", {256}, ""},  // current linetype index, 256 by layer, 255 by block
    {799, 8, Type::time, "TDCREATE", {2451545, 43200000}, ""},  // creation: Julian day, milliseconds
    {807, 8, Type::time, "TDUPDATE", {2451545, 43200000}, ""},  // last update
    {815, 8, Type::time, "TDINDWG", {}, ""},  // editing time
    {823, 8, Type::time, "TDUSRTIMER", {}, ""},  // user timer
    {831, 2, Type::u16, "USRTIMER", {1}, ""},  // user timer on
    {833, 2, Type::u16, "FASTZOOM", {1}, ""},  // fast zoom
    {835, 2, Type::u16, "SKPOLY", {}, ""},  // sketch makes polylines
    {837, 2, Type::u16, "month", {}, ""},  // 0 in every sample
    {839, 2, Type::u16, "day", {}, ""},  // 0 in every sample
    {841, 2, Type::u16, "year", {}, ""},  // 0 in every sample
    {843, 2, Type::u16, "hour", {}, ""},  // 0 in every sample
    {845, 2, Type::u16, "minute", {}, ""},  // 0 in every sample
    {847, 2, Type::u16, "second", {}, ""},  // 0 in every sample
    {849, 2, Type::u16, "millisecond", {}, ""},  // 0 in every sample
    {851, 8, Type::f64, "ANGBASE", {}, ""},  // direction of angle 0
    {859, 2, Type::u16, "ANGDIR", {}, ""},  // angles counter-clockwise
    {861, 2, Type::u16, "PDMODE", {}, ""},  // point display mode
    {863, 8, Type::f64, "PDSIZE", {}, ""},  // point display size
    {871, 8, Type::f64, "PLINEWID", {}, ""},  // default polyline width
    {879, 2, Type::i16, "USERI1", {}, ""},  // user integer
    {881, 2, Type::i16, "USERI2", {}, ""},  // user integer
    {883, 2, Type::i16, "USERI3", {}, ""},  // user integer
    {885, 2, Type::i16, "USERI4", {}, ""},  // user integer
    {887, 2, Type::i16, "USERI5", {}, ""},  // user integer
    {889, 8, Type::f64, "USERR1", {}, ""},  // user real
    {897, 8, Type::f64, "USERR2", {}, ""},  // user real
    {905, 8, Type::f64, "USERR3", {}, ""},  // user real
    {913, 8, Type::f64, "USERR4", {}, ""},  // user real
    {921, 8, Type::f64, "USERR5", {}, ""},  // user real
    {929, 1, Type::u8, "DIMALT", {}, ""},  // alternate units
    {930, 1, Type::u8, "DIMALTD", {2}, ""},  // alternate decimal places
    {931, 1, Type::u8, "DIMASO", {1}, ""},  // associative dimensions
    {932, 1, Type::u8, "DIMSHO", {}, ""},  // dimension update while dragging
    {933, 16, Type::text, "DIMPOST", {}, ""},  // dimension suffix
    {949, 16, Type::text, "DIMAPOST", {}, ""},  // alternate suffix
    {965, 8, Type::f64, "DIMALTF", {25.4}, ""},  // alternate unit factor
    {973, 8, Type::f64, "DIMLFAC", {1}, ""},  // linear measurement factor
    {981, 2, Type::u16, "SPLINESEGS", {8}, ""},  // spline segments
    {983, 2, Type::u16, "SPLFRAME", {}, ""},  // spline frame shown
    {985, 2, Type::u16, "ATTREQ", {1}, ""},  // attribute prompts on insertion
    {987, 2, Type::u16, "ATTDIA", {}, ""},  // attribute dialog
    {989, 8, Type::f64, "CHAMFERA", {}, ""},  // first chamfer distance
    {997, 8, Type::f64, "CHAMFERB", {}, ""},  // second chamfer distance
    {1005, 2, Type::u16, "MIRRTEXT", {1}, ""},  // mirrored text
    {1007, 10, Type::table, "UCS table", {105}, ""},  // record size 105, count, 0, address
    {1017, 2, Type::u16, "code page", {39}, ""},  // code page of text; 39 is GBK (936); 0 in every sample
    {1019, 24, Type::f64x3, "UCSORG", {}, ""},  // user coordinate system, origin
    {1043, 24, Type::f64x3, "UCSXDIR", {1, 0, 0}, ""},  // its x axis
    {1067, 24, Type::f64x3, "UCSYDIR", {0, 1, 0}, ""},  // its y axis
    {1091, 24, Type::f64x3, "TARGET", {}, ""},  // view target
    {1115, 8, Type::f64, "LENSLENGTH", {50}, ""},  // lens length
    {1123, 8, Type::f64, "VIEWTWIST", {}, ""},  // view twist
    {1131, 8, Type::f64, "FRONTZ", {}, ""},  // front clip
    {1139, 8, Type::f64, "BACKZ", {}, ""},  // back clip
    {1147, 2, Type::u16, "VIEWMODE", {}, ""},  // view mode bits
    {1149, 1, Type::u8, "DIMTOFL", {}, ""},  // line forced inside
    {1150, 33, Type::text, "DIMBLK1", {}, ""},  // first arrow block
    {1183, 33, Type::text, "DIMBLK2", {}, ""},  // second arrow block
    {1216, 1, Type::u8, "DIMSAH", {}, ""},  // separate arrow blocks
    {1217, 1, Type::u8, "DIMTIX", {}, ""},  // text forced inside
    {1218, 1, Type::u8, "DIMSOXD", {}, ""},  // outside lines suppressed
    {1219, 8, Type::f64, "DIMTVP", {}, ""},  // vertical text position
    {1227, 33, Type::text, "unknown text", {}, ""},  // empty in every sample
    {1260, 2, Type::u16, "HANDLING", {}, ""},  // entity handles on
    {1262, 8, Type::text, "HANDSEED", {}, ""},  // next handle, eight bytes, high byte first
    {1270, 2, Type::u16, "SURFU", {6}, ""},  // surface density, m
    {1272, 2, Type::u16, "SURFV", {6}, ""},  // surface density, n
    {1274, 2, Type::u16, "SURFTYPE", {6}, ""},  // surface type, 6 cubic B-spline
    {1276, 2, Type::u16, "SURFTAB1", {6}, ""},  // mesh tabulations
    {1278, 2, Type::u16, "SURFTAB2", {6}, ""},  // mesh tabulations
    {1280, 10, Type::table, "VPORT table", {249}, ""},  // record size 249, count, 0, address
    {1290, 2, Type::u16, "FLATLAND", {}, ""},  // compatibility with flat drawings
    {1292, 2, Type::u16, "SPLINETYPE", {6}, ""},  // spline type, 6 cubic
    {1294, 2, Type::u16, "UCSICON", {}, ""},  // coordinate system icon
    {1296, 2, Type::i16, "UCSNAME", {-1}, ""},  // named coordinate system, index, -1 none
    {1298, 10, Type::table, "APPID table", {33}, ""},  // record size 33, count, 0, address
    {1308, 2, Type::u16, "WORLDVIEW", {1}, ""},  // view commands in world coordinates
};
// clang-format on

}  // namespace zm::tool
