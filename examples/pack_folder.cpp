// A folder packed into a cabinet archive, and unpacked again.
//
//   pack_folder FOLDER ARCHIVE.cab COPY

#include <clocale>
#include <cstdio>

#include "qvcommon/Cabinet.h"
#include "qvcommon/Exceptions.h"
#include "qvcommon/FileUtils.h"

// Overriding a step of the engine is how a program follows the work. The base's part has to be done all the same.
class Packer : public CMakeCab {
public:
    void AddFile(const char* path) override {
        CMakeCab::AddFile(path);
        ++m_files;
    }
    int m_files = 0;
};

class Unpacker : public CReadCab {
    int NotifyCloseFileInfo(QvCabinetNotification& member) override {
        std::printf("unpacked %s\n", static_cast<const char*>(member.name));
        return CReadCab::NotifyCloseFileInfo(member);
    }
};

int main(int argc, char** argv) try {
    std::setlocale(LC_ALL, "");
    if (argc != 4) {
        std::fputs("usage: pack_folder FOLDER ARCHIVE.cab COPY\n", stderr);
        return 2;
    }
    // Paths from outside come in the system's own form.
    const CString folder = CFileUtils::GetLibraryPath(argv[1]), archive = CFileUtils::GetLibraryPath(argv[2]),
                  copy = CFileUtils::GetLibraryPath(argv[3]);

    // Packs on all cores. A list of names and folders goes in as the first member, so that the tree can be built again.
    Packer packer;
    packer.Pack(folder, archive, 1);
    std::printf("packed %d files\n", packer.m_files);  // the list is one of them

    // An archive from elsewhere is hostile until it is unpacked: no name in it leads out of the target folder, and it may
    // not blow up beyond the limits. These are the defaults, made stricter.
    Unpacker unpacker;
    QvCabinetLimits limits = unpacker.GetLimits();
    limits.totalSize = 1 << 30;
    unpacker.SetLimits(limits);
    unpacker.SetRestoreTimes(1);
    unpacker.Unpack(copy, archive);
    return 0;
} catch (CVorbexException* error) {  // the engine's own: its code tells a damaged archive (4) from a full disk (8)
    std::fprintf(stderr, "%s (number %ld)\n", error->GetText().AsStd().c_str(), error->GetCode());
    error->Delete();
    return 1;
} catch (CException* error) {
    char reason[512] = {};
    error->GetErrorMessage(reason, sizeof reason - 1);
    error->Delete();
    std::fprintf(stderr, "%s\n", reason);
    return 1;
}
