// The platform types in the signatures of the exported interface.
//
// On Windows the handles and records are the system's own. Elsewhere they are defined here, with the same names,
// field names, field order and widths, so that code written against the interface compiles on both. The framework's
// string, list and window classes are the application framework's where it is in use (_AFX), else small classes of
// our own with the same behaviour in what they have.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

#include "zenromath/export.h"

#if defined(_WIN32)

#if defined(_AFX) || defined(_AFXDLL)
#include <afxwin.h>
#else
#include <windows.h>
#endif

namespace zm {
class Device;
}

#else  // not Windows

namespace zm {
class Device;
}

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using BOOL = std::int32_t;
using UINT = std::uint32_t;
using LONG = std::int32_t;
using INT_PTR = std::intptr_t;
using COLORREF = std::uint32_t;  // 0x00BBGGRR

/// A device context: the abstract device of zenromath/device.h itself.
using HDC = zm::Device*;

// Handles of objects; what they lead to belongs to the device layer or to the host.
struct ZmObject;
using HGDIOBJ = ZmObject*;
struct ZmPen;
using HPEN = ZmPen*;
struct ZmFont;
using HFONT = ZmFont*;
struct ZmBrush;
using HBRUSH = ZmBrush*;
struct ZmRegion;
using HRGN = ZmRegion*;
struct ZmBitmap;
using HBITMAP = ZmBitmap*;
struct ZmWindow;
using HWND = ZmWindow*;
struct ZmCursor;
using HCURSOR = ZmCursor*;

struct tagPOINT {
    LONG x;
    LONG y;
};
using POINT = tagPOINT;

struct tagSIZE {
    LONG cx;
    LONG cy;
};
using SIZE = tagSIZE;

struct tagRECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};
using RECT = tagRECT;

constexpr int LF_FACESIZE = 32;
struct tagLOGFONTA {
    LONG lfHeight;
    LONG lfWidth;
    LONG lfEscapement;
    LONG lfOrientation;
    LONG lfWeight;
    BYTE lfItalic;
    BYTE lfUnderline;
    BYTE lfStrikeOut;
    BYTE lfCharSet;
    BYTE lfOutPrecision;
    BYTE lfClipPrecision;
    BYTE lfQuality;
    BYTE lfPitchAndFamily;
    char lfFaceName[LF_FACESIZE];
};
using LOGFONTA = tagLOGFONTA;
using LOGFONT = tagLOGFONTA;

struct tagLOGPEN {
    UINT lopnStyle;
    POINT lopnWidth;
    COLORREF lopnColor;
};
using LOGPEN = tagLOGPEN;

// Pen styles.
constexpr int PS_SOLID = 0;
constexpr int PS_DASH = 1;
constexpr int PS_DOT = 2;
constexpr int PS_DASHDOT = 3;
constexpr int PS_DASHDOTDOT = 4;
constexpr int PS_NULL = 5;
constexpr int PS_INSIDEFRAME = 6;

// Hatch styles.
constexpr int HS_HORIZONTAL = 0;
constexpr int HS_VERTICAL = 1;
constexpr int HS_FDIAGONAL = 2;
constexpr int HS_BDIAGONAL = 3;
constexpr int HS_CROSS = 4;
constexpr int HS_DIAGCROSS = 5;

// Regions.
constexpr int ERROR_REGION = 0;
constexpr int NULLREGION = 1;
constexpr int SIMPLEREGION = 2;
constexpr int COMPLEXREGION = 3;
constexpr int RGN_AND = 1;
constexpr int RGN_OR = 2;
constexpr int RGN_XOR = 3;
constexpr int RGN_DIFF = 4;
constexpr int RGN_COPY = 5;
constexpr int ALTERNATE = 1;
constexpr int WINDING = 2;

// Background modes.
constexpr int TRANSPARENT = 1;
constexpr int OPAQUE = 2;

// Placing of formatted text.
constexpr UINT DT_LEFT = 0x0;
constexpr UINT DT_CENTER = 0x1;
constexpr UINT DT_RIGHT = 0x2;
constexpr UINT DT_VCENTER = 0x4;
constexpr UINT DT_BOTTOM = 0x8;
constexpr UINT DT_SINGLELINE = 0x20;
constexpr UINT DT_CALCRECT = 0x400;

// Message boxes: types and answers.
constexpr UINT MB_OK = 0x0;
constexpr UINT MB_YESNO = 0x4;
constexpr UINT MB_ICONSTOP = 0x10;
constexpr UINT MB_ICONQUESTION = 0x20;
constexpr UINT MB_ICONINFORMATION = 0x40;
constexpr UINT MB_SYSTEMMODAL = 0x1000;
constexpr UINT MB_TASKMODAL = 0x2000;
constexpr int IDOK = 1;
constexpr int IDCANCEL = 2;
constexpr int IDYES = 6;
constexpr int IDNO = 7;

// Window messages that the library looks at.
constexpr UINT WM_QUIT = 0x0012;
constexpr UINT WM_KEYUP = 0x0101;
constexpr UINT WM_MOUSEFIRST = 0x0200;
constexpr UINT WM_MOUSELAST = 0x0209;

constexpr COLORREF CLR_INVALID = 0xFFFFFFFF;

#endif  // Windows or not

namespace zm {
/// unsigned __int64 and __int64 of the interface.
using UInt64 = std::uint64_t;
using Int64 = std::int64_t;
}  // namespace zm

#if !defined(_AFX) && !defined(_AFXDLL)

/// A text string: bytes in GBK, with an end byte after them.
class CString {
 public:
    CString() = default;
    CString(const char* text) : m_text(text != nullptr ? text : "") {}
    CString(const char* text, int length) : m_text(text, static_cast<std::size_t>(length < 0 ? 0 : length)) {}

