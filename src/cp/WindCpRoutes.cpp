#include "cp/WindCpRoutes.h"

#include "cp/modWindCp.h"
#include "cp/modWindCpMdb.h"
#include "vocab/CodeLists.h"

namespace qvrl {

CpRoute CpRouteOfNorm(int16_t Norm) {
    return Norm == norm::DIN2005 || Norm == norm::DIN2005_T2963 ? CpRoute::BuiltIn : CpRoute::Store;
}

void WindCpGabled(CpRoute route, int16_t Norm, double Theta, double Alpha, CpWindRecord& Rec) {
    if (route == CpRoute::Store) Get_Wind_Cp_Satteldach_Mdb(Norm, Theta, Alpha, Rec);
    else Get_Wind_Cp_Satteldach(Theta, Alpha, Rec);
}

void WindCpHipped(CpRoute route, int16_t Norm, double Theta, double Alpha, CpWindRecord& Rec) {
    if (route == CpRoute::Store) Get_Wind_Cp_Walmdach_Mdb(Norm, Theta, Alpha, Rec);
    else Get_Wind_Cp_Walmdach(Theta, Alpha, Rec);
}

void WindCpFlat(CpRoute route, int16_t Norm, double hpZuH, double rZuH, double AlphaTr, CpWindRecord& Rec) {
    if (route == CpRoute::Store) Get_Wind_Cp_Flachdach_Mdb(Norm, hpZuH, rZuH, AlphaTr, Rec);
    else Get_Wind_Cp_Flachdach(hpZuH, rZuH, AlphaTr, Rec);
}

void WindCpWall(CpRoute route, int16_t Norm, double HzuD, CpWindRecord& Rec) {
    if (route == CpRoute::Store) Get_Wind_Cp_Wand_Mdb(Norm, HzuD, Rec);
    else Get_Wind_Cp_Wand(HzuD, Rec);
}

void WindCpPent(CpRoute route, int16_t Norm, double Theta, double Alpha, CpWindRecord& Rec) {
    if (route == CpRoute::Store) Get_Wind_Cp_Pultdach_Mdb(Norm, Theta, Alpha, Rec);
    else Get_Wind_Cp_Pultdach(Theta, Alpha, Rec);
}

void WindCpInside(CpRoute route, int16_t Norm, int16_t TrTyp, double Theta, double Mue, CpWindRecord& Rec) {
    if (route == CpRoute::Store) Get_Wind_Cp_Innen_Mdb(Norm, TrTyp, Theta, Mue, Rec);
    else Rec = CpWindRecord{};
}

}  // namespace qvrl
