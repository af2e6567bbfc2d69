#pragma once

/// @file Plug-ins: shared libraries loaded at run time. Loading one runs its code, so never load a library that other
/// users can write.

#include <list>

#include "qvcommon/framework/Collections.h"

/// The name of an exported function together with its type, declared once for all callers. The function has C linkage
/// and, on 32-bit Windows, the calling convention __cdecl. The type cannot be checked against the library.
///
///     inline constexpr CDllFunction<int(const char*)> kOpenDocument{"OpenDocument"};
///     instance.Get(kOpenDocument)("a.txt");
template <class Signature>
struct CDllFunction;

/// The only specialization: a function type.
template <class Result, class... Arguments>
struct CDllFunction<Result(Arguments...)> {
    /// What Find and Get return.
    using Pointer = Result(QVCOMMON_CALL*)(Arguments...);

    const char* name;  ///< as exported by the library; not copied
};

/// A loaded library, or none. The library stays loaded for the lifetime of the object; pointers into it are invalid
/// afterwards. Movable, not copyable. Functions of a loaded library may be called from any thread; loading and
/// unloading are not thread-safe.
class QVCOMMON_API CDllInstance {
public:
    CDllInstance() = default;
    /// Calls Load.
    explicit CDllInstance(const char* path) { Load(path); }
    CDllInstance(CDllInstance&& other) noexcept;
    CDllInstance& operator=(CDllInstance&& other) noexcept;
    ~CDllInstance();

    /// Unloads the current library and loads another one, by absolute path. Its dependencies are searched for as the
    /// system does, but never in the current folder.
    /// @throws CVorbexException* (severity 48, code 0) with the path and the system's error text if the file is
    /// missing, is no library, or is for another processor; none is loaded then.
    void Load(const char* path);
    /// Unloads the library, which invalidates pointers into it. No-op without a library.
    void Unload();
    /// Returns whether a library is loaded.
    bool IsLoaded() const { return m_library != nullptr; }
    /// Returns the path of the last successful Load.
    const CString& GetPath() const { return m_path; }

    /// Returns the function; null if the library does not export it, or none is loaded.
    template <class Signature>
    typename CDllFunction<Signature>::Pointer Find(const CDllFunction<Signature>& function) const {
        return reinterpret_cast<typename CDllFunction<Signature>::Pointer>(Address(function.name));
    }
    /// Like Find, but never null. @throws CVorbexException* (severity 48, code 0) naming library and function.
    template <class Signature>
    typename CDllFunction<Signature>::Pointer Get(const CDllFunction<Signature>& function) const {
        if (const auto found = Find(function)) return found;
        RaiseMissing(function.name);
    }

    /// Calls the function, which must return the version of the interface that the library was built for.
    /// @throws CVorbexException* (severity 48, code 0) if it is missing, or returns less than `lowest` or more than
    /// `highest`.
    void CheckVersion(const CDllFunction<int()>& function, int lowest, int highest) const;

private:
    void* Address(const char* name) const;
    [[noreturn]] void RaiseMissing(const char* name) const;

    void* m_library = nullptr;
    CString m_path;
};

/// The plug-ins of a program, found by name: NAME.dll on Windows, NAME.so or libNAME.so on Linux. They stay loaded for
/// the lifetime of the loader, and are unloaded in reverse order. Not thread-safe.
class QVCOMMON_API DllLoader {
public:
    /// Starts without folders. Only added folders are searched, in their order; never the current folder.
    DllLoader() = default;
    ~DllLoader();
    DllLoader(const DllLoader&) = delete;
    DllLoader& operator=(const DllLoader&) = delete;

    /// Adds a folder by absolute path; GetApplicationDirectory() + "plugins" is usual. @throws CInvalidArgException*
    /// otherwise.
    void AddFolder(const char* folder);
    /// Requires each library loaded from now on to pass CDllInstance::CheckVersion.
    void SetVersion(const CDllFunction<int()>& function, int lowest, int highest);

    /// Returns the library of that name, loading it on the first call. The reference is valid for the lifetime of the
    /// loader.
    /// @throws CInvalidArgException* if the name is empty or contains a separator or a colon.
    /// @throws CVorbexException* (severity 48, code 0) as CDllInstance does, or if no folder contains such a file.
    CDllInstance& Load(const char* name);
    /// Returns the names accepted by Load of all libraries in the folders, sorted, without duplicates.
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
