#pragma once

/// @file Creation of objects by the key under which their class is registered.

#include <cstdint>
#include <functional>

#include "qvcommon/framework/String.h"

/// Creates objects of registered classes. The registry is global to the process.
class QVCOMMON_API CQVClassFactory {
public:
    /// Creates a new object, owned by the caller.
    using Maker = std::function<CObject*()>;

    /// Identifies one call of Register; never 0.
    using Registration = std::uint64_t;

    /// Registers a class under a key, replacing an earlier one. Keys are compared byte by byte. Thread-safe, as all
    /// members are; the maker runs on the thread that requests the object.
    static Registration Register(std::string_view key, Maker maker);
    /// Registers a class with a default constructor.
    template <class T>
    static Registration Register(std::string_view key) {
        return Register(key, [] { return static_cast<CObject*>(new T); });
    }
    /// @return true if the key was registered.
    static bool Unregister(std::string_view key);
    /// Unregisters the key unless it has been registered again since. @return true if it was unregistered.
    static bool Unregister(std::string_view key, Registration registration);
    /// Returns a new object, owned by the caller; null if the key is not registered.
    static CObject* CreateObject(std::string_view key);
};