    operator const char*() const { return m_text.c_str(); }
    const char* GetString() const { return m_text.c_str(); }
    int GetLength() const { return static_cast<int>(m_text.size()); }
    bool IsEmpty() const { return m_text.empty(); }
    void Empty() { m_text.clear(); }
    /// The byte at a position; 0 outside the text.
    char GetAt(int index) const {
        return index >= 0 && index < GetLength() ? m_text[static_cast<std::size_t>(index)] : '\0';
    }
    CString& operator+=(const char* text) {
        if (text != nullptr) m_text += text;
        return *this;
    }
    CString& operator+=(char c) {
        m_text += c;
        return *this;
    }
    int Compare(const char* text) const { return m_text.compare(text != nullptr ? text : ""); }
    CString Left(int count) const { return Mid(0, count); }
    CString Mid(int first, int count) const {
        if (first < 0) first = 0;
        if (first >= GetLength() || count <= 0) return {};
        CString part;
        part.m_text = m_text.substr(static_cast<std::size_t>(first), static_cast<std::size_t>(count));
        return part;
    }
    /// printf's formats with a decimal point in every locale.
    ZM_API void Format(const char* format, ...);

    friend CString operator+(CString a, const char* b) { return a += b; }
    friend CString operator+(CString a, const CString& b) { return a += b.GetString(); }
    friend bool operator==(const CString& a, const CString& b) { return a.m_text == b.m_text; }
    friend bool operator==(const CString& a, const char* b) { return a.Compare(b) == 0; }

 private:
    std::string m_text;
};

/// An ordered list of text strings.
class CStringArray {
 public:
    int GetSize() const { return static_cast<int>(m_items.size()); }
    int GetCount() const { return GetSize(); }
    int Add(const char* text) {
        m_items.emplace_back(text);
        return GetSize() - 1;
    }
    const CString& GetAt(int index) const { return m_items.at(static_cast<std::size_t>(index)); }
    const CString& operator[](int index) const { return GetAt(index); }
    CString& operator[](int index) { return m_items.at(static_cast<std::size_t>(index)); }
    void SetAt(int index, const char* text) { m_items.at(static_cast<std::size_t>(index)) = CString(text); }
    void RemoveAll() { m_items.clear(); }
    void SetSize(int size) { m_items.resize(static_cast<std::size_t>(size < 0 ? 0 : size)); }

 private:
    std::vector<CString> m_items;
};

/// The root of the framework's classes.
class CObject {
 public:
    virtual ~CObject() = default;
};

/// An ordered list of object pointers that it does not own.
class CObArray {
 public:
    int GetSize() const { return static_cast<int>(m_items.size()); }
    int GetCount() const { return GetSize(); }
    int Add(CObject* object) {
        m_items.push_back(object);
        return GetSize() - 1;
    }
    CObject* GetAt(int index) const { return m_items.at(static_cast<std::size_t>(index)); }
    CObject* operator[](int index) const { return GetAt(index); }
    void RemoveAll() { m_items.clear(); }

 private:
    std::vector<CObject*> m_items;
};

/// An ordered list of values.
template <class Type, class ArgType = const Type&>
class CArray {
 public:
    int GetSize() const { return static_cast<int>(m_items.size()); }
    int GetCount() const { return GetSize(); }
    /// The growth step is taken as a first reservation.
    void SetSize(int size, int growBy = -1) {
        if (growBy > 0) m_items.reserve(static_cast<std::size_t>(growBy));
        m_items.resize(static_cast<std::size_t>(size < 0 ? 0 : size));
    }
    int Add(ArgType item) {
        m_items.push_back(item);
        return GetSize() - 1;
    }
    const Type& GetAt(int index) const { return m_items.at(static_cast<std::size_t>(index)); }
    Type& operator[](int index) { return m_items.at(static_cast<std::size_t>(index)); }
    const Type& operator[](int index) const { return GetAt(index); }
    Type* GetData() { return m_items.data(); }
    const Type* GetData() const { return m_items.data(); }
    void RemoveAll() { m_items.clear(); }

 private:
    std::vector<Type> m_items;
};

/// A point of device pixels.
class CPoint : public tagPOINT {
 public:
    CPoint() : tagPOINT{0, 0} {}
    CPoint(int px, int py) : tagPOINT{px, py} {}
};

/// A window of the application, known to the library by its handle alone.
class CWnd : public CObject {
 public:
    CWnd() = default;
    explicit CWnd(HWND handle) : m_hWnd(handle) {}
    HWND GetSafeHwnd() const { return m_hWnd; }
    /// Copies the window's text, at most size - 1 bytes and an end byte; the number of bytes copied.
    ZM_API int GetWindowText(char* buffer, int size) const;

    HWND m_hWnd = nullptr;
};

/// An edit control and a label, kept apart by their types only.
class CEdit : public CWnd {
 public:
    using CWnd::CWnd;
};
class CStatic : public CWnd {
 public:
    using CWnd::CWnd;
};

/// A modal dialog: a window that is made by a template, and the window that it belongs to.
class CDialog : public CWnd {
 public:
    explicit CDialog(UINT templateId = 0, CWnd* parent = nullptr) : m_templateId(templateId), m_parent(parent) {}
    /// Shows the dialog until it is ended: IDOK or IDCANCEL.
    virtual INT_PTR DoModal() { return IDCANCEL; }

 protected:
    UINT m_templateId;
    CWnd* m_parent;
};

/// The application object.
class CWinApp : public CObject {
 public:
    /// name may be null.
    explicit CWinApp(const char* name = nullptr) : m_name(name != nullptr ? name : "") {}
    const CString& AppName() const { return m_name; }

 private:
    CString m_name;
};

#endif  // no application framework
