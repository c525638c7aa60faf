#pragma once
// Record fields by name, so that a test can state the few cells it expects and
// have every other field checked to be 0.

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "cp/CWindCpTable.h"
#include "cp/CpWindRecord.h"
#include "support/errors.h"

namespace qvrl::test {

struct CpField {
    std::string name;
    double CpWindRecord::*p;
};

// The 67 double fields of a record (the 60 zone slots named as "F10", "Ft1a").
inline const std::vector<CpField>& CpDoubleFields() {
    static const std::vector<CpField> fields = [] {
        std::vector<CpField> f = {{"Alpha", &CpWindRecord::Alpha}, {"Theta", &CpWindRecord::Theta},
                                  {"HPzuH", &CpWindRecord::HPzuH}, {"RzuH", &CpWindRecord::RzuH},
                                  {"HzuD", &CpWindRecord::HzuD},   {"AlphaTr", &CpWindRecord::AlphaTr}};
        for (const CpZoneSlots& z : kCpZones) {
            const std::string n = z.name;
            f.push_back({n + "10", z.s10});
            f.push_back({n + "1", z.s1});
            f.push_back({n + "10a", z.s10a});
            f.push_back({n + "1a", z.s1a});
        }
        f.push_back({"Mue", &CpWindRecord::Mue});
        f.push_back({"Innen", &CpWindRecord::Innen});
        f.push_back({"Innena", &CpWindRecord::Innena});
        return f;
    }();
    return fields;
}

using Cells = std::map<std::string, double>;

// The named cells hold exactly their values; every other field is 0 or empty.
inline void ExpectCells(const CpWindRecord& r, const Cells& cells) {
    size_t seen = 0;
    for (const CpField& f : CpDoubleFields()) {
        const auto it = cells.find(f.name);
        const double want = it == cells.end() ? 0.0 : it->second;
        if (it != cells.end()) ++seen;
        EXPECT_EQ(r.*f.p, want) << f.name;
    }
    EXPECT_EQ(seen, cells.size()) << "a cell name that is no field";
    EXPECT_EQ(r.Norm, 0);
    EXPECT_EQ(r.ID, 0);
    EXPECT_EQ(r.Typ, 0);
    EXPECT_EQ(r.TrTyp, 0);
    EXPECT_EQ(r.Remark, "");
}


// The 71 properties of the public table, in the order in which Copy and the
// record conversion write them, each with the record field it takes. Norm and
// TrTyp go through double here; the values used are whole numbers.
struct CpProperty {
    std::string name;
    std::string field;
    std::function<void(CWindCpTable&, double)> let;
    std::function<double(const CWindCpTable&)> get;
};

#define QVRL_CP_PROP(N, F)                                                      \
    CpProperty {                                                               \
        #N, F, [](CWindCpTable& t, double v) { t.N(static_cast<decltype(t.N())>(v)); }, \
            [](const CWindCpTable& t) { return static_cast<double>(t.N()); }   \
    }
#define QVRL_CP_AREA(Z, S) QVRL_CP_PROP(Area_##Z##S, #Z #S)

inline const std::vector<CpProperty>& CpProperties() {
    static const std::vector<CpProperty> props = {
        QVRL_CP_PROP(Alpha, "Alpha"), QVRL_CP_PROP(Theta, "Theta"),
        QVRL_CP_AREA(F, 10), QVRL_CP_AREA(F, 1), QVRL_CP_AREA(F, 10a), QVRL_CP_AREA(F, 1a),
        QVRL_CP_AREA(G, 10), QVRL_CP_AREA(G, 1), QVRL_CP_AREA(G, 10a), QVRL_CP_AREA(G, 1a),
        QVRL_CP_AREA(H, 10), QVRL_CP_AREA(H, 1), QVRL_CP_AREA(H, 10a), QVRL_CP_AREA(H, 1a),
        QVRL_CP_AREA(I, 10), QVRL_CP_AREA(I, 1), QVRL_CP_AREA(I, 10a), QVRL_CP_AREA(I, 1a),
        QVRL_CP_AREA(J, 10), QVRL_CP_AREA(J, 1), QVRL_CP_AREA(J, 10a), QVRL_CP_AREA(J, 1a),
        QVRL_CP_AREA(K, 10), QVRL_CP_AREA(K, 1), QVRL_CP_AREA(K, 10a), QVRL_CP_AREA(K, 1a),
        QVRL_CP_AREA(L, 10), QVRL_CP_AREA(L, 1), QVRL_CP_AREA(L, 10a), QVRL_CP_AREA(L, 1a),
        QVRL_CP_AREA(M, 10), QVRL_CP_AREA(M, 1), QVRL_CP_AREA(M, 10a), QVRL_CP_AREA(M, 1a),
        QVRL_CP_AREA(N, 10), QVRL_CP_AREA(N, 1), QVRL_CP_AREA(N, 10a), QVRL_CP_AREA(N, 1a),
        QVRL_CP_AREA(A, 10), QVRL_CP_AREA(A, 1), QVRL_CP_AREA(A, 10a), QVRL_CP_AREA(A, 1a),
        QVRL_CP_AREA(B, 10), QVRL_CP_AREA(B, 1), QVRL_CP_AREA(B, 10a), QVRL_CP_AREA(B, 1a),
        QVRL_CP_AREA(C, 10), QVRL_CP_AREA(C, 1), QVRL_CP_AREA(C, 10a), QVRL_CP_AREA(C, 1a),
        QVRL_CP_AREA(D, 10), QVRL_CP_AREA(D, 1), QVRL_CP_AREA(D, 10a), QVRL_CP_AREA(D, 1a),
        QVRL_CP_AREA(E, 10), QVRL_CP_AREA(E, 1), QVRL_CP_AREA(E, 10a), QVRL_CP_AREA(E, 1a),
        QVRL_CP_AREA(Ft, 10), QVRL_CP_AREA(Ft, 1), QVRL_CP_AREA(Ft, 10a), QVRL_CP_AREA(Ft, 1a),
        QVRL_CP_PROP(hpZuH, "HPzuH"), QVRL_CP_PROP(rZuH, "RzuH"), QVRL_CP_PROP(HzuD, "HzuD"),
        QVRL_CP_PROP(AlphaTr, "AlphaTr"), QVRL_CP_PROP(Norm, "Norm"), QVRL_CP_PROP(TrTyp, "TrTyp"),
        QVRL_CP_PROP(Mue, "Mue"), QVRL_CP_PROP(Area_Inside, "Innen"), QVRL_CP_PROP(Area_Insidea, "Innena"),
    };
    return props;
}
#undef QVRL_CP_AREA
#undef QVRL_CP_PROP

// A distinct whole-number-friendly value for property k: 1000 + k, so that a
// crossed wire shows as a wrong number, and Norm and TrTyp take it unchanged.
inline double DistinctValue(size_t k) { return 1000.0 + static_cast<double>(k); }

// A table whose write accessors fail at one named property, as an object of
// the host's making may; Copy and the conversion must stop right there.
class FailingTable : public CWindCpTable {
public:
    void FailAt(std::string name) { failAt_ = std::move(name); }
    using CWindCpTable::Theta;
    using CWindCpTable::Area_Ft10;
    using CWindCpTable::Norm;
    void Theta(double v) override {
        Check("Theta");
        CWindCpTable::Theta(v);
    }
    void Area_Ft10(double v) override {
        Check("Area_Ft10");
        CWindCpTable::Area_Ft10(v);
    }
    void Norm(int32_t v) override {
        Check("Norm");
        CWindCpTable::Norm(v);
    }

private:
    void Check(const char* name) const {
        if (failAt_ == name) Raise(err::InvalidCall, name);
    }
    std::string failAt_;
};

inline const char* const kFailPoints[] = {"Theta", "Area_Ft10", "Norm"};

// Runs write (a copy or a conversion that hands DistinctValue over) against a
// table failing at each point in turn: error 5 comes out, every property before the
// point holds its new value, the point and all after it still hold -1.
inline void ExpectStopsAtFailure(const std::function<void(const std::shared_ptr<CWindCpTable>&)>& write) {
    for (const char* point : kFailPoints) {
        SCOPED_TRACE(point);
        auto failing = std::make_shared<FailingTable>();
        for (const CpProperty& p : CpProperties()) p.let(*failing, -1.0);
        failing->FailAt(point);
        int32_t number = 0;
        try {
            write(failing);
        } catch (const RuntimeError& e) {
            number = e.number();
        }
        EXPECT_EQ(number, err::InvalidCall);
        bool before = true;
        for (size_t k = 0; k < CpProperties().size(); ++k) {
            const CpProperty& p = CpProperties()[k];
            if (p.name == point) before = false;
            EXPECT_EQ(p.get(*failing), before ? DistinctValue(k) : -1.0) << p.name;
        }
    }
}

}  // namespace qvrl::test
