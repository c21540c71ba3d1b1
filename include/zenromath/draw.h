// Clipping and drawing: the clip area, the drawing context with its three sinks, pens and fonts.
//
// Survey coordinates are metres on the ground, x to the right, y up. Device coordinates are pixels, y down. Texts are
// bytes in GBK; a byte with the high bit set begins a character of two bytes. Everything here is for the application's
// user-interface thread.
#pragma once

#include <type_traits>

#include "zenromath/platform.h"

namespace zm::draw {
struct Access;

/// An unsigned integer type beside DWORD, so that a call with 0xFFFFFFFF finds the DWORD overload on every
/// platform, whichever type DWORD is there.
template <class T>
concept OtherUnsigned = std::is_same_v<T, unsigned int> || std::is_same_v<T, unsigned long>;
}  // namespace zm::draw

/// A polygon point, survey coordinates.
struct PP {
    double x;  ///< metres east
    double y;  ///< metres north
};

namespace zm {
/// One piece of rgncutline, made with new and owned by the caller; the list holds its address in place of a CObject's.
struct RegionPiece {
    double first[2];   ///< first end; both numbers are its x
    double second[2];  ///< second end; both numbers are its x
    BYTE mark;         ///< in or out, see CCutArea::rgncutline
};
}  // namespace zm

/// The clip area: a rectangle or a polygon in survey coordinates, with a switch. It draws nothing.
///
/// Only a polygon that is set is tested as a polygon; otherwise the rectangle fields count, which hold whatever they
/// held last. A fresh area has a rectangle of zeros.
class ZM_API CCutArea {
 public:
    /// \param docut  the switch: 0 no clipping, any other value clips; 2 has a further meaning to CTqDraw::DrawPolygon
    CCutArea(int docut = 0);
    ~CCutArea();
    CCutArea(const CCutArea&) = delete;
    CCutArea& operator=(const CCutArea&) = delete;

    /// Stores the switch and returns the previous value. The area stays in place.
    int set_docut(int docut);
    /// The switch.
    int get_docut() const;

    /// Sets a rectangle by any two opposite corners. The rotate angle becomes 0. A polygon held before stays allocated
    /// and is not consulted.
    void setcutarea(double x1, double y1, double x2, double y2);
    /// Sets a polygon of n points; its bounding box becomes the rectangle, the direction of its closing edge the rotate
    /// angle (degrees, 0 where that edge is parallel to an axis).
    ///
    /// With n below 3, or null arrays, only the old polygon goes: the area kind is 0 and clipping goes on with the
    /// rectangle as it was. The points are copied. Coordinates that are no numbers make no point lie inside.
    /// From 24 points on an index is built here, n log n, so that the clip functions do not visit every edge; their
    /// answers are those of the plain order of edges.
    void setcutarea(int n, double* x, double* y);
    /// Not usable: the points are not read. It sets a polygon of n points whose coordinates are all zero.
    void setcutarea(int n, double* xy);
    /// xmin, ymax, xmax, ymin: top is the larger y. This order is not that of CTqDraw::GetViewArea.
    void getcutarea(double& left, double& top, double& right, double& bottom) const;
    /// \param[out] n        number of polygon points
    /// \param[out] polygon  borrowed, valid until the next setcutarea of a polygon; not to be written to
    /// \return  0 no area set, 1 rectangle, 2 polygon
    int getcutarea(int& n, PP*& polygon) const;
    /// Degrees; 0 for a rectangle.
    double getrotateangle() const;

