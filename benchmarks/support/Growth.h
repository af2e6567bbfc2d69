#pragma once

#include <benchmark/benchmark.h>

/// Times `function` on an input of `size` and on one of four times that. The times are to be in about that relation.
#define QV_GROWTH(name, function, size) \
    BENCHMARK(function)->Name("Growth_" #name "/QvCommon")->Arg(size)->Arg(4 * (size))->UseRealTime()

/// What a call to the same operation makes of different input: as QV_GROWTH, with the arguments that `function` takes
/// after the state.
#define QV_GROWTH_OF(name, function, size, ...)    \
    BENCHMARK_CAPTURE(function, name, __VA_ARGS__) \
        ->Name("Growth_" #name "/QvCommon")        \
        ->Arg(size)                                \
        ->Arg(4 * (size))                          \
        ->UseRealTime()
