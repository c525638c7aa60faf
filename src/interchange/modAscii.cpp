#include "interchange/modAscii.h"

namespace qvrl {

void SplitLongText(std::string& text) {
    for (;;) {
        if (text.size() <= 2) return;
        const size_t p = text.find("  ");
        if (p == std::string::npos) return;
        text.replace(p, 2, "\r\n");
    }
}

}  // namespace qvrl
