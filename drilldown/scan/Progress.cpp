#include "../core/CDrillDown.h"

void CDrillDown::tdstar(int total, const char* text) {
    if (ProgressOpen != 0)
        ddstop();
    ProgressOpen = 0;
    d_pbar(text);
    dstart(static_cast<unsigned long>(total));
    ProgressOpen = 1;
}

void CDrillDown::ddstop() {
    if (ProgressOpen != 0)
        dstop();
    ProgressOpen = 0;
}
