#include "cp/CWindCpTable.h"

#include "support/errors.h"

namespace qvrl {

void CWindCpTable::Theta(double value) { mTheta = value; }
double CWindCpTable::Theta() const { return mTheta; }
void CWindCpTable::Alpha(double value) { mAlpha = value; }
double CWindCpTable::Alpha() const { return mAlpha; }
void CWindCpTable::Area_F10(double value) { mArea_F10 = value; }
double CWindCpTable::Area_F10() const { return mArea_F10; }
void CWindCpTable::Area_F1(double value) { mArea_F1 = value; }
double CWindCpTable::Area_F1() const { return mArea_F1; }
void CWindCpTable::Area_F10a(double value) { mArea_F10a = value; }
double CWindCpTable::Area_F10a() const { return mArea_F10a; }
void CWindCpTable::Area_F1a(double value) { mArea_F1a = value; }
double CWindCpTable::Area_F1a() const { return mArea_F1a; }
void CWindCpTable::Area_G10(double value) { mArea_G10 = value; }
double CWindCpTable::Area_G10() const { return mArea_G10; }
void CWindCpTable::Area_G1(double value) { mArea_G1 = value; }
double CWindCpTable::Area_G1() const { return mArea_G1; }
void CWindCpTable::Area_G10a(double value) { mArea_G10a = value; }
double CWindCpTable::Area_G10a() const { return mArea_G10a; }
void CWindCpTable::Area_G1a(double value) { mArea_G1a = value; }
double CWindCpTable::Area_G1a() const { return mArea_G1a; }
void CWindCpTable::Area_H10(double value) { mArea_H10 = value; }
double CWindCpTable::Area_H10() const { return mArea_H10; }
void CWindCpTable::Area_H1(double value) { mArea_H1 = value; }
double CWindCpTable::Area_H1() const { return mArea_H1; }
void CWindCpTable::Area_H10a(double value) { mArea_H10a = value; }
double CWindCpTable::Area_H10a() const { return mArea_H10a; }
void CWindCpTable::Area_H1a(double value) { mArea_H1a = value; }
double CWindCpTable::Area_H1a() const { return mArea_H1a; }
void CWindCpTable::Area_I10(double value) { mArea_I10 = value; }
double CWindCpTable::Area_I10() const { return mArea_I10; }
void CWindCpTable::Area_I1(double value) { mArea_I1 = value; }
double CWindCpTable::Area_I1() const { return mArea_I1; }
void CWindCpTable::Area_I10a(double value) { mArea_I10a = value; }
double CWindCpTable::Area_I10a() const { return mArea_I10a; }
void CWindCpTable::Area_I1a(double value) { mArea_I1a = value; }
double CWindCpTable::Area_I1a() const { return mArea_I1a; }
void CWindCpTable::Area_J10(double value) { mArea_J10 = value; }
double CWindCpTable::Area_J10() const { return mArea_J10; }
void CWindCpTable::Area_J1(double value) { mArea_J1 = value; }
double CWindCpTable::Area_J1() const { return mArea_J1; }
void CWindCpTable::Area_J10a(double value) { mArea_J10a = value; }
double CWindCpTable::Area_J10a() const { return mArea_J10a; }
void CWindCpTable::Area_J1a(double value) { mArea_J1a = value; }
double CWindCpTable::Area_J1a() const { return mArea_J1a; }
void CWindCpTable::Area_K10(double value) { mArea_K10 = value; }
double CWindCpTable::Area_K10() const { return mArea_K10; }
void CWindCpTable::Area_K1(double value) { mArea_K1 = value; }
double CWindCpTable::Area_K1() const { return mArea_K1; }
void CWindCpTable::Area_L10(double value) { mArea_L10 = value; }
double CWindCpTable::Area_L10() const { return mArea_L10; }
void CWindCpTable::Area_L1(double value) { mArea_L1 = value; }
double CWindCpTable::Area_L1() const { return mArea_L1; }
void CWindCpTable::Area_M10(double value) { mArea_M10 = value; }
double CWindCpTable::Area_M10() const { return mArea_M10; }
void CWindCpTable::Area_M1(double value) { mArea_M1 = value; }
double CWindCpTable::Area_M1() const { return mArea_M1; }
void CWindCpTable::Area_N10(double value) { mArea_N10 = value; }
double CWindCpTable::Area_N10() const { return mArea_N10; }
void CWindCpTable::Area_N1(double value) { mArea_N1 = value; }
double CWindCpTable::Area_N1() const { return mArea_N1; }
void CWindCpTable::Area_A10(double value) { mArea_A10 = value; }
double CWindCpTable::Area_A10() const { return mArea_A10; }
void CWindCpTable::Area_A1(double value) { mArea_A1 = value; }
double CWindCpTable::Area_A1() const { return mArea_A1; }
void CWindCpTable::Area_B10(double value) { mArea_B10 = value; }
double CWindCpTable::Area_B10() const { return mArea_B10; }
void CWindCpTable::Area_B1(double value) { mArea_B1 = value; }
double CWindCpTable::Area_B1() const { return mArea_B1; }
void CWindCpTable::Area_C10(double value) { mArea_C10 = value; }
double CWindCpTable::Area_C10() const { return mArea_C10; }
void CWindCpTable::Area_C1(double value) { mArea_C1 = value; }
double CWindCpTable::Area_C1() const { return mArea_C1; }
void CWindCpTable::Area_D10(double value) { mArea_D10 = value; }
double CWindCpTable::Area_D10() const { return mArea_D10; }
void CWindCpTable::Area_D1(double value) { mArea_D1 = value; }
double CWindCpTable::Area_D1() const { return mArea_D1; }
void CWindCpTable::Area_E10(double value) { mArea_E10 = value; }
double CWindCpTable::Area_E10() const { return mArea_E10; }
void CWindCpTable::Area_E1(double value) { mArea_E1 = value; }
double CWindCpTable::Area_E1() const { return mArea_E1; }
void CWindCpTable::hpZuH(double value) { mhpZuH = value; }
double CWindCpTable::hpZuH() const { return mhpZuH; }
void CWindCpTable::rZuH(double value) { mrZuH = value; }
double CWindCpTable::rZuH() const { return mrZuH; }
void CWindCpTable::HzuD(double value) { mHzuD = value; }
double CWindCpTable::HzuD() const { return mHzuD; }
void CWindCpTable::AlphaTr(double value) { mAlphaTr = value; }
double CWindCpTable::AlphaTr() const { return mAlphaTr; }
void CWindCpTable::Area_K10a(double value) { mArea_K10a = value; }
double CWindCpTable::Area_K10a() const { return mArea_K10a; }
void CWindCpTable::Area_K1a(double value) { mArea_K1a = value; }
double CWindCpTable::Area_K1a() const { return mArea_K1a; }
void CWindCpTable::Area_L10a(double value) { mArea_L10a = value; }
double CWindCpTable::Area_L10a() const { return mArea_L10a; }
void CWindCpTable::Area_L1a(double value) { mArea_L1a = value; }
double CWindCpTable::Area_L1a() const { return mArea_L1a; }
void CWindCpTable::Area_M10a(double value) { mArea_M10a = value; }
double CWindCpTable::Area_M10a() const { return mArea_M10a; }
void CWindCpTable::Area_M1a(double value) { mArea_M1a = value; }
double CWindCpTable::Area_M1a() const { return mArea_M1a; }
void CWindCpTable::Area_N10a(double value) { mArea_N10a = value; }
double CWindCpTable::Area_N10a() const { return mArea_N10a; }
void CWindCpTable::Area_N1a(double value) { mArea_N1a = value; }
double CWindCpTable::Area_N1a() const { return mArea_N1a; }
void CWindCpTable::Area_A10a(double value) { mArea_A10a = value; }
double CWindCpTable::Area_A10a() const { return mArea_A10a; }
void CWindCpTable::Area_A1a(double value) { mArea_A1a = value; }
double CWindCpTable::Area_A1a() const { return mArea_A1a; }
void CWindCpTable::Area_B10a(double value) { mArea_B10a = value; }
double CWindCpTable::Area_B10a() const { return mArea_B10a; }
void CWindCpTable::Area_B1a(double value) { mArea_B1a = value; }
double CWindCpTable::Area_B1a() const { return mArea_B1a; }
void CWindCpTable::Area_C10a(double value) { mArea_C10a = value; }
double CWindCpTable::Area_C10a() const { return mArea_C10a; }
void CWindCpTable::Area_C1a(double value) { mArea_C1a = value; }
double CWindCpTable::Area_C1a() const { return mArea_C1a; }
void CWindCpTable::Area_D10a(double value) { mArea_D10a = value; }
double CWindCpTable::Area_D10a() const { return mArea_D10a; }
void CWindCpTable::Area_D1a(double value) { mArea_D1a = value; }
double CWindCpTable::Area_D1a() const { return mArea_D1a; }
void CWindCpTable::Area_E10a(double value) { mArea_E10a = value; }
double CWindCpTable::Area_E10a() const { return mArea_E10a; }
void CWindCpTable::Area_E1a(double value) { mArea_E1a = value; }
double CWindCpTable::Area_E1a() const { return mArea_E1a; }
void CWindCpTable::Area_Ft10(double value) { mArea_Ft10 = value; }
double CWindCpTable::Area_Ft10() const { return mArea_Ft10; }
void CWindCpTable::Area_Ft1(double value) { mArea_Ft1 = value; }
double CWindCpTable::Area_Ft1() const { return mArea_Ft1; }
void CWindCpTable::Area_Ft10a(double value) { mArea_Ft10a = value; }
double CWindCpTable::Area_Ft10a() const { return mArea_Ft10a; }
void CWindCpTable::Area_Ft1a(double value) { mArea_Ft1a = value; }
double CWindCpTable::Area_Ft1a() const { return mArea_Ft1a; }
void CWindCpTable::Norm(int32_t value) { mNorm = value; }
int32_t CWindCpTable::Norm() const { return mNorm; }
void CWindCpTable::TrTyp(int16_t value) { mTrTyp = value; }
int16_t CWindCpTable::TrTyp() const { return mTrTyp; }
void CWindCpTable::Mue(double value) { mMue = value; }
double CWindCpTable::Mue() const { return mMue; }
void CWindCpTable::Area_Inside(double value) { mArea_Inside = value; }
double CWindCpTable::Area_Inside() const { return mArea_Inside; }
void CWindCpTable::Area_Insidea(double value) { mArea_Insidea = value; }
double CWindCpTable::Area_Insidea() const { return mArea_Insidea; }

void CWindCpTable::Copy(const std::shared_ptr<CWindCpTable>& Dst) const {
    if (!Dst) Raise(err::ObjectNotSet, "CWindCpTable.Copy");
    CWindCpTable& d = *Dst;
    d.Alpha(Alpha());
    d.Theta(Theta());
    d.Area_F10(Area_F10());
    d.Area_F1(Area_F1());
    d.Area_F10a(Area_F10a());
    d.Area_F1a(Area_F1a());
    d.Area_G10(Area_G10());
    d.Area_G1(Area_G1());
    d.Area_G10a(Area_G10a());
    d.Area_G1a(Area_G1a());
    d.Area_H10(Area_H10());
    d.Area_H1(Area_H1());
    d.Area_H10a(Area_H10a());
    d.Area_H1a(Area_H1a());
    d.Area_I10(Area_I10());
    d.Area_I1(Area_I1());
    d.Area_I10a(Area_I10a());
    d.Area_I1a(Area_I1a());
    d.Area_J10(Area_J10());
    d.Area_J1(Area_J1());
    d.Area_J10a(Area_J10a());
    d.Area_J1a(Area_J1a());
    d.Area_K10(Area_K10());
    d.Area_K1(Area_K1());
    d.Area_K10a(Area_K10a());
    d.Area_K1a(Area_K1a());
    d.Area_L10(Area_L10());
    d.Area_L1(Area_L1());
    d.Area_L10a(Area_L10a());
    d.Area_L1a(Area_L1a());
    d.Area_M10(Area_M10());
    d.Area_M1(Area_M1());
    d.Area_M10a(Area_M10a());
    d.Area_M1a(Area_M1a());
    d.Area_N10(Area_N10());
    d.Area_N1(Area_N1());
    d.Area_N10a(Area_N10a());
    d.Area_N1a(Area_N1a());
    d.Area_A10(Area_A10());
    d.Area_A1(Area_A1());
    d.Area_A10a(Area_A10a());
    d.Area_A1a(Area_A1a());
    d.Area_B10(Area_B10());
    d.Area_B1(Area_B1());
    d.Area_B10a(Area_B10a());
    d.Area_B1a(Area_B1a());
    d.Area_C10(Area_C10());
    d.Area_C1(Area_C1());
    d.Area_C10a(Area_C10a());
    d.Area_C1a(Area_C1a());
    d.Area_D10(Area_D10());
    d.Area_D1(Area_D1());
    d.Area_D10a(Area_D10a());
    d.Area_D1a(Area_D1a());
    d.Area_E10(Area_E10());
    d.Area_E1(Area_E1());
    d.Area_E10a(Area_E10a());
    d.Area_E1a(Area_E1a());
    d.Area_Ft10(Area_Ft10());
    d.Area_Ft1(Area_Ft1());
    d.Area_Ft10a(Area_Ft10a());
    d.Area_Ft1a(Area_Ft1a());
    d.hpZuH(hpZuH());
    d.rZuH(rZuH());
    d.HzuD(HzuD());
    d.AlphaTr(AlphaTr());
    d.Norm(Norm());
    d.TrTyp(TrTyp());
    d.Mue(Mue());
    d.Area_Inside(Area_Inside());
    d.Area_Insidea(Area_Insidea());
}

std::shared_ptr<CWindCpTable> CWindCpTable::Clone() const {
    auto t = std::make_shared<CWindCpTable>();
    Copy(t);
    return t;
}

}  // namespace qvrl
