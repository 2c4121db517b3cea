// SPDX-License-Identifier: MIT
// An application in C++, found by CMake.
#include <cstdio>
#include <kv.h>

int main() {
    const double rounded = pround(2.0 / 3.0, -2);
    std::printf("%g\n", rounded);
    return rounded == 0.67 ? 0 : 1;
}
