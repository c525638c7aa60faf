#include "maintenance/UkContours.h"

#include <zip.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <limits>
#include <map>
#include <memory>
#include <pugixml.hpp>

#include "interchange/TextFile.h"
#include "support/errors.h"
#include "support/vb.h"

namespace fs = std::filesystem;

namespace qvrl {

namespace {

[[noreturn]] void Fault(const std::string& what) { throw ContourInputError(what); }

// A decimal number filling the whole cell ("1,5", blanks, inf and nan are none).
bool ParseNumber(const std::string& cell, double& out) {
    if (cell.empty() || cell.find_first_not_of("0123456789.-+eE") != std::string::npos) return false;
    const char* begin = cell.data() + (cell[0] == '+' ? 1 : 0);
    const char* end = cell.data() + cell.size();
    const auto r = std::from_chars(begin, end, out);
    return r.ec == std::errc() && r.ptr == end && std::isfinite(out);
}

void CheckPoint(const ContourPoint& p, const std::string& where) {
    if (!(p.x > 0.0) || !(p.y > 0.0))
        Fault(where + ": X and Y must be above 0 (they are drawn on logarithmic axes), not " + DoubleToText(p.x) +
              ", " + DoubleToText(p.y));
}

// Column index of X, Y, Z in a header row; false when it is not one.
bool HeaderColumns(const std::vector<std::string>& cells, int32_t (&col)[3]) {
    col[0] = col[1] = col[2] = -1;
    for (size_t i = 0; i < cells.size(); ++i) {
        const std::string c = UCase(Trim(cells[i]));
        for (int k = 0; k < 3; ++k)
            if (c == std::string(1, "XYZ"[k]) && col[k] < 0) col[k] = static_cast<int32_t>(i);
    }
    return col[0] >= 0 && col[1] >= 0 && col[2] >= 0;
}

// One row of cells into a point; `where(i)` names cell i in a message.
template <typename Where>
ContourPoint RowPoint(const std::vector<std::string>& cells, const int32_t (&col)[3], Where where) {
    double v[3] = {0, 0, 0};
    for (int k = 0; k < 3; ++k) {
        const size_t i = static_cast<size_t>(col[k]);
        const std::string cell = i < cells.size() ? Trim(cells[i]) : std::string();
        if (!ParseNumber(cell, v[k]))
            Fault(where(i) + " (" + std::string(1, "XYZ"[k]) + "): '" + cell + "' is not a number");
    }
    ContourPoint p{v[0], v[1], v[2]};
    CheckPoint(p, where(static_cast<size_t>(col[0])));
    return p;
}

// ---------------------------------------------------------------------------
// xlsx: a zip of XML parts.

class Zip {
public:
    Zip(const std::string& bytes, const std::string& source) : source_(source) {
        zip_error_t err;
        zip_error_init(&err);
        zip_source_t* src = zip_source_buffer_create(bytes.data(), bytes.size(), 0, &err);
        if (src) z_ = zip_open_from_source(src, ZIP_RDONLY, &err);
        if (!z_) {
            if (src) zip_source_free(src);
            zip_error_fini(&err);
            Fault(source + ": not an xlsx workbook (no zip archive)");
        }
        zip_error_fini(&err);
    }
    ~Zip() {
        if (z_) zip_discard(z_);
    }
    Zip(const Zip&) = delete;
    Zip& operator=(const Zip&) = delete;

    bool Has(const std::string& name) const { return zip_name_locate(z_, name.c_str(), 0) >= 0; }

