#pragma once

/// @file The state of CReadCab while it reads: the engine, and the files and folders being created. All of it is
/// inline: a member defined elsewhere would be exported with its outer class.

#include <optional>

#include "cabinet/CabinetReader.h"
#include "cabinet/DiskFiles.h"
#include "cabinet/Manifest.h"
#include "cabinet/MemberName.h"
#include "cabinet/TargetFolder.h"
#include "qvcommon/Cabinet.h"

/// A file or folder below a target folder.
struct CReadCab::Target {
    CString root;
    std::vector<std::string> names;
};

class CReadCab::Context : public qv::cabinet::OnDisk<qv::cabinet::IReaderCallbacks> {
public:
    explicit Context(CReadCab& owner) : reader(*this, owner.m_error), m_owner(owner) {}
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;
    ~Context() override { Unstage(); }

    CString FindName(const CString& folder, const CString& name) override {
        return qv::cabinet::FindNameOnDisk(folder, name);
    }

    void PassOver(const CString& name) override {
        m_owner.Tell(subject.IsEmpty() ? name : subject,
                     m_owner.GetFdiErrorString(qv::cabinet::NumberOf(qv::cabinet::ReadError::UnknownCompression)));
    }

    std::intptr_t Notify(QvCabinetNotification::Type type, QvCabinetNotification& notification) override {
        using namespace qv::cabinet;
        if (notification.attributes & kNameIsUtf8) {
            notification.name = FromMemberName(notification.name);
            notification.attributes &= static_cast<std::uint16_t>(~kNameIsUtf8);
        }
        return m_owner.Notify(type, notification);
    }

    bool Write(qv::cabinet::Handle file, const void* data, std::size_t size) override {
        if (!OnDisk::Write(file, data, size)) return false;
        if (file == m_staged) m_owner.NotifyWritten(static_cast<DWORD>(size));
        return true;
    }

    /// Discards the file of Create if it is not complete.
    bool Close(qv::cabinet::Handle file) override {
        if (file != m_staged) return OnDisk::Close(file);
        Unstage();
        m_folder.Discard();
        return true;
    }

    /// Returns kNoHandle if the file cannot be created.
    qv::cabinet::Handle Create(const Target& target) {
        qv::platform::FileHandle file = qv::platform::kNoFile;
        Unstage();  // an override has skipped the member before
        m_folder.SetRoot(target.root);
        if (!m_files.Note(m_folder.Create(target.names, file))) return qv::cabinet::kNoHandle;
        m_staged = m_files.Add(file);
        return m_staged;
    }

    /// Closes a member's file; one from Create gets its name.
    bool Complete(qv::cabinet::Handle file, const qv::platform::FileStamp* stamp) {
        if (file != m_staged) return Close(file);
        // A file system that does not store such times or attributes still keeps the file.
        if (stamp) qv::platform::StampFile(m_files.SystemHandle(file), *stamp).IgnoreError();
        Unstage();
        return m_files.Note(m_folder.Commit());
    }

    void Stamp(const Target& target, const qv::platform::FileStamp& stamp) {
        m_folder.SetRoot(target.root);
        // A file system that does not store such times or attributes still keeps the file.
        m_folder.Stamp(target.names, stamp).IgnoreError();
    }

    bool MakeFolder(const Target& target) {
        m_folder.SetRoot(target.root);
        return m_files.Note(m_folder.MakeFolder(target.names));
    }

    qv::cabinet::CabinetReader reader;
    CString subject;                                    ///< the path of the file or folder being created
    bool opensManifest = false;                         ///< set once it is opened
    std::optional<qv::cabinet::ManifestFile> manifest;  ///< while it is extracted and read

private:
    void Unstage() {
        m_files.Release(m_staged);
        m_staged = qv::cabinet::kNoHandle;
    }

    CReadCab& m_owner;
    qv::cabinet::TargetFolder m_folder;
    qv::cabinet::Handle m_staged = qv::cabinet::kNoHandle;  ///< from Create, until complete
};
