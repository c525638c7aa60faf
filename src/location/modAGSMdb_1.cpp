#include "location/modAGSMdb_1.h"

#include <cmath>

#include "location/TownLists.h"
#include "location/modAGSMdb.h"
#include "store/StoreFiles.h"
#include "store/modDAO.h"
#include "support/ModuleState.h"
#include "support/errors.h"
#include "support/modLowLevel.h"
#include "support/modToolsB.h"
#include "support/vb.h"

namespace qvrl {

namespace {

using townlists::Join;
using townlists::NameBlanks;
using townlists::Quoted;
using townlists::ValidKey;

int32_t Long(const Field& f) { return CLng(NzNumber(f)); }

// The condition of a key: the key beats every other filter, and stays inside
// its country when one is given.
std::string KeyCondition(int32_t LandKey, const std::string& AGS) {
    const std::string key = " AGS = " + Quoted(AGS);
    return LandKey > 0 ? LandClause(LandKey) + " AND " + key : key;
}

struct RowFieldsEN {
    explicit RowFieldsEN(Recordset& rs)
        : Land(rs.Fields("Land")), Land_ID(rs.Fields("Land_ID")), Land_ShortName(rs.Fields("Land_ShortName")),
          BL_Name(rs.Fields("BL_Name")), BL_ID(rs.Fields("BL_ID")), BL_ShortName(rs.Fields("BL_ShortName")),
          Reg_Name(rs.Fields("Reg_Name")), Reg_ID(rs.Fields("Reg_ID")), LK_Name(rs.Fields("LK_Name")),
          LK_ID(rs.Fields("LK_ID")), Gemeinde(rs.Fields("Gemeinde")), Gem_ID(rs.Fields("Gem_ID")),
          ID(rs.Fields("ID")), PLZ(rs.Fields("PLZ")), AGS(rs.Fields("AGS")), SZ(rs.Fields("SZ")),
          BemS(rs.Fields("BemS")), wZ(rs.Fields("wZ")), BemW(rs.Fields("BemW")), qb(rs.Fields("qb")),
          vb(rs.Fields("vb")), sk(rs.Fields("sk")), hNN(rs.Fields("hNN")) {}

    // Null reads as empty or 0 everywhere but in AGS.
    void Read(TownRec& r) const {
        r.Land = NzText(Land);
        r.Land_ID = Long(Land_ID);
        r.Land_ShortName = NzText(Land_ShortName);
        r.BL_Name = NzText(BL_Name);
        r.BL_ID = Long(BL_ID);
        r.BL_ShortName = NzText(BL_ShortName);
        r.Reg_Name = NzText(Reg_Name);
        r.Reg_ID = Long(Reg_ID);
        r.LK_Name = NzText(LK_Name);
        r.LK_ID = Long(LK_ID);
        r.Gemeinde = NzText(Gemeinde);
        r.Gem_ID = Long(Gem_ID);
        r.ID = Long(ID);
        r.PLZ = NzText(PLZ);
        r.AGS = CStr(AGS.Value());
        r.SZ = NzText(SZ);
        r.BemS = NzText(BemS);
        r.WZ = NzText(wZ);
        r.BemW = NzText(BemW);
        r.qb = NzNumber(qb);
        r.vb = NzNumber(vb);
        r.sk = NzNumber(sk);
        r.hNN = NzNumber(hNN);
    }

