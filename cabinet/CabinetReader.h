#pragma once

/// @file The decompression context: reads cabinets.

#include <functional>
#include <memory>
#include <vector>

#include "cabinet/FolderStream.h"

namespace qv::cabinet {

/// What is refused as corrupt before any of it is given out. Each counts over the whole set.
struct ReadLimits {
    std::uint64_t members;
    std::uint64_t totalSize;  ///< of the members, as the cabinet states them
    std::uint64_t expansion;  ///< totalSize may be so many times the size of the cabinets
};

/// Copies members out of cabinets. Memory is bounded by about 2 MB and what the cabinet's own lists of folders take (8
/// bytes each); the time is in line with the data: members that overlap, and folders or members out of order, are corrupt.
/// The error record has to outlive the object.
class CabinetReader {
public:
    CabinetReader(IReaderCallbacks& callbacks, QvCabinetError& error);
    ~CabinetReader();
    CabinetReader(const CabinetReader&) = delete;
    CabinetReader& operator=(const CabinetReader&) = delete;

    /// Whether the file is a cabinet, by its head; then `info` is filled in. The error record tells why not.
    bool IsCabinet(const CString& path, QvCabinetInfo& info);

    /// Tells the callbacks of every member of a cabinet, and of the cabinets that continue it, and copies those that they
    /// open. @param folder  where the cabinet lies, with the final separator.
    /// @return false when that failed or was stopped; members that are complete stay, the handle of the last one was closed
    /// without the notification.
    bool Copy(const CString& name, const CString& folder, const ReadLimits& limits);

private:
    struct Place {
        CString name, folder;
        std::uint16_t number, setId;
    };

    void CopySet(const CString& name, const CString& folder);
    void CopyCabinet(OpenCabinet& cabinet);
    void CopyMember(const MemberEntry& member, const OpenCabinet& cabinet);
    void Extract(const MemberEntry& member, Handle target);
    void TellPartial(const MemberEntry& member, const OpenCabinet& cabinet);
    unsigned FolderOf(const MemberEntry& member, const OpenCabinet& cabinet) const;
    void CheckOrder(const MemberEntry& member, unsigned folder);
    void Count(const MemberEntry& member);
    std::unique_ptr<OpenCabinet> OpenPlace(Serial serial);
    std::unique_ptr<OpenCabinet> FindNext(const OpenCabinet& cabinet);
    void Enter(const OpenCabinet& cabinet, const CString& name, const CString& folder);
    std::intptr_t Notify(QvCabinetNotification::Type type, QvCabinetNotification& notification);

    IReaderCallbacks& m_callbacks;
    QvCabinetError& m_error;
    ReadLimits m_limits{};
    std::vector<Place> m_places;  ///< the cabinets that were opened, by their serials
    Serial m_present = 0;         ///< the cabinet whose members are gone through
    std::unique_ptr<FolderStream> m_stream;
    bool m_goesOn = false;        ///< the present cabinet's first folder began in one before
    int m_lastFolder = -1;        ///< of a member in the present cabinet
    std::uint64_t m_lastEnd = 0;  ///< of the members of that folder
    std::uint64_t m_members = 0, m_totalSize = 0, m_cabinetSizes = 0;
};

}  // namespace qv::cabinet
