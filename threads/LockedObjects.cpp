#include "qvcommon/LockedObjects.h"

namespace {

// Holds the map's lock for a scope, unless the caller holds it.
template <void (CReadWriteLock::*Start)(), void (CReadWriteLock::*End)()>
class MapLock {
public:
    MapLock(CReadWriteLock& lock, int wanted) : m_lock(wanted ? &lock : nullptr) {
        if (m_lock) (m_lock->*Start)();
    }
    ~MapLock() {
        if (m_lock) (m_lock->*End)();
    }
    MapLock(const MapLock&) = delete;
    MapLock& operator=(const MapLock&) = delete;

private:
    CReadWriteLock* m_lock;
};

using Reading = MapLock<&CReadWriteLock::StartRead, &CReadWriteLock::EndRead>;
using Writing = MapLock<&CReadWriteLock::StartWrite, &CReadWriteLock::EndWrite>;

}  // namespace

CLockableObject::~CLockableObject() = default;

CLockedRef::~CLockedRef() {
    Release();
}

void CLockedRef::SetDetails(CLockableObject* object, int read) {
    Release();
    m_object = object;
    m_read = read;
    if (read)
        object->StartReadLock();
    else
        object->StartWriteLock();
}

void CLockedRef::Release() {
    if (!m_object) return;
    if (m_read)
        m_object->EndReadLock();
    else
        m_object->EndWriteLock();
    m_object = nullptr;
}

CLockableObject* CLockedObjectMap::Find(const char* key) const {
    void* object = nullptr;
    Lookup(key, object);
    return static_cast<CLockableObject*>(object);
}

int CLockedObjectMap::IsExist(const char* key) {
    const Reading lock(m_lock, 1);
    void* object = nullptr;
    return Lookup(key, object);
}

int CLockedObjectMap::GetAt(const char* key, CLockedRef& reference, int read, int lockMap) {
    const Reading lock(m_lock, lockMap);
    CLockableObject* const object = Find(key);
    if (!object) return 0;
    reference.SetDetails(object, read);
    return 1;
}

int CLockedObjectMap::AddItem(const char* key, CLockableObject* object, int lockMap) {
    const Writing lock(m_lock, lockMap);
    void* present = nullptr;
    if (Lookup(key, present)) return 0;
    CMapStringToPtr::SetAt(key, object);
    return 1;
}

void CLockedObjectMap::SetAt(const char* key, CLockableObject* object, int lockMap) {
    const Writing lock(m_lock, lockMap);
    CMapStringToPtr::SetAt(key, object);
}

CLockableObject* CLockedObjectMap::RemoveAt(const char* key, int lockMap) {
    CLockableObject* object = nullptr;
    {
        const Writing lock(m_lock, lockMap);
        object = Find(key);
        RemoveKey(key);
    }
    if (!object) return nullptr;
    object->StartWriteLock();
    object->EndWriteLock();
    return object;
}

void CLockedObjectMap::Clear() {
    const Writing lock(m_lock, 1);
    for (const auto& [key, pointer] : *this) {
        auto* const object = static_cast<CLockableObject*>(pointer);
        if (!object) continue;
        object->StartWriteLock();
        object->EndWriteLock();
        delete object;
    }
    RemoveAll();
}
