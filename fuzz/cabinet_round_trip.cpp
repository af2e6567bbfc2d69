#include "fuzz/FuzzInput.h"
#include "tests/support/MemoryCabinets.h"

// The input is a size for the cabinets, then the members.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace qv::cabinet;
    if (size < 3) return 0;
    FuzzInput input(data + 3, size - 3);
    MemoryMaker maker;
    QvCabinetDescription cabinet;
    QvCabinetError error;
    cabinet.cabinetName = "set0";
    cabinet.maximumSize = 4000u + Get16(data);  // room for the list of all members that one block may contain
    cabinet.dataReserve = data[2];
    std::map<std::string, std::string> members;
    auto writer = CabinetWriter::Create(maker, cabinet, error, 1);
    bool added = writer != nullptr;
    for (int i = 0; i < 50 && !input.Rest().empty(); ++i) {
        const bool flush = input.Flag();
        const std::string_view text = input.Text();
        std::string content;
        // Repeated, so that short inputs reach block boundaries.
        for (std::size_t times = text.empty() ? 0 : 1 + static_cast<unsigned char>(text[0]) * 8; times > 0; --times)
            content += text.substr(0, 300);
        const std::string name = "m" + std::to_string(i);
        maker.files[name] = members[name] = content;
        added = added && writer->AddFile(CString(name), CString(name), false, flush ? kStored : kMszip);
        if (flush) added = added && writer->FlushFolder();
    }
    Require(added && writer->FlushCabinet(false), "everything is stored");
    MemoryReader reader;
    reader.files = maker.files;
    Require(reader.Copy() == 0 && reader.members == members, "everything is read back");
    return 0;
}
