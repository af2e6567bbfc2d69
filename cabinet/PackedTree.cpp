#include "cabinet/PackedTree.h"

#include <optional>

#include "cabinet/Manifest.h"
#include "platform/FileOpen.h"
#include "qvcommon/FileFinder.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/framework/File.h"

namespace qv::cabinet {
namespace {

constexpr DWORD kDeviceAttribute = 0x40;

/// Returns nullopt for a file that can be packed.
std::optional<QvLeftOut> WhyFileIsLeftOut(const CString& path, const CFoundInfo& info, bool isAsked) {
    if (info.MatchesMask(kDeviceAttribute)) return QvLeftOut::OfCause(path, QvLeftOut::device);
    if (!isAsked) return std::nullopt;
    const platform::Status readable = platform::MayRead(path);
    if (readable.ok()) return std::nullopt;
    return QvLeftOut::OfError(path, static_cast<DWORD>(readable.error()), info.IsLink());
}

/// Collects the entries that the finder reports.
class Collection {
public:
    explicit Collection(ILeftOut* leftOut) : m_leftOut(leftOut) {}

    void Add(const CString& path, const CString& offset, const CFoundInfo& info) {
        // A name that contains the root's marker would be taken for the root when the archive is unpacked.
        if (offset.Find(kRoot) >= 0) return Refuse(path);
        if (info.IsDirectory()) return AddFolder(path, offset, info);
        const std::optional<QvLeftOut> reason = WhyFileIsLeftOut(path, info, m_leftOut != nullptr);
        if (reason) return Report(*reason);
        m_tree.entries.Add(kRoot + offset);
        m_tree.files.Add(path);
    }

    PackedTree Take() { return std::move(m_tree); }

private:
    void Report(const QvLeftOut& leftOut) {
        if (m_leftOut) m_leftOut->OnLeftOut(leftOut);
    }

    void Refuse(const CString& path) {
        if (!m_leftOut) AfxThrowFileException(CFileException::badPath, -1, path);
        QvLeftOut leftOut;
        leftOut.path = path;
        leftOut.reason.Format("archives cannot hold names with %s", kRoot);
        Report(leftOut);
    }

    void AddFolder(const CString& path, const CString& offset, const CFoundInfo& info) {
        if (info.IsLink()) Report(QvLeftOut::OfCause(path, QvLeftOut::linkedFolder));
        m_tree.entries.Add(kRoot + offset + '\\');
    }

    ILeftOut* const m_leftOut;
    PackedTree m_tree;
};

}  // namespace

PackedTree ListTree(const char* folder, int recurse, ILeftOut* leftOut) {
    FileFinder finder;
    finder.SetSearchPath(folder);
    finder.SetSearchMask("*.*");
    finder.SetRecurse(recurse);
    finder.SetIncludeDirectories(2);
    finder.SetLeftOut(leftOut);
    finder.Discover();
    Collection collection(leftOut);
    for (int i = 0; i < finder.GetFiles().GetSize(); ++i)
        collection.Add(finder.GetFiles()[i], finder.GetFileOffsets()[i], finder.GetFoundInfo()[i]);
    return collection.Take();
}

}  // namespace qv::cabinet
