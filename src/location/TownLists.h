#pragma once
// What the list readers of the town and the zone tables share: a caller's
// text as a literal, the joining of clauses, the walk that adds an element
// per distinct name, the naming of blank entries, the look-up of one element,
// and the postcode that widens digit by digit.

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "store/JetQuery.h"
#include "store/modDAO.h"
#include "support/vb.h"

namespace qvrl::townlists {

// A caller's text goes in as one literal, whatever quotes it holds.
inline std::string Quoted(const std::string& s) { return jet::TextLiteral(s); }

// A key filters only when it is a number above 0.
inline bool ValidKey(const std::string& AGS) { return IsNumeric(AGS) && Val(AGS) > 0; }

// The non-empty clauses, joined with " AND ".
std::string Join(std::initializer_list<std::string> clauses);

// From the current row on, a row adds an element when its trimmed name
// differs from that of the last element; the first row is compared with the
// blank element 0 unless firstAlwaysAdds. fill sets the rest of the element.
template <class R, class Fill>
void AddDistinct(Recordset& rs, Field& nameField, std::string R::*name, std::vector<R>& list, Fill fill,
                 bool firstAlwaysAdds = false) {
    for (; !rs.EOF_(); rs.MoveNext()) {
        std::string n = NzText(nameField);
        if ((!firstAlwaysAdds || list.size() > 1) && Trim(n) == Trim(list.back().*name)) continue;
        R r;
        fill(r);
        r.*name = std::move(n);
        list.push_back(std::move(r));
    }
}

// A blank name in a list is "alle" when it is the only entry, else "restliche".
template <class R>
void NameBlanks(std::vector<R>& list, std::string R::*name) {
    const size_t n = list.size() - 1;
    for (size_t i = 1; i < list.size(); ++i)
        if (Trim(list[i].*name).empty()) list[i].*name = n == 1 ? "alle" : "restliche";
}

// The first element of the list read that matches, else a blank record.
template <class R, class Read, class Match>
void FindIn(R& rec, Read read, Match match) {
    rec = R{};
    std::vector<R> list;
    read(list);
    for (size_t i = 1; i < list.size(); ++i)
        if (match(list[i])) {
            rec = list[i];
            return;
        }
}

// Runs sql(plzClause) as a snapshot. While that finds nothing and the postcode
// is not used up, the postcode loses its last character, widened(postcode)
// becomes the clause, and the query runs again; a postcode used up ends with
// the empty result. lastSql gets the text of the last query run.
std::unique_ptr<Recordset> OpenWidening(Database& db, std::string plz, std::string plzClause,
                                        const std::function<std::string(const std::string&)>& sql,
                                        const std::function<std::string(const std::string&)>& widened,
                                        std::string& lastSql);

}  // namespace qvrl::townlists
