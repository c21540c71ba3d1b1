// Text with its frame.
#include "draw/state.h"
#include "symbol/state.h"
#include "zenromath/draw.h"
#include "zenromath/symbol.h"

void _LDExText(double x, double y, char* text, int flags) {
    using zm::symbol::state;
    if (text == nullptr || zm::draw::NeedWorkingContext("_LDExText") == nullptr) return;
    if (TqDC->textRout(x, y, text, flags) == 0 || state().frameSwitch == 0) return;
    double corners[10];
    if (TqDC->Get4CC(x, y, corners, text) == 0) return;
    corners[8] = corners[0];
    corners[9] = corners[1];
    if (TqDC->IsRM() == 0) {
        TqDC->lines(5, corners);
        return;
    }
    // The corners are rotated already.
    double angle = 0.0;
    double cx = 0.0;
    double cy = 0.0;
    TqDC->GetRotateMoveP(angle, cx, cy);
    TqDC->SetRotateMoveP(0.0, 0.0, 0.0);
    TqDC->lines(5, corners);
    TqDC->SetRotateMoveP(angle, cx, cy);
}