    /// Where a point lies. 1 with the switch off. Rectangle: 1 inside or on the edge, else 0. Polygon: 1 inside, 0
    /// outside, -1 within 1e-7 of an edge; callers test for non-zero, so the boundary counts as inside.
    int cutpoint(double x, double y);
    /// Clips a segment in place. 1 if something remains, 0 if not; with the switch off 1, and nothing changes.
    ///
    /// A polygon returns one segment at most, between the first two distinct crossings in the order of its edges: both
    /// ends inside a concave polygon may give the part between two crossings instead of the whole, and both ends
    /// outside with a single crossing move the first end with the result 0.
    int cutline(double& x1, double& y1, double& x2, double& y2);
    /// Clips an arc of centre (cx, cy) and radius r.
    ///
    /// \param[in,out] angles  room for 8. In: start and end, radians, counter-clockwise. Out: start and end of each
    ///                        visible piece in turn, as the sampling in steps of ten degrees finds them; an entry may
    ///                        pass a full turn. At most four pieces, the rest is left out.
    /// \return  how many values angles holds: 0 nothing visible; 2 with the switch off or wholly inside, unchanged
    ///
    /// A circle whose box has all four corners outside counts as invisible, even where it passes through the area.
    int cutarc(double cx, double cy, double r, double* angles);
    /// Clips a chain of n edges in place; the arrays hold n + 1 points and have room for 2 n.
    ///
    /// Surviving edges are written back as pairs of points from the front of the arrays; as these are still being read,
    /// later edges are taken from overwritten places from the second survivor on.
    /// \return  the number of survivors; n with the switch off, arrays unchanged; 0 for n below 1
    int cutpolygon(double* x, double* y, int n);
    /// Cuts a segment at the boundary and appends the pieces, as zm::RegionPiece, to the list.
    ///
    /// \param out  appended to, not emptied; cast its pointers to zm::RegionPiece* and delete them so. Null adds
    /// nothing. \return     the number of pieces; 0 with the switch off
    ///
    /// The pieces run from the far end to (x1, y1). Polygon: mark 1 inside, 0 outside. Rectangle: the mark is the
    /// outcode of the first end, 0 inside; an outer end is moved along the segment of the last cutline call, not along
    /// this one. Where the marks do not come out, an internal error is shown ("in out err").
    int rgncutline(double x1, double y1, double x2, double y2, CObArray* out);

 private:
    friend struct zm::draw::Access;
    int incode(double x, double y) const;
    void resetEN(double& x, double& y, int code) const;
    bool IsPolygon() const { return m_areaKind == 2 && m_polygon != nullptr; }
    int CutLineToRectangle(double& x1, double& y1, double& x2, double& y2);
    int CutLineToPolygon(double& x1, double& y1, double& x2, double& y2);
    void ReleasePolygon();

    int m_docut;
    double m_xmin, m_xmax, m_ymin, m_ymax;          // the rectangle, or the polygon's bounding box
    double m_lineX1, m_lineY1, m_lineX2, m_lineY2;  // the segment being clipped, for resetEN
    PP* m_polygon;                                  // owned; its index lies in the same block
    int m_polygonSize;
    int m_areaKind;
    double m_rotateAngle;
};

/// The drawing context: takes survey coordinates and carries them to a device, the DWG writer or a recording.
///
/// Each survey primitive is rotated (SetRotateMoveP), clipped (SetCutArea, SetDoCut), and goes to the sink of the
/// device type; only for a device it is mapped to pixels. The first context built becomes the working context TqDC, on
/// which pens, fonts and symbols draw.
///
/// Device types: 0 colour device, 1 DWG writer, 2 monochrome device, 3 recording; any other value acts as 0. The type
/// may change between any two calls.
class ZM_API CTqDraw : public CCutArea {
 public:
    /// Where TqDC is not null already, "fatal error TqDC redefined" is shown, and TqDC stays as it is.
    CTqDraw(int type = 0);
    /// Frees the layer and pen width tables (DeleteCengCi8Dlg). TqDC stays as it is, deliberately.
    ~CTqDraw();

    /// Stores the device type and returns the previous one.
    int SetTqDCType(int type);
    /// The device type: 0 device, 1 DWG, 2 device in black, 3 text commands.
    int GetTqDCType() const;
    /// The recorded commands of device type 3. The caller reads and empties the list.
    CStringArray* GetTqDCString();

    /// Sets the view. It does not touch the clip area.
    /// \param hdc     device context, may be null: then nothing is drawn
    /// \param scale   pixels per survey unit
    /// \param x0, y0  survey position of the lower left corner of the view
    /// \param width, height  pixels
    /// \param flip    non-zero: the view is turned by 180 degrees
    void SetViewDrawDC(HDC hdc, double scale, double x0, double y0, int width, int height, int flip);
    /// Puts another device context in place of the view's.
    void ResetHdc(HDC hdc);
    /// The device context, null where there is none.
    HDC GetHdc() const;
    /// 1 after SetViewDrawDC.
    int Drawable() const;

