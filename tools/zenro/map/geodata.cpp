#include "tools/zenro/map/geodata.h"

#include <gdal.h>
#include <proj.h>

zm::tool::GeodataLibraries zm::tool::InstalledGeodata() {
    GDALAllRegister();
    return {true, GDALVersionInfo("RELEASE_NAME"), proj_info().release, GDALGetDriverCount()};
}
