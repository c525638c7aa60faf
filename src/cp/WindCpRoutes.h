#pragma once
// One entry per roof form that takes either coefficient route: the built-in
// tables of DIN 1055-4:2005 (modWindCp, no Norm) or the store (modWindCpMdb,
// rows of the Norm). Rec is overwritten. The store must have been prepared
// (InitCpeMdb) by the caller, which decides when that happens.

#include <cstdint>

#include "cp/CpWindRecord.h"

namespace qvrl {

enum class CpRoute : int16_t { BuiltIn, Store };

// The route a site under a standard takes: its built-in tables belong to
// DIN 1055-4:2005 (Norm 3 and 31); every other standard has only its store rows.
CpRoute CpRouteOfNorm(int16_t Norm);

void WindCpGabled(CpRoute route, int16_t Norm, double Theta, double Alpha, CpWindRecord& Rec);
void WindCpHipped(CpRoute route, int16_t Norm, double Theta, double Alpha, CpWindRecord& Rec);
void WindCpFlat(CpRoute route, int16_t Norm, double hpZuH, double rZuH, double AlphaTr, CpWindRecord& Rec);
void WindCpWall(CpRoute route, int16_t Norm, double HzuD, CpWindRecord& Rec);
void WindCpPent(CpRoute route, int16_t Norm, double Theta, double Alpha, CpWindRecord& Rec);
// Internal pressure has no built-in table: that route gives the zero record.
void WindCpInside(CpRoute route, int16_t Norm, int16_t TrTyp, double Theta, double Mue, CpWindRecord& Rec);

}  // namespace qvrl
