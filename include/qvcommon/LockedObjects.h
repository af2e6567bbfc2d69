#pragma once

/// @file Objects that threads share under locks of their own, in a map that hands them out locked.

#include "qvcommon/ReadWriteLock.h"
#include "qvcommon/framework/Collections.h"

class CLockedRef;
class CLockedObjectMap;

/// An object with a lock, which only references and maps take. A copy has a lock of its own that takes over the other one's
/// state, as CReadWriteLock says: copy an object that nobody holds or waits for, and the copy is free. The copy of a held
/// object stays held for ever, since no reference holds it: whoever asks for it waits without end. An object is not to be
/// assigned to while it is held.
class QVCOMMON_API CLockableObject {
public:
    virtual ~CLockableObject();

private:
    friend class CLockedRef;
    friend class CLockedObjectMap;

    void StartReadLock() { m_lock.StartRead(); }
    void StartWriteLock() { m_lock.StartWrite(); }
    // Whoever waits for the lock may delete the object before these have returned.
    void EndReadLock() { m_lock.EndReadOfDeleted(); }
    void EndWriteLock() { m_lock.EndWriteOfDeleted(); }

    CReadWriteLock m_lock;
};

/// Holds the read or write lock of one object, which CLockedObjectMap::GetAt gave it, until it ends. A reference is used by
/// one thread.
class QVCOMMON_API CLockedRef {
public:
    CLockedRef() = default;
    ~CLockedRef();
    CLockedRef(const CLockedRef&) = delete;
    CLockedRef& operator=(const CLockedRef&) = delete;

    /// Forgets the object, and with it the lock: for who has deleted the object.
    void SetDeleted() { m_object = nullptr; }

    /// The object held; null when there is none.
    CLockableObject* Get() const { return m_object; }

private:
    friend class CLockedObjectMap;

    void SetDetails(CLockableObject* object, int read);
    void Release();

    CLockableObject* m_object = nullptr;
    int m_read = 0;
};

/// Lockable objects by text keys, under a lock of its own. The objects are the caller's until Clear deletes them; the map's
/// own end deletes none.
///
/// Any thread may call any member. Each takes the map's lock, unless `lockMap` is 0, which is for a caller that holds it
/// already. The order is always the map's lock, then an object's: while GetAt waits for an object it holds the map for
/// reading, which keeps AddItem, SetAt, RemoveAt and Clear waiting, and with the first of those every reader. A thread that
/// holds an object for writing and asks for it again waits for ever.
class QVCOMMON_API CLockedObjectMap : public CMapStringToPtr {
public:
    /// 1 when the map has the key, else 0.
    int IsExist(const char* key);

    /// Lets `reference` hold the object of the key, for reading if `read` is non-zero, for writing otherwise; what it held
    /// before is released first. 1, or 0 when the key is absent, or has a null object, and the reference was left alone.
    int GetAt(const char* key, CLockedRef& reference, int read, int lockMap = 1);

    /// 1, or 0 when the key is there already; its object stays.
    int AddItem(const char* key, CLockableObject* object, int lockMap = 1);
    /// An object that the key had is neither unlocked nor deleted.
    void SetAt(const char* key, CLockableObject* object, int lockMap = 1);

    /// Takes the key away and waits, without the map's lock, until nobody holds its object. The object is the caller's
    /// then; null, at once, when the key is absent.
    CLockableObject* RemoveAt(const char* key, int lockMap = 1);

    /// Waits, with the map's lock, until nobody holds an object, and deletes it, one after the other. Null objects only go.
    void Clear();

private:
    CLockableObject* Find(const char* key) const;

    CReadWriteLock m_lock;
};
