#include "platform/Guid.h"

#include <algorithm>

#include "platform/windows/System.h"

namespace qv::platform {
namespace {

unsigned char Byte(unsigned long value, int index) {
    return static_cast<unsigned char>(value >> (8 * index));
}

}  // namespace

std::optional<Guid> NewGuid() {
    GUID id{};
    if (!sys::CoCreateGuid(&id).ok()) return std::nullopt;
    Guid guid{Byte(id.Data1, 3), Byte(id.Data1, 2), Byte(id.Data1, 1), Byte(id.Data1, 0),
              Byte(id.Data2, 1), Byte(id.Data2, 0), Byte(id.Data3, 1), Byte(id.Data3, 0)};
    std::copy_n(id.Data4, sizeof id.Data4, guid.begin() + 8);
    return guid;
}

}  // namespace qv::platform
