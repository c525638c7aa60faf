#include "location/modAGSMdb.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>

#include "location/TownLists.h"
#include "store/StoreText.h"
#include "store/StoreFiles.h"
#include "store/modDAO.h"
#include "support/CLocLite.h"
#include "support/CTrace.h"
#include "support/ModuleState.h"
#include "support/errors.h"
#include "support/modLowLevel.h"
#include "support/modToolsB.h"
#include "support/vb.h"

namespace qvrl {

namespace {

struct StateCode {
    int32_t BL_ID;
    const char* Short;
    int32_t TextNumber;
};

constexpr StateCode kStates[] = {
    {8, "BW", 346},  {9, "BY", 348},  {11, "BE", 349}, {12, "BB", 351}, {4, "HB", 352},  {2, "HH", 354},
    {6, "HE", 355},  {13, "MV", 356}, {3, "NI", 358},  {5, "NW", 360},  {7, "RP", 362},  {10, "SL", 364},
    {14, "SN", 366}, {15, "ST", 372}, {1, "SH", 368},  {16, "TH", 370},
};

using townlists::NameBlanks;
using townlists::Quoted;
using townlists::ValidKey;

std::string StateClause(int32_t BL_ID) { return " BL_ID = " + Quoted(Format(BL_ID, "00")); }
std::string RegionClause(int32_t Reg_ID) { return " Reg_ID = " + Quoted(Format(Reg_ID, "0")); }
std::string CountyClause(int32_t LK_ID) { return " LK_ID = " + Quoted(Format(LK_ID, "00")); }

// The columns a town row is read from, in the order of Values.
constexpr const char* kRowColumns[] = {"BL_Name", "BL_ID",    "Reg_Name", "Reg_ID", "LK_Name", "LK_ID",
                                       "Gemeinde", "Gem_ID",  "ID",       "PLZ",    "AGS",     "SZ",
                                       "BemS",     "wZ",      "BemW"};
constexpr size_t kRowColumnCount = std::size(kRowColumns);
using RowValues = std::array<Variant, kRowColumnCount>;

// Null in a text column reads as empty, except in PLZ and AGS; a number
// column must hold a number.
void ReadRow(const RowValues& v, TownRec& r) {
    r.BL_Name = NzText(v[0]);
    r.BL_ID = CLng(v[1]);
    r.BL_ShortName = GetStateShort(r.BL_ID);
    r.Reg_Name = NzText(v[2]);
    r.Reg_ID = CLng(v[3]);
    r.LK_Name = NzText(v[4]);
    r.LK_ID = CLng(v[5]);
    r.Gemeinde = NzText(v[6]);
    r.Gem_ID = CLng(v[7]);
    r.ID = CLng(v[8]);
    r.PLZ = CStr(v[9]);
    r.AGS = CStr(v[10]);
    r.SZ = NzText(v[11]);
    r.BemS = NzText(v[12]);
    r.WZ = NzText(v[13]);
    r.BemW = NzText(v[14]);
}

// The columns of a slzwlz recordset, found once.
class RowFields {
public:
    explicit RowFields(Recordset& rs) {
        for (size_t i = 0; i < kRowColumnCount; ++i) fields_[i] = &rs.Fields(kRowColumns[i]);
    }
    RowValues Values() const {
        RowValues v;
        for (size_t i = 0; i < kRowColumnCount; ++i) v[i] = fields_[i]->Value();
        return v;
    }
    void Read(TownRec& r) const { ReadRow(Values(), r); }

private:
    std::array<Field*, kRowColumnCount> fields_{};
};

void MarkModified(TownRec& r) {
    r.Gemeinde = RTrim(r.Gemeinde) + " (modif.)";
    r.Modified = 1;
}

// The user rows, read once by ReadGemFromAGS and laid over each row it reads
// exactly as ReadUserGem would: the rows of the key (all rows for a key that
// is no number above 0) in the order of their names, the last one standing.
// Only key and name are taken at first; a row is read whole when it is hit.
class UserRows {
public:
    explicit UserRows(std::unique_ptr<Recordset> rs) : rs_(std::move(rs)) {
        if (rs_->EOF_()) return;
        Field& ags = rs_->Fields("AGS");
        Field& name = rs_->Fields("Gemeinde");
        for (rs_->MoveFirst(); !rs_->EOF_(); rs_->MoveNext()) keys_.push_back({ags.Value(), name.Value()});
        fields_ = std::make_unique<RowFields>(*rs_);
    }
    bool Any() const { return !keys_.empty(); }

