#pragma once

/// @file Objects by name: who knows only a key gets an object of the class that was registered for it.

#include <functional>

#include "qvcommon/framework/String.h"

/// Makes objects of classes that are known by text keys. The classes are those of the whole process.
class QVCOMMON_API CQVClassFactory {
public:
    /// Makes a new object, which its caller owns.
    using Maker = std::function<CObject*()>;

    /// Makes the class known for a key, taking the place of what was there. Keys are compared byte by byte. Safe from any
    /// thread, as all members are; the maker runs on the thread that asks for an object.
    static void Register(std::string_view key, Maker maker);
    /// For a class with a default constructor.
    template <class T>
    static void Register(std::string_view key) {
        Register(key, [] { return static_cast<CObject*>(new T); });
    }
    /// @return true when the key was known.
    static bool Unregister(std::string_view key);
    /// A new object, owned by the caller; null for a key that nobody registered.
    static CObject* CreateObject(std::string_view key);
};
