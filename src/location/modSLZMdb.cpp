#include "location/modSLZMdb.h"

#include "location/TownLists.h"
#include "location/ZoneTables.h"
#include "support/ModuleState.h"
#include "support/errors.h"
#include "support/vb.h"

namespace qvrl {

using zonetables::TakePlace;

void SetSlzNorm(int16_t Norm) { zonetables::SetNorm(Norm, State().SlzNorm, State().SlzDb); }

bool InitSlzMdb() { return zonetables::Open(State().SlzNorm, State().SlzDb, "qvrlslz.mdb", "qvrlslz_dibt.mdb"); }

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
    // An empty name at the start matches the blank element 0 and adds nothing.
    townlists::AddDistinct(*rs, fLandkreis, &SlzCountyRec::Landkreis, list, [&](SlzCountyRec& r) {
        TakePlace(r, State);
        r.Kreis = CInt(fKreis.Value());
        r.RegBez = CInt(fRegBez.Value());
        r.ID = CLng(fID.Value());
    });
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
            TakePlace(r, County);
        } else {
            TakePlace(r, State);
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
