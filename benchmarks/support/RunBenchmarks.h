#pragma once

/// Runs the registered benchmarks in interleaved repetitions. Use it as a program's main.
///
/// With `--benchmark_out=FILE` the program prints errors alone, and the file, in JSON, has every repetition:
/// scripts/lib/ratios.py makes ratios of them.
int RunBenchmarks(int argc, char** argv);
