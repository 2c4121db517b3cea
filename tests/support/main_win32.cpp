#include "tests/support/child_win32.hpp"
#include "tests/support/host.hpp"

int main(int argc, char **argv) {
    int result = 0;
    return kvtest::run_child_function(argc, argv, result) ? result : kvtest::run_tests(argc, argv);
}