    std::string Read(const std::string& name) const {
        zip_stat_t st;
        zip_stat_init(&st);
        if (zip_stat(z_, name.c_str(), 0, &st) != 0 || !(st.valid & ZIP_STAT_SIZE))
            Fault(source_ + ": not an xlsx workbook (no " + name + ")");
        // A part far larger than any figure's sheet is no sheet of ours.
        if (st.size > (64u << 20)) Fault(source_ + ": " + name + " is too large");
        std::unique_ptr<zip_file_t, int (*)(zip_file_t*)> f(zip_fopen(z_, name.c_str(), 0), zip_fclose);
        if (!f) Fault(source_ + ": " + name + " cannot be read");
        std::string out(static_cast<size_t>(st.size), '\0');
        const zip_int64_t n = zip_fread(f.get(), out.data(), st.size);
        if (n < 0 || static_cast<zip_uint64_t>(n) != st.size) Fault(source_ + ": " + name + " cannot be read");
        return out;
    }

private:
    std::string source_;
    zip_t* z_ = nullptr;
};

pugi::xml_document ParseXml(const std::string& text, const std::string& what) {
    pugi::xml_document doc;
    if (!doc.load_buffer(text.data(), text.size())) Fault(what + ": not well-formed XML");
    return doc;
}

// "AB12" -> 27 (0-based column); -1 when it is no cell reference.
int32_t ColumnOf(const std::string& ref) {
    int64_t c = 0;
    size_t i = 0;
    for (; i < ref.size() && ref[i] >= 'A' && ref[i] <= 'Z'; ++i) {
        c = c * 26 + (ref[i] - 'A' + 1);
        if (c > 16384) return -1;
    }
    return i == 0 ? -1 : static_cast<int32_t>(c - 1);
}

std::string ColumnName(size_t col) {
    std::string s;
    for (size_t c = col + 1; c > 0; c = (c - 1) / 26) s.insert(s.begin(), static_cast<char>('A' + (c - 1) % 26));
    return s;
}

std::string NodeText(const pugi::xml_node& n) {
    std::string s;
    // Rich text splits a cell's text into runs, each with its own <t>.
    for (pugi::xml_node c = n.first_child(); c; c = c.next_sibling()) {
        if (std::string(c.name()) == "t")
            s += c.text().get();
        else if (std::string(c.name()) == "r")
            s += NodeText(c);
    }
    return s;
}

ContourSet ReadSheet(const Zip& zip, const std::string& part, const std::vector<std::string>& shared,
                     const std::string& source) {
    ContourSet set;
    set.source = source;
    const pugi::xml_document doc = ParseXml(zip.Read(part), source);
    const pugi::xml_node data = doc.child("worksheet").child("sheetData");
    bool header = false;
    int32_t col[3];
    for (const pugi::xml_node& row : data.children("row")) {
        const std::string rowNo = row.attribute("r").as_string();
        std::vector<std::string> cells;
        size_t next = 0;
        for (const pugi::xml_node& c : row.children("c")) {
            const std::string ref = c.attribute("r").as_string();
            const int32_t ci = ref.empty() ? static_cast<int32_t>(next) : ColumnOf(ref);
            if (ci < 0) Fault(source + ": cell reference '" + ref + "' is none");
            const size_t at = static_cast<size_t>(ci);
            next = at + 1;
            if (at >= 64) continue;  // far right of X, Y, Z: notes, not data
            if (cells.size() <= at) cells.resize(at + 1);
            const std::string t = c.attribute("t").as_string();
            const std::string v = c.child("v").text().get();
            if (t == "s") {
                double idx = -1;
                if (!ParseNumber(v, idx) || idx < 0 || idx >= static_cast<double>(shared.size()) ||
                    idx != std::floor(idx))
                    Fault(source + ": cell " + ref + " names no shared text");
                cells[at] = shared[static_cast<size_t>(idx)];
            } else if (t == "inlineStr") {
                cells[at] = NodeText(c.child("is"));
            } else {
                cells[at] = v;
            }
        }
        if (std::all_of(cells.begin(), cells.end(), [](const std::string& s) { return Trim(s).empty(); })) continue;
        if (!header) {
            if (!HeaderColumns(cells, col)) Fault(source + ": row " + rowNo + ": the first row must name X, Y and Z");
            header = true;
            continue;
        }
        set.points.push_back(
            RowPoint(cells, col, [&](size_t i) { return source + ": cell " + ColumnName(i) + rowNo; }));
    }
    if (!header) Fault(source + ": empty; the first row must name X, Y and Z");
    return set;
}

}  // namespace

// ---------------------------------------------------------------------------
// Readers

ContourSet ParseContourCsv(const std::string& text, const std::string& source) {
    const TextLines lines = DecodeText(text);
    ContourSet set;
    set.source = source;
    bool header = false;
    int32_t col[3];
    for (size_t i = 0; i < lines.lines.size(); ++i) {
        std::string line = lines.lines[i];
        if (i == 0 && line.rfind("\xEF\xBB\xBF", 0) == 0) line.erase(0, 3);
        if (Trim(line).empty()) continue;
        std::vector<std::string> cells;
        size_t start = 0;
        for (size_t k = 0; k <= line.size(); ++k)
            if (k == line.size() || line[k] == ',') {
                std::string c = Trim(line.substr(start, k - start));
                if (c.size() >= 2 && c.front() == '"' && c.back() == '"') c = c.substr(1, c.size() - 2);
                cells.push_back(c);
                start = k + 1;
            }
        const std::string where = source + ":" + std::to_string(i + 1);
        if (!header) {
            if (!HeaderColumns(cells, col)) Fault(where + ": the header must name X, Y and Z");
            header = true;
            continue;
        }
        set.points.push_back(RowPoint(cells, col, [&](size_t c) { return where + ": column " + std::to_string(c + 1); }));
    }
    if (!header) Fault(source + ": empty; the header must name X, Y and Z");
    return set;
}

std::vector<ContourSet> ParseContourXlsx(const std::string& bytes, const std::string& source) {
    const Zip zip(bytes, source);
    std::vector<std::string> shared;
    if (zip.Has("xl/sharedStrings.xml")) {
        const pugi::xml_document doc = ParseXml(zip.Read("xl/sharedStrings.xml"), source + ": shared texts");
        for (const pugi::xml_node& si : doc.child("sst").children("si")) shared.push_back(NodeText(si));
    }
    std::map<std::string, std::string> targets;  // relationship id -> part
    {
        const pugi::xml_document rels = ParseXml(zip.Read("xl/_rels/workbook.xml.rels"), source + ": relationships");
        for (const pugi::xml_node& r : rels.child("Relationships").children("Relationship")) {
            std::string t = r.attribute("Target").as_string();
            t = t.rfind('/', 0) == 0 ? t.substr(1) : "xl/" + t;
            targets[r.attribute("Id").as_string()] = t;
        }
    }
    std::map<std::string, std::string> sheets;  // name -> part
    const pugi::xml_document book = ParseXml(zip.Read("xl/workbook.xml"), source + ": workbook");
    for (const pugi::xml_node& s : book.child("workbook").child("sheets").children("sheet")) {
        std::string id;
        for (const pugi::xml_attribute& a : s.attributes())
            if (std::string(a.name()).ends_with(":id")) id = a.value();
        const auto t = targets.find(id);
        if (t != targets.end()) sheets[UCase(Trim(s.attribute("name").as_string()))] = t->second;
    }
    std::vector<ContourSet> out;
    for (const UkFigure& f : kUkFigures) {
        const auto s = sheets.find(f.figure);
        if (s == sheets.end()) Fault(source + ": no sheet '" + f.figure + "'");
        ContourSet set = ReadSheet(zip, s->second, shared, source + ": sheet " + f.figure);
        set.figure = f.figure;
        set.table = f.table;
        out.push_back(std::move(set));
    }
    return out;
}

std::vector<ContourSet> ReadUkContours(const std::string& fileOrFolder) {
    std::error_code ec;
    std::vector<ContourSet> out;
    if (fs::is_directory(fileOrFolder, ec)) {
        for (const UkFigure& f : kUkFigures) {
            std::string name = std::string("uk_na_fig_NA_") + (f.figure + 3) + ".csv";
            const fs::path p = fs::path(fileOrFolder) / name;
            if (!fs::is_regular_file(p, ec)) Fault(p.string() + ": missing (figure " + f.figure + ")");
            ContourSet set = ParseContourCsv(ReadFileBytes(p.string()), p.string());
            set.figure = f.figure;
            set.table = f.table;
            out.push_back(std::move(set));
        }
        return out;
    }
    if (!fs::is_regular_file(fileOrFolder, ec)) Fault(fileOrFolder + ": no such file or folder");
    return ParseContourXlsx(ReadFileBytes(fileOrFolder), fileOrFolder);
}

// ---------------------------------------------------------------------------
// Triangulation

namespace {

double Orient(double ax, double ay, double bx, double by, double cx, double cy) {
    return (bx - ax) * (cy - ay) - (by - ay) * (cx - ax);
}

}  // namespace

ContourSurface::ContourSurface(const ContourSet& set) {
    const std::string& src = set.source;
    std::vector<P> pts;
    for (const ContourPoint& q : set.points) {
        CheckPoint(q, src);
        pts.push_back({std::log10(q.x), std::log10(q.y), q.z});
    }
    std::sort(pts.begin(), pts.end(), [](const P& a, const P& b) { return a.u < b.u || (a.u == b.u && a.v < b.v); });
    for (const P& q : pts) {
        if (!p_.empty() && p_.back().u == q.u && p_.back().v == q.v) {
            if (p_.back().z != q.z)
                Fault(src + ": one place (X " + DoubleToText(std::pow(10.0, q.u)) + ", Y " +
                      DoubleToText(std::pow(10.0, q.v)) + ") has two values");
            continue;
        }
        p_.push_back(q);
    }
    if (p_.size() < 3)
        Fault(src + ": " + std::to_string(p_.size()) + " distinct points; a surface needs at least 3");
    // Collinear when no point stands off the line through the two farthest apart.
    double lo[2] = {p_[0].u, p_[0].v}, hi[2] = {p_[0].u, p_[0].v};
    for (const P& q : p_) {
        lo[0] = std::min(lo[0], q.u), hi[0] = std::max(hi[0], q.u);
        lo[1] = std::min(lo[1], q.v), hi[1] = std::max(hi[1], q.v);
    }
    const double span = std::max(hi[0] - lo[0], hi[1] - lo[1]);
    size_t far = 0;
    double best = -1;
    for (size_t i = 0; i < p_.size(); ++i) {
        const double d = std::hypot(p_[i].u - p_[0].u, p_[i].v - p_[0].v);
        if (d > best) best = d, far = i;
    }
    double off = 0.0;
    for (const P& q : p_)
        off = std::max(off, std::fabs(Orient(p_[0].u, p_[0].v, p_[far].u, p_[far].v, q.u, q.v)) / best);
    if (!(off > 1e-9 * span)) Fault(src + ": all points lie on one line; they span no surface");

    // Bowyer-Watson, with a super-triangle far outside the points.
    const int32_t n = static_cast<int32_t>(p_.size());
    const double cu = (lo[0] + hi[0]) / 2, cv = (lo[1] + hi[1]) / 2, m = 1e4 * span;
    std::vector<P> all = p_;
    all.push_back({cu - 2 * m, cv - m, 0});
    all.push_back({cu + 2 * m, cv - m, 0});
    all.push_back({cu, cv + 2 * m, 0});
    struct T {
        std::array<int32_t, 3> v;
        double ccu, ccv, r2;
    };
    auto make = [&](int32_t a, int32_t b, int32_t c) {
        if (Orient(all[a].u, all[a].v, all[b].u, all[b].v, all[c].u, all[c].v) < 0) std::swap(b, c);
        const double ax = all[a].u, ay = all[a].v, bx = all[b].u - ax, by = all[b].v - ay, cx = all[c].u - ax,
                     cy = all[c].v - ay;
        const double d = 2 * (bx * cy - by * cx);
        const double ux = (cy * (bx * bx + by * by) - by * (cx * cx + cy * cy)) / d;
        const double uy = (bx * (cx * cx + cy * cy) - cx * (bx * bx + by * by)) / d;
        return T{{a, b, c}, ax + ux, ay + uy, ux * ux + uy * uy};
    };
    std::vector<T> tris{make(n, n + 1, n + 2)};
    for (int32_t i = 0; i < n; ++i) {
        std::vector<std::array<int32_t, 2>> edges;
        std::vector<T> keep;
        for (const T& t : tris) {
            const double du = all[i].u - t.ccu, dv = all[i].v - t.ccv;
            if (du * du + dv * dv < t.r2 * (1 + 1e-12)) {
                for (int k = 0; k < 3; ++k) edges.push_back({t.v[k], t.v[(k + 1) % 3]});
            } else {
                keep.push_back(t);
            }
        }
        for (size_t a = 0; a < edges.size(); ++a) {
            bool shared = false;
            for (size_t b = 0; b < edges.size() && !shared; ++b)
                shared = a != b && edges[a][0] == edges[b][1] && edges[a][1] == edges[b][0];
            if (shared) continue;
            if (std::fabs(Orient(all[edges[a][0]].u, all[edges[a][0]].v, all[edges[a][1]].u, all[edges[a][1]].v,
                                 all[i].u, all[i].v)) > 0)
                keep.push_back(make(edges[a][0], edges[a][1], i));
        }
        tris = std::move(keep);
    }
    for (const T& t : tris)
        if (t.v[0] < n && t.v[1] < n && t.v[2] < n) tri_.push_back(t.v);
    if (tri_.empty()) Fault(src + ": the points span no triangle");
    std::map<std::pair<int32_t, int32_t>, int> count;
    for (const auto& t : tri_)
        for (int k = 0; k < 3; ++k) ++count[{std::min(t[k], t[(k + 1) % 3]), std::max(t[k], t[(k + 1) % 3])}];
    for (const auto& [e, c] : count)
        if (c == 1) hull_.push_back({e.first, e.second});
}

double ContourSurface::Value(double x, double y, bool& inside) const {
    const double u = std::log10(x), v = std::log10(y);
    for (const auto& t : tri_) {
        const P &a = p_[t[0]], &b = p_[t[1]], &c = p_[t[2]];
        const double d = Orient(a.u, a.v, b.u, b.v, c.u, c.v);
        const double la = Orient(u, v, b.u, b.v, c.u, c.v) / d;
        const double lb = Orient(a.u, a.v, u, v, c.u, c.v) / d;
        const double lc = 1.0 - la - lb;
        const double eps = -1e-12;
        if (la >= eps && lb >= eps && lc >= eps) {
            inside = true;
            return la * a.z + lb * b.z + lc * c.z;
        }
    }
    inside = false;
    double best = std::numeric_limits<double>::infinity(), value = 0.0;
    for (const auto& e : hull_) {
        const P &a = p_[e[0]], &b = p_[e[1]];
        const double eu = b.u - a.u, ev = b.v - a.v;
        const double s = std::clamp(((u - a.u) * eu + (v - a.v) * ev) / (eu * eu + ev * ev), 0.0, 1.0);
        const double du = a.u + s * eu - u, dv = a.v + s * ev - v;
        if (du * du + dv * dv < best) best = du * du + dv * dv, value = a.z + s * (b.z - a.z);
    }
    return value;
}

// ---------------------------------------------------------------------------
// Sampling

const std::vector<double>& UkGridHeights() {
    // About 1.25 apart in ratio: the figures' contours bend most near the ground.
    static const std::vector<double> h{2, 3, 4, 5, 6, 7, 8, 10, 12, 15, 20, 25, 30, 40, 50, 60, 70, 80, 100, 120, 150, 200};
    return h;
}

const std::vector<double>& UkGridDistances() {
    static const std::vector<double> d{0.1, 0.15, 0.2, 0.3, 0.4, 0.5, 0.7, 1,  1.5, 2,  3,
                                       4,   5,    7,   10,  15,  20,  30,  50, 70,  100};
    return d;
}

FigureGrid SampleFigure(const ContourSet& set, const std::vector<double>& distances,
                        const std::vector<double>& heights) {
    const ContourSurface s(set);
    FigureGrid g;
    g.table = set.table;
    g.distances = distances;
    g.heights = heights;
    for (double d : distances) {
        std::vector<double> row;
        for (double h : heights) {
            bool inside = true;
            const double v = s.Value(d, h, inside);
            if (!inside) ++g.outside;
            row.push_back(std::round(v * 1e4) / 1e4);
        }
        g.values.push_back(std::move(row));
    }
    return g;
}

FigureGrid SampleUkFigure(const ContourSet& set) {
    double lo[2] = {INFINITY, INFINITY}, hi[2] = {0, 0};
    for (const ContourPoint& p : set.points) {
        lo[0] = std::min(lo[0], p.x), hi[0] = std::max(hi[0], p.x);
        lo[1] = std::min(lo[1], p.y), hi[1] = std::max(hi[1], p.y);
    }
    // Nodes beyond the drawn range would only repeat its edge, which the
    // look-up does by itself; 3 % covers the digitiser's stray past an axis end.
    auto within = [](const std::vector<double>& nodes, double a, double b) {
        std::vector<double> out;
        for (double n : nodes)
            if (n >= a / 1.03 && n <= b * 1.03) out.push_back(n);
        return out;
    };
    return SampleFigure(set, within(UkGridDistances(), lo[0], hi[0]), within(UkGridHeights(), lo[1], hi[1]));
}

UkFigureGrid ToUkFigureGrid(const FigureGrid& g, const std::string& file) {
    UkFigureGrid u;
    u.table = g.table;
    u.file = file;
    for (double h : g.heights) u.heightNames.push_back(DoubleToText(h)), u.heights.push_back(h);
    for (size_t r = 0; r < g.distances.size(); ++r) {
        std::vector<double> row{g.distances[r]};
        row.insert(row.end(), g.values[r].begin(), g.values[r].end());
        u.rows.push_back(std::move(row));
    }
    return u;
}

}  // namespace qvrl
