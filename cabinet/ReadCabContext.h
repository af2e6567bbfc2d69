#pragma once

/// @file What CReadCab holds while it reads: the engine, and the files and folders that are made.

#include "cabinet/CabinetReader.h"
#include "cabinet/DiskFiles.h"
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

    std::intptr_t Notify(QvCabinetNotification::Type type, QvCabinetNotification& notification) override;
    /// Discards the file of Create that was not completed.
    bool Close(qv::cabinet::Handle file) override;

    /// kNoHandle when the file cannot be made.
    qv::cabinet::Handle Create(const Target& target);
    /// Closes a member's file; one that Create made takes its name.
    bool Complete(qv::cabinet::Handle file, const qv::platform::FileStamp* stamp);
    void Stamp(const Target& target, const qv::platform::FileStamp& stamp);
    bool MakeFolder(const Target& target);

    qv::cabinet::CabinetReader reader;

private:
    CReadCab& m_owner;
    qv::cabinet::TargetFolder m_folder;
    qv::cabinet::Handle m_staged = qv::cabinet::kNoHandle;  ///< of Create, until it is complete
};
