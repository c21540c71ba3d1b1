// Texts of the DWG writer that reach the user, as GBK bytes. Each is beside its readable form; a test compares the
// two. Those in English are plain ASCII and the same in both.
#pragma once

namespace zm::dwg::texts {

struct Text {
    const char* gbk;
    const char* readable;  // UTF-8
};

// Fixed by the interface.
inline constexpr char kNoTemplate[] = "cannot open acad.dwg!";
inline constexpr char kNoOutput[] = "cannot write dwg!";
inline constexpr char kNoSpace[] = "no space";
inline constexpr char kLayerNull[] = "lay name null";
inline constexpr char kNoLinetypeFile[] = "CANNOT OPEN LINETYPE FILE!\n";
inline constexpr char kVerticalFit[] = "Tere is VERTICAL style. Can't fit!";
inline constexpr char kNoBlockFile[] = "Cannot open block file!\n";
inline constexpr char kUnknownType[] = "UNKNOWN TYPE";
// "Linetype %s not found in ACAD.LIN! The system will stop"
inline constexpr Text kNoLinetype = {
    "ACAD.LIN\xD6\xD0\xCE\xB4\xD5\xD2\xB5\xBD%s\xCF\xDF\xD0\xCD! \xCF\xB5\xCD\xB3\xBD\xAB\xD6\xD5\xD6\xB9",
    "ACAD.LIN中未找到%s线型! 系统将终止"};

// Our own.
inline constexpr char kLinetypeFault[] =
    "ACAD.LIN: a linetype name or pattern element has 20 or more characters. Shorten it; the program stops here.";
inline constexpr char kClosed[] =
    "No drawing file is open, so nothing is written. Open one with _LDBopendwg before drawing.";
inline constexpr char kStillOpen[] = "%s was still open and has been finished before the next drawing.";
inline constexpr char kIncomplete[] =
    "%s could not be written whole: the disk is full, or the file was closed or taken away. What is there is damaged. "
    "Make room or choose another place, and draw it again.";
inline constexpr char kElsewhere[] =
    "The drawing could not be made as %s: the folder is missing or refuses writing. It was written as %s instead.";
inline constexpr char kTemplateFault[] = "acad.dwg cannot be used as a template: %s.";
inline constexpr char kBlockFault[] = "%s.dwg is damaged at offset %lu: %s. The block is left out.";
inline constexpr char kBlockUnknown[] =
    "%s.dwg cannot be copied: at offset %lu, %s. The block is left out; an import takes it whole.";
inline constexpr char kImportNote[] = "%s.dwg: left out of the block are %s.";
inline constexpr char kImportFault[] = "%s.dwg cannot be used as a block: at offset %lu, %s. The block is left out.";
inline constexpr char kCopyWarning[] = "%s.dwg at offset %lu: %s. Other programs will not read the drawing right.";
inline constexpr char kBlockLimit[] = "%s.dwg does not fit: %s. The block is left out.";

// Limits of a drawing, reported once in a session.
inline constexpr char kTooManyLayers[] =
    "The drawing holds 200 layers, no more fit. Entities of further layers go to the layer before.";
inline constexpr char kTooManyLinetypes[] =
    "The drawing holds 100 linetypes, no more fit. The linetype before stays selected.";
inline constexpr char kTooManyStyles[] =
    "The drawing holds 10 text styles, no more fit. The style before stays selected.";
inline constexpr char kLongName[] =
    "A layer, linetype or style name is longer than 31 bytes. It is cut there; choose shorter names.";
inline constexpr char kLongBlockName[] =
    "A block name is longer than 31 bytes. The block is left out; rename its file.";
inline constexpr char kLongFont[] = "A font file name is longer than 63 bytes. It is cut there; choose a shorter name.";
inline constexpr char kLongPattern[] =
    "A linetype of ACAD.LIN has more than 12 elements. The elements after the twelfth are left out.";
inline constexpr char kLongText[] = "A text is longer than 32697 bytes. It is cut there.";
inline constexpr char kLongFile[] =
    "The drawing has reached 4 GiB, the most its offsets can tell. Everything further is left out.";
inline constexpr char kNoCoordinate[] =
    "An entity has a coordinate that is no finite number. Such entities are left out.";
inline constexpr char kNoAttribute[] =
    "An elevation, thickness or text width that is no finite number was given. The value before stays.";

}  // namespace zm::dwg::texts
