#pragma once
// The UK annex figures NA.3 to NA.8 from points digitised on their contour
// lines, turned into the grids of en_bs_fig3 ... en_bs_fig8.
//
// Input, per figure, points X (distance in km), Y (height in m), Z (value):
//   - a folder with uk_na_fig_NA_3.csv ... uk_na_fig_NA_8.csv, header X,Y,Z;
//   - or an .xlsx workbook with one sheet per figure, named NA.3 ... NA.8,
//     first row X, Y, Z, numbers below.
// The figures are drawn over logarithmic axes and their contours are smooth
// there, so the points are triangulated (Delaunay) in (log10 X, log10 Y) and
// the surface is linear on each triangle. The grid is sampled at round
// distances and heights spaced about evenly in log scale, dense enough that
// the look-up's linear interpolation between nodes stays within the
// digitising accuracy. A node outside the points' hull takes the value of
// the nearest point of the hull.

#include <array>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "maintenance/UkFigureImport.h"

namespace qvrl {

// A fault in the contour input; nothing was loaded when this is thrown.
class ContourInputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct ContourPoint {
    double x = 0.0;  // km
    double y = 0.0;  // m
    double z = 0.0;
};

struct ContourSet {
    std::string figure;  // "NA.3"
    std::string table;   // "en_bs_fig3"
    std::string source;  // file, or file and sheet
    std::vector<ContourPoint> points;
};

// The six figures, in order, each with its table.
struct UkFigure {
    const char* figure;
    const char* table;
};
inline constexpr UkFigure kUkFigures[] = {{"NA.3", "en_bs_fig3"}, {"NA.4", "en_bs_fig4"}, {"NA.5", "en_bs_fig5"},
                                          {"NA.6", "en_bs_fig6"}, {"NA.7", "en_bs_fig7"}, {"NA.8", "en_bs_fig8"}};

// Points of one figure from CSV text (header X,Y,Z in any order); `source`
// names it in messages. Checks every value (finite number, X and Y > 0).
ContourSet ParseContourCsv(const std::string& text, const std::string& source);

// All six figures from a folder of CSV files or an .xlsx workbook.
std::vector<ContourSet> ReadUkContours(const std::string& fileOrFolder);

// All six figures from the bytes of an .xlsx workbook.
std::vector<ContourSet> ParseContourXlsx(const std::string& bytes, const std::string& source);

// A Delaunay triangulation of points in (log10 X, log10 Y), with the value
// on each vertex.
class ContourSurface {
public:
    // ContourInputError for fewer than 3 distinct points, all on one line,
    // or one place with two different values.
    explicit ContourSurface(const ContourSet& set);

    // The value at (x km, y m); inside false when the place lies outside the
    // hull and the value is that of the nearest point of the hull.
    double Value(double x, double y, bool& inside) const;

    size_t TriangleCount() const { return tri_.size(); }

private:
    struct P {
        double u, v, z;
    };
    std::vector<P> p_;
    std::vector<std::array<int32_t, 3>> tri_;
    std::vector<std::array<int32_t, 2>> hull_;  // edges of one triangle only
};

// One sampled figure: the rows and columns of its table.
struct FigureGrid {
    std::string table;
    std::vector<double> heights;           // m, rising
    std::vector<double> distances;         // km, rising
    std::vector<std::vector<double>> values;  // [distance][height]
    int32_t outside = 0;                   // nodes outside the hull
};

// The nodes used for the figures.
const std::vector<double>& UkGridHeights();
const std::vector<double>& UkGridDistances();

// Samples the surface at every node; values rounded to 4 decimals, which is
// far finer than the digitising (a contour step is 0.01 or more).
FigureGrid SampleFigure(const ContourSet& set, const std::vector<double>& distances,
                        const std::vector<double>& heights);

// The figure on the nodes of UkGridHeights and UkGridDistances that lie
// within the points' range (3 % beyond it).
FigureGrid SampleUkFigure(const ContourSet& set);

// The sampled figure as the table writer takes it; `file` names its source.
UkFigureGrid ToUkFigureGrid(const FigureGrid& g, const std::string& file);

}  // namespace qvrl
