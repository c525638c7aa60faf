// qvroofload town AGS / qvroofload towns [filters]: what the town look-ups
// find, the user's corrections laid over the shipped rows.
#include <iomanip>
#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "automation/StoreFailure.h"
#include "commands.h"
#include "validate.h"
#include "location/modAGSMdb.h"
#include "location/modAGSMdb_1.h"
#include "maintenance/TownTableStatus.h"
#include "store/StoreFiles.h"
#include "support/vb.h"

namespace qvrl::cli {

namespace {

using nlohmann::ordered_json;

struct TownOptions {
    bool json = false;
    std::string ags;
    int land = 0;
    int state = 0;
    int region = -1;
    int county = 0;
    std::string plz;
    std::string name;
    std::string db;
};

bool Eurocode(const TownOptions& o) { return o.land > 0; }

ordered_json TownJson(const TownRec& t, bool en) {
    ordered_json j;
    j["AGS"] = t.AGS;
    j["Gemeinde"] = t.Gemeinde;
    j["PLZ"] = t.PLZ;
    j["WZ"] = t.WZ;
    j["SZ"] = t.SZ;
    j["BemW"] = t.BemW;
    j["BemS"] = t.BemS;
    j["LK_ID"] = t.LK_ID;
    j["LK_Name"] = t.LK_Name;
    j["Reg_ID"] = t.Reg_ID;
    j["Reg_Name"] = t.Reg_Name;
    j["BL_ID"] = t.BL_ID;
    j["BL_Name"] = t.BL_Name;
    j["BL_ShortName"] = t.BL_ShortName;
    j["Gem_ID"] = t.Gem_ID;
    j["ID"] = t.ID;
    j["Modified"] = t.Modified;
    if (en) {
        j["Land_ID"] = t.Land_ID;
        j["Land"] = t.Land;
        j["Land_ShortName"] = t.Land_ShortName;
        j["qb"] = t.qb;
        j["vb"] = t.vb;
        j["sk"] = t.sk;
        j["hNN"] = t.hNN;
    }
    return j;
}

// Columns are counted in characters, not bytes, so umlauts keep them aligned.
std::string Pad(const std::string& s, size_t width) {
    size_t chars = 0;
    for (unsigned char c : s)
        if ((c & 0xC0) != 0x80) ++chars;
    return chars >= width ? s + " " : s + std::string(width - chars, ' ');
}

void PrintTown(std::ostream& out, const TownRec& t, bool en) {
    auto line = [&](const char* label, const std::string& value) { out << Pad(label, 14) << value << "\n"; };
    line("AGS", t.AGS);
    line("Municipality", t.Gemeinde);
    line("Postcode", t.PLZ);
    line("County", Format(t.LK_ID, "00") + " " + t.LK_Name);
    line("Region", Format(t.Reg_ID, en && t.Land_ID == kLandAustria ? "00" : "0") + " " + t.Reg_Name);
    line("State", Format(t.BL_ID, en && t.Land_ID == kLandAustria ? "0" : "00") + " " + t.BL_Name +
                       (Trim(t.BL_ShortName).empty() ? "" : " (" + t.BL_ShortName + ")"));
    if (en) line("Country", std::to_string(t.Land_ID) + " " + t.Land);
    line("Wind zone", t.WZ);
    line("Wind remark", t.BemW);
    line("Snow zone", t.SZ);
    line("Snow remark", t.BemS);
    if (en) {
        line("qb kN/m2", DoubleToText(t.qb));
        line("vb m/s", DoubleToText(t.vb));
        line("sk kN/m2", DoubleToText(t.sk));
        line("hNN m", DoubleToText(t.hNN));
    }
    line("Corrected", t.Modified ? "yes, by the user" : "no");
}

void PrintTowns(std::ostream& out, const std::vector<TownRec>& list, bool en) {
    out << Pad("AGS", 10) << Pad("PLZ", 7) << Pad("WZ", 4) << Pad("SZ", 4);
    if (en) out << Pad("sk", 7) << Pad("qb", 7) << Pad("hNN", 7);
    out << Pad("County", 28) << "Municipality\n";
    for (size_t i = 1; i < list.size(); ++i) {
        const TownRec& t = list[i];
        out << Pad(t.AGS, 10) << Pad(t.PLZ, 7) << Pad(t.WZ, 4) << Pad(t.SZ, 4);
        if (en) out << Pad(DoubleToText(t.sk), 7) << Pad(DoubleToText(t.qb), 7) << Pad(DoubleToText(t.hNN), 7);
        out << Pad(t.LK_Name, 28) << t.Gemeinde << "\n";
    }
    out << list.size() - 1 << (list.size() == 2 ? " municipality" : " municipalities") << "\n";
    if (list.size() > 1)
        out << (en ? "[1] no snow zone, [2] no sk, [3] no qb, [4] no altitude; (modif.) corrected by the user\n"
                   : "[1] no wind zone, [2] no snow zone; (modif.) corrected by the user\n");
}

// Tells an empty table, or a database that cannot be opened, apart from a
// filter that matches nothing.
void HintEmpty(bool en) {
    switch (TownTableStatusOf(en)) {
    case TownTableStatus::CannotOpen:
        std::cerr << "qvroofload: " << StoreFile("qvrl.mdb") << " cannot be opened\n";
        return;
    case TownTableStatus::Empty:
        std::cerr << "qvroofload: the town table " << (en ? "slzwlz1" : "slzwlz")
                  << " is empty; load the official directory with 'qvroofload db import "
                  << (en ? "gv100ad' or 'db import at-municipalities'" : "gv100ad'") << "\n";
        return;
    case TownTableStatus::Filled: return;
    }
}


bool Digits(const std::string& s) {
    if (s.empty()) return false;
    for (char c : s)
        if (c < '0' || c > '9') return false;
    return true;
}

int RunTown(const TownOptions& o) {
    if (!Digits(o.ags) || o.ags.size() > 10) {
        std::cerr << "qvroofload: town: the key must be an official municipality key of digits, such as 09162000, not '"
                  << o.ags << "'\n";
        return 2;
    }
    TownRec t;
    ClearStoreOpenError();
    if (Eurocode(o)) FindTownByAGSEN(o.land, o.ags, t);
    else FindTownByAGS(o.ags, t);
    const StoreFailure failure = LastStoreFailure();
    if (StopOnDataFailure(failure, "town", o.json)) return 1;
    if (t.AGS.empty()) {
        std::cerr << "qvroofload: no municipality has the key " << o.ags
                  << (Eurocode(o) ? " in country " + std::to_string(o.land) : std::string()) << "\n";
        HintEmpty(Eurocode(o));
        return WarnOnCorrections(failure, "town", 1);
    }
    if (o.json) std::cout << TownJson(t, Eurocode(o)).dump(2) << "\n";
    else PrintTown(std::cout, t, Eurocode(o));
    return WarnOnCorrections(failure, "town", 0);
}

int RunTowns(const TownOptions& o) {
    if ((o.region >= 0 || o.county > 0) && o.state <= 0) {
        std::cerr << "qvroofload: towns: --region and --county need --state\n";
        return 2;
    }
    if (o.name.find('\'') != std::string::npos || o.plz.find('\'') != std::string::npos) {
        std::cerr << "qvroofload: towns: a name or postcode cannot hold a quote (')\n";
        return 2;
    }
    const bool en = Eurocode(o);
    const int32_t region = o.region < 0 ? 0 : o.region;
    std::vector<TownRec> list;
    ClearStoreOpenError();
    if (en) {
        LandRec land;
        land.Land_ID = o.land;
        StateRecEN state;
        state.Land_ID = o.land;
        state.BL_ID = o.state;
        RegionRecEN reg;
        reg.Land_ID = o.land;
        reg.BL_ID = o.state;
        reg.Reg_ID = region;
        CountyRecEN county;
        county.Land_ID = o.land;
        county.BL_ID = o.state;
        county.Reg_ID = region;
        county.LK_ID = o.county;
        ReadGemFromAGSEN(land, state, reg, county, list, o.plz, o.name, o.land, "");
    } else {
        StateRec state;
        state.BL_ID = o.state;
        RegionRec reg;
        reg.BL_ID = o.state;
        reg.Reg_ID = region;
        CountyRec county;
        county.BL_ID = o.state;
        county.Reg_ID = region;
        county.LK_ID = o.county;
        ReadGemFromAGS(state, reg, county, list, o.plz, o.name, "");
    }
    const StoreFailure failure = LastStoreFailure();
    if (StopOnDataFailure(failure, "towns", o.json)) return 1;
    if (o.json) {
        ordered_json a = ordered_json::array();
        for (size_t i = 1; i < list.size(); ++i) a.push_back(TownJson(list[i], en));
        std::cout << a.dump(2) << "\n";
    } else {
        std::ostringstream text;
        PrintTowns(text, list, en);
        std::cout << text.str();
    }
    if (list.size() <= 1) HintEmpty(en);
    return WarnOnCorrections(failure, "towns", 0);
}

}  // namespace

void AddTownCommands(CLI::App& app, Context& ctx) {
    auto one = std::make_shared<TownOptions>();
    CLI::App* town = app.add_subcommand("town", "Show the municipality of an official key (AGS) with its zones");
    town->add_option("AGS", one->ags, "Official municipality key, such as 09162000")->required();
    town->add_option("--land", one->land, "Look in the Eurocode table of this country (CtrlNA 50..54)")
        ->check(CLI::Range(50, 54));
    town->add_flag("--json", one->json, "Print JSON instead of text");
    AddDbOption(*town, one->db);
    town->callback([one, &ctx] { ctx.exitCode = ApplyDbOption(one->db, "town") ? RunTown(*one) : 2; });

    auto many = std::make_shared<TownOptions>();
    CLI::App* towns = app.add_subcommand("towns", "List the municipalities that match the filters, with their zones");
    towns->add_option("--state", many->state, "State number (BL_ID)")->check(CLI::Range(1, 99));
    towns->add_option("--region", many->region, "Government region number (Reg_ID); needs --state")
        ->check(CLI::Range(0, 99));
    towns->add_option("--county", many->county, "County number (LK_ID); needs --state")->check(CLI::Range(1, 99));
    towns->add_option("--plz", many->plz, "Postcode or its beginning; widened digit by digit when nothing matches")
        ->transform(validate::Postcode());
    towns->add_option("--name", many->name, "Beginning of the municipality's name (* and ? as wild cards)");
    towns->add_option("--land", many->land, "Eurocode table of this country (CtrlNA 50..54) instead of the German one")
        ->check(CLI::Range(50, 54));
    towns->add_flag("--json", many->json, "Print JSON instead of a table");
    AddDbOption(*towns, many->db);
    towns->callback([many, &ctx] { ctx.exitCode = ApplyDbOption(many->db, "towns") ? RunTowns(*many) : 2; });
}

}  // namespace qvrl::cli