    /// Maps survey coordinates to pixels. Each is limited to -30000..30000 before the flip and truncated toward zero.
    /// \return 1 if the pixel lies in the view, edges included, else 0; the pixels are written either way
    int GetViewPos(double x, double y, int& px, int& py) const;
    /// Maps pixels to survey coordinates.
    void GetSurveyPos(double& x, double& y, int px, int py) const;
    /// The survey rectangle that the view covers. This order is not that of GetCutArea.
    void GetViewArea(double& xmin, double& ymin, double& xmax, double& ymax) const;
    /// Pixels that a length in survey units takes.
    double GetPixelsByRealen(double len) const;
    /// Survey units that a length in pixels covers.
    double GetRealenByPixels(double px) const;
    /// Rotates and maps n interleaved points into pts, which is emptied first.
    /// \return the number of points; 0 for n below 2, the list is then left as it is
    int ToIntPoints(int n, double* xy, CArray<CPoint, CPoint&>* pts) const;

    /// Sets a rotation about a centre: degrees counter-clockwise, survey coordinates. It is active if any of the three
    /// is 0.0001 or more in absolute value. There is no translation, in spite of the name.
    void SetRotateMoveP(double angle, double cx, double cy);
    /// \return 1 if active
    int GetRotateMoveP(double& angle, double& cx, double& cy) const;
    /// 1 while the rotation is active.
    int IsRM() const;
    /// Rotates a point in place; nothing happens while inactive.
    void GetRMCoord(double& x, double& y) const;
    /// A flag that the library only stores.
    void SetNeedRotate(int need);
    /// The flag of SetNeedRotate.
    int IsNeedRotate() const;

    /// The clip area, a polygon of n points in survey coordinates, see CCutArea.
    void SetCutArea(int n, double* x, double* y);
    /// The clip area, a rectangle by two opposite corners in survey coordinates.
    void SetCutArea(double x1, double y1, double x2, double y2);
    /// Clips to the rectangle that the view covers.
    void SetCutArea();
    /// The rectangle of the clip area, survey coordinates.
    void GetCutArea(double& left, double& top, double& right, double& bottom) const;
    /// The clip switch, see CCutArea.
    int GetDoCut() const;
    /// Sets the clip switch and returns the previous one.
    int SetDoCut(int docut);
    /// The rotate angle of the clip area, degrees.
    double GetRotateAngle() const;

    /// The pen that is selected into the device context; zeros where there is none.
    tagLOGPEN GetCurLogpen();

    /// Makes a pen and selects it. width: device pixels; black in device type 2. Nothing is recorded.
    /// \param[out] old  the pen replaced
    /// \return the new pen, for ResetPen(old) and DeleteObject
    HPEN SetPen(int style, int width, DWORD colour, HPEN& old);
    /// width: survey units. In type 3 "Pen:style:width:colour" is recorded, the width in 0.1 mm of paper.
    HPEN SetPen(int style, double width, DWORD colour, HPEN& old);
    /// Selects a pen.
    void ResetPen(HPEN pen);
    /// Makes a font and selects it; sets the text metrics.
    /// \param height, width  of a character, survey units
    /// \param face           face name, at most 31 bytes are used; null is empty
    /// \param angle          degrees counter-clockwise
    /// \param italic         lfItalic, 0 or 255
    HFONT SetFont(double height, double width, char* face, double angle, int italic, HFONT& old);
    /// Makes a font from a description and selects it. Double-byte text is drawn with half its lfWidth. In type 3 the
    /// description is recorded. Null does nothing and returns null.
    HFONT SetFont(tagLOGFONTA* lf, HFONT& old);
    /// Selects a DWG text style (_LDBsetstyle) and sets the text metrics; angle and oblique in degrees.
    void SetFont(int style, char* name, char* file, double height, double widthfactor, double oblique, double angle);
    /// Selects a font.
    void ResetFont(HFONT font);

