// The exported interface of geodesy: angles and units, the Gauss-Krueger projection, earth-centred coordinates,
// distance and area on the ellipsoid.
//
// All functions may be called from any thread, except that the three precision settings are plain process-wide
// values. No function allocates unless its description says so, none throws, none shows a message. Not-a-number and
// infinities come out as the formulas carry them; nothing hangs on them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "zenromath/platform.h"

// ---------------------------------------------------------------------------------------------------------------
// Angles
// ---------------------------------------------------------------------------------------------------------------
// A packed sexagesimal number is an angle written as one decimal number: whole degrees, two decimals of minutes, two
// decimals of whole seconds, then fractions of a second. 30 degrees 15' 27.5" is 30.15275. Its sign is the angle's.

/// Decimal degrees to a packed sexagesimal number.
/// \param deg  any angle, degrees
/// \return     packed number; seconds above 59.999999 carry into the minute, minutes above 59.9 into the degree.
///             0 and -0 both give -0: only a number above 0 keeps its sign.
ZM_API double deg_dms(double deg);

/// A packed sexagesimal number to decimal degrees.
/// \param dms  packed number; a seconds field above 99.9999 counts as 60 (it ended just under the next minute).
///             Fields from 60 upwards are otherwise taken as they stand.
/// \return     degrees; 0 and -0 both give -0
ZM_API double dms_deg(double dms);

/// A packed sexagesimal number to seconds of arc; reads its argument as dms_deg does.
ZM_API double dms_sec(double dms);

/// A packed sexagesimal number to radians.
/// \param dms  packed number; here a seconds field above 99.9, not 99.9999, counts as 60
/// \return     radians; 0 and -0 both give -0
ZM_API double dms_rad(double dms);

/// Radians to a packed sexagesimal number, as deg_dms, but seconds above 59.99 already carry into the minute.
ZM_API double rad_dms(double rad);

/// Brings an angle into [0, 2 pi), in place.
/// \param[in,out] angle  radians; a result within 1e-5 of 0 or of 2 pi becomes 0
///
/// Adds or subtracts 2 pi step by step, at most ten million times; an angle beyond some 6e7 in magnitude, or an
/// infinite one, therefore stays outside the range. Not-a-number stays what it is.
ZM_API void _ADJUSTANGLE(double& angle);

/// Direction of the line from (x1, y1) to (x2, y2), radians from the positive first axis towards the positive second.
/// \return  0 up to 2 pi. With |x2 - x1| below 1e-7 it is exactly pi / 2 (also for coincident points) or 3 pi / 2,
///          whatever the slope.
ZM_API double _BEARING(double x1, double y1, double x2, double y2);
/// The same as _BEARING.
ZM_API double bearing(double x1, double y1, double x2, double y2);

/// An angle that knows its unit, with its radians beside it.
struct ZM_API AngleValue {
    /// \param v  the angle in unit u
    /// \param u  0 radians, 1 decimal degrees, 2 packed sexagesimal; any other unit is read as radians
    AngleValue(double v, int u);
    /// Rewrites value and unit from the radians: decimal degrees.
    void ToDegrees();
    /// Rewrites value and unit from the radians: radians, which are also returned.
    double ToRadians();

    double value;       ///< the angle in the current unit
    std::int32_t unit;  ///< 0 radians, 1 decimal degrees, 2 packed sexagesimal
    double radians;     ///< always the angle in radians
};

// ---------------------------------------------------------------------------------------------------------------
// Units
// ---------------------------------------------------------------------------------------------------------------

/// Units of length. The values are fixed.
enum znCoordUnitConstants : std::int32_t {
    znUnitMile = 0,          // statute mile, 1609.344 m
    znUnitKilometer = 1,     // 1000 m
    znUnitInch = 2,          // 0.0254 m
    znUnitFoot = 3,          // 0.3048 m
    znUnitYard = 4,          // 0.9144 m
    znUnitMillimeter = 5,    // 0.001 m
    znUnitCentimeter = 6,    // 0.01 m
    znUnitMeter = 7,         // 1 m
    znUnitSurveyFoot = 8,    // 1200 / 3937 m
    znUnitNauticalMile = 9,  // 1853.2 m
    znUnitTwip = 10,         // 1 / 1440 inch
    znUnitPoint = 11,        // 1 / 72 inch
    znUnitPoint2 = 12,       // 1 / 72 inch, a second code
    znUnitDegree = 13,       // degree of arc on the equator, 111319.5 m
    znUnitLink = 30,         // 7.92 inches
    znUnitChain = 31,        // 20.1168 m
    znUnitRod = 32           // 5.0292 m
};

