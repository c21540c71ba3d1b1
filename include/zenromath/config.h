// Layers, pen widths, the palette, note classes and fonts: the tables behind a feature's look, with their text files.
//
// All texts are bytes in GBK. All functions are for the application's user-interface thread.
#pragma once

#include "zenromath/platform.h"

// ---- Layers -------------------------------------------------------------------------------------------------------

/// One layer: feature codes from start to end, both included.
struct LayerCol {
    char name[12];  ///< zero-terminated; a blank in it would shift all later fields of its line in the file
    int start;      ///< first code
    int end;        ///< last code
    int color;      ///< colour number, an index into the palette; 1 to 9 in use
    int show;       ///< 1 shown, 0 hidden
};

/// Loads the layers of section "LayerSet" of the project's ".ini" file, then the palette and the pen widths.
///
/// Without any layer there, or with a count below 1, the table has one default layer of codes 100 to 999. At most 1000
/// layers are read. May be called again. The project's current extension becomes ".ini".
///
/// Errors: a layer line of fewer than 4 bytes is reported by _LErr, one that lacks fields by a message; what is missing
/// is 0, a name longer than 11 bytes is cut. Without memory for the tables the process ends with status 13 after a
/// message.
ZM_API void ReadCengCi(void);
/// Saves the layers, at most 1000: the count is stored as that limit too. Lines of higher numbers stay in the file. The
/// project's current extension becomes ".ini".
///
/// Errors: a file that could not be written, and a name that would be read back as another one (empty, or with a blank, a
/// tab or a line end in it), are each reported by a message. Such names are saved as they stand, a line end as "_".
ZM_API void WriteCengCi(void);
/// Hands out the table of 1000 layers (null before the first read and after DeleteCengCi8Dlg) and the count by address.
/// Both may be changed by the caller, who keeps to 1000 layers and to terminated names; lookups see the change at once.
ZM_API void Get_CengCi(LayerCol*& table, int*& count);
/// Colour number of a code, of the first layer that holds it; 0 if none does.
///
/// A number that is negative or above 9 is set to 1 in the table itself, for good, and WriteCengCi saves that.
ZM_API int GetColorNo1(int code);
/// Show flag of a code, of the first layer that holds it; 0 if none does.
ZM_API int GetRec(int code);
/// Name of the first layer that holds a code, null if none does. Points into the table.
ZM_API char* GetLayerName(int code);
/// Frees the layers and the pen widths; lookups then find nothing. Shows no dialog.
ZM_API void DeleteCengCi8Dlg(void);

// ---- Pen widths and palette ---------------------------------------------------------------------------------------

/// Pen width of a feature code in 0.01 mm.
///
/// \param code  1 to 999; any other gives 0
/// \return      the code's width, the default width where it has none of its own; 0 before ReadCengCi
ZM_API int GetPenWidth(int code);
/// Colour of a feature code, red in the low byte: the palette's entry of GetColorNo1, entry 0 for a code in no layer.
ZM_API unsigned long GetColorNo(int code);
/// Hands out the palette of ten colours by address, red in the low byte of each. Entry 0 is for no colour number.
/// \return 10
ZM_API int Get_SysColor(unsigned long*& palette);
/// Reads the colours 1 to 9 of section "PenColor" of "neworv.ini" in the machine's configuration directory. The first
/// key that is missing ends the reading; it and those after it keep their values.
ZM_API void ReadColorSetting(void);
/// Writes the colours 1 to 9 there. A file that could not be written is reported by a message with its path.
ZM_API void WriteColorSetting(void);

// ---- Note classes and fonts ---------------------------------------------------------------------------------------

/// One note class.
struct NOTELAY {
    char code;           ///< "0" is the default class, "@" elevations, "#" control points; else A-Z, a-z, 0-9
    char layerName[11];  ///< zero-terminated
    int color;           ///< colour number, 1 to 7
    int display;         ///< 0 no output, other values output; 3 is recommended
    int height;          ///< character height, 0.1 mm
    int width;           ///< character width, 0.1 mm
    int interval;        ///< character interval, 0.1 mm
    int fontNumber;      ///< number of its NOTEFONT
    int convert;         ///< output switches, three decimal digits: OutAtt, OutDxf, OutNot
    char memo[40];       ///< free text, zero-terminated
};

/// One font of notes.
struct NOTEFONT {
    int number;           ///< by which note classes name it
    char screenFont[24];  ///< face name for the screen
    char textStyle[24];   ///< DWG text style, such as "Standard"
    char fontName[24];    ///< DWG font name, such as "Hztxt"
    int slant;            ///< 0 upright, 1 left by 18 degrees, 2 right by 18 degrees
    LOGFONTA logFont;     ///< its face name is the screen font; height, width, angles and italic are 0
};

/// A note definition of section "OTHER NOTE": seven values in the order of its line. What they mean is the caller's.
struct SpOrvNoteDef {
    int value1;   ///< the first number of the line
    char value2;  ///< the second, one character
    int value3;   ///< the third number
    int value4;   ///< the fourth number
    int value5;   ///< the fifth number
    int value6;   ///< the sixth number
    int value7;   ///< at least 1
};

/// The note classes and fonts of "Orvnote.cod" in the module directory. One object for each application.
///
/// A class character that no class has is answered for the default class.
class ZM_API TqNoteLayBase {
 public:
    /// The records of the classes, in the order of the file.
    using ClassList = CArray<NOTELAY*, NOTELAY*>;
    /// The records of the fonts, in the order of the file.
    using FontList = CArray<NOTEFONT*, NOTEFONT*>;
    static constexpr int kValueSize = 128;  ///< bytes of a value that is read, its end byte included
    static constexpr int kLineSize = 160;   ///< bytes that the longest class line needs, its end byte included