    /// A straight segment. 1, or what the device returned; 0 if nothing remains of it.
    int line(double x1, double y1, double x2, double y2);
    /// In pixels, on the device, clipped to the view by one pass in whole numbers.
    int line(int x1, int y1, int x2, int y2);
    /// A polyline of n interleaved points.
    /// \return the sum of the results of line; in type 1 the number of points written. 0 for n below 2
    ///
    /// Type 1 writes maximal inside runs as one polyline each, applies no rotation, and leaves clip points in the
    /// caller's array where the line enters the clip area.
    int lines(int n, double* xy);
    /// The same with two arrays, which are not changed.
    int lines(int n, double* x, double* y);
    /// A point. \param size 1 one pixel, 2 a plus, 3 a cross of five pixels, any other as 1
    /// \return the colour; on a device what was set last
    DWORD pixel(double x, double y, DWORD colour, int size);
    /// The same in pixels of the view.
    DWORD pixel(int x, int y, DWORD colour, int size);
    /// An arc of centre, radius and two angles, radians counter-clockwise from the positive x axis; equal angles are
    /// the whole circle. On a device a radius below 2 pixels draws a black dot instead.
    /// \return 1, or 0 if nothing is visible; for the dot the result of pixel
    int drawarc(double cx, double cy, double r, double a0, double a1);
    /// An arc from (xs, ys) to (xe, ye) about the middle of the box, with the mean of their distances as radius. 0 if
    /// either point is at the centre.
    int drawarc(double l, double t, double r, double b, double xs, double ys, double xe, double ye);
    /// In pixels, on the device: box, start and end as GDI's Arc.
    int drawarc(int l, int t, int r, int b, int xs, int ys, int xe, int ye);
    /// Four segments: bottom or top first, as the corners come. The result of the last.
    int drawrect(double x1, double y1, double x2, double y2);
    /// The same in pixels, on the device.
    int drawrect(int x1, int y1, int x2, int y2);
    /// The same in pixels, on the device.
    int drawrect(tagRECT r);
    /// Fills a closed polygon on a device, then draws its outline with lines, whose result it returns.
    ///
    /// Filled only in device types other than 1 and 3, with n above 3 and the last point equal to the first. The fill
    /// is limited to the clip rectangle, or with the switch at 2 to the clip polygon. \throw std::invalid_argument with
    /// the switch at 2 and no clip polygon, during a fill
    int DrawPolygon(int n, double* xy, HBRUSH brush);
    /// Always on the device, whatever the device type, and never clipped by the clip area.
    int rectangle(double x1, double y1, double x2, double y2);
    /// The same in pixels.
    int rectangle(int x1, int y1, int x2, int y2);
    /// Moves the device's position, survey coordinates. Always on the device.
    DWORD moveto(double x, double y);
    /// The same in pixels.
    DWORD moveto(int x, int y);
    /// A segment from the device's position, survey coordinates. Always on the device.
    int lineto(double x, double y);
    /// The same in pixels.
    int lineto(int x, int y);
    /// GDI's DrawText on the device.
    int drawtext(char* s, int n, tagRECT* r, unsigned int flags);

    /// Text on the device, anchored top left; a font below 4 units becomes a black dot. A text that begins with a
    /// double-byte character takes the font of halved width.
    int textout(int px, int py, char* s, int len);
    /// One run of text; (x, y) is the top left corner. len 0 is the whole text, rotate non-zero applies the rotation.
    /// Clipped whole by its anchor. s must be writable in types 1 and 3 where len cuts it. 1 if drawn, 0 if clipped.
    int textout(double x, double y, char* s, int len, int rotate);
    /// Character by character along a direction: angle in radians, gap in survey units. 1.
    int textout(double x, double y, char* s, double angle, double gap);
    /// Text that is kept wholly inside the clip area, with an anchor mode as in ResetStringPos; x and y are updated.
    /// Recordings do not hold it. 0 if its anchor is clipped or s is empty.
    int textRout(double& x, double& y, char* s, int mode);
    /// Turns an anchor into the top left anchor. mode: 0 top left, 1 bottom left, 4 centre, 5 the decimal point, any
    /// other top right. Mode 5 replaces every "." in s by a blank.
    void ResetStringPos(double& x, double& y, char* s, int mode);
    /// Stores the offset that textRout adds, survey units.
    void textRectOff(double dx, double dy);
    /// Characters in s: bytes less half the number of bytes with the high bit set.
    int GetStrLen(char* s) const;
    /// Their length in survey units.
    double GetLen(char* s) const;
    /// The four corners of the text's box as x, y pairs: top left, top right, bottom right, bottom left. Points and
    /// digits one of a text without double-byte characters are narrower by DECMIN and DGT1MIN of the note classes;
    /// where none are loaded nothing is taken off. \param[out] out  8 values \return 1, or 0 for an empty text
    int Get4CC(double x, double y, double* out, char* s) const;

 private:
    friend struct zm::draw::Access;

    CStringArray m_commands;
    int m_type;
    int m_drawable;
    HDC m_hdc;
    double m_scale;  // device pixels per survey unit
    double m_originX, m_originY;
    int m_viewHeight, m_viewWidth;
    int m_flip;
    int m_rotateActive;
    int m_needRotate;
    double m_rotateAngleRM;  // degrees
    double m_rotateX, m_rotateY;
    double m_textHeight, m_textWidth;  // survey units; width of one character
    double m_textAngle;                // radians
    double m_textSin, m_textCos;
    int m_fontHeight, m_fontWidth, m_fontEscapement;  // as last handed to the platform
    double m_textOffsetX, m_textOffsetY;
};

