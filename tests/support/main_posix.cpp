#include "tests/support/host.hpp"

int main(int argc, char **argv) {
    return kvtest::run_tests(argc, argv);
}
