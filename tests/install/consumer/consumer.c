/* One member of CWindSnow through the C API. */
#include <stdio.h>

#include "qvroofload.h"

int main(void) {
    qvrl_handle ws = 0;
    qvrl_value arg = qvrl_int16(5), r;
    if (qvrl_create("CWindSnow", &ws) != QVRL_OK ||
        qvrl_call(ws, "WindReferencePressure_DIN1055_4_2005", &arg, 1, &r) != QVRL_OK || r.type != QVRL_DOUBLE) {
        printf("error %d: %s\n", (int)qvrl_last_error_number(), qvrl_last_error_description());
        return 1;
    }
    printf("WindReferencePressure_DIN1055_4_2005(5) = %.15g\n", r.u.dbl);
    qvrl_value_clear(&r);
    return qvrl_release(ws) == QVRL_OK ? 0 : 1;
}
