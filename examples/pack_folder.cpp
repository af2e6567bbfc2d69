// Packs a folder into a cabinet archive and unpacks it again, with progress, until done or the user presses Ctrl+C.
//
//   pack_folder FOLDER ARCHIVE.cab COPY

#include <clocale>
#include <csignal>
#include <cstdio>

#include "qvcommon/Cabinet.h"
#include "qvcommon/Exceptions.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/StandardStreams.h"

static volatile std::sig_atomic_t g_cancelled = 0;

// Called as work proceeds. An exception from an overridden member ends the archive, leaves nothing half written, and
// leaves Pack or Unpack.
static void ShowProgress(const char* verb, std::uint64_t bytes) {
    if (g_cancelled) ThrowQvCancelException();
    if (AfxIsErrorTerminal()) std::fprintf(stderr, "\r%s %llu KB", verb, static_cast<unsigned long long>(bytes >> 10));
}

// A program follows the work by overriding members of the engine. It must call the base's version.
class Packer : public CMakeCab {
    long Status(UINT type, DWORD first, DWORD second) override {
        if (type == 0) ShowProgress("packed", m_bytes += second);  // a block: its compressed and uncompressed size
        return CMakeCab::Status(type, first, second);
    }
    std::uint64_t m_bytes = 0;
};

class Unpacker : public CReadCab {
    void NotifyWritten(DWORD bytes) override { ShowProgress("unpacked", m_bytes += bytes); }
    int NotifyCloseFileInfo(QvCabinetNotification& member) override {
        std::printf("unpacked %s\n", member.name.AsStd().c_str());
        return CReadCab::NotifyCloseFileInfo(member);
    }
    std::uint64_t m_bytes = 0;
};

static void PackAndUnpack(const CString& folder, const CString& archive, const CString& copy) {
    std::puts("packing");
    std::fflush(stdout);
    // Packs on all cores. The first member is a list of names and folders, from which the tree is restored.
    Packer().Pack(folder, archive, 1);

    // Treat an archive from elsewhere as hostile: no name in it leads out of the target folder, and its expanded size
    // is limited. These limits are stricter than the defaults.
    Unpacker unpacker;
    QvCabinetLimits limits = unpacker.GetLimits();
    limits.totalSize = 1 << 30;
    unpacker.SetLimits(limits);
    unpacker.SetRestoreTimes(1);
    unpacker.Unpack(copy, archive);
}

int main(int argc, char** argv) try {
    QvReportUncaught();
    std::setlocale(LC_ALL, "");
    if (argc != 4) {
        std::fputs("usage: pack_folder FOLDER ARCHIVE.cab COPY\n", stderr);
        return 2;
    }
    std::signal(SIGINT, [](int) { g_cancelled = 1; });
    // Paths from outside have the system's form.
    PackAndUnpack(CFileUtils::GetLibraryPath(argv[1]), CFileUtils::GetLibraryPath(argv[2]),
                  CFileUtils::GetLibraryPath(argv[3]));
} catch (CVorbexCancelException* cancel) {
    cancel->Delete();
    std::fputs("cancelled\n", stderr);
    return 1;
} catch (CCabinetException* error) {  // its code distinguishes a damaged archive (4) from a full disk (8)
    std::fprintf(stderr, "%s (number %ld)\n", error->Describe().AsStd().c_str(), error->GetCode());
    error->Delete();
    return 1;
}
