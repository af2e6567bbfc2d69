#include <wand/MagickWand.h>

#include "benchmarks/support/RatioReporter.h"

int main(int argc, char** argv) {
    MagickWandGenesis();
    const int status = RunWithRatios(argc, argv);
    MagickWandTerminus();
    return status;
}
