#pragma once

/// @file Objects with individual locks that are shared between threads, in a map that returns them locked.

#include "qvcommon/ReadWriteLock.h"
#include "qvcommon/framework/Collections.h"

class CLockedRef;
class CLockedObjectMap;

/// An object with a lock, which only references and maps acquire. The lock of a copy starts with the other one's state,
/// as in CReadWriteLock: copy only an object that no thread holds or waits for; the copy is then unlocked. The copy of
/// a held object remains locked for ever, since no reference holds it: every later request deadlocks. An object must
/// not be assigned to while it is held.
class QVCOMMON_API CLockableObject {
public:
    virtual ~CLockableObject();

private:
    friend class CLockedRef;
    friend class CLockedObjectMap;

    void StartReadLock() { m_lock.StartRead(); }
    void StartWriteLock() { m_lock.StartWrite(); }
    // A waiting thread may delete the object before these have returned.
    void EndReadLock() { m_lock.EndReadOfDeleted(); }
    void EndWriteLock() { m_lock.EndWriteOfDeleted(); }

    CReadWriteLock m_lock;
};

/// Holds the read or write lock of one object, obtained from CLockedObjectMap::GetAt, until it is destroyed. Must be
/// used by one thread only.
class QVCOMMON_API CLockedRef {
public:
    CLockedRef() = default;
    ~CLockedRef();
    CLockedRef(const CLockedRef&) = delete;
    CLockedRef& operator=(const CLockedRef&) = delete;

    /// Drops the object and its lock without releasing it: for callers that have deleted the object.
    void SetDeleted() { m_object = nullptr; }

    /// Returns the held object; null if none exists.
    CLockableObject* Get() const { return m_object; }

private:
    friend class CLockedObjectMap;

    void SetDetails(CLockableObject* object, int read);
    void Release();

    CLockableObject* m_object = nullptr;
    int m_read = 0;
};

/// Lockable objects by string keys, protected by the map's own lock. The objects are owned by the caller until Clear
/// deletes them; the map's destructor deletes none.
///
/// Thread-safe. Each member takes the map's lock, unless `lockMap` is 0, which is for a caller that already holds it.
/// The lock order is always the map's lock, then an object's: while GetAt waits for an object it holds the map for
/// reading, which blocks AddItem, SetAt, RemoveAt and Clear, and once one of those waits, every reader. A thread that
/// holds an object for writing and requests it again deadlocks.
class QVCOMMON_API CLockedObjectMap : public CMapStringToPtr {
public:
    /// Returns 1 if the map contains the key, else 0.
    int IsExist(const char* key);

    /// Makes `reference` hold the object of the key, for reading if `read` is non-zero, otherwise for writing; what it
    /// held before is released first. Returns 1; 0, leaving the reference unchanged, if the key is absent or has a null
    /// object.
    int GetAt(const char* key, CLockedRef& reference, int read, int lockMap = 1);

    /// Adds an object. Returns 1; 0 if the key exists, keeping its object.
    int AddItem(const char* key, CLockableObject* object, int lockMap = 1);
    /// Adds or replaces an object. A replaced object is neither unlocked nor deleted.
    void SetAt(const char* key, CLockableObject* object, int lockMap = 1);

    /// Removes the key and waits, without the map's lock, until no reference holds its object. Returns the object,
    /// owned by the caller; null, at once, if the key is absent.
    CLockableObject* RemoveAt(const char* key, int lockMap = 1);

    /// Waits, holding the map's lock, until an object is no longer held, and deletes it, one object after another. Null
    /// objects are just removed.
    void Clear();

private:
    CLockableObject* Find(const char* key) const;

    CReadWriteLock m_lock;
};
