#include "benchmarks/support/RunBenchmarks.h"
#include "tests/support/Child.h"

// Some benchmarks start this program again as their peer process.
int main(int argc, char** argv) {
    int exitStatus = 0;
    return RunChild(argc, argv, exitStatus) ? exitStatus : RunBenchmarks(argc, argv);
}
