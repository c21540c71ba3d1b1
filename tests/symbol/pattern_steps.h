// A pattern laid along a line as its rules tell it, for comparison.
#pragma once

#include <utility>
#include <vector>

namespace zm::test {

struct Token {
    char letter;
    double value;
};

/// Takes a distance and a bearing for each token and draws on the working context with line, insert and pixel. The
/// pattern holds a gap and no companions. What it leaves in the arrays.
std::pair<std::vector<double>, std::vector<double>> LayStepByStep(const std::vector<Token>& tokens,
                                                                  std::vector<double> x, std::vector<double> y,
                                                                  double g);

}  // namespace zm::test
