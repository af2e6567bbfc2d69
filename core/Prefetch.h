#pragma once

/// @file Prefetching of memory.

namespace qv {

/// Hints that the bytes at an address will be read soon; the address may be invalid. A no-op for compilers without
/// support. Must be used directly in the loop: compilers discard a function that does nothing else.
inline void Prefetch([[maybe_unused]] const void* address) {
#ifdef __GNUC__
    __builtin_prefetch(address);
#endif
}

}  // namespace qv
