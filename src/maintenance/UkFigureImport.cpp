#include "maintenance/UkFigureImport.h"

#include <charconv>
#include <cmath>
#include <filesystem>
#include <string_view>

#include "interchange/TextFile.h"
#include "store/modDAO.h"
#include "support/errors.h"
#include "support/vb.h"

namespace fs = std::filesystem;

namespace qvrl {

namespace {

[[noreturn]] void Fault(std::string what) { throw TownInputError({std::move(what)}); }

std::string Place(const std::string& file, size_t line, size_t column = 0) {
    std::string s = file + ":" + std::to_string(line);
    if (column) s += ": column " + std::to_string(column);
    return s;
}

std::string TrimCell(std::string_view c) {
    std::string s = Trim(c);
    while (!s.empty() && s.front() == '\t') s.erase(0, 1);
    while (!s.empty() && s.back() == '\t') s.pop_back();
    if (s.size() >= 2 && s.front() == '"' && s.back() == '"') s = s.substr(1, s.size() - 2);
    return Trim(s);
}

std::vector<std::string> SplitCells(const std::string& line) {
    std::vector<std::string> cells;
    size_t start = 0;
    for (;;) {
        const size_t comma = line.find(',', start);
        cells.push_back(TrimCell(std::string_view(line).substr(start, comma - start)));
        if (comma == std::string::npos) break;
        start = comma + 1;
    }
    return cells;
}

// A decimal number filling the whole cell: digits, an optional point, sign
// and exponent; nothing else ("inf", "nan", "1,5" and blanks are no numbers).
bool ParseNumber(const std::string& cell, double& out) {
    if (cell.empty() || cell.find_first_not_of("0123456789.-eE") != std::string::npos) return false;
    const char* end = cell.data() + cell.size();
    const auto r = std::from_chars(cell.data(), end, out);
    return r.ec == std::errc() && r.ptr == end && std::isfinite(out);
}

// A column counts as a height only when its name is a number in digits.
bool IsHeightName(const std::string& s) {
    const size_t dot = s.find('.');
    const std::string whole = s.substr(0, dot);
    if (whole.empty() || whole.find_first_not_of("0123456789") != std::string::npos) return false;
    if (dot == std::string::npos) return true;
    const std::string frac = s.substr(dot + 1);
    return !frac.empty() && frac.find_first_not_of("0123456789") == std::string::npos;
}

bool IsFigureTable(const std::string& name) {
    for (const char* t : kUkFigureTables)
        if (name == t) return true;
    return false;
}

// What the writer relies on, for grids that did not come through the reader.
void CheckGrid(const UkFigureGrid& g) {
    const std::string who = g.table + (g.file.empty() ? "" : " (" + g.file + ")");
    if (!IsFigureTable(g.table)) Fault("'" + g.table + "' is not a table of the UK figures");
    if (g.heights.empty() || g.heights.size() != g.heightNames.size()) Fault(who + ": no height columns");
    for (size_t i = 0; i < g.heights.size(); ++i) {
        double h = 0.0;
        if (!IsHeightName(g.heightNames[i]) || !ParseNumber(g.heightNames[i], h) || h != g.heights[i])
            Fault(who + ": the column '" + g.heightNames[i] + "' is not a height in metres written in digits");
        if (i > 0 && !(g.heights[i] > g.heights[i - 1])) Fault(who + ": the heights do not rise");
    }
    if (g.rows.empty()) Fault(who + ": no rows of values");
    for (size_t r = 0; r < g.rows.size(); ++r) {
        const std::vector<double>& row = g.rows[r];
        if (row.size() != g.heights.size() + 1) Fault(who + ": row " + std::to_string(r + 1) + " has the wrong width");
        for (double v : row)
            if (!std::isfinite(v)) Fault(who + ": row " + std::to_string(r + 1) + " holds a value that is no number");
        if (row[0] < 0.0 || (r > 0 && !(row[0] > g.rows[r - 1][0])))
            Fault(who + ": the distances must be 0 or more and rise");
    }
}

int32_t CountRows(Database& db, const std::string& table) {
    auto rs = db.OpenRecordset("SELECT * FROM " + table, dao::dbOpenSnapshot);
    int32_t n = 0;
    for (; !rs->EOF_(); rs->MoveNext()) ++n;
    rs->Close();
    return n;
}

// Drops the table where it exists and makes it anew; returns the rows it held.
int32_t ReplaceTable(Database& db, const UkFigureGrid& g) {
    int32_t old = 0;
    for (TableDef& d : db.TableDefs())
        if (UCase(d.Name()) == UCase(g.table)) {
            old = CountRows(db, g.table);
            db.TableDefs().Delete(g.table);
            break;
        }
    TableDef def = db.CreateTableDef(g.table);
    def.Fields().Append(def.CreateField("dist", dao::dbDouble));
    for (const std::string& h : g.heightNames) def.Fields().Append(def.CreateField(h, dao::dbDouble));
    db.TableDefs().Append(def);
    auto rs = db.OpenRecordset(g.table, dao::dbOpenDynaset);
    for (const std::vector<double>& row : g.rows) {
        rs->AddNew();
        for (size_t c = 0; c < row.size(); ++c) rs->Fields().Item(static_cast<int32_t>(c)).Value(Variant(row[c]));
        rs->Update();
    }
    rs->Close();
    return old;
}

std::string Plural(size_t n, const char* one, const char* many) {
    return std::to_string(n) + " " + (n == 1 ? one : many);
}

}  // namespace

UkFigureGrid ReadUkFigureGrid(const std::string& path, const std::string& table) {
    UkFigureGrid g;
    g.table = table;
    g.file = path;
    std::error_code ec;
    if (!fs::is_regular_file(path, ec)) Fault(g.file + ": missing or cannot be read");
    TextLines text;
    try {
        text = ReadTextLines(path);
    } catch (const RuntimeError&) {
        Fault(g.file + ": missing or cannot be read");
    }

    bool haveHeader = false;
    size_t headerCells = 0;
    for (size_t i = 0; i < text.lines.size(); ++i) {
        const size_t lineNo = i + 1;
        if (Trim(text.lines[i]).empty()) continue;
        const std::vector<std::string> cells = SplitCells(text.lines[i]);
        if (!haveHeader) {
            if (UCase(cells[0]) != "DIST")
                Fault(Place(g.file, lineNo, 1) + ": the first heading must be 'dist', not '" + cells[0] + "'");
            if (cells.size() < 2) Fault(Place(g.file, lineNo) + ": no height columns after 'dist'");
            for (size_t c = 1; c < cells.size(); ++c) {
                double h = 0.0;
                if (!IsHeightName(cells[c]) || !ParseNumber(cells[c], h))
                    Fault(Place(g.file, lineNo, c + 1) + ": the heading '" + cells[c] +
                          "' is not a height in metres written in digits");
                if (!g.heights.empty() && !(h > g.heights.back()))
                    Fault(Place(g.file, lineNo, c + 1) + ": height " + cells[c] + " m does not rise above " +
                          g.heightNames.back() + " m in column " + std::to_string(c));
                g.heightNames.push_back(cells[c]);
                g.heights.push_back(h);
            }
            headerCells = cells.size();
            haveHeader = true;
            continue;
        }
        if (cells.size() != headerCells)
            Fault(Place(g.file, lineNo) + ": " + std::to_string(cells.size()) + " cells, but the heading has " +
                  std::to_string(headerCells));
        std::vector<double> row;
        for (size_t c = 0; c < cells.size(); ++c) {
            double v = 0.0;
            if (!ParseNumber(cells[c], v))
                Fault(Place(g.file, lineNo, c + 1) + " (" + (c == 0 ? std::string("dist") : g.heightNames[c - 1] + " m") +
                      "): '" + cells[c] + "' is not a number");
            row.push_back(v);
        }
        if (row[0] < 0.0) Fault(Place(g.file, lineNo, 1) + ": the distance " + cells[0] + " is negative");
        if (!g.rows.empty() && !(row[0] > g.rows.back()[0]))
            Fault(Place(g.file, lineNo, 1) + ": the distance " + cells[0] +
                  " km does not rise above the one of the row before (" + DoubleToText(g.rows.back()[0]) + " km)");
        g.rows.push_back(std::move(row));
    }
    if (!haveHeader) Fault(g.file + ": empty; the first row must be 'dist' and the heights");
    if (g.rows.empty()) Fault(g.file + ": no rows of values under the heading");
    return g;
}

std::vector<UkFigureGrid> ReadUkFigureGrids(const std::string& dir) {
    std::error_code ec;
    if (!fs::is_directory(dir, ec)) Fault(dir + ": no such folder");
    std::vector<UkFigureGrid> grids;
    for (const char* t : kUkFigureTables)
        grids.push_back(ReadUkFigureGrid((fs::path(dir) / (std::string(t) + ".csv")).string(), t));
    return grids;
}

std::vector<TableTally> WriteUkFigureGrids(const std::vector<UkFigureGrid>& grids, const std::string& dbPath) {
    for (const UkFigureGrid& g : grids) CheckGrid(g);
    std::error_code ec;
    if (!fs::is_regular_file(dbPath, ec))
        Raise(dao::errCouldNotFindFile, {}, "Could not find file '" + dbPath + "': no such database.");
    auto db = DBEngine::OpenDatabase(dbPath, {}, false);
    std::vector<TableTally> tallies;
    db->BeginTrans();
    try {
        for (const UkFigureGrid& g : grids) {
            TableTally t;
            t.file = fs::path(dbPath).filename().string();
            t.table = g.table;
            t.untouched = ReplaceTable(*db, g);
            t.inserted = static_cast<int32_t>(g.rows.size());
            tallies.push_back(t);
        }
        db->CommitTrans();
    } catch (...) {
        db->Rollback();
        throw;
    }
    return tallies;
}

std::vector<std::string> UkFigureSummary(const std::vector<UkFigureGrid>& grids) {
    std::vector<std::string> lines;
    for (const UkFigureGrid& g : grids) {
        if (g.rows.empty() || g.heights.empty()) continue;
        lines.push_back(g.table + ": " + Plural(g.rows.size(), "row", "rows") + " (dist " +
                        DoubleToText(g.rows.front()[0]) + " .. " + DoubleToText(g.rows.back()[0]) + " km), " +
                        Plural(g.heights.size(), "height", "heights") + " (" + g.heightNames.front() + " .. " +
                        g.heightNames.back() + " m)");
    }
    return lines;
}

}  // namespace qvrl
