#pragma once

/// Runs the registered benchmarks in interleaved repetitions and prints, for each group, the time of every member relative
/// to the group's first: the median of the ratios of the repetitions. Use it as a program's main.
int RunWithRatios(int argc, char** argv);
