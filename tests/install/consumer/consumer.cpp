// The public C++ API from an installed copy: one member of CWindSnow, where
// the library found its data, and the other public objects put together.
#include <cstdio>

#include "automation/CAGS.h"
#include "automation/CRoofLoad.h"
#include "automation/CWindSnow.h"
#include "cp/CWindCpTable.h"
#include "cp/CpWindRecord.h"
#include "interchange/Records.h"
#include "support/errors.h"
#include "support/modLowLevel.h"
#include "support/vb.h"

int main() {
    const qvrl::CWindSnow ws;
    std::printf("WindPressure_DIN1055_4_1986(8.1) = %.15g\n", ws.WindPressure_DIN1055_4_1986(8.1));
    std::printf("ProgramFolder = %s\n", qvrl::ProgramFolder().c_str());
    qvrl::CAGS ags;
    std::printf("unknown town = '%s'\n", ags.GetTownName("00000000").c_str());
    return 0;
}
