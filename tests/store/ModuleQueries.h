#pragma once
// Every query text the modules build, as they build it (blanks included), with
// the literals it must bind and the rows it must find in the sample database
// of test_modDAO.cpp (by the key column, in order).

#include <string>
#include <vector>

#include "store/JetQuery.h"

namespace qvrl::test {

struct ModuleQuery {
    const char* text;
    std::vector<jet::Param> params;
    const char* key;  // column that names a row
    std::vector<double> rows;
};

using P = std::vector<jet::Param>;
using I = int64_t;
using S = std::string;

inline const std::vector<ModuleQuery>& ModuleQueries() {
    static const std::vector<ModuleQuery> q = {
        // UK annex figures: the row below and the row above a distance.
        {"SELECT TOP 1 * FROM en_bs_fig3 WHERE (0.5-dist)>=0 ORDER BY (0.5-dist)", P{0.5, I{0}, 0.5}, "dist", {0.1}},
        {"SELECT TOP 1 * FROM en_bs_fig3 WHERE (dist-0.5)>=0 ORDER BY (dist-0.5)", P{0.5, I{0}, 0.5}, "dist", {1}},
        {"SELECT TOP 1 * FROM en_bs_fig3 WHERE (10-dist)>=0 ORDER BY (10-dist)", P{I{10}, I{0}, I{10}}, "dist", {10}},
        {"SELECT TOP 1 * FROM en_bs_fig3 WHERE (dist-10)>=0 ORDER BY (dist-10)", P{I{10}, I{0}, I{10}}, "dist", {10}},
        {"SELECT TOP 1 * FROM en_bs_fig3 WHERE (1E-06-dist)>=0 ORDER BY (1E-06-dist)", P{1e-6, I{0}, 1e-6}, "dist", {}},
        {"SELECT TOP 1 * FROM en_bs_fig3 WHERE (dist-1E-06)>=0 ORDER BY (dist-1E-06)", P{1e-6, I{0}, 1e-6}, "dist",
         {0.1}},
        {"SELECT TOP 1 * FROM en_bs_fig3 WHERE (dist-500)>=0 ORDER BY (dist-500)", P{I{500}, I{0}, I{500}}, "dist", {}},
        // A tie on the sort key: Jet's TOP keeps both rows.
        {"SELECT TOP 1 * FROM en_bs_fig4 WHERE (2-dist)>=0 ORDER BY (2-dist)", P{I{2}, I{0}, I{2}}, "dist", {1, 1}},
        // Coefficient store.
        {"SELECT * FROM cpe WHERE Typ = 4 AND Norm = 3 AND Theta = 90 ORDER BY Alpha", P{I{4}, I{3}, I{90}}, "ID",
         {2, 1}},
        {"SELECT * FROM cpe WHERE Typ = 5 AND Norm = 3 ORDER BY Alpha", P{I{5}, I{3}}, "ID", {6, 5}},
        {"SELECT * FROM cpe WHERE Typ = 3 AND Norm = 3 AND Theta = 0 ORDER BY Alpha", P{I{3}, I{3}, I{0}}, "ID", {7}},
        {"SELECT * FROM cpe WHERE Typ = 2 AND Norm = 3 AND TrTyp = 2 ORDER BY HPzuH", P{I{2}, I{3}, I{2}}, "ID", {9, 8}},
        {"SELECT * FROM cpe WHERE Typ = 2 AND Norm = 3 AND TrTyp = 3 ORDER BY RzuH", P{I{2}, I{3}, I{3}}, "ID", {}},
        {"SELECT * FROM cpe WHERE Typ = 2 AND Norm = 3 AND TrTyp = 4 ORDER BY Alpha", P{I{2}, I{3}, I{4}}, "ID", {}},
        {"SELECT * FROM cpe WHERE Typ = 2 AND Norm = 3 AND TrTyp = 1 ORDER BY ID", P{I{2}, I{3}, I{1}}, "ID", {}},
        {"SELECT * FROM cpe WHERE Typ = 1 AND Norm = 3 ORDER BY HzuD DESC", P{I{1}, I{3}}, "ID", {11, 10}},
        {"SELECT * FROM cpe WHERE Typ = 6 AND TrTyp = 1 AND Norm = 3 AND Theta = 0 ORDER BY ID",
         P{I{6}, I{1}, I{3}, I{0}}, "ID", {12}},
        {"SELECT * FROM cpe WHERE Typ = 6 AND TrTyp = 0 AND Norm = 3 ORDER BY ID", P{I{6}, I{0}, I{3}}, "ID", {14}},
        {"SELECT * FROM cpe WHERE Typ = 4 AND Norm = 3 AND Theta = 22.5 ORDER BY Alpha", P{I{4}, I{3}, 22.5}, "ID", {}},
        // Zone tables by municipality.
        {"SELECT * FROM slz WHERE Bundesland = 8 ORDER BY Landkreis", P{I{8}}, "ID", {3, 1, 2}},
        {"SELECT * FROM slz WHERE Bundesland = 8 AND RegBez = 1 AND Kreis = 15 ORDER BY Gemeinde", P{I{8}, I{1}, I{15}},
         "ID", {2, 1}},
        {"SELECT * FROM slz WHERE Bundesland = 8 ORDER BY Gemeinde", P{I{8}}, "ID", {3, 2, 1}},
        {"SELECT * FROM wlz WHERE LandID = 15 ORDER BY Bezirk", P{I{15}}, "ID", {3, 1, 2}},
        {"SELECT * FROM wlz WHERE LandID = 15 AND BezID = 2 ORDER BY Kreis", P{I{15}, I{2}}, "ID", {1, 2}},
        {"SELECT * FROM wlz WHERE LandID = 15 ORDER BY Kreis", P{I{15}}, "ID", {3, 1, 2}},
        {"SELECT * FROM wlz WHERE LandID = 15 AND BezID = 2 AND KreisID = 3 ORDER BY Gemeinde", P{I{15}, I{2}, I{3}},
         "ID", {2, 1}},
        {"SELECT * FROM wlz WHERE LandID = 15 AND BezID = 2 ORDER BY Gemeinde", P{I{15}, I{2}}, "ID", {2, 1}},
        {"SELECT * FROM wlz WHERE LandID = 15 ORDER BY Gemeinde", P{I{15}}, "ID", {3, 2, 1}},
        // Town database, German table.
        {"SELECT * FROM slzwlz WHERE BL_ID = '09' ORDER BY Reg_Name", P{S{"09"}}, "ID", {6, 1, 2, 3}},
        {"SELECT * FROM slzwlz ORDER BY Reg_Name", P{}, "ID", {5, 6, 1, 2, 3, 4}},
        {"SELECT * FROM slzwlz WHERE BL_ID = '09' AND Reg_ID = '1' ORDER BY LK_Name", P{S{"09"}, S{"1"}}, "ID",
         {1, 3, 2}},
        {"SELECT * FROM slzwlz WHERE BL_ID = '09' ORDER BY LK_Name", P{S{"09"}}, "ID", {6, 1, 3, 2}},
        {"SELECT * FROM slzwlz ORDER BY LK_Name", P{}, "ID", {6, 1, 3, 2, 5, 4}},
        {"SELECT * FROM slzwlz", P{}, "ID", {1, 2, 3, 4, 5, 6}},
        {"SELECT * FROM slzwlz WHERE  BL_ID = '09' AND  Reg_ID = '1' AND  LK_ID = '62' AND PLZ like '80*' AND "
         "Gemeinde like 'Mün*' ORDER BY Gemeinde",
         P{S{"09"}, S{"1"}, S{"62"}, S{"80*"}, S{"Mün*"}}, "ID", {1}},
        {"SELECT * FROM slzwlz WHERE  BL_ID = '09' AND Gemeinde like 'mün*' ORDER BY Gemeinde", P{S{"09"}, S{"mün*"}},
         "ID", {1}},
        {"SELECT * FROM slzwlz WHERE PLZ like '8*' ORDER BY Gemeinde", P{S{"8*"}}, "ID", {3, 2, 1}},
        {"SELECT * FROM slzwlz WHERE Gemeinde like '*MÜNCHEN' ORDER BY Gemeinde", P{S{"*MÜNCHEN"}}, "ID", {2, 1}},
        {"SELECT * FROM slzwlz WHERE  AGS = '09162000' ORDER BY Gemeinde", P{S{"09162000"}}, "ID", {1}},
        {"SELECT * FROM slzwlz  ORDER BY Gemeinde", P{}, "ID", {3, 6, 2, 5, 1, 4}},
        {"SELECT * FROM slzwlz WHERE AGS='09162000'", P{S{"09162000"}}, "ID", {1}},
        // Town database, Eurocode table.
        {"SELECT * FROM slzwlz1 WHERE Land_ID = 51 ORDER BY BL_ID", P{I{51}}, "ID", {1, 2, 3}},
        {"SELECT * FROM slzwlz1 WHERE Land_ID = 51 AND  BL_ID = '3' ORDER BY Reg_Name", P{I{51}, S{"3"}}, "ID", {1, 2}},
        {"SELECT * FROM slzwlz1 WHERE Land_ID = 51 ORDER BY Reg_Name", P{I{51}}, "ID", {3, 1, 2}},
        {"SELECT * FROM slzwlz1 WHERE Land_ID = -99 ORDER BY Reg_Name", P{I{-99}}, "ID", {}},
        {"SELECT * FROM slzwlz1 WHERE Land_ID = 51 AND  BL_ID = '3' AND  Reg_ID = '12' ORDER BY LK_Name",
         P{I{51}, S{"3"}, S{"12"}}, "ID", {1, 2}},
        {"SELECT * FROM slzwlz1 ORDER BY LK_Name", P{}, "ID", {3, 1, 2, 5, 4}},
        {"SELECT * FROM slzwlz1 WHERE  Land_ID = 51 AND  BL_ID = '3' AND  PLZ like '23*' ORDER BY Gemeinde",
         P{I{51}, S{"3"}, S{"23*"}}, "ID", {1, 2}},
        {"SELECT * FROM slzwlz1 WHERE  Land_ID = 51 AND  AGS = '31701' ORDER BY Gemeinde", P{I{51}, S{"31701"}}, "ID",
         {1}},
        {"SELECT * FROM slzwlz1 WHERE  AGS = '09162000' ORDER BY Gemeinde", P{S{"09162000"}}, "ID", {5}},
        {"SELECT * FROM slzwlz1", P{}, "ID", {1, 2, 3, 4, 5}},
        {"SELECT *  FROM slzwlz1  WHERE  Land_ID = 51", P{I{51}}, "ID", {1, 2, 3}},
        {"SELECT * FROM schnee WHERE BL_ID='6' AND Gemeinde like 'Graz'", P{S{"6"}, S{"Graz"}}, "ID", {1}},
        {"SELECT * FROM schnee WHERE BL_ID='6' AND Gemeinde like 'GRAZ-umgebung'", P{S{"6"}, S{"GRAZ-umgebung"}}, "ID",
         {2}},
        {"SELECT ID, Land_ID, Land FROM slzwlz1 ORDER BY Land_ID", P{}, "ID", {5, 1, 2, 3, 4}},
        // Live load catalogue.
        {"SELECT * FROM liveload WHERE Norm = 3 AND Art = 0 ORDER BY ID", P{I{3}, I{0}}, "ID", {1, 3}},
        {"SELECT * FROM liveload ORDER BY Norm, ID", P{}, "ID", {2, 1, 3, 4}},
        {"SELECT * FROM liveload ORDER BY ID", P{}, "ID", {1, 2, 3, 4}},
        // Whole tables by name, as the writers open them.
        {"slzwlz", P{}, "ID", {1, 2, 3, 4, 5, 6}},
        {"[liveload]", P{}, "ID", {3, 1, 4, 2}},
    };
    return q;
}

}  // namespace qvrl::test