/// Units of area. The values are fixed. Where nothing else is said, the square of the unit of length.
enum znAreaUnitConstants : std::int32_t {
    znAreaSquareMile = 14,
    znAreaSquareKilometer = 15,
    znAreaSquareInch = 16,
    znAreaSquareFoot = 17,
    znAreaSquareYard = 18,
    znAreaSquareMillimeter = 19,
    znAreaSquareCentimeter = 20,
    znAreaSquareMeter = 21,
    znAreaSquareSurveyFoot = 22,
    znAreaSquareNauticalMile = 23,
    znAreaSquareTwip = 24,
    znAreaSquarePoint = 25,
    znAreaSquarePoint2 = 26,
    znAreaSquareDegree = 27,
    znAreaAcre = 28,     // 43560 square feet
    znAreaHectare = 29,  // 10000 square metres
    znAreaSquareLink = 33,
    znAreaSquareChain = 34,
    znAreaSquareRod = 35,
    znAreaSquareRod2 = 36,  // a second code
    znAreaRood = 37,        // a quarter acre
    znAreaMu = 38           // 10000 / 15 square metres
};

/// Converts a length, through metres even where both units are equal.
/// \param from, to     units; a value that is no unit (14 to 29, above 32, negative) counts as metres
/// \param value        the length in from
/// \param[out] result  the length in to
/// \return             always 1
ZM_API int ScaleUnitConvert(znCoordUnitConstants from, znCoordUnitConstants to, double value, double& result);

/// ScaleUnitConvert with plain integers for the units and the converted length as result.
ZM_API double ScaleUnitCase(int from, int to, double value);

/// Converts an area, through square metres even where both units are equal.
/// \param from, to     units; a value that is no unit (below 14, 30 to 32, above 38) counts as square metres
/// \param value        the area in from
/// \param[out] result  the area in to
/// \return             always 1
ZM_API int AreaUnitConvert(znAreaUnitConstants from, znAreaUnitConstants to, double value, double& result);

/// A length that knows its unit, with its metres beside it.
struct ZM_API LengthValue {
    /// \param v  the length in unit u
    /// \param u  a znCoordUnitConstants value
    explicit LengthValue(double v = 0.0, int u = znUnitMeter);
    /// Sets the value in the present unit and recomputes the metres, by the factors of znCoordUnitConstants.
    void SetValue(double v);
    /// Rewrites value and unit from the metres, by short rounded factors that differ from those of
    /// znCoordUnitConstants (mile 1609.3 m, chain 20.117 m).
    /// \param target  0 to 7, 9 or 31; any other code changes nothing
    /// \return        1 done, 0 no quick conversion to this code
    int QuickConvert(int target);

    double value;       ///< the length in the current unit
    std::int32_t unit;  ///< znCoordUnitConstants
    double metres;      ///< always the length in metres
};

/// An area that knows its unit, with its square metres beside it.
struct ZM_API AreaValue {
    /// \param v  the area in unit u
    /// \param u  a znAreaUnitConstants value
    explicit AreaValue(double v = 0.0, int u = znAreaSquareMeter);
    /// Sets the value in the present unit and recomputes the square metres, by the factors of znAreaUnitConstants.
    void SetValue(double v);
    /// Rewrites value and unit from the square metres, by short rounded factors that differ from those of
    /// znAreaUnitConstants (square mile 2590000, acre 4046.724, mu 666.6667).
    /// \param target  14 to 21, 28, 29 or 38; any other code changes nothing
    /// \return        1 done, 0 no quick conversion to this code
    int QuickConvert(int target);

    double value;       ///< the area in the current unit
    std::int32_t unit;  ///< znAreaUnitConstants
    double metres;      ///< always the area in square metres
};

// ---------------------------------------------------------------------------------------------------------------
// Plane projection coordinates
// ---------------------------------------------------------------------------------------------------------------

