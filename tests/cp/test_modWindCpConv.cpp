#include "cp/modWindCpConv.h"

#include <gtest/gtest.h>

#include <memory>

#include "cp/CpFields.h"
#include "cp/modWindCp.h"
#include "support/errors.h"

namespace qvrl {
namespace {

using test::CpProperties;
using test::DistinctValue;

// A record whose every handed-over field holds the DistinctValue of its property.
CpWindRecord DistinctRecord() {
    CpWindRecord r;
    for (size_t k = 0; k < CpProperties().size(); ++k) {
        const auto& p = CpProperties()[k];
        if (p.field == "Norm") {
            r.Norm = static_cast<int32_t>(DistinctValue(k));
        } else if (p.field == "TrTyp") {
            r.TrTyp = static_cast<int16_t>(DistinctValue(k));
        } else {
            bool found = false;
            for (const auto& f : test::CpDoubleFields()) {
                if (f.name == p.field) {
                    r.*f.p = DistinctValue(k);
                    found = true;
                }
            }
            EXPECT_TRUE(found) << p.field;
        }
    }
    r.ID = 77;
    r.Typ = 4;
    r.Remark = "not handed over";
    return r;
}

TEST(CpRecordToTable, EveryFieldReachesItsProperty) {
    CWindCpTable t;
    CpRecordToTable(DistinctRecord(), t);
    for (size_t k = 0; k < CpProperties().size(); ++k)
        EXPECT_EQ(CpProperties()[k].get(t), DistinctValue(k)) << CpProperties()[k].name;
}

TEST(CpRecordToTable, AZeroRecordClearsEverythingTheRequestIncluded) {
    auto t = std::make_shared<CWindCpTable>();
    for (const auto& p : CpProperties()) p.let(*t, 5.0);
    CpRecordToTable(CpWindRecord{}, t);
    for (const auto& p : CpProperties()) EXPECT_EQ(p.get(*t), 0.0) << p.name;
}

TEST(CpRecordToTable, StopsAtAFailingAccessor) {
    const CpWindRecord r = DistinctRecord();
    test::ExpectStopsAtFailure([&](const std::shared_ptr<CWindCpTable>& t) { CpRecordToTable(r, t); });
}

TEST(CpRecordToTable, AnEmptyTableIsError91) {
    try {
        CpRecordToTable(DistinctRecord(), std::shared_ptr<CWindCpTable>());
        ADD_FAILURE() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::ObjectNotSet);
    }
}

// A request as the host writes it, run the way a coefficient call runs it:
// read the inputs, select on the built-in route, convert.
struct Request {
    const char* what;
    void (*run)(CWindCpTable&);
    // Expected afterwards; every property not named reads 0.
    std::vector<std::pair<const char*, double>> after;
};

void Gabled(CWindCpTable& t) {
    CpWindRecord r;
    Get_Wind_Cp_Satteldach(t.Theta(), t.Alpha(), r);
    CpRecordToTable(r, t);
}
void Flat(CWindCpTable& t) {
    CpWindRecord r;
    Get_Wind_Cp_Flachdach(t.hpZuH(), t.rZuH(), t.AlphaTr(), r);
    CpRecordToTable(r, t);
}

TEST(CpRecordToTable, WhatTheRequestReadsAfterACall) {
    const Request cases[] = {
        {"gabled row 30: Theta reads the row's 0", Gabled,
         {{"Alpha", 30},     {"Area_F10", 0.7},  {"Area_F1", 0.7},   {"Area_F10a", -0.5}, {"Area_F1a", -1.5},
          {"Area_G10", 0.7}, {"Area_G1", 0.7},   {"Area_G10a", -0.5}, {"Area_G1a", -1.5}, {"Area_H10", 0.4},
          {"Area_H1", 0.4},  {"Area_H10a", -0.2}, {"Area_H1a", -0.2}, {"Area_I10", -0.4}, {"Area_I1", -0.4},
          {"Area_J10", -0.5}, {"Area_J1", -0.5}}},
        {"flat parapet 0.03: Alpha reads the ratio, hpZuH 0", Flat,
         {{"Alpha", 0.03},    {"Area_F10", -1.6}, {"Area_F1", -2.2}, {"Area_G10", -1.1}, {"Area_G1", -1.8},
          {"Area_H10", -0.7}, {"Area_H1", -1.2},  {"Area_I10", -0.6}, {"Area_I1", -0.6}, {"Area_I10a", 0.2},
          {"Area_I1a", 0.2}}},
    };
    for (const Request& c : cases) {
        SCOPED_TRACE(c.what);
        CWindCpTable t;
        for (const auto& p : CpProperties()) p.let(t, 0.25);  // Area_Inside among them
        t.Theta(10.0);
        t.Alpha(30.0);
        t.hpZuH(0.03);
        t.rZuH(0.1);
        t.HzuD(10.0);
        t.TrTyp(4);
        t.Norm(3);
        c.run(t);
        for (const auto& p : CpProperties()) {
            double want = 0.0;
            for (const auto& [name, v] : c.after)
                if (p.name == name) want = v;
            EXPECT_EQ(p.get(t), want) << p.name;
        }
    }
    // Outside every table: all 71 properties read 0.
    CWindCpTable t;
    for (const auto& p : CpProperties()) p.let(t, 0.25);
    t.Theta(91.0);
    Gabled(t);
    for (const auto& p : CpProperties()) EXPECT_EQ(p.get(t), 0.0) << p.name;
}

}  // namespace
}  // namespace qvrl
