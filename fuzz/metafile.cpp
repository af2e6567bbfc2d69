// Reads arbitrary bytes as a metafile: the walk ends with a result or a documented error, and reports at most as many
// bytes as exist.

#include "fuzz/FuzzFile.h"
#include "fuzz/FuzzInput.h"
#include "qvcommon/Exceptions.h"
#include "qvcommon/ParseEmf.h"

namespace {

class Walk : public CParseEmf {
public:
    explicit Walk(bool checked) { m_firstRecord = checked; }

    void ParseGenericMetafileRecord(EmfRecord* record) override {
        passed += record->size;
        char name[32];
        GetFunctionNameFromId(record->type, name, sizeof name);
        CParseEmf::ParseGenericMetafileRecord(record);
    }

    std::size_t passed = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    static FuzzFile input("metafile");
    for (const bool checked : {false, true}) {
        Walk walk(checked);
        try {
            const int result = walk.ProcessMetafileRecords(input.Holding(data, size));
            Require(result == 0 || result == 1, "a result of 0 or 1");
        } catch (CVorbexException* error) {
            Require(error->GetCode() == 3 || error->GetCode() == 5, "a stated error");
            error->Delete();
        }
        Require(walk.passed <= size, "no more bytes than the file has");
    }
    return 0;
}
