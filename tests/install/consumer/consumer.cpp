// One member of CWindSnow from C++, and where the library found its data.
#include <cstdio>

#include "automation/CWindSnow.h"
#include "support/modLowLevel.h"

int main() {
    const qvrl::CWindSnow ws;
    std::printf("WindPressure_DIN1055_4_1986(8.1) = %.15g\n", ws.WindPressure_DIN1055_4_1986(8.1));
    std::printf("ProgramFolder = %s\n", qvrl::ProgramFolder().c_str());
    return 0;
}
