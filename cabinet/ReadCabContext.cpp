#include "cabinet/ReadCabContext.h"

#include "cabinet/MemberName.h"

using namespace qv::cabinet;

std::intptr_t CReadCab::Context::Notify(QvCabinetNotification::Type type, QvCabinetNotification& notification) {
    if (notification.attributes & kNameIsUtf8) {
        notification.name = FromMemberName(notification.name);
        notification.attributes &= static_cast<std::uint16_t>(~kNameIsUtf8);
    }
    return m_owner.Notify(type, notification);
}

bool CReadCab::Context::Close(Handle file) {
    const bool closed = OnDisk::Close(file);
    if (file == m_staged) {
        m_staged = kNoHandle;
        m_folder.Discard();
    }
    return closed;
}

Handle CReadCab::Context::Create(const Target& target) {
    qv::platform::FileHandle file = qv::platform::kNoFile;
    m_folder.SetRoot(target.root);
    if (m_folder.Create(target.names, file)) return kNoHandle;
    m_staged = m_files.Add(file, target.root + target.names.back().c_str());
    return m_staged;
}

bool CReadCab::Context::Complete(Handle file, const qv::platform::FileStamp* stamp) {
    if (file != m_staged) return Close(file);
    if (stamp) qv::platform::StampFile(m_files.SystemHandle(file), *stamp);
    m_staged = kNoHandle;
    if (OnDisk::Close(file)) return !m_folder.Commit();
    m_folder.Discard();
    return false;
}

void CReadCab::Context::Stamp(const Target& target, const qv::platform::FileStamp& stamp) {
    m_folder.SetRoot(target.root);
    m_folder.Stamp(target.names, stamp);
}

bool CReadCab::Context::MakeFolder(const Target& target) {
    m_folder.SetRoot(target.root);
    return !m_folder.MakeFolder(target.names);
}
