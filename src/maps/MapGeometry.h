#pragma once
// Boundaries for the maps, read from TopoJSON: one shape per feature, its
// rings in degrees of longitude and latitude. A file is read once per
// process; the German municipalities alone are 2.4 MB of text.

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace qvrl {

struct MapPoint {
    double x = 0.0;  // longitude
    double y = 0.0;  // latitude
};

struct MapShape {
    std::string id;    // AGS, ISO number, ...
    std::string name;
    // Outer rings and holes alike; inside is where an odd number of rings
    // surrounds the point.
    std::vector<std::vector<MapPoint>> rings;
    MapPoint min, max;

    bool Contains(MapPoint p) const;
};

struct MapLayerShapes {
    std::vector<MapShape> shapes;
    MapPoint min, max;
    // The first shape that holds the point, -1 for none.
    int32_t HitTest(MapPoint p) const;
};

// Decodes the object of that name of a TopoJSON text. idProperty names the
// property that holds the key ("AGS"), else the feature's "id" is taken.
// Malformed text is error 5 naming what is wrong.
MapLayerShapes DecodeTopoJson(const std::string& text, const std::string& object, const std::string& idProperty,
                              const std::string& nameProperty);

// The boundary sets the maps use, from the data folder, each read once.
enum class Boundaries { GermanMunicipalities, GermanStates, Countries };
// Error 53 when the file is missing.
const MapLayerShapes& LoadBoundaries(Boundaries which);
std::string BoundaryFile(Boundaries which);

// The attribution each boundary set requires, to be shown with the map.
std::string BoundaryAttribution(Boundaries which);

}  // namespace qvrl
