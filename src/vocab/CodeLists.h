#pragma once
// The codes of standards, zones and categories, and the name lists the public
// members hand out. A list is two parallel arrays used from index 1; element 0
// is blank. The code is the identity; a position never stands for a code.

#include <cstdint>
#include <string>
#include <vector>

namespace qvrl {

struct CodeList {
    std::vector<std::string> sName{std::string()};
    std::vector<int16_t> Index{0};

    int16_t Count() const { return static_cast<int16_t>(Index.size() - 1); }
    void Add(std::string name, int16_t code) {
        sName.push_back(std::move(name));
        Index.push_back(code);
    }
};

// A snow zone list of the Eurocode: the figure Z beside each code.
struct ZoneList : CodeList {
    std::vector<double> Z{0.0};
    void Add(std::string name, int16_t code, double z) {
        CodeList::Add(std::move(name), code);
        Z.push_back(z);
    }
};

namespace norm {
inline constexpr int16_t DIN1986_1975 = 1;
inline constexpr int16_t DIN2005 = 3;
inline constexpr int16_t DIN2005_T2963 = 31;
inline constexpr int16_t DE = 50;  // DIN EN, German annex
inline constexpr int16_t AT = 51;  // ÖNorm B
inline constexpr int16_t IT = 52;  // I EN
inline constexpr int16_t UK = 53;  // NA to BS EN
inline constexpr int16_t EN = 54;  // Eurocode without annex
}  // namespace norm

// The selectable standards of the dialogs, in their fixed order.
struct NormRow {
    int16_t code;
    const char* text;
};
const std::vector<NormRow>& NormTable();
// Codes with no row in NormTable, and what they stand for.
struct OtherNormCode {
    int16_t code;
    const char* meaning;
};
const std::vector<OtherNormCode>& OtherNormCodes();
// The national annexes (CtrlNA) in the order they are listed: 50, 51, 52, 53, 54.
const std::vector<int16_t>& AnnexCodes();
// Live load texts of the small codes; "" where none exists.
std::string LiveLoadNormText(int16_t code);
// The live load standards, 1 and 3, with those texts.
CodeList LiveLoadNormList();
bool IsCatalogueNorm(int16_t code);
bool IsEurocodeNorm(int16_t code);

// Codes of a "_1_3_54_" set. A token that is not a 16-bit number is error 13
// (or 6 when it is a number out of range).
std::vector<int16_t> ParseSelectableCodes(const std::string& codes);
bool IsSelectableNorm(const std::string& codes, int16_t norm);
// The rows of NormTable that the set selects, in table order.
std::vector<NormRow> SelectableNormRows(const std::string& codes);

// Name lists.
CodeList WindZoneList2005();        // four zones, Norm 3
CodeList WindZoneList2005_T2963();  // five zones, Norm 31
CodeList WindCategoryList2005();    // language texts 24..29
CodeList WindCategoryList_EN(int16_t CtrlNA);  // terrain categories 0..4 by annex
CodeList SnowZoneList1975();
CodeList SnowZoneList2005();
CodeList WindOpenSidesList2005();
CodeList WindOpenSidesList_EN();

// Eurocode snow: regions of an annex and the zone list with its figures.
CodeList SnowRegionList(int16_t CtrlNA);
ZoneList SnowZoneList(int16_t CtrlNA, int16_t CtrlRegion);
// First match of the code in SnowZoneList; 0.0 when the list does not hold it.
double SnowZoneFigure(int16_t CtrlNA, int16_t CtrlRegion, int16_t code);

// What a site under a standard is described by: its snow zones (for the
// Eurocode those of the region), wind zones, terrain categories and climate
// regions. A list the standard does not have is empty: DIN 1055-4:1986 (Norm 1)
// takes the wind load from the building height alone, so it has snow zones
// of 1975 and nothing else; only the German annex (50) keeps the four wind
// zones of DIN 1055-4:2005, which carry its basic values. Codes that name no
// standard (213, 78, 211, the unknown) get four empty lists.
struct NormLists {
    CodeList snowZones;
    CodeList windZones;
    CodeList categories;
    CodeList regions;
};
NormLists ListsOfNorm(int16_t Norm, int16_t CtrlRegion = 0);

// Map form of each climate region (empty for an unknown region).
std::string SnowRegionMapForm(int16_t CtrlRegion);

}  // namespace qvrl
