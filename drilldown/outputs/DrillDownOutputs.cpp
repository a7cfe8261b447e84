// The analysis's side of the stand-alone result windows: the host's offer of each output,
// the refresh after a drill step, and the close.

#include "../core/CDrillDown.h"
#include "OutputTracker.h"

bool CDrillDown::BeforeRouteOutput(IDispatch* document) {
    if (StandAloneResults == 0)
        return false;
    return Outputs->Route(document);
}

int CDrillDown::AutoUpdate(unsigned short) {
    if (StandAloneResults == 0)
        return 0;
    Outputs->Update();
    return 1;
}

bool CDrillDown::OutputExists(unsigned int command, unsigned int number) const {
    return Outputs->Exists({command, number});
}

void CDrillDown::SetNextOutputID(unsigned int command, unsigned int number) {
    Outputs->SetNextKey({command, number});
}

void CDrillDown::BeforeClose() { Outputs->Clear(IsOleAutomation() == 0); }
