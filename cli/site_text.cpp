// qvroofload site: the text report.

#include <iomanip>
#include <sstream>

#include "site_report.h"
#include "support/CLocLite.h"
#include "support/vb.h"
#include "vocab/CodeLists.h"

namespace qvrl::cli::site {

std::string T(int32_t n) { return LoadResStr(Variant(n)); }
std::string F3(double v) { return Format(v, "0.000"); }
std::string F2(double v) { return Format(v, "0.00"); }
std::string N(double v) { return DoubleToText(v); }

std::string ZoneText(const SiteResult& r) {
    const CodeList l = SiteSnowZoneList(r.input.Norm, r.input.CtrlRegion.value_or(0));
    for (size_t i = 1; i < l.Index.size(); ++i)
        if (l.Index[i] == *r.input.SnowZone) return l.sName[i];
    return std::to_string(*r.input.SnowZone);
}

std::string FormText(SiteRoofForm f) { return T(txt::FormFirst + static_cast<int32_t>(f)); }

std::string ArrangementText(const std::string& name) {
    if (name == "drifted_left") return T(txt::DriftedLeft);
    if (name == "drifted_right") return T(txt::DriftedRight);
    return T(txt::Undrifted);
}

std::string PartText(const std::string& part) {
    return T(part == "left" ? txt::Left : part == "right" ? txt::Right : txt::Whole);
}

std::string SetText(const std::string& label) {
    if (label == "suction") return T(txt::Suction);
    if (label == "pressure") return T(txt::Pressure);
    return label;
}

std::string ProfileText(GermanWindProfile p) {
    return T(txt::ProfileFirst + static_cast<int32_t>(p) - static_cast<int32_t>(GermanWindProfile::Coast));
}

std::string NoteText(const SiteNote& n) {
    const std::string value = n.memberValue ? F3(*n.memberValue) + (n.unit.empty() ? "" : " " + n.unit) : T(txt::NoValue);
    if (n.ruleUsed) return n.what + ": " + T(txt::RuleUsed) + " " + n.member + ".";
    return n.what + ": " + n.member + " " + T(txt::Gives) + ": " + value + ".";
}

namespace {

const std::string kN = " kN/m²";

void Line(std::ostream& out, const std::string& label, const std::string& value) {
    out << "  " << label << ": " << value << "\n";
}

std::string Src(const PublishedValue& v) {
    std::string s = "  [" + v.source + "]";
    if (!v.note.empty()) s += " (" + v.note + ")";
    return s;
}

std::string TextOf(const CodeList& l, int16_t code) {
    for (size_t i = 1; i < l.Index.size(); ++i)
        if (l.Index[i] == code) return l.sName[i];
    return std::to_string(code);
}

void Inputs(std::ostream& out, const SiteResult& r) {
    const SiteInput& in = r.input;
    Line(out, T(txt::Standard), r.normText + " (Norm " + std::to_string(in.Norm) + ")");
    if (!r.townName.empty()) Line(out, T(txt::Town), in.AGS + " " + r.townName);
    Line(out, T(txt::Altitude), N(*in.TerrainHeightInM) + " m");
    Line(out, T(txt::BuildingHeight), N(*in.BuildingHeightInM) + " m");
    std::string form = FormText(in.Form);
    if (in.Alpha) form += ", " + T(txt::Pitch) + " " + N(*in.Alpha) + "°";
    if (in.Form == SiteRoofForm::Flat) {
        if (in.hpZuH > 0) form += ", " + T(txt::Eaves) + " h_p/h " + N(in.hpZuH);
        if (in.rZuH > 0) form += ", " + T(txt::Eaves) + " r/h " + N(in.rZuH);
        if (in.AlphaTr > 0) form += ", " + T(txt::Eaves) + " α " + N(in.AlphaTr) + "°";
    }
    if (in.HzuD) form += ", " + T(txt::HzuD) + " " + N(*in.HzuD);
    Line(out, T(txt::RoofForm), form);
    if (in.PlanWidth || in.PlanDepth)
        Line(out, T(txt::Plan),
             (in.PlanWidth ? N(*in.PlanWidth) : std::string("-")) + " m × " +
                 (in.PlanDepth ? N(*in.PlanDepth) : std::string("-")) + " m");
}

void Snow(std::ostream& out, const SiteResult& r) {
    const SiteInput& in = r.input;
    out << "\n" << T(txt::Snow) << "\n";
    Line(out, T(txt::SnowZone), ZoneText(r));
    if (in.CtrlRegion && *in.CtrlRegion != 0)
        Line(out, T(txt::Region), TextOf(ListsOfNorm(in.Norm).regions, *in.CtrlRegion));
    Line(out, T(txt::GroundSnow),
         (r.groundSnow.value ? F3(*r.groundSnow.value) + kN : T(txt::NoSnowValue)) + Src(r.groundSnow));
    if (in.Form == SiteRoofForm::Wall) {
        out << "  " << T(txt::WallNoSnow) << "\n";
        return;
    }
    if (!r.mue1) {
        out << "  " << T(txt::NoShape) << "\n";
        return;
    }
    Line(out, T(txt::Ce), F2(r.Ce));
    Line(out, T(txt::Ct), F2(r.Ct));
    Line(out, T(txt::Mue1), F3(*r.mue1->value) + Src(*r.mue1));
    out << "  " << T(txt::Arrangements) << ":\n";
    for (const SiteSnowArrangement& a : r.arrangements) {
        out << "    " << ArrangementText(a.name) << "  [" << a.source << "]\n";
        for (const SiteSnowPart& p : a.parts) {
            out << "      " << std::left << std::setw(14) << PartText(p.part) << std::right << "μ = " << F3(p.mue);
            if (p.s) out << ", " << T(txt::RoofSnow) << " = " << F3(*p.s) << kN;
            out << "\n";
        }
    }
}

void Wind(std::ostream& out, const SiteResult& r) {
    const SiteInput& in = r.input;
    out << "\n" << T(txt::Wind) << "\n";
    if (in.WindZone) Line(out, T(txt::WindZone), std::to_string(*in.WindZone));
    if (in.BuildingCategory) Line(out, T(txt::Category), TextOf(ListsOfNorm(in.Norm).categories, *in.BuildingCategory));
    if (in.WindProfile) Line(out, T(txt::Profile), ProfileText(*in.WindProfile));
    if (r.basicPressure && r.basicPressure->value)
        Line(out, T(txt::BasicPressure), F3(*r.basicPressure->value) + kN + Src(*r.basicPressure));
    else if (IsEurocodeNorm(in.Norm) && in.Norm != norm::UK && r.qb > 0.0)
        Line(out, T(txt::BasicPressure), F3(r.qb) + kN);
    if (IsEurocodeNorm(in.Norm) && r.vb > 0.0) Line(out, T(txt::BasicVelocity), N(r.vb) + " m/s");
    if (in.UpwindSlope_Phi)
        Line(out, T(txt::Orography), "Φ = " + N(*in.UpwindSlope_Phi) + ", s = " + N(*in.OrographicLocationFac_s));
    if (in.cDir || in.cSeason)
        Line(out, T(txt::Factors), "c_dir = " + N(in.cDir.value_or(1.0)) + ", c_season = " + N(in.cSeason.value_or(1.0)));
    if (in.Norm == norm::UK)
        Line(out, T(txt::Distances), N(in.DistToShore.value_or(0.0)) + " m / " + N(in.DistInTown.value_or(0.0)) + " m");
    Line(out, T(in.Norm == norm::DIN1986_1975 ? txt::VelocityPressure : txt::PeakPressure),
         (r.peakPressure.value ? F3(*r.peakPressure.value) + kN : T(txt::NoPressure)) + Src(r.peakPressure));
}

void Coefficients(std::ostream& out, const SiteResult& r) {
    out << "\n" << T(txt::Coefficients) << ", " << FormText(r.input.Form) << "\n";
    if (r.publishedCp.empty()) out << "  " << T(txt::NoCpForForm) << "\n";
    const bool qp = r.peakPressure.value.has_value();
    bool geometry = false;
    for (const SitePublishedCp& p : r.publishedCp) {
        const PublishedCpDirection& d = p.dir;
        out << "  " << T(txt::Direction) << " θ = " << N(d.theta) << "°  [" << d.source << "]";
        if (d.recommended) out << " (" << T(txt::Recommended) << ")";
        out << "\n";
        if (!d.note.empty()) out << "    (" << d.note << ")\n";
        if (d.e > 0.0) {
            geometry = true;
            out << "    e = " << F3(d.e) << " m";
            if (d.bWind > 0.0) out << ", b = " << F3(d.bWind) << " m";
            if (d.dWind > 0.0) out << ", d = " << F3(d.dWind) << " m";
            out << "\n";
        }
        for (size_t s = 0; s < d.sets.size(); ++s) {
            const PublishedCpSet& set = d.sets[s];
            if (!set.label.empty()) out << "    " << SetText(set.label) << ":\n";
            std::ostringstream head;
            head << "    " << std::left << std::setw(8) << T(txt::Zone) << std::right << std::setw(9) << "cpe,10"
                 << std::setw(9) << "cpe,1";
            if (qp) head << std::setw(10) << "we,10" << std::setw(9) << "we,1" << "  [kN/m²]";
            out << head.str() << "\n";
            for (size_t v = 0; v < set.values.size(); ++v) {
                const PublishedCpValue& c = set.values[v];
                const SiteWe& we = p.we[s][v];
                auto cell = [](std::optional<double> x, int w, bool three) {
                    std::ostringstream o;
                    o << std::setw(w) << (x ? (three ? F3(*x) : F2(*x)) : std::string("-"));
                    return o.str();
                };
                out << "    " << std::left << std::setw(8) << c.zone << std::right << cell(c.cpe10, 9, false)
                    << cell(c.cpe1, 9, false);
                if (qp) out << cell(we.we10, 10, true) << cell(we.we1, 9, true);
                out << "\n";
            }
            if (!set.note.empty()) out << "    (" << set.note << ")\n";
        }
    }
    if (!r.publishedCp.empty() && !geometry) out << "  " << T(txt::NoGeometry) << "\n";
    if (!r.publishedCp.empty() && !qp) out << "  " << T(txt::NoWindPressures) << "\n";
}

}  // namespace

void TextReport(std::ostream& out, const SiteResult& r) {
    out << T(txt::Title) << "\n" << std::string(T(txt::Title).size(), '=') << "\n";
    Inputs(out, r);
    Snow(out, r);
    Wind(out, r);
    Coefficients(out, r);
    if (!r.notes.empty()) {
        out << "\n" << T(txt::Notes) << "\n";
        for (const SiteNote& n : r.notes) out << "  - " << NoteText(n) << "\n";
    }
}

}  // namespace qvrl::cli::site
