#include "cp/modWindCpConv.h"

#include "support/errors.h"

namespace qvrl {

void CpRecordToTable(const CpWindRecord& Rec, CWindCpTable& Table) {
    Table.Alpha(Rec.Alpha);
    Table.Theta(Rec.Theta);
    Table.Area_F10(Rec.F10);
    Table.Area_F1(Rec.F1);
    Table.Area_F10a(Rec.F10a);
    Table.Area_F1a(Rec.F1a);
    Table.Area_G10(Rec.G10);
    Table.Area_G1(Rec.G1);
    Table.Area_G10a(Rec.G10a);
    Table.Area_G1a(Rec.G1a);
    Table.Area_H10(Rec.H10);
    Table.Area_H1(Rec.H1);
    Table.Area_H10a(Rec.H10a);
    Table.Area_H1a(Rec.H1a);
    Table.Area_I10(Rec.I10);
    Table.Area_I1(Rec.I1);
    Table.Area_I10a(Rec.I10a);
    Table.Area_I1a(Rec.I1a);
    Table.Area_J10(Rec.J10);
    Table.Area_J1(Rec.J1);
    Table.Area_J10a(Rec.J10a);
    Table.Area_J1a(Rec.J1a);
    Table.Area_K10(Rec.K10);
    Table.Area_K1(Rec.K1);
    Table.Area_K10a(Rec.K10a);
    Table.Area_K1a(Rec.K1a);
    Table.Area_L10(Rec.L10);
    Table.Area_L1(Rec.L1);
    Table.Area_L10a(Rec.L10a);
    Table.Area_L1a(Rec.L1a);
    Table.Area_M10(Rec.M10);
    Table.Area_M1(Rec.M1);
    Table.Area_M10a(Rec.M10a);
    Table.Area_M1a(Rec.M1a);
    Table.Area_N10(Rec.N10);
    Table.Area_N1(Rec.N1);
    Table.Area_N10a(Rec.N10a);
    Table.Area_N1a(Rec.N1a);
    Table.Area_A10(Rec.A10);
    Table.Area_A1(Rec.A1);
    Table.Area_A10a(Rec.A10a);
    Table.Area_A1a(Rec.A1a);
    Table.Area_B10(Rec.B10);
    Table.Area_B1(Rec.B1);
    Table.Area_B10a(Rec.B10a);
    Table.Area_B1a(Rec.B1a);
    Table.Area_C10(Rec.C10);
    Table.Area_C1(Rec.C1);
    Table.Area_C10a(Rec.C10a);
    Table.Area_C1a(Rec.C1a);
    Table.Area_D10(Rec.D10);
    Table.Area_D1(Rec.D1);
    Table.Area_D10a(Rec.D10a);
    Table.Area_D1a(Rec.D1a);
    Table.Area_E10(Rec.E10);
    Table.Area_E1(Rec.E1);
    Table.Area_E10a(Rec.E10a);
    Table.Area_E1a(Rec.E1a);
    Table.Area_Ft10(Rec.Ft10);
    Table.Area_Ft1(Rec.Ft1);
    Table.Area_Ft10a(Rec.Ft10a);
    Table.Area_Ft1a(Rec.Ft1a);
    Table.hpZuH(Rec.HPzuH);
    Table.rZuH(Rec.RzuH);
    Table.HzuD(Rec.HzuD);
    Table.AlphaTr(Rec.AlphaTr);
    Table.Norm(Rec.Norm);
    Table.TrTyp(Rec.TrTyp);
    Table.Mue(Rec.Mue);
    Table.Area_Inside(Rec.Innen);
    Table.Area_Insidea(Rec.Innena);
}

void CpRecordToTable(const CpWindRecord& Rec, const std::shared_ptr<CWindCpTable>& Table) {
    if (!Table) Raise(err::ObjectNotSet, "CpRecordToTable");
    CpRecordToTable(Rec, *Table);
}

}  // namespace qvrl
