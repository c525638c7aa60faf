#pragma once
// The public coefficient table: the host writes a request into it, a
// coefficient call overwrites all of it with the result. Accessors only store
// and return; nothing here checks, rounds or computes.
//
// The accessors are virtual, in the order of the automation interface, each
// write accessor before its read accessor: a reference may stand for an object
// of the host's making, and Copy and the record conversion write through
// whatever accessors that object has.

#include <cstdint>
#include <memory>

namespace qvrl {

class CWindCpTable {
public:
    CWindCpTable() = default;
    virtual ~CWindCpTable() = default;
    // An object has reference semantics: Clone makes the copy.
    CWindCpTable(const CWindCpTable&) = delete;
    CWindCpTable& operator=(const CWindCpTable&) = delete;

    // Request angles.
    virtual void Theta(double value);
    virtual double Theta() const;
    virtual void Alpha(double value);
    virtual double Alpha() const;

    // Zones F to J, all four slots.
    virtual void Area_F10(double value);
    virtual double Area_F10() const;
    virtual void Area_F1(double value);
    virtual double Area_F1() const;
    virtual void Area_F10a(double value);
    virtual double Area_F10a() const;
    virtual void Area_F1a(double value);
    virtual double Area_F1a() const;
    virtual void Area_G10(double value);
    virtual double Area_G10() const;
    virtual void Area_G1(double value);
    virtual double Area_G1() const;
    virtual void Area_G10a(double value);
    virtual double Area_G10a() const;
    virtual void Area_G1a(double value);
    virtual double Area_G1a() const;
    virtual void Area_H10(double value);
    virtual double Area_H10() const;
    virtual void Area_H1(double value);
    virtual double Area_H1() const;
    virtual void Area_H10a(double value);
    virtual double Area_H10a() const;
    virtual void Area_H1a(double value);
    virtual double Area_H1a() const;
    virtual void Area_I10(double value);
    virtual double Area_I10() const;
    virtual void Area_I1(double value);
    virtual double Area_I1() const;
    virtual void Area_I10a(double value);
    virtual double Area_I10a() const;
    virtual void Area_I1a(double value);
    virtual double Area_I1a() const;
    virtual void Area_J10(double value);
    virtual double Area_J10() const;
    virtual void Area_J1(double value);
    virtual double Area_J1() const;
    virtual void Area_J10a(double value);
    virtual double Area_J10a() const;
    virtual void Area_J1a(double value);
    virtual double Area_J1a() const;

    // Zones K to N, main slots.
    virtual void Area_K10(double value);
    virtual double Area_K10() const;
    virtual void Area_K1(double value);
    virtual double Area_K1() const;
    virtual void Area_L10(double value);
    virtual double Area_L10() const;
    virtual void Area_L1(double value);
    virtual double Area_L1() const;
    virtual void Area_M10(double value);
    virtual double Area_M10() const;
    virtual void Area_M1(double value);
    virtual double Area_M1() const;
    virtual void Area_N10(double value);
    virtual double Area_N10() const;
    virtual void Area_N1(double value);
    virtual double Area_N1() const;

    // Writes all 71 values into Dst through Dst's write accessors, in a fixed
    // order; Dst itself is not replaced. An empty Dst is error 91 and nothing
    // is written; a failing accessor stops the copy, earlier values stay written.
    virtual void Copy(const std::shared_ptr<CWindCpTable>& Dst) const;
    // A new, independent object with all 71 values of this one.
    virtual std::shared_ptr<CWindCpTable> Clone() const;
    // Wall zones A to E, main slots.
    virtual void Area_A10(double value);
    virtual double Area_A10() const;
    virtual void Area_A1(double value);
    virtual double Area_A1() const;
    virtual void Area_B10(double value);
    virtual double Area_B10() const;
    virtual void Area_B1(double value);
    virtual double Area_B1() const;
    virtual void Area_C10(double value);
    virtual double Area_C10() const;
    virtual void Area_C1(double value);
    virtual double Area_C1() const;
    virtual void Area_D10(double value);
    virtual double Area_D10() const;
    virtual void Area_D1(double value);
    virtual double Area_D1() const;
    virtual void Area_E10(double value);
    virtual double Area_E10() const;
    virtual void Area_E1(double value);
    virtual double Area_E1() const;

    // Request ratios and the mansard angle.
    virtual void hpZuH(double value);
    virtual double hpZuH() const;
    virtual void rZuH(double value);
    virtual double rZuH() const;
    virtual void HzuD(double value);
    virtual double HzuD() const;
    virtual void AlphaTr(double value);
    virtual double AlphaTr() const;

