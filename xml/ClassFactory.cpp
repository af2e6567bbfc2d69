#include "qvcommon/ClassFactory.h"

#include <map>
#include <mutex>

namespace {

struct Registry {
    std::mutex mutex;
    CQVClassFactory::Registration last = 0;
    struct Class {
        CQVClassFactory::Maker maker;
        CQVClassFactory::Registration registration;
    };
    std::map<std::string, Class, std::less<>> classes;
};

// Never destroyed: classes may be unregistered during process exit.
Registry& Known() {
    static auto* const registry = new Registry;
    return *registry;
}

template <class Condition>
bool Remove(std::string_view key, Condition condition) {
    Registry& known = Known();
    const std::lock_guard lock(known.mutex);
    const auto found = known.classes.find(key);
    if (found == known.classes.end() || !condition(found->second)) return false;
    known.classes.erase(found);
    return true;
}

}  // namespace

CQVClassFactory::Registration CQVClassFactory::Register(std::string_view key, Maker maker) {
    Registry& known = Known();
    const std::lock_guard lock(known.mutex);
    known.classes.insert_or_assign(std::string(key), Registry::Class{std::move(maker), known.last + 1});
    return ++known.last;
}

bool CQVClassFactory::Unregister(std::string_view key) {
    return Remove(key, [](const Registry::Class&) { return true; });
}

bool CQVClassFactory::Unregister(std::string_view key, Registration registration) {
    return Remove(key, [registration](const Registry::Class& found) { return found.registration == registration; });
}

CObject* CQVClassFactory::CreateObject(std::string_view key) {
    Registry& known = Known();
    Maker maker;
    {
        const std::lock_guard lock(known.mutex);
        const auto found = known.classes.find(key);
        if (found == known.classes.end()) return nullptr;
        maker = found->second.maker;
    }
    return maker();
}
