#pragma once

/// @file Plug-ins: shared libraries that a program loads while it runs. Loading one runs its code, so load none that others
/// than the program's users may write.

#include <list>

#include "qvcommon/framework/Collections.h"

/// The name of an exported function together with its type, stated once for all callers. The function has C linkage and,
/// on 32-bit Windows, the convention __cdecl. The type is the caller's word: a library cannot be asked for it.
///
///     inline constexpr CDllFunction<int(const char*)> kOpenDocument{"OpenDocument"};
///     instance.Get(kOpenDocument)("a.txt");
template <class Signature>
struct CDllFunction;

/// The only form that there is: a function's type.
template <class Result, class... Arguments>
struct CDllFunction<Result(Arguments...)> {
    /// What Find and Get return.
    using Pointer = Result(QVCOMMON_CALL*)(Arguments...);

    const char* name;  ///< as the library exports it; not copied  ///< as the library exports it; not copied
};

/// One loaded library, or none. It stays loaded for as long as the object lives; pointers into it end with the object. May
/// be moved, not copied. Any thread may call functions of a loaded library; one thread at a time loads and unloads.
class QVCOMMON_API CDllInstance {
public:
    CDllInstance() = default;
    /// Loads at once.
    explicit CDllInstance(const char* path) { Load(path); }
    CDllInstance(CDllInstance&& other) noexcept;
    CDllInstance& operator=(CDllInstance&& other) noexcept;
    ~CDllInstance();

    /// Unloads the present library and loads another one, by an absolute path. The libraries that it needs are searched for
    /// as the system does for it, never in the current folder.
    /// @throws CVorbexException* (severity 48, code 0) with the path and the system's own text for a file that is missing,
    /// no library, or one for another processor; none is loaded then.
    void Load(const char* path);
    /// Pointers into the library are then no longer valid. Without a library it does nothing.
    void Unload();
    /// Whether there is a library.
    bool IsLoaded() const { return m_library != nullptr; }
    /// Of the last successful Load.
    const CString& GetPath() const { return m_path; }

    /// The function; null when the library does not export it, or none is loaded.
    template <class Signature>
    typename CDllFunction<Signature>::Pointer Find(const CDllFunction<Signature>& function) const {
        return reinterpret_cast<typename CDllFunction<Signature>::Pointer>(Address(function.name));
    }
    /// The same, never null. @throws CVorbexException* (severity 48, code 0) naming library and function.
    template <class Signature>
    typename CDllFunction<Signature>::Pointer Get(const CDllFunction<Signature>& function) const {
        if (const auto found = Find(function)) return found;
        RaiseMissing(function.name);
    }

    /// Calls the function, which returns the version of the interface that the library was built for.
    /// @throws CVorbexException* (severity 48, code 0) when it is missing, or returns less than `lowest` or more than `highest`.
    void CheckVersion(const CDllFunction<int()>& function, int lowest, int highest) const;

private:
    void* Address(const char* name) const;
    [[noreturn]] void RaiseMissing(const char* name) const;

    void* m_library = nullptr;
    CString m_path;
};

/// The plug-ins of a program, found by name: NAME.dll on Windows, NAME.so or libNAME.so on Linux. They stay loaded for as
/// long as the loader lives, and are unloaded in the reverse order. One object, one thread.
class QVCOMMON_API DllLoader {
public:
    /// Without folders. Those that are added are searched in their order; no other is, and never the current one.
    DllLoader() = default;
    ~DllLoader();
    DllLoader(const DllLoader&) = delete;
    DllLoader& operator=(const DllLoader&) = delete;

    /// The path must be absolute; GetApplicationDirectory() + "plugins" is usual. @throws CInvalidArgException* otherwise.
    void AddFolder(const char* folder);
    /// Each library that is loaded from now on has to pass CDllInstance::CheckVersion.
    void SetVersion(const CDllFunction<int()>& function, int lowest, int highest);

    /// The library of that name, which is loaded when this is the first call for it. The reference is valid for the
    /// loader's life.
    /// @throws CInvalidArgException* for a name that is empty or has a separator or a colon in it.
    /// @throws CVorbexException* (severity 48, code 0) as CDllInstance has it, or when no folder has such a file.
    CDllInstance& Load(const char* name);
    /// The names of all libraries in the folders, each once, sorted; those that Load takes.
    CStringArray GetNames() const;

private:
    struct Loaded {
        CString name;
        CDllInstance library;
    };

    CString PathOf(const CString& name) const;

    CStringArray m_folders;
    std::list<Loaded> m_loaded;
    CString m_versionFunction;  // empty for none
    int m_lowest = 0, m_highest = 0;
};
