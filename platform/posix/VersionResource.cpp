#include "platform/VersionResource.h"

namespace qv::platform {

VersionResource::VersionResource(const std::string&) {}

std::string VersionResource::Value(const std::string&) const {
    return {};
}

}  // namespace qv::platform
