#pragma once

/// Runs the registered benchmarks in interleaved repetitions. Intended as a program's main.
///
/// With `--benchmark_out=FILE` only errors are printed, and the JSON file has every repetition: scripts/lib/ratios.py
/// computes ratios from it.
int RunBenchmarks(int argc, char** argv);