/// Ellipsoid and zone width in one number. The values are fixed. Any other non-zero value means the 84 family with
/// 6-degree zones (10384 too: the 3-degree member of the 84 family is 10084).
enum znCoordSysTypeConstants : std::int32_t {
    znCoordNone = 0,
    znCoord54 = 10054,    // Krassovsky 1940, 6-degree zones
    znCoord54G6 = 10154,  // Krassovsky 1940, 6-degree zones
    znCoord54G3 = 10354,  // Krassovsky 1940, 3-degree zones
    znCoord80 = 10080,    // IAG 1975, 6-degree zones
    znCoord80G6 = 10180,  // IAG 1975, 6-degree zones
    znCoord80G3 = 10380,  // IAG 1975, 3-degree zones
    znCoord84G3 = 10084,  // a = 6378137 m, e2 = 0.0066943800229, 3-degree zones
    znCoord84G6 = 10184   // a = 6378137 m, e2 = 0.0066943800229, 6-degree zones; the default
};

/// A position with its plane coordinates, its ellipsoid and its zone. A plain value.
///
/// Usual order: setEllipse; setBL or setL; UTMtoGS; getGX, getStandardGY. Or the other way: setGX, setStandardGY;
/// GStoUTM; getB, getL. No range is checked. The scale on the central meridian is 1, also for members with UTM in
/// their names. docs/geodesy/departures.md says how far results are from the truth.
class ZM_API Coordinate_2Dsys {
 public:
    /// All zero, on the system 10184.
    Coordinate_2Dsys();
    /// Plane coordinates on the system 10184.
    /// \param X          northing, metres
    /// \param standardY  easting with zone number and false easting, metres; see setStandardGY
    Coordinate_2Dsys(double X, double standardY);
    /// A geodetic position; L0 by the rule of setL.
    /// \param latitude, longitude  radians
    Coordinate_2Dsys(double latitude, double longitude, znCoordSysTypeConstants coordSys);

    double getB() const;                             ///< latitude, radians
    void setB(double latitude);                      ///< latitude, radians; nothing else changes
    double getL() const;                             ///< longitude, radians
    double getGX() const;                            ///< northing, metres
    void setGX(double x);                            ///< northing, metres
    double getGY() const;                            ///< easting from the central meridian, metres
    void setGY(double y);                            ///< easting from the central meridian, metres
    int getL0() const;                               ///< central meridian, degrees
    void setL0(int centralMeridian);                 ///< central meridian, degrees; recomputes nothing
    int getGSwidth() const;                          ///< zone width: 3, 6 or 0 degrees
    void setGSwidth(int width);                      ///< zone width, degrees; recomputes nothing
    znCoordSysTypeConstants getEllipseFlag() const;  ///< the coordinate system
    double geta() const;                             ///< semi-major axis, metres
    double gete2() const;                            ///< first eccentricity squared

    /// Sets the system, its a and e2 and its zone width. L0 stays, even if the width changes.
    void setEllipse(znCoordSysTypeConstants coordSys);

    /// Sets the longitude and its zone: L0 = 3 - 6 trunc(d / -6) with width 6, 3 trunc((d + 1.5) / 3) with width 3,
    /// d the longitude in degrees; unchanged with another width. Both truncate towards zero, so -1 degree in 6-degree
    /// zones belongs to the zone of 3. An L0 beyond 32 bits becomes the nearest one that fits, not-a-number gives 0.
    /// \param longitude  radians
    void setL(double longitude);

    /// Sets latitude and longitude, radians, and the zone as setL does, except that any width other than 3 takes the
    /// 6-degree rule.
    void setBL(double latitude, double longitude);

    /// Easting with zone number and false easting: zone * 1000000 + 500000 + GY, metres. The zone number is L0 / 3
    /// with width 3, else (L0 + 3) / 6, both truncated towards zero.
    double getStandardGY() const;

    /// Sets GY from an easting with zone number and false easting, and L0 from its zone number: zone * 3 with width
    /// 3, zone * 6 - 3 with width 6, else unchanged. An easting without zone number has zone 0.
    void setStandardGY(double standardY);

    /// B, L and L0 to GX, GY. In spite of the name no UTM scale factor is applied.
    /// \return  1; 0 without an ellipsoid (a or e2 zero), and then nothing changes
    /// Source: series in the longitude difference to its fifth (easting) and sixth (northing) power; the arc with
    ///         the series of docs/geodesy/series.md.
    int UTMtoGS();

