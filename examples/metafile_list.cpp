// Counts a metafile's records by kind, and prints its header.
//
//   metafile_list FILE.emf

#include <cstdio>
#include <map>
#include <string>

#include "qvcommon/Exceptions.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/ParseEmf.h"

class Listing : public CParseEmf {
public:
    std::map<std::string, int> m_counts;

    // Without this, a file that does not begin with a header would be processed as well.
    int ProcessMetafileRecords(CFile& file) override {
        m_firstRecord = 1;
        return CParseEmf::ProcessMetafileRecords(file);
    }

    // Called for every record. It is complete and may be read and changed within its size, but not kept.
    void ParseMetafileRecord(EmfRecord* record) override {
        char name[32] = {};
        GetFunctionNameFromId(record->type, name, sizeof name - 1);
        ++m_counts[name];
        CParseEmf::ParseMetafileRecord(record);  // calls the hooks below
    }

    // A few record types have their own hook. Word returns 0 beyond the record's end, so a damaged one is harmless.
    void OnHeader(EmfRecord* header) override {
        const auto at = [&](std::size_t offset) { return static_cast<int>(header->Word(offset)); };
        std::printf("bounds %d,%d to %d,%d\n", at(8), at(12), at(16), at(20));
    }
};

int main(int argc, char** argv) {
    QvReportUncaught();
    if (argc != 2) {
        std::fputs("usage: metafile_list FILE.emf\n", stderr);
        return 2;
    }
    Listing listing;
    const int complete = listing.ProcessFile(CFileUtils::GetLibraryPath(argv[1]));
    for (const auto& [name, count] : listing.m_counts) std::printf("%5d %s\n", count, name.c_str());
    if (!complete) {
        std::fputs("the file ends before its last record\n", stderr);
        return 1;
    }
    return 0;
}
