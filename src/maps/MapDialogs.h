#pragma once
// The calls that open a chooser dialog and hand its value back. Each returns
// the chosen code and stores it in the in/out argument, or returns -1 and
// leaves the argument as it was when the user cancels.

#include <cstdint>

namespace qvrl {

int16_t SnowZoneByMap1975(int16_t& zone);
int16_t SnowZoneByMap2005(int16_t& zone);
// Select the municipal wind zone tables of their norm first (3, 31).
int16_t WindZoneByMap2005(int16_t& zone);
int16_t WindZoneByMap2005_T2963(int16_t& zone);
int16_t WindCategoryByView2005(int16_t& WCat);

// The snow zone map of a climate region; an unknown region shows the alpine
// one. The Austrian and the UK annex (51, 53) have no map: a message, -1.
int16_t SnowZoneByMapEN(int16_t CtrlNA, int16_t CtrlRegion, int16_t& zone);
int16_t ClimateRegionByMap(int16_t& CR);

// The terrain categories of DIN 1055-100 with pictures (1..6).
int16_t WindCategoryByView100(int16_t& WCat);
// The terrain categories of EN 1991-1-4 (0..4); the UK annex (53) has its
// own dialog. Enabled: one flag per category, a missing one is enabled.
int16_t WindCategoryByView_EN(int16_t CtrlNA, int16_t& WCat, const bool* enabled = nullptr, int16_t enabledCount = 0);
// Upwind slope and location factor; false when cancelled.
bool OrographyByView(double& gPhi, double& sFac);

}  // namespace qvrl
