#pragma once

/// @file Asking for memory some time before it is read.

namespace qv {

/// A hint that the bytes at an address are wanted soon; it may point anywhere. A compiler without it does without. To be
/// called in the loop itself: compilers take a function that does nothing else for one that does nothing.
inline void Prefetch([[maybe_unused]] const void* address) {
#ifdef __GNUC__
    __builtin_prefetch(address);
#endif
}

}  // namespace qv
