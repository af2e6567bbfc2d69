#pragma once

#include <benchmark/benchmark.h>

/// Times `function` on inputs of `size` and of four times that. The times should have about that ratio.
#define QV_GROWTH(name, function, size) \
    BENCHMARK(function)->Name("Growth_" #name "/QvCommon")->Arg(size)->Arg(4 * (size))->UseRealTime()

/// The same operation on different input: like QV_GROWTH, with arguments for `function` after the state.
#define QV_GROWTH_OF(name, function, size, ...)    \
    BENCHMARK_CAPTURE(function, name, __VA_ARGS__) \
        ->Name("Growth_" #name "/QvCommon")        \
        ->Arg(size)                                \
        ->Arg(4 * (size))                          \
        ->UseRealTime()