    /// Reads classes and fonts. The object becomes the global one if both were found; a message says if no class was.
    TqNoteLayBase();
    /// The same from another file. path: whole, GBK, at most 255 bytes; null or a longer one is no file.
    explicit TqNoteLayBase(const char* path);
    /// Frees all records; there is no global object then.
    ~TqNoteLayBase();
    TqNoteLayBase(const TqNoteLayBase&) = delete;
    TqNoteLayBase& operator=(const TqNoteLayBase&) = delete;

    // Lookups by class character; each makes the class it answers for the current one. On an empty table they raise
    // std::invalid_argument.

    char* LayerName(char code);  ///< layer, GBK
    char* Memo(char code);       ///< what the class is for, GBK
    int Color(char code);        ///< colour number of the palette
    int OutDcDwg(char code);     ///< display
    int CharH(char code);        ///< height, 0.1 mm
    int CharW(char code);        ///< width, 0.1 mm
    int CharI(char code);        ///< interval, 0.1 mm
    int Fontn(char code);        ///< font number
    /// The font of the class, null if it was not loaded.
    NOTEFONT* FontInfo(char code);
    int OutNot(char code);  ///< convert modulo 10
    int OutDxf(char code);  ///< convert / 10, modulo 10
    int OutAtt(char code);  ///< convert / 100, modulo 10
    /// The record itself, valid until the classes are read again.
    NOTELAY* GetNoteLay(char code);
    /// Copies the record out; 1.
    int ReadRcdByCN(char code, NOTELAY* record);
    /// Shows the record in a message; 1.
    int ShowRcd(char code);

    /// Number of classes at the last read.
    int GetCount();
    /// The font of that number, null if none.
    NOTEFONT* GetFontInfo(int number);
    /// The list of the classes; it owns its records.
    ClassList* GetNLayTbl();
    /// The list of the fonts; it owns its records.
    FontList* GetFontTbl();
    /// Copies the default class out; 1, 0 on an empty table.
    int GetDefaultRcd(NOTELAY* record);
    /// Copies the record over the default class and takes its code as the default character; 1. On an empty table a
    /// message, and 0.
    int SetDefaultRcd(NOTELAY* record);

    /// Reads the note definition of a code, "0,0,0,0,66,10,1" if it has none.
    /// \return the class whose character is the first byte of the definition's text
    NOTELAY* GetNoteLayByOrvCode(int code, SpOrvNoteDef& definition);
    /// The same for a code that is given as text.
    NOTELAY* GetNoteLayByOrvCode(char* code, SpOrvNoteDef& definition);
    /// Class character of that class of a layer whose height is nearest to height (0.1 mm), the earlier of two equally
    /// near; the default character if none is nearer than 100.
    char MatchLayCharH(char* layer, int height);
    /// Starts a search for the classes of a layer and gives the first, see ReadNextByLN.
    char ReadFirstByLN(char* layer, NOTELAY* record);
    /// The next class of the layer: its code, the record copied out if not null; 0 at the end.
    char ReadNextByLN(NOTELAY* record);

    /// Reads the classes, at most 99 lines, and the values beside them; the number of classes, 0 after a message.
    int ReadNoteClassInfo();
    /// Reads the fonts that the classes use; their number.
    int ReadNoteFontInfo();
    /// Writes "TOTAL", "CWEIGHT" and the class lines; 1, 0 if the file could not be written.
    int WriteNoteClassInfo();
    /// Writes "SCREENFONT" and the two lines of each font; 1, 0 if the file could not be written.
    int WriteNoteFontInfo();
    /// Parses a class line; 1 if it has at least the nine fields before the memo, else 0. Texts are cut at their
    /// fields.
    int ReadOneClass(char* line, NOTELAY* record);
    /// Writes a class line into a buffer of kLineSize bytes; its length.
    int MakeOneString(char* line, NOTELAY* record);
    /// Writes the eight numbers of a logical font under the font's number and "C"; 1, 0 if the file could not be
    /// written.
    int WriteLogFontInfo(int number, LOGFONTA font);
    /// Reads a value of the file into a buffer of kValueSize bytes; its length.
    int GetOneRcd(const char* section, const char* key, char* buffer, const char* def);
    /// Writes a value of the file; 1, 0 if it could not be written.
    int WriteOneRcd(const char* section, const char* key, const char* value);

    const char* GetFile() const { return m_path; }              ///< full path of the file
    double GetCWeight() const { return m_cweight; }             ///< CWEIGHT, 1 if missing
    const char* GetScreenFont() const { return m_screenFont; }  ///< SCREENFONT
    int GetDecMin() const { return m_decMin; }                  ///< width taken off per decimal point, 0.1 mm
    int GetDgt1Min() const { return m_dgt1Min; }                ///< width taken off per digit 1, 0.1 mm
    int GetEnMinP() const { return m_enMinP; }                  ///< ENMINP, 100 if missing

 private:
    int m_OrderCN(char code);
    int m_GetClassn(char code) const;
    void m_ReleaseCObArray(ClassList* list);
    void m_ReleaseCObArray(FontList* list);
    void Load();
    void ChooseDefault();

    int m_defaultIndex = 0;
    ClassList* m_classes = nullptr;
    FontList* m_fonts = nullptr;
    char m_defaultCode = 0;
    NOTELAY* m_current = nullptr;
    char m_path[256] = {};
    double m_cweight = 1.0;
    char m_screenFont[32] = {};
    int m_count = 0;
    int m_decMin = 0;
    int m_dgt1Min = 0;
    int m_enMinP = 100;
    int m_searchCursor = -1;
    char m_searchLayer[12] = {};
    bool m_searchFits = false;
};

/// The global object, null if there is none.
ZM_API TqNoteLayBase* GetTqNoteLayBasePt();
