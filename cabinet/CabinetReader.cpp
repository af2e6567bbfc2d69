#include "cabinet/CabinetReader.h"

#include <new>
#include <optional>

namespace qv::cabinet {
namespace {

/// Runs an operation; returns nullopt if it succeeds.
template <class Action>
std::optional<EngineFailure> FailureOf(Action action) {
    try {
        action();
        return std::nullopt;
    } catch (const EngineFailure& failure) {
        return failure;
    } catch (const std::bad_alloc&) {
        return ReadError::NoMemory;
    }
}

QvCabinetError RecordOf(const std::optional<EngineFailure>& failure) {
    return {failure ? failure->error : 0, 0, failure.has_value()};
}

/// A cabinet may only name its neighbours in the same folder.
bool IsBareName(std::string_view name) {
    return !name.empty() && name.find_first_of("\\/:") == name.npos && name != "." && name != "..";
}

}  // namespace

CabinetReader::CabinetReader(IReaderCallbacks& callbacks, QvCabinetError& error)
    : m_callbacks(callbacks), m_error(error) {}

CabinetReader::~CabinetReader() = default;

bool CabinetReader::IsCabinet(const CString& path, QvCabinetInfo& info) {
    return Run([&] { info = OpenPath(path, OpenCabinet::Depth::Head)->Info(); });
}

bool CabinetReader::FindFirst(CString& name, const CString& folder) {
    return Run([&] { GoBack(name, folder); });
}

bool CabinetReader::ReadFirstMember(const CString& path, MemberEntry& member) {
    bool exists = false;
    return Run([&] { exists = OpenPath(path)->NextMember(member); }) && exists;
}

template <class Action>
bool CabinetReader::Run(Action action) {
    m_where = {};
    const auto failure = FailureOf(action);
    m_error = RecordOf(failure);
    return !failure;
}

/// A cabinet names the one in which its continued members begin, which may be several cabinets before it.
void CabinetReader::GoBack(CString& name, const CString& folder) {
    auto cabinet = OpenPath(folder + name, OpenCabinet::Depth::Head);
    while (cabinet->Info().hasPrevious) {
        if (!IsBareName(cabinet->PreviousName())) throw EngineFailure{ReadError::Corrupt};
        const CString before = m_callbacks.FindName(folder, cabinet->PreviousName());
        const QvCabinetInfo info = cabinet->Info();
        cabinet = OpenPath(folder + before, OpenCabinet::Depth::Head);
        const bool fits = cabinet->Info().setId == info.setId && cabinet->Info().cabinetNumber < info.cabinetNumber;
        if (!fits || !cabinet->Info().hasNext) throw EngineFailure{ReadError::WrongCabinet};
        name = before;
    }
}

/// From here on, failures refer to this cabinet.
std::unique_ptr<OpenCabinet> CabinetReader::OpenPath(const CString& path, OpenCabinet::Depth depth) {
    m_where.cabinet = path;
    return std::make_unique<OpenCabinet>(m_callbacks, path, depth);
}

bool CabinetReader::Copy(const CString& name, const CString& folder, const ReadLimits& limits) {
    m_limits = limits;
    m_places.clear();
    m_present = 0;
    m_members = m_totalSize = m_cabinetSizes = 0;
    m_skippedMembers = 0;
    const bool copied = Run([&] {
        CopySet(name, folder);
        if (m_skippedMembers > 0) throw EngineFailure{ReadError::UnknownCompression};
    });
    m_stream.reset();
    if (m_error.error == NumberOf(ReadError::UnknownCompression) && m_skippedMembers > 0) {
        m_where = m_skipped;
        m_where.others = m_skippedMembers - 1;
    }
    return copied;
}

void CabinetReader::CopySet(const CString& name, const CString& folder) {
    auto cabinet = OpenPath(folder + name);
    m_stream = std::make_unique<FolderStream>(m_callbacks, [this](Serial serial) { return OpenPlace(serial); });
    Enter(*cabinet, name, folder);
    for (;;) {
        CopyCabinet(*cabinet);
        if (!cabinet->Info().hasNext) return FinishFolder();
        // The stream or Count may already have opened it.
        ++m_present;
        cabinet = m_present < m_places.size() ? OpenPlace(m_present) : FindNext(*cabinet);
    }
}

/// Registers a cabinet of the set when it is first opened.
void CabinetReader::Enter(const OpenCabinet& cabinet, const CString& name, const CString& folder) {
    m_places.push_back({name, folder, cabinet.Info().cabinetNumber, cabinet.Info().setId, cabinet.Info().hasNext != 0});
    m_cabinetSizes += cabinet.Info().size;
    QvCabinetNotification notification;
    notification.name = cabinet.NextName();
    notification.disk = cabinet.NextDisk();
    notification.path = folder;
    notification.setId = cabinet.Info().setId;
    notification.cabinetNumber = cabinet.Info().cabinetNumber;
    Notify(QvCabinetNotification::cabinetInfo, notification);
}

std::intptr_t CabinetReader::Notify(QvCabinetNotification::Type type, QvCabinetNotification& notification) {
    const std::intptr_t answer = m_callbacks.Notify(type, notification);
    if (answer == -1) throw EngineFailure{ReadError::Aborted};
    return answer;
}

/// For the stream and Count, and for cabinets that these have already reached.
std::unique_ptr<OpenCabinet> CabinetReader::OpenPlace(Serial serial) {
    if (serial < m_places.size()) return OpenPath(m_places[serial].folder + m_places[serial].name);
    const Place& last = m_places.back();
    return FindNext(*OpenPath(last.folder + last.name, OpenCabinet::Depth::Head));
}

/// Opens the cabinet after the last known one, where the callback says that it is.
std::unique_ptr<OpenCabinet> CabinetReader::FindNext(const OpenCabinet& cabinet) {
    if (!IsBareName(cabinet.NextName())) throw EngineFailure{ReadError::Corrupt};
    const Place before = m_places.back();
    QvCabinetNotification asked;
    asked.name = cabinet.NextName();
    asked.disk = cabinet.NextDisk();
    asked.path = before.folder;
    asked.setId = before.setId;
    asked.cabinetNumber = static_cast<std::uint16_t>(before.number + 1);
    if (asked.cabinetNumber == 0) throw EngineFailure{ReadError::WrongCabinet};
    std::optional<EngineFailure> failure;
    for (CString tried;;) {
        QvCabinetNotification notification = asked;
        Notify(QvCabinetNotification::nextCabinet, notification);
        const CString name = m_callbacks.FindName(notification.path, notification.name);
        const CString path = notification.path + name;
        if (failure && path == tried) throw *failure;
        tried = path;
        std::unique_ptr<OpenCabinet> next;
        failure = FailureOf([&] {
            next = OpenPath(path);
            const QvCabinetInfo& info = next->Info();
            const bool fits =
                info.setId == asked.setId && info.cabinetNumber == asked.cabinetNumber && info.hasPrevious;
            if (!fits) throw EngineFailure{ReadError::WrongCabinet};
        });
        asked.error = RecordOf(failure).error;
        if (failure) continue;
        Enter(*next, name, notification.path);
        return next;
    }
}

void CabinetReader::CopyCabinet(OpenCabinet& cabinet) {
    m_lastFolder = -1;
    m_goesOn = false;
    const CString path = m_places[m_present].folder + m_places[m_present].name;
    for (MemberEntry member; cabinet.NextMember(member);) {
        m_where.cabinet = path;
        CopyMember(member, cabinet);
        m_where.member.Empty();
    }
    QvCabinetNotification notification;
    notification.setId = cabinet.Info().setId;
    notification.cabinetNumber = cabinet.Info().cabinetNumber;
    Notify(QvCabinetNotification::enumerate, notification);
}

}  // namespace qv::cabinet
