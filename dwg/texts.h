// Texts of the DWG writer that reach the user, as GBK bytes. Each stands beside its readable form; a test compares the
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
inline constexpr char kBlockLimit[] = "%s.dwg does not fit: %s. The block is left out.";

}  // namespace zm::dwg::texts