    Field &Land, &Land_ID, &Land_ShortName, &BL_Name, &BL_ID, &BL_ShortName, &Reg_Name, &Reg_ID, &LK_Name, &LK_ID,
        &Gemeinde, &Gem_ID, &ID, &PLZ, &AGS, &SZ, &BemS, &wZ, &BemW, &qb, &vb, &sk, &hNN;
};

}  // namespace

std::string FormatLand(int32_t Land_ID) { return Format(Land_ID, "00"); }
std::string FormatState(int32_t Land_ID, int32_t BL_ID) {
    return Format(BL_ID, Land_ID == kLandAustria ? "0" : "00");
}
std::string FormatRegion(int32_t Land_ID, int32_t Reg_ID) {
    return Format(Reg_ID, Land_ID == kLandAustria ? "00" : "0");
}
std::string FormatCounty(int32_t LK_ID) { return Format(LK_ID, "00"); }

std::string LandClause(int32_t Land_ID) { return " Land_ID = " + FormatLand(Land_ID); }
std::string StateClause(int32_t Land_ID, int32_t BL_ID) { return " BL_ID = " + Quoted(FormatState(Land_ID, BL_ID)); }
std::string RegionClause(int32_t Land_ID, int32_t Reg_ID) {
    return " Reg_ID = " + Quoted(FormatRegion(Land_ID, Reg_ID));
}
std::string CountyClause(int32_t LK_ID) { return " LK_ID = " + Quoted(FormatCounty(LK_ID)); }
std::string PlzClause(const std::string& PLZ) { return " PLZ like " + Quoted(Trim(PLZ) + "*"); }

bool InitAGSMdbEN() {
    ModuleState& st = State();
    if (st.AGSDbEN) return true;
    try {
        st.AGSDbEN = OpenDB(StoreFile("qvrl.mdb"), Variant(), Variant(true));
    } catch (const RuntimeError&) {
        return false;
    }
    return true;
}

bool InitAGSUsrMdbEN() {
    ModuleState& st = State();
    if (st.AGSUsrDbEN) return true;
    try {
        st.AGSUsrDbEN = OpenDB(UserTownDbPath(), Variant(), Variant(true));
    } catch (const RuntimeError&) {
        return false;
    }
    return true;
}

void ReadStatesEN(const LandRec& Land, std::vector<StateRecEN>& list) {
    list.assign(1, StateRecEN{});
    if (!InitAGSMdbEN()) return;
    auto rs = State().AGSDbEN->OpenRecordset(
        "SELECT * FROM slzwlz1 WHERE" + LandClause(Land.Land_ID) + " ORDER BY BL_ID", dao::dbOpenSnapshot);
    const RowFieldsEN f(*rs);
    townlists::AddDistinct(*rs, f.BL_Name, &StateRecEN::BL_Name, list, [&](StateRecEN& r) {
        r.Land = NzText(f.Land);
        r.Land_ID = Long(f.Land_ID);
        r.Land_ShortName = NzText(f.Land_ShortName);
        r.BL_ID = Long(f.BL_ID);
        r.BL_ShortName = NzText(f.BL_ShortName);
        r.ID = Long(f.ID);
    });
}

void FindStateEN(const LandRec& Land, int32_t BL_ID, StateRecEN& rec) {
    townlists::FindIn(rec, [&](std::vector<StateRecEN>& list) { ReadStatesEN(Land, list); },
                      [&](const StateRecEN& r) { return r.BL_ID == BL_ID; });
}

void ReadRegionsEN(const LandRec& Land, const StateRecEN& State, std::vector<RegionRecEN>& list) {
    list.assign(1, RegionRecEN{});
    if (!InitAGSMdbEN()) return;
    std::string cond;
    if (State.BL_ID >= 1)
        cond = LandClause(State.Land_ID) + " AND " + StateClause(State.Land_ID, State.BL_ID);
    else if (Land.Land_ID > 0)
        cond = LandClause(Land.Land_ID);
    else
        cond = LandClause(-99);
    auto rs = qvrl::State().AGSDbEN->OpenRecordset("SELECT * FROM slzwlz1 WHERE" + cond + " ORDER BY Reg_Name",
                                                   dao::dbOpenSnapshot);
    const RowFieldsEN f(*rs);
    townlists::AddDistinct(*rs, f.Reg_Name, &RegionRecEN::Reg_Name, list, [&](RegionRecEN& r) {
        r.Land = NzText(f.Land);
        r.Land_ID = Long(f.Land_ID);
        r.Land_ShortName = NzText(f.Land_ShortName);
        r.BL_Name = NzText(f.BL_Name);
        r.BL_ID = Long(f.BL_ID);
        r.BL_ShortName = NzText(f.BL_ShortName);
        r.Reg_ID = Long(f.Reg_ID);
        r.ID = Long(f.ID);
    });
    NameBlanks(list, &RegionRecEN::Reg_Name);
}

void FindRegionEN(const LandRec& Land, const StateRecEN& State, int32_t BL_ID, int32_t Reg_ID, RegionRecEN& rec) {
    townlists::FindIn(rec, [&](std::vector<RegionRecEN>& list) { ReadRegionsEN(Land, State, list); },
                      [&](const RegionRecEN& r) { return r.BL_ID == BL_ID && r.Reg_ID == Reg_ID; });
}

void ReadCountiesEN(const LandRec& Land, const StateRecEN& State, const RegionRecEN& Region,
                    std::vector<CountyRecEN>& list) {
    list.assign(1, CountyRecEN{});
    if (!InitAGSMdbEN()) return;
    std::string cond;
    if (Region.Reg_ID >= 1)
        cond = Join({LandClause(Region.Land_ID), StateClause(Region.Land_ID, Region.BL_ID),
                     RegionClause(Region.Land_ID, Region.Reg_ID)});
    else if (State.BL_ID >= 1)
        cond = Join({LandClause(State.Land_ID), StateClause(State.Land_ID, State.BL_ID)});
    else if (Land.Land_ID > 0)
        cond = LandClause(Land.Land_ID);
    const std::string sql = cond.empty() ? "SELECT * FROM slzwlz1 ORDER BY LK_Name"
                                         : "SELECT * FROM slzwlz1 WHERE" + cond + " ORDER BY LK_Name";
    auto rs = qvrl::State().AGSDbEN->OpenRecordset(sql, dao::dbOpenSnapshot);
    const RowFieldsEN f(*rs);
    townlists::AddDistinct(*rs, f.LK_Name, &CountyRecEN::LK_Name, list, [&](CountyRecEN& r) {
        r.Land = NzText(f.Land);
        r.Land_ID = Long(f.Land_ID);
        r.Land_ShortName = NzText(f.Land_ShortName);
        r.BL_Name = NzText(f.BL_Name);
        r.BL_ID = Long(f.BL_ID);
        r.BL_ShortName = NzText(f.BL_ShortName);
        r.Reg_Name = NzText(f.Reg_Name);
        r.Reg_ID = Long(f.Reg_ID);
        r.LK_ID = Long(f.LK_ID);
        r.ID = Long(f.ID);
    });
    NameBlanks(list, &CountyRecEN::LK_Name);
}

void FindCountyEN(const LandRec& Land, const StateRecEN& State, const RegionRecEN& Region, int32_t BL_ID,
                  int32_t Reg_ID, int32_t LK_ID, CountyRecEN& rec) {
    townlists::FindIn(rec, [&](std::vector<CountyRecEN>& list) { ReadCountiesEN(Land, State, Region, list); },
                      [&](const CountyRecEN& r) { return r.BL_ID == BL_ID && r.Reg_ID == Reg_ID && r.LK_ID == LK_ID; });
}

void ReadGemFromAGSEN(const LandRec& Land, const StateRecEN& State, const RegionRecEN& Region,
                      const CountyRecEN& County, std::vector<TownRec>& list, const std::string& PLZ,
                      const std::string& Name, int32_t LandKey, const std::string& AGS) {
    list.assign(1, TownRec{});
    if (!InitAGSMdbEN()) return;
    ModuleState& st = qvrl::State();

    bool hasUserRows = false;
    // A user file that cannot be opened hides none of the shipped rows; the
    // store keeps its error for the caller (LastStoreOpenError).
    if (FileExists(UserTownDbPath()) && InitAGSUsrMdbEN()) {
        hasUserRows = !st.AGSUsrDbEN->OpenRecordset("SELECT * FROM slzwlz1", dao::dbOpenSnapshot)->EOF_();
    }

    const std::string plzClause = IsNumeric(PLZ) && Val(PLZ) > 0 ? PlzClause(PLZ) : "";
    const std::string nameClause = Name.empty() ? "" : "Gemeinde like " + Quoted(Name + "*");
    std::string landClause, stateClause, regionClause, countyClause;
    if (County.LK_ID >= 1) {
        landClause = LandClause(County.Land_ID);
        stateClause = StateClause(County.Land_ID, County.BL_ID);
        regionClause = RegionClause(County.Land_ID, County.Reg_ID);
        countyClause = CountyClause(County.LK_ID);
    } else if (Region.Reg_ID >= 1) {
        landClause = LandClause(Region.Land_ID);
        stateClause = StateClause(Region.Land_ID, Region.BL_ID);
        regionClause = RegionClause(Region.Land_ID, Region.Reg_ID);
    } else if (State.BL_ID >= 1) {
        landClause = LandClause(State.Land_ID);
        stateClause = StateClause(State.Land_ID, State.BL_ID);
    } else if (Land.Land_ID > 0) {
        landClause = LandClause(Land.Land_ID);
    }

    std::string sql;
    auto rs = townlists::OpenWidening(
        *st.AGSDbEN, PLZ, plzClause,
        [&](const std::string& plz) {
            std::string cond = Join({landClause, stateClause, regionClause, countyClause, plz, nameClause});
            if (ValidKey(AGS)) cond = KeyCondition(LandKey, AGS);
            if (!cond.empty()) cond = "WHERE " + cond;
            return "SELECT * FROM slzwlz1 " + cond + " ORDER BY Gemeinde";
        },
        [](const std::string& plz) { return "PLZ like " + Quoted(Trim(plz) + "*"); }, sql);
    if (rs->EOF_()) return;

    // Filled aside, so that an error half-way leaves the caller's list empty.
    std::vector<TownRec> found(1);
    const RowFieldsEN f(*rs);
    for (; !rs->EOF_(); rs->MoveNext()) {
        TownRec& r = found.emplace_back();
        f.Read(r);
        if (hasUserRows) ReadUserGemEN(LandKey, r.AGS, r);
        if (Trim(r.SZ).empty()) r.Gemeinde = RTrim(r.Gemeinde) + " [1]";
        if (std::abs(r.sk) < 0.0001) r.Gemeinde = RTrim(r.Gemeinde) + " [2]";
        if (std::abs(r.qb) < 0.0001) r.Gemeinde = RTrim(r.Gemeinde) + " [3]";
        if (std::abs(r.hNN) < 0.0001) r.Gemeinde = RTrim(r.Gemeinde) + " [4]";
    }
    NameBlanks(found, &TownRec::Gemeinde);
    list = std::move(found);
}

double ReadUserGemEN(int32_t LandKey, const std::string& AGS, TownRec& rec) {
    if (!InitAGSUsrMdbEN()) return 0.0;
    const std::string cond = ValidKey(AGS) ? "WHERE " + KeyCondition(LandKey, AGS) : "";
    auto rs = State().AGSUsrDbEN->OpenRecordset("SELECT * FROM slzwlz1 " + cond + " ORDER BY Gemeinde",
                                                dao::dbOpenSnapshot);
    if (rs->EOF_()) return 0.0;
    const RowFieldsEN f(*rs);
    double key = 0.0;
    for (; !rs->EOF_(); rs->MoveNext()) {
        f.Read(rec);
        rec.Gemeinde = RTrim(rec.Gemeinde) + " (modif.)";
        rec.Modified = 1;
        key = Val(rec.AGS);
    }
    return key;
}

void FindTownByAGSEN(int32_t LandKey, const std::string& AGS, TownRec& rec) {
    rec = TownRec{};
    std::vector<TownRec> list;
    ReadGemFromAGSEN(LandRec{}, StateRecEN{}, RegionRecEN{}, CountyRecEN{}, list, "", "", LandKey, AGS);
    for (size_t i = 1; i < list.size(); ++i)
        if (list[i].AGS == AGS && list[i].Land_ID == LandKey) {
            rec = list[i];
            return;
        }
}

int32_t FindAustrianSnow(const std::string& BL_ID, const std::string& Gemeinde, double& hNN, std::string& SZ,
                         double& sk) {
    auto db = OpenDB(StoreFile("au_s.mdb"), Variant(), Variant(true));
    auto rs = db->OpenRecordset("SELECT * FROM schnee WHERE BL_ID=" + Quoted(BL_ID) + " AND Gemeinde like " +
                                    Quoted(Gemeinde),
                                dao::dbOpenSnapshot);
    if (rs->EOF_()) return 0;
    rs->MoveLast();
    const int32_t count = rs->RecordCount();
    rs->MoveFirst();
    if (count > 1) {
        // Several names match the pattern: the one spelt alike wins.
        while (!rs->EOF_() && NzText(rs->Fields("Gemeinde")) != Gemeinde) rs->MoveNext();
        if (rs->EOF_()) return count;
    }
    hNN = NzNumber(rs->Fields("hNN"));
    SZ = NzText(rs->Fields("SZ"));
    sk = NzNumber(rs->Fields("sk"));
    return count;
}

int32_t ImportAustrianSnow() {
    auto db = OpenDB(WritableStoreFile("qvrl.mdb"), Variant(), Variant(false));
    auto rs = db->OpenRecordset("SELECT * " + std::string(" FROM slzwlz1 ") + " WHERE " + LandClause(kLandAustria),
                                dao::dbOpenDynaset);
    int32_t updated = 0;
    db->BeginTrans();
    try {
        for (; !rs->EOF_(); rs->MoveNext()) {
            double hNN = 0.0, sk = 0.0;
            std::string SZ;
            if (FindAustrianSnow(NzText(rs->Fields("BL_ID")), NzText(rs->Fields("Gemeinde")), hNN, SZ, sk) <= 0)
                continue;
            rs->Edit();
            rs->Fields("SZ").Value(Variant(SZ));
            rs->Fields("sk").Value(Variant(sk));
            rs->Fields("hNN").Value(Variant(hNN));
            rs->Update();
            ++updated;
        }
        db->CommitTrans();
    } catch (...) {
        db->Rollback();
        throw;
    }
    return updated;
}

}  // namespace qvrl
