// The sheet that the programs of this folder draw, each on devices of its own.
#pragma once

#include <zenromath.h>

inline constexpr double kSheetMm = 200.0;  // at 1:1000 a millimetre of paper is a metre of ground
inline constexpr int kPixels = 1600;

inline void Frame(CTqDraw& dc) {
    const CTQPen pen(0, 0.5, DWORD{0x000000});
    dc.drawrect(10.0, 10.0, 190.0, 190.0);
}

// A pond, a wall, a boundary, and a row of trees, by their codes in the library's own symbols.
inline void Symbols() {
    const CTQPen pen(0, 0.2, DWORD{0x005A00});
    double pond[] = {30, 120, 90, 120, 100, 150, 80, 175, 40, 170, 30, 120};
    if (getsymbody(501) != 0) DrawHatch(6, pond, 501);
    double wallX[4000] = {20, 60, 110, 180}, wallY[4000] = {90, 100, 80, 95};
    if (getsymbody(204) != 0) PROCESSALL(4, wallX, wallY, 1, 204);
    double edgeX[4000] = {20, 70, 120, 180}, edgeY[4000] = {60, 40, 70, 50};
    if (getsymbody(360) != 0) PROCESSALL(4, edgeX, edgeY, 2, 360);
    for (int i = 0; i < 6; ++i)
        if (getsymbody(140) != 0) insert(120.0 + 10.0 * i, 150.0, 0.0, 140);
}

inline void Caption(CTqDraw& dc) {
    const CTQFont font(8.0, 4.0, 1, 0.0, 0);
    char text[] = "\xB2\xE2\xC1\xBF 1:1000";  // "surveying" in GBK
    dc.textout(20.0, 186.0, text, 0, 0);
}

// In the order that applications follow: layers, note classes, symbols, the context, its view, its clip area.
inline void Draw(HDC device) {
    SelectWorkingTqDC(nullptr);
    CTqDraw dc(0);
    ReadCengCi();
    dc.SetViewDrawDC(device, kPixels / kSheetMm, 0.0, 0.0, kPixels, kPixels, 0);
    dc.SetCutArea();
    dc.SetDoCut(1);
    Frame(dc);
    Symbols();
    Caption(dc);
    dc.ResetHdc(nullptr);
    SelectWorkingTqDC(nullptr);
}
