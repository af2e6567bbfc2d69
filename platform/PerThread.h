#pragma once

#include <utility>

namespace qv::platform {

/// Returns the calling thread's own object of a type, a default one at first. It is deleted when the thread ends, on
/// the main thread before objects of static lifetime are destroyed. Their destructors may still call this: they get
/// another object, which lives as long as the process.
template <class Type>
Type& OfThread() {
    // A pointer, which has no destructor and so stays valid. MinGW may free a thread's variables before it destroys
    // them; the pointer is then null again.
    static thread_local Type* object = nullptr;
    static thread_local struct Owner {
        ~Owner() { delete std::exchange(object, nullptr); }
    } owner;
    if (!object) object = new Type;
    return *object;
}

}  // namespace qv::platform
