#include <zenromath.h>

#include <cstdio>

int main() {
    // 30.5 degrees as packed degrees, minutes and seconds: 30.3000, that is 30 degrees 30 minutes.
    std::printf("%.4f\n", deg_dms(30.5));
    _LMsg("\xB2\xE2\xC1\xBF", nullptr, 0);  // "surveying" in GBK; shown in the terminal's encoding
    return 0;
}
