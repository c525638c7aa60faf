#include "maps/MapGeometry.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <nlohmann/json.hpp>
#include <sstream>

#include "support/errors.h"
#include "support/modLowLevel.h"

namespace qvrl {

namespace {

using nlohmann::json;

[[noreturn]] void Bad(const std::string& why) { Raise(err::InvalidCall, "MapGeometry", "map boundaries: " + why); }

bool RingContains(const std::vector<MapPoint>& ring, MapPoint p) {
    bool inside = false;
    for (size_t i = 0, j = ring.size() - 1; i < ring.size(); j = i++) {
        const MapPoint a = ring[i], b = ring[j];
        if ((a.y > p.y) != (b.y > p.y)) {
            const double x = a.x + (p.y - a.y) / (b.y - a.y) * (b.x - a.x);
            if (p.x < x) inside = !inside;
        }
    }
    return inside;
}

struct Transform {
    double sx = 1.0, sy = 1.0, tx = 0.0, ty = 0.0;
    bool quantized = false;
};

std::vector<std::vector<MapPoint>> DecodeArcs(const json& doc) {
    Transform t;
    if (doc.contains("transform")) {
        const json& tr = doc.at("transform");
        t.sx = tr.at("scale").at(0).get<double>();
        t.sy = tr.at("scale").at(1).get<double>();
        t.tx = tr.at("translate").at(0).get<double>();
        t.ty = tr.at("translate").at(1).get<double>();
        t.quantized = true;
    }
    const json& arcs = doc.at("arcs");
    if (!arcs.is_array()) Bad("\"arcs\" is no list");
    std::vector<std::vector<MapPoint>> out;
    out.reserve(arcs.size());
    for (const json& arc : arcs) {
        std::vector<MapPoint> pts;
        pts.reserve(arc.size());
        double qx = 0.0, qy = 0.0;
        for (const json& pos : arc) {
            if (!pos.is_array() || pos.size() < 2 || !pos[0].is_number() || !pos[1].is_number())
                Bad("an arc position is no pair of numbers");
            if (t.quantized) {
                // Quantized arcs store each position as the step from the one before.
                qx += pos[0].get<double>();
                qy += pos[1].get<double>();
                pts.push_back({qx * t.sx + t.tx, qy * t.sy + t.ty});
            } else {
                pts.push_back({pos[0].get<double>(), pos[1].get<double>()});
            }
        }
        out.push_back(std::move(pts));
    }
    return out;
}

std::vector<MapPoint> Ring(const json& indices, const std::vector<std::vector<MapPoint>>& arcs) {
    std::vector<MapPoint> ring;
    for (const json& ji : indices) {
        if (!ji.is_number_integer()) Bad("an arc index is no whole number");
        const int64_t i = ji.get<int64_t>();
        // A negative index is the one's complement of an arc run backwards.
        const int64_t k = i < 0 ? ~i : i;
        if (k >= static_cast<int64_t>(arcs.size())) Bad("arc " + std::to_string(k) + " does not exist");
        std::vector<MapPoint> a = arcs[static_cast<size_t>(k)];
        if (i < 0) std::reverse(a.begin(), a.end());
        // Consecutive arcs share their joining point.
        ring.insert(ring.end(), a.begin() + (ring.empty() || a.empty() ? 0 : 1), a.end());
    }
    return ring;
}

std::string Text(const json& v) {
    if (v.is_string()) return v.get<std::string>();
    if (v.is_number_integer()) return std::to_string(v.get<int64_t>());
    return {};
}

}  // namespace

bool MapShape::Contains(MapPoint p) const {
    if (p.x < min.x || p.x > max.x || p.y < min.y || p.y > max.y) return false;
    bool inside = false;
    for (const auto& r : rings)
        if (r.size() >= 3 && RingContains(r, p)) inside = !inside;
    return inside;
}

int32_t MapLayerShapes::HitTest(MapPoint p) const {
    for (size_t i = 0; i < shapes.size(); ++i)
        if (shapes[i].Contains(p)) return static_cast<int32_t>(i);
    return -1;
}

MapLayerShapes DecodeTopoJson(const std::string& text, const std::string& object, const std::string& idProperty,
                              const std::string& nameProperty) {
    json doc;
    try {
        doc = json::parse(text);
    } catch (const json::exception& e) {
        Bad(std::string("not JSON: ") + e.what());
    }
    MapLayerShapes out;
    try {
        if (!doc.is_object() || doc.value("type", "") != "Topology") Bad("not a TopoJSON topology");
        const auto arcs = DecodeArcs(doc);
        const json& objects = doc.at("objects");
        if (!objects.contains(object)) Bad("no object \"" + object + "\"");
        const json& geoms = objects.at(object).at("geometries");
        out.min = {1e300, 1e300};
        out.max = {-1e300, -1e300};
        for (const json& g : geoms) {
            MapShape s;
            const std::string type = g.value("type", "");
            if (type == "Polygon") {
                for (const json& r : g.at("arcs")) s.rings.push_back(Ring(r, arcs));
            } else if (type == "MultiPolygon") {
                for (const json& poly : g.at("arcs"))
                    for (const json& r : poly) s.rings.push_back(Ring(r, arcs));
            } else {
                continue;  // points, lines and empty features have no area to click
            }
            const json props = g.value("properties", json::object());
            s.id = !idProperty.empty() && props.contains(idProperty) ? Text(props.at(idProperty))
                                                                     : (g.contains("id") ? Text(g.at("id")) : "");
            s.name = props.contains(nameProperty) ? Text(props.at(nameProperty)) : "";
            s.min = {1e300, 1e300};
            s.max = {-1e300, -1e300};
            for (const auto& r : s.rings)
                for (const MapPoint& p : r) {
                    s.min = {std::min(s.min.x, p.x), std::min(s.min.y, p.y)};
                    s.max = {std::max(s.max.x, p.x), std::max(s.max.y, p.y)};
                }
            out.min = {std::min(out.min.x, s.min.x), std::min(out.min.y, s.min.y)};
            out.max = {std::max(out.max.x, s.max.x), std::max(out.max.y, s.max.y)};
            out.shapes.push_back(std::move(s));
        }
    } catch (const json::exception& e) {
        Bad(std::string("malformed TopoJSON: ") + e.what());
    }
    return out;
}

std::string BoundaryFile(Boundaries which) {
    const char* name = which == Boundaries::GermanMunicipalities ? "de_gemeinden_vg5000_2021_topo.json"
                       : which == Boundaries::GermanStates       ? "de_laender_vg5000_2021_topo.json"
                                                                 : "world_countries_50m_topo.json";
    return (std::filesystem::path(ProgramFolder()) / "maps" / name).string();
}

std::string BoundaryAttribution(Boundaries which) {
    if (which == Boundaries::Countries) return "Natural Earth";
    return "\xC2\xA9 GeoBasis-DE / BKG 2021 (Daten ver\xC3\xA4ndert)";
}

const MapLayerShapes& LoadBoundaries(Boundaries which) {
    static std::mutex mutex;
    static std::map<Boundaries, std::unique_ptr<MapLayerShapes>> cache;
    std::lock_guard<std::mutex> lock(mutex);
    auto& slot = cache[which];
    if (!slot) {
        const std::string path = BoundaryFile(which);
        std::ifstream in(path, std::ios::binary);
        if (!in) Raise(err::FileNotFound, "MapGeometry", "map boundaries not found: " + path);
        std::ostringstream text;
        text << in.rdbuf();
        const bool de = which != Boundaries::Countries;
        const char* object = which == Boundaries::GermanMunicipalities ? "gemeinden"
                             : which == Boundaries::GermanStates       ? "laender"
                                                                       : "countries";
        slot = std::make_unique<MapLayerShapes>(
            DecodeTopoJson(text.str(), object, de ? "AGS" : "", de ? "GEN" : "name"));
    }
    return *slot;
}

}  // namespace qvrl