    /// GX, GY and L0 to B, L.
    /// \return  1; 0 without an ellipsoid (a or e2 zero), and then nothing changes
    /// The signs of its footpoint expansion are the family's historic ones: the result lies up to 0.1 m from the
    /// inverse of UTMtoGS in latitude, wherever the point lies. See docs/geodesy/departures.md.
    int GStoUTM();

    double GX = 0.0;           ///< plane northing, metres
    double GY = 0.0;           ///< plane easting from the central meridian, metres, no false easting, no zone number
    double B = 0.0;            ///< latitude, radians
    double L = 0.0;            ///< longitude, radians
    std::int32_t GSwidth = 0;  ///< zone width in degrees: 3, 6, or 0 for no ellipsoid
    std::int32_t L0 = 0;       ///< central meridian, whole degrees
    znCoordSysTypeConstants EllipseFlag = znCoordNone;  ///< the system, znCoordNone without one
    double a = 0.0;                                     ///< semi-major axis, metres
    double e2 = 0.0;                                    ///< first eccentricity squared
};

/// Geodetic to plane coordinates, the second implementation: a bare ellipsoid selector and another series than
/// Coordinate_2Dsys.
///
/// \param ell         ellipsoid: 1 or 54 Krassovsky 1940, 0 or 80 IAG 1975, any other value a = 6378137.0 m,
///                    b = 6356752.31414036 m. Not a znCoordSysTypeConstants value.
/// \param B           latitude, radians
/// \param l           longitude minus central meridian, radians
/// \param[out] x      northing, metres, 0 on the equator
/// \param[out] y      easting from the central meridian, metres; no false easting, no zone number
/// \param[out] gamma  meridian convergence, radians; may be null
///
/// Range:  meant for one zone, |l| up to 3 degrees. Nothing is checked.
/// Source: Snyder, Map Projections: A Working Manual (USGS PP 1395), eq. 8-9 and 8-10 with k0 = 1, the last term of
///         the northing without its C and e'^2 parts; arc as in docs/geodesy/series.md.
ZM_API void forward(int ell, double B, double l, double* x, double* y, double* gamma);

/// Plane to geodetic coordinates, the family's historic inverse of forward.
///
/// \param ell         as forward
/// \param x, y        northing and easting from the central meridian, metres
/// \param[out] B, l   latitude, and longitude minus central meridian, radians
/// \param[out] gamma  meridian convergence, radians; may be null
///
/// There and back with forward agrees within 1e-10 rad up to 1.5 degrees from the meridian and 2e-9 up to 3: the last
/// terms of the series are kept with their historic signs. zm::InverseOfForward has no such departure.
ZM_API void backward(int ell, double x, double y, double* B, double* l, double* gamma);

/// Projects a geodetic position to Gauss-Krueger plane coordinates: forward with l = L - L0, without gamma.
/// (JWD: latitude and longitude. Gaosi: Gauss.)
/// \param L, L0  longitude and central meridian, both radians
ZM_API void JWD_to_Gaosi(int ell, double B, double L, double L0, double& x, double& y);

/// Plane coordinates to a geodetic position: backward, then L = l + L0. All angles in radians.
ZM_API void Gaosi_to_JWD(int ell, double x, double y, double L0, double& B, double& L);

/// Zone change in place: backward from the source zone, forward into the target zone.
/// \param[in,out] x, y            plane coordinates, metres
/// \param sourceL0, targetL0      central meridians, radians
ZM_API void GaosiExcange(int ell, double& x, double& y, double sourceL0, double targetL0);

// ---------------------------------------------------------------------------------------------------------------
// Earth-centred coordinates
// ---------------------------------------------------------------------------------------------------------------

/// A position with height and earth-centred coordinates on the ellipsoid of its base class. A plain value.
class ZM_API Coordinate_3Dsys : public Coordinate_2Dsys {
 public:
    /// All zero, on the system 10184.
    Coordinate_3Dsys();
    /// Earth-centred coordinates, metres, on the system 10184; all else zero.
    Coordinate_3Dsys(double earthX, double earthY, double earthZ);
    /// Latitude and longitude in radians, height in metres. L0 stays 0: no zone is chosen here.
    Coordinate_3Dsys(double latitude, double longitude, double height, znCoordSysTypeConstants coordSys);

