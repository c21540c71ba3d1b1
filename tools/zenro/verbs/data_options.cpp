#include "tools/zenro/verbs/data_options.h"

namespace zm::tool {

void AddPlaneOptions(Verb verb, PlaneOptions& plane) {
    verb.AddOption("--system", plane.system, "Ellipsoid family of the plane: 54, 80, 2000 (84 is the same)")
        .OneOf({"54", "80", "84", "2000"})
        .Default("by the data");
    verb.AddOption("--zone", plane.zoneWidth, "Width of the zones, 3 or 6 degrees")
        .OneOf({3, 6})
        .Default("3, below 1:10000 6");
    verb.AddOption("--meridian", plane.meridian, "Central meridian in degrees, in place of a zone's")
        .Within(-180.0, 360.0);
    verb.AddOption("--easting", plane.easting, "standard: zone number and 500 km; offset: 500 km; natural")
        .OneOf({"standard", "offset", "natural"})
        .ShowDefault();
    verb.AddOption("--datum", plane.datum, "Data on another datum: shift it by PROJ (reported), or keep its numbers")
        .OneOf({"shift", "keep"})
        .Default("shift");
    verb.AddOption("--source", plane.source, "System of the data, in place of what it says itself (EPSG:4490 ...)");
    verb.AddOption("--axes", plane.axes, "Which number of the data comes first, whatever its system says")
        .OneOf({"east,north", "north,east"})
        .Default("east, checked");
}

void AddSelectionOptions(Verb verb, Selection& selection) {
    verb.AddOption("--layer", selection.layers, "Only layers of this name; * and ? as in a shell; several times")
        .Repeatable();
    verb.AddOption("--where", selection.where, "Only features that this attribute filter takes");
    verb.AddOption("--sql", selection.sql, "The result of this statement, in place of the layers of each input");
    verb.AddOption("--limit", selection.limit, "At most so many features of each layer").NotNegative();
}

}  // namespace zm::tool
