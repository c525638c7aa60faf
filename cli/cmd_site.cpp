// qvroofload site: the snow and wind loads of one site and one roof, as a
// report in the active language, as JSON or as a printable HTML page.

#include <algorithm>
#include <iomanip>
#include <iostream>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>

#include "vocab/CodeLists.h"
#include "automation/SiteReport.h"
#include "automation/SiteReportJson.h"
#include "automation/StoreFailure.h"
#include "commands.h"
#include "interchange/FileWrite.h"
#include "site_report.h"
#include "support/errors.h"
#include "support/CLocLite.h"
#include "support/vb.h"
#include "validate.h"

namespace qvrl::cli {

namespace {

// Storage for the options; what the user left out stays empty in SiteInput.
struct Options {
    bool json = false;
    int norm = 0;
    std::string town, roof = "gabled", db, html, profile;
    double ce = 0, ct = 0, width = 0, depth = 0;
    std::string snowZone;
    int windZone = 0, category = 0, region = 0;
    double altitude = 0, height = 0, pitch = 0, hpZuH = 0, rZuH = 0, alphaTr = 0, hzud = 0;
    double qb = 0, vb = 0, phi = 0, s = 0, cdir = 0, cseason = 0, distShore = 0, distTown = 0;
    std::map<std::string, CLI::Option*> given;
};

template <class V>
std::optional<V> If(const Options& o, const char* name, V v) {
    const auto it = o.given.find(name);
    if (it == o.given.end() || it->second->count() == 0) return std::nullopt;
    return v;
}

SiteInput ToInput(const Options& o) {
    SiteInput in;
    in.Norm = static_cast<int16_t>(o.norm);
    in.AGS = o.town;
    // A zone is named by its code or by its text.
    in.SnowZoneText = o.snowZone;
    if (!o.snowZone.empty() && o.snowZone.find_first_not_of("0123456789") == std::string::npos &&
        o.snowZone.size() <= 4)
        in.SnowZone = static_cast<int16_t>(std::stoi(o.snowZone));
    in.WindZone = If(o, "wind-zone", static_cast<int16_t>(o.windZone));
    in.BuildingCategory = If(o, "category", static_cast<int16_t>(o.category));
    in.CtrlRegion = If(o, "region", static_cast<int16_t>(o.region));
    in.TerrainHeightInM = If(o, "altitude", o.altitude);
    in.BuildingHeightInM = If(o, "height", o.height);
    in.Form = *SiteRoofFormFromName(o.roof == "monopitch" ? "pent" : o.roof);
    in.Alpha = If(o, "pitch", o.pitch);
    in.hpZuH = o.hpZuH;
    in.rZuH = o.rZuH;
    in.AlphaTr = o.alphaTr;
    in.HzuD = If(o, "h-d", o.hzud);
    in.BasicWindPressure = If(o, "qb", o.qb);
    in.BasicWindVelocity = If(o, "vb", o.vb);
    in.UpwindSlope_Phi = If(o, "phi", o.phi);
    in.OrographicLocationFac_s = If(o, "s", o.s);
    in.cDir = If(o, "cdir", o.cdir);
    in.cSeason = If(o, "cseason", o.cseason);
    in.DistToShore = If(o, "dist-shore", o.distShore);
    in.DistInTown = If(o, "dist-town", o.distTown);
    in.Ce = If(o, "ce", o.ce);
    in.Ct = If(o, "ct", o.ct);
    in.PlanWidth = If(o, "width", o.width);
    in.PlanDepth = If(o, "depth", o.depth);
    if (!o.profile.empty()) in.WindProfile = GermanWindProfileFromName(o.profile);
    return in;
}

}  // namespace

void AddSiteCommand(CLI::App& app, Context& ctx) {
    auto o = std::make_shared<Options>();
    CLI::App* cmd = app.add_subcommand(
        "site",
        "Snow and wind loads of one site: ground and roof snow, peak velocity pressure, and the external "
        "pressure coefficients of the roof form with their pressures");
    auto add = [&](const std::string& name, auto& var, const std::string& help) {
        CLI::Option* opt = cmd->add_option("--" + name, var, help);
        o->given[name] = opt;
        return opt;
    };
    cmd->add_flag("--json", o->json, "Print JSON instead of the report");
    add("norm", o->norm, "Standard code: 1, 3, 31 (DIN 1055), 50 DE, 51 AT, 52 IT, 53 UK, 54 EN (see `lists`)")
        ->required()
        ->check(CLI::Range(-32768, 32767));
    add("town", o->town, "Municipality key (AGS); its zones fill what is not given");
    AddDbOption(*cmd, o->db);
    add("snow-zone", o->snowZone, "Snow load zone of the standard: its code or its text, e.g. 21 or 2a (see `lists`; for 50 the zones "
        "of the German annex map: 1, 1a, 2, 2a, 3)");
    add("wind-zone", o->windZone, "Wind zone (DIN 1055-4:2005; DIN EN: gives qb and vb)")
        ->check(CLI::Range(-32768, 32767));
    add("altitude", o->altitude, "Height of the terrain above sea level, m")->check(validate::Altitude());
    add("height", o->height, "Height of the building, m")->check(validate::BuildingHeight());
    add("category", o->category, "Terrain category code of the standard (see `lists`)")
        ->check(CLI::Range(-32768, 32767));
    add("roof", o->roof, "Roof form: gabled (default), hipped, flat, pent (monopitch) or wall")
        ->check(CLI::IsMember({"gabled", "hipped", "flat", "pent", "monopitch", "wall"}));
    add("pitch", o->pitch, "Roof pitch, degrees, 0 to 90");
    add("hp-h", o->hpZuH, "Flat roof with parapet: parapet height / building height");
    add("r-h", o->rZuH, "Flat roof with rounded eaves: radius / building height");
    add("alpha-tr", o->alphaTr, "Flat roof with mansard eaves: eaves angle, degrees");
    add("h-d", o->hzud, "Walls: building height / depth");
    add("region", o->region, "Eurocode: climate region (CtrlRegion); needed for 54")->check(CLI::Range(-32768, 32767));
    add("qb", o->qb, "Eurocode: basic velocity pressure, kN/m²")->check(validate::BasicPressure());
    add("vb", o->vb, "Eurocode: basic wind velocity, m/s (the UK annex works from it)")
        ->check(validate::BasicVelocity());
    add("phi", o->phi, "Eurocode: upwind slope Φ (with --s)");
    add("s", o->s, "Eurocode: orographic location factor s (with --phi)");
    add("cdir", o->cdir, "Eurocode 50, 51, 52: direction factor (default 1)");
    add("cseason", o->cseason, "Eurocode 50, 51, 52: season factor (default 1)");
    add("dist-shore", o->distShore, "UK annex: distance to the shore, m")->check(validate::DistanceToShore());
    add("dist-town", o->distTown, "UK annex: distance inside town, m")->check(validate::DistanceInTown());
    add("ce", o->ce, "Snow: exposure coefficient C_e, above 0 and at most 2 (default 1)");
    add("ct", o->ct, "Snow: thermal coefficient C_t, above 0 and at most 1 (default 1)");
    add("width", o->width, "Plan of the building: width b across the wind at θ = 0°, m (for the zone geometry)")
        ->check(CLI::PositiveNumber);
    add("depth", o->depth, "Plan of the building: depth d along the wind at θ = 0°, m (for the zone geometry)")
        ->check(CLI::PositiveNumber);
    add("profile", o->profile,
        "German wind (Norm 3, 50), instead of --category: coast (mixed profile I/II), inland (mixed profile "
        "II/III) or islands (North Sea islands, wind zone 4)")
        ->check(CLI::IsMember({"coast", "inland", "islands"}));
    cmd->add_option("--html", o->html, "Also write the report as a printable HTML page to FILE");
    cmd->footer(
        "Examples:\n"
        "  qvroofload site --norm 3 --snow-zone 2 --wind-zone 2 --category 2 --altitude 300 --height 10 "
        "--roof gabled --pitch 35\n"
        "  qvroofload --lang eng site --norm 54 --region 6 --snow-zone 2 --vb 25 --category 2 --altitude 400 "
        "--height 12 --roof flat --json\n"
        "  qvroofload site --norm 50 --snow-zone 2 --wind-zone 2 --profile inland --altitude 400 --height 10 "
        "--roof gabled --pitch 35 --width 12 --depth 10 --html site.html");
    cmd->callback([o, &ctx] {
        ApplyLanguage(ctx);
        if (!ApplyDbOption(o->db, "site")) {
            ctx.exitCode = 2;
            return;
        }
        SiteResult r;
        ClearStoreOpenError();
        try {
            r = ComputeSite(ToInput(*o));
        } catch (const SiteInputError& e) {
            // A town "not found" in a file that did not open is that file's failure.
            const StoreFailure f = LastStoreFailure();
            if (StopOnDataFailure(f, "site", o->json)) {
                ctx.exitCode = 1;
                return;
            }
            std::cerr << "qvroofload site: " << e.what() << "\nRun with --help for more information.\n";
            ctx.exitCode = WarnOnCorrections(f, "site", 2);
            return;
        }
        const StoreFailure f = LastStoreFailure();
        if (StopOnDataFailure(f, "site", o->json)) {
            ctx.exitCode = 1;
            return;
        }
        if (!o->html.empty()) {
            // Through a temporary file and a rename: never a half-written page.
            try {
                ReplaceFile(o->html, site::HtmlReport(r));
            } catch (const RuntimeError& e) {
                std::cerr << "qvroofload site: --html: " << o->html << ": " << e.what() << "\n";
                ctx.exitCode = 1;
                return;
            }
        }
        std::ostringstream text;  // nothing is printed unless all of it is
        if (o->json) text << SiteReportJson(r, 2) << "\n";
        else site::TextReport(text, r);
        std::cout << text.str();
        ctx.exitCode = WarnOnCorrections(f, "site", 0);
    });
}

}  // namespace qvrl::cli