    double getX() const;                                       ///< earth-centred X, metres
    double getY() const;                                       ///< earth-centred Y, metres
    double getZ() const;                                       ///< earth-centred Z, metres
    double getH() const;                                       ///< ellipsoidal height, metres
    void setX(double earthX);                                  ///< earth-centred X, metres
    void setY(double earthY);                                  ///< earth-centred Y, metres
    void setZ(double earthZ);                                  ///< earth-centred Z, metres
    void setH(double height);                                  ///< ellipsoidal height, metres
    void setXYZ(double earthX, double earthY, double earthZ);  ///< earth-centred, metres

    /// Sets latitude, longitude (radians) and height, and makes the object one of 3-degree zones whatever its system:
    /// width 3, L0 = 3 trunc((d + 1.5) / 3). The area code relies on it.
    void setBLH(double latitude, double longitude, double height);

    /// B, L, H to X, Y, Z. \return 1; 0 with EllipseFlag 0, and then nothing changes
    int BLHtoXYZ();

    /// X, Y, Z to B, L, H. \return 1; 0 with EllipseFlag 0, and then nothing changes
    /// The longitude is atan(Y / X), between -pi/2 and pi/2: 120 degrees comes back as -60. The latitude is iterated
    /// until it moves by no more than 5e-9 rad, at most 1000 times; at the centre of the earth the result is
    /// not-a-number. L0 stays.
    int XYZtoBLH();

    double X = 0.0;  ///< earth-centred, metres
    double Y = 0.0;  ///< metres
    double Z = 0.0;  ///< metres
    double H = 0.0;  ///< ellipsoidal height, metres
};

// ---------------------------------------------------------------------------------------------------------------
// Distance and area on the ellipsoid
// ---------------------------------------------------------------------------------------------------------------

/// Three numbers. In geodesy x is longitude or easting, y latitude or northing; z is not read.
struct Point3D {
    double x;  ///< degrees, or metres of a plane
    double y;  ///< degrees, or metres of a plane
    double z;  ///< not read
};

/// Length and area of a line or figure given in degrees.
///
/// Copies share the vertices and the owned area: measuring with one copy shows in the area of all. Both live until
/// the last copy is gone.
class ZM_API DistandAreaInquiry {
 public:
    /// Takes the vertices in and sets the system to 10184.
    /// \param pts     n vertices, x longitude and y latitude in degrees; null counts as n = 0
    /// \param n       number of vertices; below 1 there are none
    /// \param method  0 measures on the projection plane, any other value on the ellipsoid
    /// Allocates; if no memory can be had there are no vertices.
    DistandAreaInquiry(const Point3D* pts, int n, short method);
    DistandAreaInquiry(const DistandAreaInquiry&) = default;
    DistandAreaInquiry& operator=(const DistandAreaInquiry&) = default;
    ~DistandAreaInquiry();

    /// The system with its a and e2; as Coordinate_2Dsys::setEllipse, but e2 of the 80 family is 0.00669438499958795.
    void SetEllipse(znCoordSysTypeConstants coordSys);
    /// The system of SetEllipse.
    znCoordSysTypeConstants GetEllipse() const;

    /// Length of the open line, metres; 0 with fewer than 2 vertices. With method 0 each point is projected into its
    /// own zone, so an edge across a zone border has no useful length. With another method lines towards falling
    /// latitude are right to a millimetre, those towards rising latitude are wrong by up to 2 parts in 1000
    /// (docs/geodesy/departures.md); the iteration ends after 1000 passes, as it does near antipodes, with the last
    /// value.
    double GetDist() const;
    /// GetDist plus the edge from the last vertex to the first.
    double GetCloseDist() const;

    /// Area, square metres, never negative. Also stored in area, in its unit.
    /// Method 0: area of the ring in the projection plane, closed by itself, each vertex in its 3-degree zone.
    /// Other methods: between the edges and the equator, step by step along each edge (GetEllipsePrecision), with
    /// the ring left as open as it is: repeat the first vertex at the end to close it. The sum over the steps is
    /// taken in closed form, at a constant cost for each edge. Source: docs/geodesy/area.md.
    double GetArea();

