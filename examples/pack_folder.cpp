// A folder packed into a cabinet archive, and unpacked again, with progress, until it is done or the user presses Ctrl+C.
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

// Called as work goes on. What an overridden step of the engine raises ends the archive, leaves nothing half written, and
// comes out of Pack or Unpack.
static void ShowProgress(const char* verb, std::uint64_t bytes) {
    if (g_cancelled) ThrowQvCancelException();
    if (AfxIsErrorTerminal()) std::fprintf(stderr, "\r%s %llu KB", verb, static_cast<unsigned long long>(bytes >> 10));
}

// Overriding a step of the engine is how a program follows the work. The base's part has to be done all the same.
class Packer : public CMakeCab {
    long Status(UINT type, DWORD first, DWORD second) override {
        if (type == 0) ShowProgress("packed", m_bytes += second);  // a block: its size compressed, and before that
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
    // Packs on all cores. A list of names and folders goes in as the first member, so that the tree can be built again.
    Packer().Pack(folder, archive, 1);

    // An archive from elsewhere is hostile until it is unpacked: no name in it leads out of the target folder, and it may
    // not blow up beyond the limits. These are the defaults, made stricter.
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
    // Paths from outside come in the system's own form.
    PackAndUnpack(CFileUtils::GetLibraryPath(argv[1]), CFileUtils::GetLibraryPath(argv[2]),
                  CFileUtils::GetLibraryPath(argv[3]));
} catch (CVorbexCancelException* cancel) {
    cancel->Delete();
    std::fputs("cancelled\n", stderr);
    return 1;
} catch (CCabinetException* error) {  // its code tells a damaged archive (4) from a full disk (8)
    std::fprintf(stderr, "%s (number %ld)\n", error->Describe().AsStd().c_str(), error->GetCode());
    error->Delete();
    return 1;
}
