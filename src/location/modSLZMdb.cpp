#include "location/modSLZMdb.h"

#include "location/ZoneTables.h"
#include "store/StoreFiles.h"
#include "support/CLocLite.h"
#include "support/ModuleState.h"
#include "support/errors.h"
#include "support/modLowLevel.h"
#include "support/vb.h"

namespace qvrl {

const std::vector<ZoneStateCode>& ZoneStateCodes() {
    static const std::vector<ZoneStateCode> codes = {
        {346, "BW", 8, "BW", 15},  {348, "BY", 9, "BY", 16},  {349, "BE", 11, "BE", 7}, {351, "BB", 12, "BB", 6},
        {352, "HB", 4, "HB", 3},   {354, "HH", 2, "HH", 2},   {355, "HE", 6, "HE", 10}, {356, "MV", 13, "MV", 5},
        {358, "NI", 3, "NS", 4},   {360, "NW", 5, "NW", 9},   {362, "RP", 7, "RP", 13}, {364, "SL", 10, "SL", 14},
        {366, "SN", 14, "SN", 12}, {372, "ST", 15, "SA", 8},  {368, "SH", 1, "SH", 1},  {370, "TH", 16, "TH", 11},
    };
    return codes;
}

bool IsZoneTableNorm(int16_t Norm) {
    switch (Norm) {
    case 3: case 50: case 51: case 52: case 53: case 54: case 78: case 211: case 213: return true;
    default: return false;
    }
}

void SetSlzNorm(int16_t Norm) { zonetables::SetNorm(Norm, State().SlzNorm, State().SlzDb); }

bool InitSlzMdb() { return zonetables::Open(State().SlzNorm, State().SlzDb, "qvrlslz.mdb", "qvrlslz_dibt.mdb"); }

namespace zonetables {

void SetNorm(int16_t Norm, int16_t& current, std::shared_ptr<Database>& db) {
    if (Norm == current) return;
    current = Norm;
    db.reset();
}

bool Open(int16_t& norm, std::shared_ptr<Database>& db, const char* plain, const char* dibt) {
    if (db) return true;
    std::string file = plain;
    if (norm != 31) {
        if (!IsZoneTableNorm(norm)) norm = 3;
        file = dibt;
    }
    try {
        db = OpenDB(StoreFile(file), Variant(), Variant(true));
    } catch (const RuntimeError&) {
        return false;
    }
    return true;
}

void ReadStates(std::vector<ZoneStateRec>& list, bool wind) {
    if (!State().locActive) InitLanguageObjects();
    list.assign(1, ZoneStateRec{});
    for (const ZoneStateCode& c : ZoneStateCodes()) {
        ZoneStateRec r;
        r.Name = LoadResStr(Variant(int32_t{c.TextNumber}));
        r.Number = wind ? c.WlzNumber : c.SlzNumber;
        r.Code = wind ? c.WlzCode : c.SlzCode;
        list.push_back(std::move(r));
    }
}

}  // namespace zonetables

void ReadSlzStates(std::vector<ZoneStateRec>& list) { zonetables::ReadStates(list, false); }

void ReadSlzCounties(const ZoneStateRec& State, std::vector<SlzCountyRec>& list) {
    list.assign(1, SlzCountyRec{});
    if (!InitSlzMdb()) return;
    auto rs = qvrl::State().SlzDb->OpenRecordset(
        "SELECT * FROM slz WHERE Bundesland = " + Trim(CStr(Variant(State.Number))) + " ORDER BY Landkreis",
        dao::dbOpenSnapshot);
    if (rs->EOF_()) return;
    Field& fLandkreis = rs->Fields("Landkreis");
    Field& fKreis = rs->Fields("Kreis");
    Field& fRegBez = rs->Fields("RegBez");
    Field& fID = rs->Fields("ID");
    for (rs->MoveFirst(); !rs->EOF_(); rs->MoveNext()) {
        const std::string name = NzText(fLandkreis);
        // An empty name at the start matches the blank element 0 and adds nothing.
        if (Trim(name) == Trim(list.back().Landkreis)) continue;
        SlzCountyRec r;
        r.Name = State.Name;
        r.Number = State.Number;
        r.Code = State.Code;
        r.Landkreis = name;
        r.Kreis = CInt(fKreis.Value());
        r.RegBez = CInt(fRegBez.Value());
        r.ID = CLng(fID.Value());
        list.push_back(std::move(r));
    }
}

using zonetables::Skip;

void ReadSlzTowns(const ZoneStateRec& State, const SlzCountyRec& County, std::vector<SlzTownRec>& list) {
    list.assign(1, SlzTownRec{});
    if (!InitSlzMdb()) return;
    const bool byCounty = !Trim(County.Landkreis).empty();
    std::string sql;
    if (byCounty)
        sql = "SELECT * FROM slz WHERE Bundesland = " + Trim(CStr(Variant(County.Number))) +
              " AND RegBez = " + CStr(Variant(County.RegBez)) + " AND Kreis = " + CStr(Variant(County.Kreis)) +
              " ORDER BY Gemeinde";
    else
        sql = "SELECT * FROM slz WHERE Bundesland = " + Trim(CStr(Variant(State.Number))) + " ORDER BY Gemeinde";
    std::unique_ptr<Recordset> rs;
    try {
        rs = qvrl::State().SlzDb->OpenRecordset(sql, dao::dbOpenSnapshot);
    } catch (const RuntimeError&) {
        return;
    }
    for (; !rs->EOF_(); rs->MoveNext()) {
        SlzTownRec r;
        if (byCounty) {
            r.Name = County.Name;
            r.Number = County.Number;
            r.Code = County.Code;
        } else {
            r.Name = State.Name;
            r.Number = State.Number;
            r.Code = State.Code;
        }
        Skip([&] { r.Landkreis = CStr(rs->Fields("Landkreis").Value()); });
        Skip([&] { r.Kreis = CInt(rs->Fields("Kreis").Value()); });
        Skip([&] { r.RegBez = CInt(rs->Fields("RegBez").Value()); });
        Skip([&] { r.ID = CLng(rs->Fields("ID").Value()); });
        Skip([&] { r.Gemeinde = CStr(rs->Fields("Gemeinde").Value()); });
        Skip([&] { r.KEY = CDbl(rs->Fields("KEY").Value()); });
        Skip([&] { r.Fussnoten = CStr(rs->Fields("Fußnote(n)").Value()); });
        Skip([&] { r.Schneelastzone = CStr(rs->Fields("Schneelastzone").Value()); });
        list.push_back(std::move(r));
    }
}

}  // namespace qvrl
