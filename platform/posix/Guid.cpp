#include "platform/Guid.h"

#include "platform/posix/System.h"

namespace qv::platform {

std::optional<Guid> NewGuid() {
    Guid guid{};
    for (std::size_t filled = 0; filled < guid.size();) {
        const auto got = sys::getrandom(guid.data() + filled, guid.size() - filled, 0);
        if (!got.ok()) return std::nullopt;
        filled += static_cast<std::size_t>(got.value());
    }
    guid[6] = static_cast<unsigned char>((guid[6] & 0x0F) | 0x40);  // RFC 4122: version 4, random
    guid[8] = static_cast<unsigned char>((guid[8] & 0x3F) | 0x80);  // and its variant
    return guid;
}

}  // namespace qv::platform
