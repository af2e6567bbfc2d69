#include "platform/Library.h"

#include "platform/Path.h"
#include "platform/posix/System.h"

namespace qv::platform {

LibraryHandle OpenLibrary(const char* path, std::string& problem) {
    const auto opened = sys::dlopen(NativePath(path).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (opened.ok()) return opened.value();
    const char* const reason = ::dlerror();  // of the last call on this thread
    problem = reason ? reason : "";
    return nullptr;
}

void* FindInLibrary(LibraryHandle library, const char* name) {
    return ::dlsym(library, name);
}

void CloseLibrary(LibraryHandle library) {
    ::dlclose(library);
}

std::vector<std::string> LibraryFileNames(std::string_view name) {
    const std::string file = std::string(name) + ".so";
    return {file, "lib" + file};
}

}  // namespace qv::platform
