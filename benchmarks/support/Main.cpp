#include "benchmarks/support/RatioReporter.h"

int main(int argc, char** argv) {
    return RunWithRatios(argc, argv);
}
