// qvroofload site --html: one printable page with everything inline (no
// scripts, no fonts or pictures from elsewhere), so that it can be filed and
// printed as it is.

#include <algorithm>
#include <cmath>
#include <sstream>

#include "site_report.h"
#include "support/CLocLite.h"
#include "support/ModuleState.h"
#include "vocab/CodeLists.h"

namespace qvrl::cli::site {

namespace {

std::string Esc(const std::string& s) {
    std::string o;
    for (char c : s) {
        switch (c) {
        case '&': o += "&amp;"; break;
        case '<': o += "&lt;"; break;
        case '>': o += "&gt;"; break;
        case '"': o += "&quot;"; break;
        default: o += c;
        }
    }
    return o;
}

std::string Cell(std::optional<double> v, bool three) { return v ? (three ? F3(*v) : F2(*v)) : "&ndash;"; }

void Row(std::ostream& o, const std::string& label, const std::string& value, const std::string& source = {}) {
    o << "<tr><th>" << Esc(label) << "</th><td>" << value << "</td><td class=\"src\">" << Esc(source)
      << "</td></tr>\n";
}

std::string Value(const PublishedValue& v, const std::string& unit) {
    std::string s = v.value ? F3(*v.value) + " " + unit : "&ndash;";
    if (!v.note.empty()) s += " <span class=\"note\">(" + Esc(v.note) + ")</span>";
    return s;
}

// The zone shapes of one direction, scaled into a fixed frame; the wind
// blows along +x.
void Drawing(std::ostream& o, const PublishedCpDirection& d) {
    double x0 = 1e300, y0 = 1e300, x1 = -1e300, y1 = -1e300;
    for (const PublishedZoneShape& z : d.shapes)
        for (const auto& [x, y] : z.points) {
            x0 = std::min(x0, x), x1 = std::max(x1, x);
            y0 = std::min(y0, y), y1 = std::max(y1, y);
        }
    if (!(x1 > x0) || !(y1 > y0)) return;
    const double w = 480.0, scale = w / std::max(x1 - x0, y1 - y0), pad = 30.0;
    const double width = (x1 - x0) * scale + 2 * pad, height = (y1 - y0) * scale + 2 * pad;
    o << "<figure><svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << F2(width) << "\" height=\"" << F2(height)
      << "\" viewBox=\"0 0 " << F2(width) << " " << F2(height) << "\" role=\"img\">\n";
    o << "<title>" << Esc(T(txt::ZoneDrawing)) << ", θ = " << N(d.theta) << "°</title>\n";
    o << "<defs><marker id=\"arrow\" markerWidth=\"8\" markerHeight=\"8\" refX=\"6\" refY=\"4\" orient=\"auto\">"
         "<path d=\"M0,0 L8,4 L0,8 z\"/></marker></defs>\n";
    o << "<line x1=\"2\" y1=\"14\" x2=\"" << F2(pad - 4) << "\" y2=\"14\" stroke=\"black\" marker-end=\"url(#arrow)\"/>\n";
    static const char* kFill[] = {"#f4cccc", "#fce5cd", "#fff2cc", "#d9ead3", "#d0e0e3", "#cfe2f3", "#d9d2e9"};
    size_t i = 0;
    for (const PublishedZoneShape& z : d.shapes) {
        std::ostringstream pts;
        double cx = 0.0, cy = 0.0;
        for (const auto& [x, y] : z.points) {
            const double px = pad + (x - x0) * scale, py = pad + (y - y0) * scale;
            pts << F2(px) << "," << F2(py) << " ";
            cx += px, cy += py;
        }
        if (!z.points.empty()) cx /= static_cast<double>(z.points.size()), cy /= static_cast<double>(z.points.size());
        o << "<polygon class=\"zone\" data-zone=\"" << Esc(z.zone) << "\" points=\"" << pts.str() << "\" fill=\""
          << kFill[i++ % std::size(kFill)] << "\" stroke=\"black\" stroke-width=\"1\"/>\n";
        o << "<text x=\"" << F2(cx) << "\" y=\"" << F2(cy) << "\" text-anchor=\"middle\" dominant-baseline=\"middle\">"
          << Esc(z.zone) << "</text>\n";
    }
    o << "</svg><figcaption>" << Esc(T(txt::ZoneDrawing)) << "</figcaption></figure>\n";
}

void Coefficients(std::ostream& o, const SiteResult& r) {
    o << "<h2>" << Esc(T(txt::Coefficients) + ", " + FormText(r.input.Form)) << "</h2>\n";
    if (r.publishedCp.empty()) o << "<p>" << Esc(T(txt::NoCpForForm)) << "</p>\n";
    const bool qp = r.peakPressure.value.has_value();
    for (const SitePublishedCp& p : r.publishedCp) {
        const PublishedCpDirection& d = p.dir;
        o << "<section class=\"direction\"><h3>" << Esc(T(txt::Direction)) << " θ = " << N(d.theta) << "°</h3>\n";
        o << "<p class=\"src\">" << Esc(T(txt::Source)) << ": " << Esc(d.source);
        if (d.recommended) o << " (" << Esc(T(txt::Recommended)) << ")";
        o << "</p>\n";
        if (!d.note.empty()) o << "<p class=\"note\">" << Esc(d.note) << "</p>\n";
        if (d.e > 0.0) {
            o << "<p>e = " << F3(d.e) << " m";
            if (d.bWind > 0.0) o << ", b = " << F3(d.bWind) << " m";
            if (d.dWind > 0.0) o << ", d = " << F3(d.dWind) << " m";
            o << "</p>\n";
        } else {
            o << "<p>" << Esc(T(txt::NoGeometry)) << "</p>\n";
        }
        for (size_t s = 0; s < d.sets.size(); ++s) {
            const PublishedCpSet& set = d.sets[s];
            o << "<table class=\"cp\">";
            if (!set.label.empty()) o << "<caption>" << Esc(SetText(set.label)) << "</caption>";
            o << "<thead><tr><th>" << Esc(T(txt::Zone)) << "</th><th>c<sub>pe,10</sub></th><th>c<sub>pe,1</sub></th>";
            if (qp) o << "<th>w<sub>e,10</sub> [kN/m²]</th><th>w<sub>e,1</sub> [kN/m²]</th>";
            o << "</tr></thead><tbody>\n";
            for (size_t v = 0; v < set.values.size(); ++v) {
                const PublishedCpValue& c = set.values[v];
                o << "<tr><td>" << Esc(c.zone) << "</td><td>" << Cell(c.cpe10, false) << "</td><td>"
                  << Cell(c.cpe1, false) << "</td>";
                if (qp) o << "<td>" << Cell(p.we[s][v].we10, true) << "</td><td>" << Cell(p.we[s][v].we1, true) << "</td>";
                o << "</tr>\n";
            }
            o << "</tbody></table>\n";
            if (!set.note.empty()) o << "<p class=\"note\">" << Esc(set.note) << "</p>\n";
        }
        Drawing(o, d);
        o << "</section>\n";
    }
}

// The language of the active file; German, the component's own, otherwise.
const char* LanguageTag() {
    const auto& loc = State().locActive;
    return loc && loc->FileName().find("_eng.") != std::string::npos ? "en" : "de";
}

}  // namespace

std::string HtmlReport(const SiteResult& r) {
    const SiteInput& in = r.input;
    std::ostringstream o;
    const std::string kN = "kN/m²";
    o << "<!DOCTYPE html>\n<html lang=\"" << LanguageTag() << "\">\n<head>\n"
      << "<meta charset=\"utf-8\">\n<title>" << Esc(T(txt::Title)) << "</title>\n"
      << "<style>\nbody{font-family:sans-serif;font-size:10pt;margin:1.5cm}\n"
         "table{border-collapse:collapse;margin:0.5em 0}\nth,td{border:1px solid #999;padding:2px 6px;"
         "text-align:left}\ntd{font-variant-numeric:tabular-nums}\n.src{color:#444;font-size:9pt}\n"
         ".note{color:#7a4b00}\nsection.direction{page-break-inside:avoid}\n"
         "@media print{body{margin:0}}\n</style>\n</head>\n<body>\n";
    o << "<h1>" << Esc(T(txt::Title)) << "</h1>\n";

    o << "<h2>" << Esc(T(txt::Inputs)) << "</h2>\n<table class=\"inputs\">\n";
    Row(o, T(txt::Standard), Esc(r.normText) + " (Norm " + std::to_string(in.Norm) + ")");
    if (!r.townName.empty()) Row(o, T(txt::Town), Esc(in.AGS + " " + r.townName));
    Row(o, T(txt::Altitude), N(*in.TerrainHeightInM) + " m");
    Row(o, T(txt::BuildingHeight), N(*in.BuildingHeightInM) + " m");
    Row(o, T(txt::RoofForm), Esc(FormText(in.Form)) + (in.Alpha ? ", " + Esc(T(txt::Pitch)) + " " + N(*in.Alpha) + "°" : ""));
    if (in.PlanWidth || in.PlanDepth)
        Row(o, T(txt::Plan),
            (in.PlanWidth ? N(*in.PlanWidth) : std::string("&ndash;")) + " m × " +
                (in.PlanDepth ? N(*in.PlanDepth) : std::string("&ndash;")) + " m");
    Row(o, T(txt::SnowZone), Esc(ZoneText(r)));
    if (in.WindZone) Row(o, T(txt::WindZone), std::to_string(*in.WindZone));
    if (in.WindProfile) Row(o, T(txt::Profile), Esc(ProfileText(*in.WindProfile)));
    o << "</table>\n";

    o << "<h2>" << Esc(T(txt::Snow)) << "</h2>\n<table class=\"snow\">\n";
    Row(o, T(txt::GroundSnow), Value(r.groundSnow, kN), r.groundSnow.source);
    if (r.mue1) {
        Row(o, T(txt::Ce), F2(r.Ce));
        Row(o, T(txt::Ct), F2(r.Ct));
        Row(o, T(txt::Mue1), Value(*r.mue1, ""), r.mue1->source);
    }
    o << "</table>\n";
    if (!r.arrangements.empty()) {
        o << "<table class=\"arrangements\"><caption>" << Esc(T(txt::Arrangements)) << "</caption>\n<thead><tr><th>"
          << Esc(T(txt::Arrangement)) << "</th><th></th><th>μ</th><th>s [kN/m²]</th><th>" << Esc(T(txt::Source))
          << "</th></tr></thead><tbody>\n";
        for (const SiteSnowArrangement& a : r.arrangements)
            for (const SiteSnowPart& p : a.parts)
                o << "<tr><td>" << Esc(ArrangementText(a.name)) << "</td><td>" << Esc(PartText(p.part)) << "</td><td>"
                  << F3(p.mue) << "</td><td>" << Cell(p.s, true) << "</td><td class=\"src\">" << Esc(a.source)
                  << "</td></tr>\n";
        o << "</tbody></table>\n";
    }

    o << "<h2>" << Esc(T(txt::Wind)) << "</h2>\n<table class=\"wind\">\n";
    if (r.basicPressure) Row(o, T(txt::BasicPressure), Value(*r.basicPressure, kN), r.basicPressure->source);
    Row(o, T(in.Norm == norm::DIN1986_1975 ? txt::VelocityPressure : txt::PeakPressure), Value(r.peakPressure, kN),
        r.peakPressure.source);
    o << "</table>\n";

    Coefficients(o, r);

    if (!r.notes.empty()) {
        o << "<h2>" << Esc(T(txt::Notes)) << "</h2>\n<ul class=\"notes\">\n";
        for (const SiteNote& n : r.notes) o << "<li>" << Esc(NoteText(n)) << "</li>\n";
        o << "</ul>\n";
    }
    o << "</body>\n</html>\n";
    return o.str();
}

}  // namespace qvrl::cli::site
