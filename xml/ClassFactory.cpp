#include "qvcommon/ClassFactory.h"

#include <map>
#include <mutex>

namespace {

struct Registry {
    std::mutex mutex;
    std::map<std::string, CQVClassFactory::Maker, std::less<>> makers;
};

// Never destroyed: classes may be unregistered during process exit.
Registry& Known() {
    static auto* const registry = new Registry;
    return *registry;
}

}  // namespace

void CQVClassFactory::Register(std::string_view key, Maker maker) {
    Registry& known = Known();
    const std::lock_guard lock(known.mutex);
    known.makers.insert_or_assign(std::string(key), std::move(maker));
}

bool CQVClassFactory::Unregister(std::string_view key) {
    Registry& known = Known();
    const std::lock_guard lock(known.mutex);
    const auto maker = known.makers.find(key);
    if (maker == known.makers.end()) return false;
    known.makers.erase(maker);
    return true;
}

CObject* CQVClassFactory::CreateObject(std::string_view key) {
    Registry& known = Known();
    Maker maker;
    {
        const std::lock_guard lock(known.mutex);
        const auto found = known.makers.find(key);
        if (found == known.makers.end()) return nullptr;
        maker = found->second;
    }
    return maker();
}