    double* coords;                   ///< 2 count values: latitudes, then longitudes, radians
    AreaValue* area;                  ///< the last area; unit 21 at the start
    std::int16_t method;              ///< 0 the projection plane, else the ellipsoid
    std::int32_t count;               ///< number of vertices
    znCoordSysTypeConstants ellipse;  ///< the system
    double a;                         ///< semi-major axis, metres
    double e2;                        ///< first eccentricity squared

 private:
    double Dist(const double& B1, const double& L1, const double& B2, const double& L2) const;
    double PlaneArea(bool& measured) const;
    double EllipsoidArea() const;

    struct Owned;
    std::shared_ptr<Owned> m_owned;  // what coords and area point to, shared by all copies
};

/// The integration step of the ellipsoid areas, degrees. 0.00027778, about a second of arc, at the start.
ZM_API double GetEllipsePrecision();
/// Sets the integration step, degrees; 0 and below make one piece of each edge.
ZM_API void SetEllipsePrecision(double degrees);
/// Sets the seconds of arc to which TestmyCalEllipseArea rounds angles, 1e-6 at the start; 0 and below: no rounding.
/// \return the previous setting
ZM_API double SetEllipseBLsecPrec(double seconds);
/// Sets the metres to which TestmyCalEllipseArea rounds plane coordinates, 0 at the start; only values above 0 and
/// below 1 round. \return the previous setting
ZM_API double SetEllipseXYmeterPrec(double metres);

/// Area by the trapezoid series of land-survey practice, between each edge and the central meridian.
///
/// \param pts        n vertices: longitude and latitude in degrees if isBL, else easting and northing in metres
///                   (an easting above 999000 loses its zone digits, then 500000 m false easting); null counts as n = 0
/// \param n          number of vertices; the ring is not closed by this function
/// \param isBL       what pts holds
/// \param a          semi-major axis, metres
/// \param second     semi-minor axis in metres if secondIsB, else the inverse flattening
/// \return           square metres, never negative; 0 with fewer than 2 vertices
///
/// Steered by the three precision settings. Source: docs/geodesy/area.md.
ZM_API double TestmyCalEllipseArea(const Point3D* pts, int n, bool isBL, double a, double second, bool secondIsB);

// ---------------------------------------------------------------------------------------------------------------
// Beyond the family's interface
// ---------------------------------------------------------------------------------------------------------------
namespace zm {

/// The inverse that truly undoes forward: there and back within 1e-12 rad up to 4 degrees from the meridian and 89
/// degrees of latitude (nearer the pole the rounding of x and y alone moves l further). Use it where a position must
/// survive the round trip; use backward where results must match the family's existing data.
/// \param ell        as forward
/// \param x, y       northing and easting from the central meridian, metres
/// \param[out] B, l  latitude, and longitude minus central meridian, radians
/// At most 8 Newton steps from backward's result; far outside its range it ends with the last value.
ZM_API void InverseOfForward(int ell, double x, double y, double& B, double& l);

/// forward for n positions; gamma may be null. Each result has the same bits as the scalar form.
/// In- and outputs may be the same arrays, position by position; otherwise they must not overlap.
ZM_API void ForwardArray(int ell, std::size_t n, const double* B, const double* l, double* x, double* y,
                         double* gamma = nullptr);
/// backward for n positions; gamma may be null. Each result has the same bits as the scalar form. Overlap as above.
ZM_API void BackwardArray(int ell, std::size_t n, const double* x, const double* y, double* B, double* l,
                          double* gamma = nullptr);
/// InverseOfForward for n positions. Overlap as above.
ZM_API void InverseOfForwardArray(int ell, std::size_t n, const double* x, const double* y, double* B, double* l);

/// Coordinate_2Dsys::UTMtoGS for n positions of one zone; the same bits. Overlap as above.
/// \param centralMeridian  whole degrees
/// \return                 1; 0 without an ellipsoid (system 0), and then nothing is written
ZM_API int UTMtoGSArray(znCoordSysTypeConstants coordSys, int centralMeridian, std::size_t n, const double* B,
                        const double* L, double* GX, double* GY);
/// Coordinate_2Dsys::GStoUTM for n positions of one zone; the same bits. Overlap as above. \return as UTMtoGSArray
ZM_API int GStoUTMArray(znCoordSysTypeConstants coordSys, int centralMeridian, std::size_t n, const double* GX,
                        const double* GY, double* B, double* L);

}  // namespace zm
