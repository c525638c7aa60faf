#include "location/modWLZMdb.h"

#include "location/TownLists.h"
#include "location/ZoneTables.h"
#include "support/ModuleState.h"
#include "support/errors.h"
#include "support/vb.h"

namespace qvrl {

namespace {

std::string Number(int16_t n) { return Trim(CStr(Variant(n))); }

}  // namespace

using townlists::NameBlanks;
using zonetables::Skip;
using zonetables::TakePlace;

void SetWlzNorm(int16_t Norm) { zonetables::SetNorm(Norm, State().WlzNorm, State().WlzDb); }

bool InitWlzMdb() { return zonetables::Open(State().WlzNorm, State().WlzDb, "qvrlwlz.mdb", "qvrlwlz_dibt.mdb"); }

void ReadWlzStates(std::vector<ZoneStateRec>& list) { zonetables::ReadStates(list, true); }

void ReadWlzRegions(const ZoneStateRec& State, std::vector<WlzRegionRec>& list) {
    list.assign(1, WlzRegionRec{});
    if (!InitWlzMdb()) return;
    auto rs = qvrl::State().WlzDb->OpenRecordset(
        "SELECT * FROM " + std::string("wlz") + " WHERE LandID = " + Number(State.Number) + " ORDER BY Bezirk",
        dao::dbOpenSnapshot);
    if (rs->EOF_()) return;
    Field& fBezirk = rs->Fields("Bezirk");
    Field& fBezID = rs->Fields("BezID");
    Field& fID = rs->Fields("ID");
    // Unlike the snow list, the first row always adds, blank name or not.
    townlists::AddDistinct(
        *rs, fBezirk, &WlzRegionRec::Bezirk, list,
        [&](WlzRegionRec& r) {
            TakePlace(r, State);
            r.BezID = CInt(fBezID.Value());
            r.ID = CLng(fID.Value());
        },
        true);
    NameBlanks(list, &WlzRegionRec::Bezirk);
}

void ReadWlzCounties(const ZoneStateRec& State, const WlzRegionRec& Region, std::vector<WlzCountyRec>& list) {
    list.assign(1, WlzCountyRec{});
    if (!InitWlzMdb()) return;
    const bool byRegion = !Trim(Region.Bezirk).empty();
    const std::string sql = byRegion ? "SELECT * FROM " + std::string("wlz") + " WHERE LandID = " +
                                           Number(Region.Number) + " AND BezID = " + CStr(Variant(Region.BezID)) +
                                           " ORDER BY Kreis"
                                     : "SELECT * FROM " + std::string("wlz") + " WHERE LandID = " +
                                           Number(State.Number) + " ORDER BY Kreis";
    auto rs = qvrl::State().WlzDb->OpenRecordset(sql, dao::dbOpenSnapshot);
    if (rs->EOF_()) return;
    Field& fBezirk = rs->Fields("Bezirk");
    Field& fBezID = rs->Fields("BezID");
    Field& fKreis = rs->Fields("Kreis");
    Field& fKreisID = rs->Fields("KreisID");
    Field& fID = rs->Fields("ID");
    townlists::AddDistinct(
        *rs, fKreis, &WlzCountyRec::Kreis, list,
        [&](WlzCountyRec& r) {
            if (byRegion) {
                TakePlace(r, Region);
            } else {
                TakePlace(r, State);
            }
            r.Bezirk = NzText(fBezirk);
            r.BezID = CInt(fBezID.Value());
            r.KreisID = CInt(fKreisID.Value());
            r.ID = CLng(fID.Value());
        },
        true);
    NameBlanks(list, &WlzCountyRec::Kreis);
}

void ReadWlzTowns(const ZoneStateRec& State, const WlzRegionRec& Region, const WlzCountyRec& County,
                  std::vector<WlzTownRec>& list) {
    list.assign(1, WlzTownRec{});
    if (!InitWlzMdb()) return;
    const bool region = !Trim(Region.Bezirk).empty();
    const bool county = !Trim(County.Kreis).empty();
    std::string sql = "SELECT * FROM " + std::string("wlz") + " WHERE LandID = ";
    if (region && county)
        sql += Number(Region.Number) + " AND BezID = " + CStr(Variant(Region.BezID)) +
               " AND KreisID = " + CStr(Variant(County.KreisID)) + " ORDER BY Gemeinde";
    else if (county)
        sql += Number(County.Number) + " AND BezID = " + CStr(Variant(County.BezID)) +
               " AND KreisID = " + CStr(Variant(County.KreisID)) + " ORDER BY Gemeinde";
    else if (region)
        sql += Number(Region.Number) + " AND BezID = " + CStr(Variant(Region.BezID)) + " ORDER BY Gemeinde";
    else
        sql += Number(State.Number) + " ORDER BY Gemeinde";
    std::unique_ptr<Recordset> rs;
    try {
        rs = qvrl::State().WlzDb->OpenRecordset(sql, dao::dbOpenSnapshot);
    } catch (const RuntimeError&) {
        return;
    }
    for (; !rs->EOF_(); rs->MoveNext()) {
        WlzTownRec r;
        if (region) {
            TakePlace(r, Region);
        } else if (county) {
            TakePlace(r, County);
        } else {
            TakePlace(r, State);
        }
        Skip([&] { r.Bezirk = CStr(rs->Fields("Bezirk").Value()); });
        Skip([&] { r.BezID = CInt(rs->Fields("BezID").Value()); });
        Skip([&] { r.Kreis = CStr(rs->Fields("Kreis").Value()); });
        Skip([&] { r.KreisID = CInt(rs->Fields("KreisID").Value()); });
        Skip([&] { r.ID = CLng(rs->Fields("ID").Value()); });
        Skip([&] { r.Gemeinde = NzText(rs->Fields("Gemeinde").Value()); });
        Skip([&] { r.KEY = CDbl(Variant(r.ID)); });
        Skip([&] { r.WLZ = CStr(rs->Fields("WLZ").Value()); });
        list.push_back(std::move(r));
    }
}

}  // namespace qvrl
