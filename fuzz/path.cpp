#include <algorithm>
#include <string>

#include "fuzz/FuzzInput.h"
#include "platform/Path.h"

using qv::platform::LibraryName;
using qv::platform::LibraryPath;
using qv::platform::NativePath;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string native(FuzzInput(data, size).Rest()), library = LibraryPath(native);
    Require(NativePath(library) == native, "the way to the library's form and back loses nothing");
    Require(std::ranges::count(library, '\\') == std::ranges::count(native, '/'), "separators are separators alone");
    Require(library.find('/') == library.npos, "the library's form has one separator");
    const std::string name = native.substr(0, native.find('/'));
    Require(NativePath(LibraryName(name)) == name, "names are paths of one name");
    // Any text is a path: its meaning has a canonical library form.
    Require(NativePath(LibraryPath(NativePath(native))) == NativePath(native), "a path keeps its meaning");
    return 0;
}
