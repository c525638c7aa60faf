#pragma once
// The run-time error number a call raises, 0 when it returns normally.

#include <cstdint>

#include "support/errors.h"

namespace qvrl::test {

template <class F>
int32_t ErrorOf(F&& call) {
    try {
        call();
    } catch (const RuntimeError& e) {
        return e.number();
    }
    return 0;
}

}  // namespace qvrl::test
