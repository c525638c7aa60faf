// Any text as a query of the table store: it parses or is error 3075, and
// what parses runs as one SELECT on a small database without a crash, a
// sanitizer report, or any error but the query's own (3075 syntax, 3078
// table, 3265 column). The same text as a search criterion likewise.
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "store/JetQuery.h"
#include "store/modDAO.h"
#include "support/errors.h"

namespace {

using namespace qvrl;

bool Allowed(int32_t n) { return n == err::QuerySyntax || n == err::TableNotFound || n == err::ItemNotFound; }

Database& Db() {
    static std::shared_ptr<Database> db = [] {
        const auto dir = std::filesystem::temp_directory_path() / ("qvrl-fuzz-jet-" + std::to_string(::getpid()));
        std::filesystem::remove_all(dir);
        std::filesystem::create_directories(dir);
        const std::string path = (dir / "qvrl.mdb").string();
        {
            auto w = DBEngine::CreateDatabase(path, dao::dbLangGeneral);
            TableDef t = w->CreateTableDef("slzwlz");
            t.Fields().Append(t.CreateField("ID", dao::dbLong));
            t.Fields().Append(t.CreateField("Typ", dao::dbInteger));
            t.Fields().Append(t.CreateField("Gemeinde", dao::dbText));
            t.Fields().Append(t.CreateField("dist", dao::dbDouble));
            t.Fields().Append(t.CreateField("2", dao::dbDouble));
            t.Fields().Append(t.CreateField("Fußnote(n)", dao::dbMemo));
            w->TableDefs().Append(t);
            auto rs = w->OpenRecordset("slzwlz", dao::dbOpenDynaset);
            const char* names[] = {"München", "MÜNCHEN", "Ärzen", "O'Brien", "", "Graz-Umgebung"};
            for (int32_t i = 0; i < 6; ++i) {
                rs->AddNew();
                rs->Fields("ID").Value(Variant(i + 1));
                rs->Fields("Typ").Value(Variant(static_cast<int16_t>(i % 3)));
                rs->Fields("Gemeinde").Value(Variant(names[i]));
                rs->Fields("dist").Value(i == 4 ? Variant::Null() : Variant(0.5 * i));
                rs->Fields("2").Value(Variant(1.0 + i));
                rs->Update();
            }
        }
        // The open connection reads on from the unlinked file; nothing stays
        // behind however the run ends.
        auto db = DBEngine::OpenDatabase(path, {}, true);
        std::filesystem::remove_all(dir);
        return db;
    }();
    return *db;
}

void Walk(Recordset& rs) {
    if (rs.EOF_() || rs.BOF()) return;
    rs.MoveLast();
    const int16_t n = rs.RecordCount();
    rs.MoveFirst();
    for (int16_t i = 0; i < n; ++i) {
        for (Field& f : rs.Fields()) (void)NzText(f.Value());
        rs.MoveNext();
    }
    if (!rs.EOF_()) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    bool parsed = true;
    try {
        (void)jet::ParseQuery(text);
    } catch (const RuntimeError& e) {
        if (e.number() != err::QuerySyntax) std::abort();
        parsed = false;
    }
    try {
        auto rs = Db().OpenRecordset(text, dao::dbOpenSnapshot);
        if (!parsed) std::abort();  // the store ran what the parser refused
        Walk(*rs);
    } catch (const RuntimeError& e) {
        if (!Allowed(e.number())) std::abort();
        if (!parsed && e.number() != err::QuerySyntax) std::abort();
    }
    try {
        auto rs = Db().OpenRecordset("SELECT * FROM slzwlz ORDER BY ID", dao::dbOpenSnapshot);
        rs->FindFirst(text);
        if (!rs->NoMatch()) (void)rs->Fields("ID").Value();
    } catch (const RuntimeError& e) {
        if (!Allowed(e.number())) std::abort();
    }
    return 0;
}
