#include "fuzz/FuzzInput.h"
#include "tests/support/MemoryCabinets.h"

// Arbitrary bytes, split at 0xFF 0xFE into the cabinets of a set.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view text = FuzzInput(data, size).Rest();
    MemoryReader reader;
    for (int i = 0; i < 4; ++i) {
        const std::size_t end = text.find("\xFF\xFE");
        reader.files["set" + std::to_string(i)] = std::string(text.substr(0, end));
        if (end == text.npos) break;
        text.remove_prefix(end + 2);
    }
    const int error = reader.Copy("set0", {1000, 1 << 22, 1000});
    Require(error >= 0 && error <= 11, "an error has a number of the table");
    Require(reader.opened == 0 && reader.allocated == 0, "everything is given back");
    return 0;
}