    void LayOver(TownRec& r) const {
        const bool byKey = !r.AGS.empty() && IsNumeric(r.AGS) && Val(r.AGS) > 0;
        std::vector<size_t> hits;
        for (size_t i = 0; i < keys_.size(); ++i)
            if (!byKey || SameKey(keys_[i].ags, r.AGS)) hits.push_back(i);
        std::stable_sort(hits.begin(), hits.end(),
                         [this](size_t a, size_t b) { return NameBefore(keys_[a].name, keys_[b].name); });
        for (size_t i : hits) {
            rs_->MoveFirst();
            for (size_t k = 0; k < i; ++k) rs_->MoveNext();
            fields_->Read(r);
            MarkModified(r);
        }
    }

private:
    struct Key {
        Variant ags, name;
    };
    static bool SameKey(const Variant& v, const std::string& key) {
        return !v.isNull() && CompareText(CStr(v), key) == 0;
    }
    // The store's order of names: Null first, then by its text order.
    static bool NameBefore(const Variant& a, const Variant& b) {
        if (a.isNull()) return !b.isNull();
        if (b.isNull()) return false;
        return CompareText(CStr(a), CStr(b)) < 0;
    }
    std::unique_ptr<Recordset> rs_;
    std::unique_ptr<RowFields> fields_;
    std::vector<Key> keys_;
};

}  // namespace

std::string UserTownDbPath() { return UserDataFolder() + kUserTownFile; }

bool InitAGSMdb() {
    ModuleState& st = State();
    std::string path;
    if (!st.AGSDb) {
        path = StoreFile("qvrl.mdb");
        try {
            st.AGSDb = OpenDB(path, Variant(), Variant(true));
        } catch (const RuntimeError&) {
            return false;
        }
    }
    WriteTrace("InitAGSMdb", Variant(path), {}, true);
    return true;
}

bool InitAGSUsrMdb() {
    ModuleState& st = State();
    std::string path;
    if (!st.AGSUsrDb) {
        path = UserTownDbPath();
        try {
            st.AGSUsrDb = OpenDB(path, Variant(), Variant(true));
        } catch (const RuntimeError&) {
            return false;
        }
    }
    WriteTrace("InitAGSUsrMdb", Variant(path), {}, true);
    return true;
}

void ReadStates(std::vector<StateRec>& list) {
    if (!State().locActive) InitLanguageObjects();
    list.assign(1, StateRec{});
    for (const StateCode& c : kStates) {
        StateRec r;
        r.BL_Name = LoadResStr(Variant(c.TextNumber));
        r.BL_ID = c.BL_ID;
        r.BL_ShortName = c.Short;
        list.push_back(std::move(r));
    }
}

void FindState(int32_t BL_ID, StateRec& rec) {
    townlists::FindIn(rec, [](std::vector<StateRec>& list) { ReadStates(list); },
                      [&](const StateRec& r) { return r.BL_ID == BL_ID; });
}

std::string GetStateShort(int32_t BL_ID) {
    for (const StateCode& c : kStates)
        if (c.BL_ID == BL_ID) return c.Short;
    return {};
}

void ReadRegions(const StateRec& State, std::vector<RegionRec>& list) {
    list.assign(1, RegionRec{});
    if (!InitAGSMdb()) return;
    const std::string sql = State.BL_ID > 0 ? "SELECT * FROM slzwlz WHERE BL_ID = " +
                                                  Quoted(Format(State.BL_ID, "00")) + " ORDER BY Reg_Name"
                                            : "SELECT * FROM slzwlz ORDER BY Reg_Name";
    auto rs = qvrl::State().AGSDb->OpenRecordset(sql, dao::dbOpenSnapshot);
    if (rs->EOF_()) return;
    Field& fBL_Name = rs->Fields("BL_Name");
    Field& fBL_ID = rs->Fields("BL_ID");
    Field& fReg_Name = rs->Fields("Reg_Name");
    Field& fReg_ID = rs->Fields("Reg_ID");
    Field& fID = rs->Fields("ID");
    // Compared with the blank element 0 first: leading blank names add nothing.
    townlists::AddDistinct(*rs, fReg_Name, &RegionRec::Reg_Name, list, [&](RegionRec& r) {
        r.BL_Name = NzText(fBL_Name);
        r.BL_ID = CLng(fBL_ID.Value());
        r.BL_ShortName = GetStateShort(r.BL_ID);
        r.Reg_ID = CLng(fReg_ID.Value());
        r.ID = CLng(fID.Value());
    });
    NameBlanks(list, &RegionRec::Reg_Name);
}

void FindRegion(const StateRec& State, int32_t BL_ID, int32_t Reg_ID, RegionRec& rec) {
    townlists::FindIn(rec, [&](std::vector<RegionRec>& list) { ReadRegions(State, list); },
                      [&](const RegionRec& r) { return r.BL_ID == BL_ID && r.Reg_ID == Reg_ID; });
}

void ReadCounties(const StateRec& State, const RegionRec& Region, std::vector<CountyRec>& list) {
    list.assign(1, CountyRec{});
    if (!InitAGSMdb()) return;
    std::string sql;
    if (Region.Reg_ID >= 1)
        sql = "SELECT * FROM slzwlz WHERE BL_ID = " + Quoted(Format(Region.BL_ID, "00")) +
              " AND Reg_ID = " + Quoted(Format(Region.Reg_ID, "0")) + " ORDER BY LK_Name";
    else if (State.BL_ID > 0)
        sql = "SELECT * FROM slzwlz WHERE BL_ID = " + Quoted(Format(State.BL_ID, "00")) + " ORDER BY LK_Name";
    else
        sql = "SELECT * FROM slzwlz ORDER BY LK_Name";
    auto rs = qvrl::State().AGSDb->OpenRecordset(sql, dao::dbOpenSnapshot);
    if (rs->EOF_()) return;
    Field& fBL_Name = rs->Fields("BL_Name");
    Field& fBL_ID = rs->Fields("BL_ID");
    Field& fReg_Name = rs->Fields("Reg_Name");
    Field& fReg_ID = rs->Fields("Reg_ID");
    Field& fLK_Name = rs->Fields("LK_Name");
    Field& fLK_ID = rs->Fields("LK_ID");
    Field& fID = rs->Fields("ID");
    townlists::AddDistinct(*rs, fLK_Name, &CountyRec::LK_Name, list, [&](CountyRec& r) {
        r.BL_Name = NzText(fBL_Name);
        r.BL_ID = CLng(fBL_ID.Value());
        r.BL_ShortName = GetStateShort(r.BL_ID);
        r.Reg_Name = NzText(fReg_Name);
        r.Reg_ID = CLng(fReg_ID.Value());
        r.LK_ID = CLng(fLK_ID.Value());
        r.ID = CLng(fID.Value());
    });
    NameBlanks(list, &CountyRec::LK_Name);
}

void FindCounty(const StateRec& State, const RegionRec& Region, int32_t BL_ID, int32_t Reg_ID, int32_t LK_ID,
                CountyRec& rec) {
    townlists::FindIn(rec, [&](std::vector<CountyRec>& list) { ReadCounties(State, Region, list); },
                      [&](const CountyRec& r) { return r.BL_ID == BL_ID && r.Reg_ID == Reg_ID && r.LK_ID == LK_ID; });
}

void ReadGemFromAGS(const StateRec& State, const RegionRec& Region, const CountyRec& County,
                    std::vector<TownRec>& list, const std::string& PLZ, const std::string& Name,
                    const std::string& AGS) {
    list.assign(1, TownRec{});
    if (!InitAGSMdb()) return;
    ModuleState& st = qvrl::State();

    std::unique_ptr<UserRows> user;
    // A user file that cannot be opened hides none of the shipped rows; the
    // store keeps its error for the caller (LastStoreOpenError).
    if (FileExists(UserTownDbPath()) && InitAGSUsrMdb()) {
        user = std::make_unique<UserRows>(st.AGSUsrDb->OpenRecordset("SELECT * FROM slzwlz", dao::dbOpenSnapshot));
    }
    const bool hasUserRows = user && user->Any();

    const std::string plzClause = IsNumeric(PLZ) && Val(PLZ) > 0 ? "PLZ like " + Quoted(PLZ + "*") : "";
    const std::string nameClause = Name.empty() ? "" : "Gemeinde like " + Quoted(Name + "*");
    std::string stateClause, regionClause, countyClause;
    if (County.LK_ID >= 1) {
        stateClause = StateClause(County.BL_ID);
        regionClause = RegionClause(County.Reg_ID);
        countyClause = CountyClause(County.LK_ID);
    } else if (Region.Reg_ID >= 1) {
        stateClause = StateClause(Region.BL_ID);
        regionClause = RegionClause(Region.Reg_ID);
    } else if (State.BL_ID >= 1) {
        stateClause = StateClause(State.BL_ID);
    }

    std::string sql;
    auto rs = townlists::OpenWidening(
        *st.AGSDb, PLZ, plzClause,
        [&](const std::string& plz) {
            std::string cond = townlists::Join({stateClause, regionClause, countyClause, plz, nameClause});
            if (ValidKey(AGS)) cond = " AGS = " + Quoted(AGS);
            if (!cond.empty()) cond = "WHERE " + cond;
            return "SELECT * FROM slzwlz " + cond + " ORDER BY Gemeinde";
        },
        [](const std::string& plz) { return "PLZ like " + Quoted(plz + "*"); }, sql);
    if (rs->EOF_()) return;

    rs->MoveLast();
    const int16_t count = rs->RecordCount();
    WriteTrace({}, std::nullopt, "ReadGemFromAGS");
    WriteTrace("sql", Variant(sql));
    WriteTrace("cnt", Variant(count), {}, true);

    // Filled aside, so that an error half-way leaves the caller's list empty.
    std::vector<TownRec> found(1);
    found.reserve(static_cast<size_t>(count) + 1);
    const RowFields f(*rs);
    for (rs->MoveFirst(); !rs->EOF_(); rs->MoveNext()) {
        TownRec& r = found.emplace_back();
        f.Read(r);
        // The rows read above stand for one query per town into the user file.
        if (hasUserRows) user->LayOver(r);
        if (Trim(r.WZ).empty()) r.Gemeinde = RTrim(r.Gemeinde) + " [1]";
        if (Trim(r.SZ).empty()) r.Gemeinde = RTrim(r.Gemeinde) + " [2]";
    }
    NameBlanks(found, &TownRec::Gemeinde);
    list = std::move(found);
}

double ReadUserGem(const std::string& AGS, TownRec& rec) {
    if (!InitAGSUsrMdb()) return 0.0;
    const std::string cond = !AGS.empty() && ValidKey(AGS) ? "WHERE " + std::string(" AGS = ") + Quoted(AGS) : "";
    auto rs = State().AGSUsrDb->OpenRecordset("SELECT * FROM slzwlz " + cond + " ORDER BY Gemeinde",
                                              dao::dbOpenSnapshot);
    if (rs->EOF_()) return 0.0;
    const RowFields f(*rs);
    double key = 0.0;
    for (; !rs->EOF_(); rs->MoveNext()) {
        f.Read(rec);
        MarkModified(rec);
        key = Val(rec.AGS);
    }
    return key;
}

void FindTownByAGS(const std::string& AGS, TownRec& rec) {
    rec = TownRec{};
    std::vector<TownRec> list;
    ReadGemFromAGS(StateRec{}, RegionRec{}, CountyRec{}, list, "", "", AGS);
    for (size_t i = 1; i < list.size(); ++i)
        if (list[i].AGS == AGS) {
            rec = list[i];
            return;
        }
}

// ---------------------------------------------------------------- corrections

namespace {

// The engine refuses a zero-length text: an empty value is written as one blank.
Variant NoEmpty(const std::string& s) { return Variant(s.empty() ? std::string(" ") : s); }

struct Column {
    const char* name;
    int16_t type;
};

constexpr Column kUserColumns[] = {
    {"ID", dao::dbLong},      {"AGS", dao::dbText},     {"BL_ID", dao::dbText},  {"BL_Name", dao::dbText},
    {"Reg_ID", dao::dbText},  {"Reg_Name", dao::dbText}, {"LK_ID", dao::dbText},  {"LK_Name", dao::dbText},
    {"Gem_ID", dao::dbText},  {"Gemeinde", dao::dbText}, {"PLZ", dao::dbText},    {"WZ", dao::dbText},
    {"SZ", dao::dbText},      {"BemW", dao::dbText},    {"BemS", dao::dbText},
};

// The Eurocode table beside it, empty: its look-ups read it, nothing writes it.
constexpr Column kUserColumnsEN[] = {
    {"ID", dao::dbLong},          {"Land_ID", dao::dbLong},    {"Land", dao::dbText},
    {"Land_ShortName", dao::dbText}, {"AGS", dao::dbText},     {"BL_ID", dao::dbText},
    {"BL_Name", dao::dbText},     {"BL_ShortName", dao::dbText}, {"Reg_ID", dao::dbText},
    {"Reg_Name", dao::dbText},    {"LK_ID", dao::dbText},      {"LK_Name", dao::dbText},
    {"Gem_ID", dao::dbText},      {"Gemeinde", dao::dbText},   {"PLZ", dao::dbText},
    {"WZ", dao::dbText},          {"SZ", dao::dbText},         {"BemW", dao::dbText},
    {"BemS", dao::dbText},        {"qb", dao::dbDouble},       {"vb", dao::dbDouble},
    {"sk", dao::dbDouble},        {"hNN", dao::dbDouble},
};

template <size_t N>
void AppendTable(Database& db, const char* name, const Column (&columns)[N]) {
    TableDef def = db.CreateTableDef(name);
    for (const Column& c : columns) def.Fields().Append(def.CreateField(c.name, c.type));
    db.TableDefs().Append(def);
}

// Look-ups hold the file read-only; a write goes through the module's
// connection only when that one can write, else through one of its own.
std::shared_ptr<Database> WritableUserDb(const std::string& path) {
    ModuleState& st = State();
    if (st.AGSUsrDb && st.AGSUsrDb->Updatable()) return st.AGSUsrDb;
    return DBEngine::OpenDatabase(path, Variant(), Variant(false));
}

std::string SelectByKey(const std::string& AGS) { return "SELECT * FROM slzwlz WHERE AGS=" + Quoted(AGS); }

}  // namespace

void CreateUserDb(std::shared_ptr<Database>& db, const std::string& path) {
    auto created = DBEngine::CreateDatabase(path, dao::dbLangGeneral);
    try {
        AppendTable(*created, "slzwlz", kUserColumns);
        AppendTable(*created, "slzwlz1", kUserColumnsEN);
    } catch (...) {
        // No half-built file may stay behind to be taken for a good one.
        created->Close();
        created.reset();
        std::remove(path.c_str());
        throw;
    }
    db = std::move(created);
}

void SaveUserGem(const TownRec& rec) {
    const std::string path = UserTownDbPath();
    if (!FileExists(path)) CreateUserDb(State().AGSUsrDb, path);
    auto db = WritableUserDb(path);
    auto rs = db->OpenRecordset(SelectByKey(rec.AGS), dao::dbOpenDynaset);
    if (!rs->EOF_()) {
        rs->MoveLast();
        rs->Edit();
        rs->Fields("Gemeinde").Value(NoEmpty(rec.Gemeinde));
        rs->Fields("PLZ").Value(NoEmpty(Format(Variant(rec.PLZ), "00000")));
        rs->Fields("SZ").Value(NoEmpty(rec.SZ));
        rs->Fields("BemS").Value(NoEmpty(rec.BemS));
        rs->Fields("WZ").Value(NoEmpty(rec.WZ));
        rs->Fields("BemW").Value(NoEmpty(rec.BemW));
        rs->Update();
        rs->Close();
        return;
    }
    rs->Close();
    auto table = db->OpenRecordset("slzwlz", dao::dbOpenDynaset);
    table->AddNew();
    table->Fields("ID").Value(Variant(rec.ID));
    table->Fields("AGS").Value(NoEmpty(rec.AGS));
    table->Fields("BL_ID").Value(NoEmpty(Format(rec.BL_ID, "00")));
    table->Fields("BL_Name").Value(NoEmpty(rec.BL_Name));
    table->Fields("Reg_ID").Value(NoEmpty(Format(rec.Reg_ID, "0")));
    table->Fields("Reg_Name").Value(NoEmpty(rec.Reg_Name));
    table->Fields("LK_ID").Value(NoEmpty(Format(rec.LK_ID, "00")));
    table->Fields("LK_Name").Value(NoEmpty(rec.LK_Name));
    table->Fields("Gem_ID").Value(NoEmpty(Format(rec.Gem_ID, "000")));
    table->Fields("Gemeinde").Value(NoEmpty(rec.Gemeinde));
    table->Fields("PLZ").Value(NoEmpty(Format(Variant(rec.PLZ), "00000")));
    table->Fields("SZ").Value(NoEmpty(rec.SZ));
    table->Fields("BemS").Value(NoEmpty(rec.BemS));
    table->Fields("WZ").Value(NoEmpty(rec.WZ));
    table->Fields("BemW").Value(NoEmpty(rec.BemW));
    table->Update();
    table->Close();
}

void DeleteUserGem(TownRec& rec) {
    const std::string path = UserTownDbPath();
    if (!FileExists(path)) return;
    auto db = WritableUserDb(path);
    auto rs = db->OpenRecordset(SelectByKey(rec.AGS), dao::dbOpenDynaset);
    if (!rs->EOF_()) {
        rs->MoveLast();
        rs->Delete();
        rec.Modified = 0;
    }
    rs->Close();
}

}  // namespace qvrl
