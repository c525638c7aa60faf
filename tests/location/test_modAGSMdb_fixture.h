#pragma once
// Town and zone databases for the tests: copies of the built (empty) files
// in a program folder of the test's own, filled row by row.

#include <gtest/gtest.h>

#include <filesystem>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "TestEnv.h"
#include "store/modDAO.h"
#include "support/modLowLevel.h"

namespace qvrl::test {

using Cell = std::pair<const char*, Variant>;
using Cells = std::vector<Cell>;

class TownDbTest : public IsolatedTest {
protected:
    void SetUp() override {
        IsolatedTest::SetUp();
        program_ = FreshFolder("program");
        namespace fs = std::filesystem;
        const fs::path built = ProgramFolder();
        for (const char* f : {"qvrl.mdb", "qvrlslz.mdb", "qvrlslz_dibt.mdb", "qvrlwlz.mdb", "qvrlwlz_dibt.mdb",
                              "au_s.mdb", "language.ini"})
            fs::copy_file(built / f, program_ / f);
        fs::copy(built / "deu", program_ / "deu", fs::copy_options::recursive);
        fs::copy(built / "eng", program_ / "eng", fs::copy_options::recursive);
        setenv("QVRL_PROGRAM_FOLDER", program_.c_str(), 1);
    }

    static void Insert(Database& db, const std::string& table, const Cells& cells) {
        auto rs = db.OpenRecordset(table, dao::dbOpenDynaset);
        rs->AddNew();
        for (const auto& [name, value] : cells) rs->Fields(name).Value(value);
        rs->Update();
    }

    void Insert(const std::string& file, const std::string& table, const Cells& cells) const {
        auto db = DBEngine::OpenDatabase((program_ / file).string(), Variant(), Variant(false));
        Insert(*db, table, cells);
        db->Close();
    }

    // A German row; the key columns are cut from the AGS as the table keeps them.
    static Cells Town(int32_t id, const std::string& ags, const std::string& gemeinde, const std::string& plz,
                      const std::string& wz, const std::string& sz, const std::string& lkName = "Kreis",
                      const std::string& regName = "Bezirk", const std::string& blName = "Land") {
        return {{"ID", Variant(id)},
                {"AGS", Variant(ags)},
                {"BL_ID", Variant(ags.substr(0, 2))},
                {"BL_Name", Variant(blName)},
                {"Reg_ID", Variant(ags.substr(2, 1))},
                {"Reg_Name", Variant(regName)},
                {"LK_ID", Variant(ags.substr(3, 2))},
                {"LK_Name", Variant(lkName)},
                {"Gem_ID", Variant(ags.substr(5, 3))},
                {"Gemeinde", Variant(gemeinde)},
                {"PLZ", Variant(plz)},
                {"WZ", Variant(wz)},
                {"SZ", Variant(sz)},
                {"BemW", Variant("")},
                {"BemS", Variant("")}};
    }

    void AddTown(const Cells& cells) const { Insert("qvrl.mdb", "slzwlz", cells); }

    std::string TraceLog() const { return ReadFile(userFolder() / "rlTrace.log"); }

    std::filesystem::path program_;
};

}  // namespace qvrl::test