    // Zones K to N, second values.
    virtual void Area_K10a(double value);
    virtual double Area_K10a() const;
    virtual void Area_K1a(double value);
    virtual double Area_K1a() const;
    virtual void Area_L10a(double value);
    virtual double Area_L10a() const;
    virtual void Area_L1a(double value);
    virtual double Area_L1a() const;
    virtual void Area_M10a(double value);
    virtual double Area_M10a() const;
    virtual void Area_M1a(double value);
    virtual double Area_M1a() const;
    virtual void Area_N10a(double value);
    virtual double Area_N10a() const;
    virtual void Area_N1a(double value);
    virtual double Area_N1a() const;

    // Wall zones A to E, second values.
    virtual void Area_A10a(double value);
    virtual double Area_A10a() const;
    virtual void Area_A1a(double value);
    virtual double Area_A1a() const;
    virtual void Area_B10a(double value);
    virtual double Area_B10a() const;
    virtual void Area_B1a(double value);
    virtual double Area_B1a() const;
    virtual void Area_C10a(double value);
    virtual double Area_C10a() const;
    virtual void Area_C1a(double value);
    virtual double Area_C1a() const;
    virtual void Area_D10a(double value);
    virtual double Area_D10a() const;
    virtual void Area_D1a(double value);
    virtual double Area_D1a() const;
    virtual void Area_E10a(double value);
    virtual double Area_E10a() const;
    virtual void Area_E1a(double value);
    virtual double Area_E1a() const;

    // Pent roof low side.
    virtual void Area_Ft10(double value);
    virtual double Area_Ft10() const;
    virtual void Area_Ft1(double value);
    virtual double Area_Ft1() const;
    virtual void Area_Ft10a(double value);
    virtual double Area_Ft10a() const;
    virtual void Area_Ft1a(double value);
    virtual double Area_Ft1a() const;

    // Standard of the row; 32 bits here, though the Norm of CRoofLoad is 16.
    virtual void Norm(int32_t value);
    virtual int32_t Norm() const;

    // Flat roof eaves type.
    virtual void TrTyp(int16_t value);
    virtual int16_t TrTyp() const;

    // Internal pressure.
    virtual void Mue(double value);
    virtual double Mue() const;
    virtual void Area_Inside(double value);
    virtual double Area_Inside() const;
    virtual void Area_Insidea(double value);
    virtual double Area_Insidea() const;

private:
    double mTheta = 0.0;
    double mAlpha = 0.0;
    double mhpZuH = 0.0;
    double mrZuH = 0.0;
    double mHzuD = 0.0;
    double mAlphaTr = 0.0;
    double mArea_F10 = 0.0;
    double mArea_F1 = 0.0;
    double mArea_F10a = 0.0;
    double mArea_F1a = 0.0;
    double mArea_G10 = 0.0;
    double mArea_G1 = 0.0;
    double mArea_G10a = 0.0;
    double mArea_G1a = 0.0;
    double mArea_H10 = 0.0;
    double mArea_H1 = 0.0;
    double mArea_H10a = 0.0;
    double mArea_H1a = 0.0;
    double mArea_I10 = 0.0;
    double mArea_I1 = 0.0;
    double mArea_I10a = 0.0;
    double mArea_I1a = 0.0;
    double mArea_J10 = 0.0;
    double mArea_J1 = 0.0;
    double mArea_J10a = 0.0;
    double mArea_J1a = 0.0;
    double mArea_K10 = 0.0;
    double mArea_K1 = 0.0;
    double mArea_K10a = 0.0;
    double mArea_K1a = 0.0;
    double mArea_L10 = 0.0;
    double mArea_L1 = 0.0;
    double mArea_L10a = 0.0;
    double mArea_L1a = 0.0;
    double mArea_M10 = 0.0;
    double mArea_M1 = 0.0;
    double mArea_M10a = 0.0;
    double mArea_M1a = 0.0;
    double mArea_N10 = 0.0;
    double mArea_N1 = 0.0;
    double mArea_N10a = 0.0;
    double mArea_N1a = 0.0;
    double mArea_A10 = 0.0;
    double mArea_A1 = 0.0;
    double mArea_A10a = 0.0;
    double mArea_A1a = 0.0;
    double mArea_B10 = 0.0;
    double mArea_B1 = 0.0;
    double mArea_B10a = 0.0;
    double mArea_B1a = 0.0;
    double mArea_C10 = 0.0;
    double mArea_C1 = 0.0;
    double mArea_C10a = 0.0;
    double mArea_C1a = 0.0;
    double mArea_D10 = 0.0;
    double mArea_D1 = 0.0;
    double mArea_D10a = 0.0;
    double mArea_D1a = 0.0;
    double mArea_E10 = 0.0;
    double mArea_E1 = 0.0;
    double mArea_E10a = 0.0;
    double mArea_E1a = 0.0;
    double mArea_Ft10 = 0.0;
    double mArea_Ft1 = 0.0;
    double mArea_Ft10a = 0.0;
    double mArea_Ft1a = 0.0;
    int32_t mNorm = 0;
    int16_t mTrTyp = 0;
    double mMue = 0.0;
    double mArea_Inside = 0.0;
    double mArea_Insidea = 0.0;
};

}  // namespace qvrl
