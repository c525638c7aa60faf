#include "location/TownLists.h"

namespace qvrl::townlists {

std::string Join(std::initializer_list<std::string> clauses) {
    std::string cond;
    for (const std::string& c : clauses) {
        if (c.empty()) continue;
        if (!cond.empty()) cond += " AND ";
        cond += c;
    }
    return cond;
}

std::unique_ptr<Recordset> OpenWidening(Database& db, std::string plz, std::string plzClause,
                                        const std::function<std::string(const std::string&)>& sql,
                                        const std::function<std::string(const std::string&)>& widened,
                                        std::string& lastSql) {
    for (;;) {
        lastSql = sql(plzClause);
        auto rs = db.OpenRecordset(lastSql, dao::dbOpenSnapshot);
        if (!rs->EOF_() || plz.empty()) return rs;
        // Nothing under this postcode: try the wider area of one character less.
        plz.pop_back();
        plzClause = widened(plz);
        if (plz.empty()) return rs;
    }
}

}  // namespace qvrl::townlists