/// The working context, on which pens, fonts and symbols draw; null until the first CTqDraw.
ZM_API extern CTqDraw* TqDC;

/// Puts a context, or null, into TqDC with no check and returns the previous value.
ZM_API CTqDraw* SelectWorkingTqDC(CTqDraw* dc);

/// Sets the paper scale, the denominator of the map scale, and returns the previous value. Nothing is checked.
ZM_API double setgscale(double scale);
/// The paper scale; one below 1e-6 is repaired to 1000.0 first.
ZM_API double getcurgscale();
/// A length of n tenths of a millimetre on paper in survey units. At 1:1000 ten of them are 1.0.
ZM_API double _To01mm(int n);
/// A survey length in tenths of a millimetre on paper, truncated toward zero.
ZM_API int _For01mm(double len);
/// Sets the default direction of text in degrees, for CTQFont; returns the previous value.
ZM_API double SetInitRotateAngle(double angle);
/// Sets the limit of font heights in pixels, 0 for none; returns the previous value.
ZM_API int _SetHdcCharHLimit(int limit);

/// A pen in force on TqDC from construction to destruction. Pens and fonts nest in reverse order of construction.
///
/// In device type 1 a pen selects layer, colour and linetype of the DWG writer and makes no object. A pen without a
/// working context reports an internal error and does nothing.
class ZM_API CTQPen {
 public:
    /// The pen of a layer.
    /// \param layer  layer code; negative: the DWG writer keeps its layer and colour
    /// \param style  pen style, above 6 modulo 7; in type 1 the linetype
    /// \param value  0: colour and width of the layer. Else both the colour number (outside 1 to 9: 1) and the width in
    ///               tenths of a millimetre, deliberately: 3 is colour 3 at 0.3 mm.
    CTQPen(int layer, int style, int value);
    /// width: device pixels. colour: 0x00BBGGRR, 0xFFFFFFFF the last colour that a pen had.
    CTQPen(int style, int width, DWORD colour);
    /// width: survey units.
    CTQPen(int style, double width, DWORD colour);
    /// Colours of the other unsigned types, such as the literal 0xFFFFFFFF where DWORD is a long.
    template <zm::draw::OtherUnsigned Colour>
    requires(!std::is_same_v<Colour, DWORD>) CTQPen(int style, int width, Colour colour)
        : CTQPen(style, width, static_cast<DWORD>(colour)) {}
    /// The same with a width in survey units.
    template <zm::draw::OtherUnsigned Colour>
    requires(!std::is_same_v<Colour, DWORD>) CTQPen(int style, double width, Colour colour)
        : CTQPen(style, width, static_cast<DWORD>(colour)) {}
    ~CTQPen();
    CTQPen(const CTQPen&) = delete;
    CTQPen& operator=(const CTQPen&) = delete;

 private:
    friend struct zm::draw::Access;
    HPEN m_pen = nullptr;
    HPEN m_previous = nullptr;
};

/// A font in force on TqDC from construction to destruction.
///
/// A font number without a record in the note classes is fatal: a message, then the process ends.
class ZM_API CTQFont {
 public:
    /// \param height, width  of a character, survey units
    /// \param fontno         font number of the note classes; 1 is used instead while an initial angle is set
    /// \param angle          degrees; 0: the angle of SetInitRotateAngle
    /// \param flag           not used
    CTQFont(double height, double width, int fontno, double angle, int flag);
    ~CTQFont();
    CTQFont(const CTQFont&) = delete;
    CTQFont& operator=(const CTQFont&) = delete;

    /// Sets the text colour by a colour number, its absolute value modulo 10. On a device the previous text colour is
    /// returned, and restored by the destructor; in type 1 the palette's colour.
    DWORD _settextcolor(int colourno);
    /// Sets the text colour of a layer code.
    DWORD _settextcolor(DWORD layer);
    /// Layer codes of the other unsigned types.
    template <zm::draw::OtherUnsigned Layer>
    requires(!std::is_same_v<Layer, DWORD>) DWORD _settextcolor(Layer layer) {
        return _settextcolor(static_cast<DWORD>(layer));
    }

 private:
    friend struct zm::draw::Access;
    HFONT m_font = nullptr;
    HFONT m_previous = nullptr;
    COLORREF m_savedColor = 0;
    int m_colorChanged = 0;
    double m_height = 0.0;
    double m_width = 0.0;
};
