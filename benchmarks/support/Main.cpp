#include "benchmarks/support/RunBenchmarks.h"

int main(int argc, char** argv) {
    return RunBenchmarks(argc, argv);
}
