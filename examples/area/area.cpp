// Area and length of a parcel given in degrees, on the projection plane and on the ellipsoid.
#include <zenromath/geodesy.h>

#include <cstdio>

int main() {
    // x is the longitude, y the latitude; the first vertex stands again at the end.
    const Point3D parcel[] = {
        {120.00, 31.00, 0}, {120.01, 31.00, 0}, {120.01, 31.01, 0}, {120.00, 31.01, 0}, {120.00, 31.00, 0}};
    for (const short method : {short{0}, short{1}}) {
        DistandAreaInquiry inquiry(parcel, 5, method);
        std::printf("%s: %.3f m2\n", method == 0 ? "plane" : "ellipsoid", inquiry.GetArea());
        // The length on the ellipsoid of lines towards rising latitude is the family's historic one, wrong by up to 2
        // parts in 1000; on the plane it is right.
        if (method == 0) std::printf("plane: %.3f m around\n", inquiry.GetDist());
    }
    return 0;
}
