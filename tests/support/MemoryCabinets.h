#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "cabinet/CabinetReader.h"
#include "cabinet/CabinetWriter.h"

/// The cabinet engine's callbacks over files in memory. Any call can be made to fail.
template <class Interface>
class MemoryCalls : public Interface {
public:
    using Handle = qv::cabinet::Handle;

    std::map<std::string, std::string> files;
    long failingCall = -1;  ///< counted from 0
    long calls = 0;
    int allocated = 0, opened = 0;  ///< and not released
    int opens = 0;                  ///< for reading, in all
    bool failed = false;            ///< a call other than Close and Seek has failed

    void* Allocate(std::size_t size) override {
        if (Fails()) return nullptr;
        ++allocated;
        return std::malloc(size);
    }
    void Free(void* memory) override {
        if (memory) --allocated;
        std::free(memory);
    }
    Handle Open(const CString& path, qv::cabinet::OpenMode mode) override {
        const bool create = mode == qv::cabinet::OpenMode::Create;
        if (Fails() || (!create && !files.contains(path.AsStd()))) return qv::cabinet::kNoHandle;
        if (create) files[path.AsStd()].clear();
        ++opened;
        opens += !create;
        return Opened(path);
    }
    std::int64_t Read(Handle file, void* buffer, std::size_t size) override {
        if (Fails()) return -1;
        Place& place = At(file);
        const std::size_t count = files[place.path].copy(static_cast<char*>(buffer), size, place.at);
        place.at += count;
        return static_cast<std::int64_t>(count);
    }
    bool Write(Handle file, const void* data, std::size_t size) override {
        if (Fails()) return false;
        Place& place = At(file);
        files[place.path].replace(place.at, size, static_cast<const char*>(data), size);
        place.at += size;
        return true;
    }
    bool Close(Handle) override {
        --opened;
        return calls++ != failingCall;
    }
    std::int64_t Seek(Handle file, std::int64_t offset, qv::cabinet::Origin origin) override {
        if (calls++ == failingCall) return -1;
        Place& place = At(file);
        const std::size_t from = origin == qv::cabinet::Origin::Begin     ? 0
                                 : origin == qv::cabinet::Origin::Current ? place.at
                                                                          : files[place.path].size();
        place.at = std::min(from + static_cast<std::size_t>(offset), files[place.path].size());
        return static_cast<std::int64_t>(place.at);
    }

protected:
    struct Place {
        std::string path;
        std::size_t at;
    };

    bool Fails() {
        const bool fails = calls++ == failingCall;
        failed |= fails;
        return fails;
    }
    Handle Opened(const CString& path) {
        m_open.push_back({path.AsStd(), 0});
        return static_cast<Handle>(m_open.size());
    }
    Place& At(Handle file) { return m_open.at(static_cast<std::size_t>(file - 1)); }

private:
    std::vector<Place> m_open;
};

/// Makes cabinets called "set0", "set1" and so on.
class MemoryMaker : public MemoryCalls<qv::cabinet::IMakerCallbacks> {
public:
    Handle CreateStore() override { return Open(kStore, qv::cabinet::OpenMode::Create); }
    Handle CreateCabinet(const CString& path) override { return Open(path + kNew, qv::cabinet::OpenMode::Create); }
    bool Commit(Handle file) override {
        const bool committed = MemoryCalls::Close(file);
        std::string name = At(file).path;
        auto made = files.extract(name);
        if (!committed) return false;
        made.key() = name.substr(0, name.size() - std::string_view(kNew).size());
        files.erase(made.key());
        files.insert(std::move(made));
        return true;
    }
    bool Close(Handle file) override {
        const std::string& name = At(file).path;
        if (name == kStore || name.ends_with(kNew)) files.erase(name);
        return MemoryCalls::Close(file);
    }
    int FilePlaced(const QvCabinetDescription& cabinet, const CString& name, std::uint32_t, BOOL continued) override {
        placed += name.AsStd() + (continued ? "+" : "") + std::to_string(cabinet.cabinetNumber) + " ";
        return Answer();
    }
    long Status(qv::cabinet::StatusType, std::uint32_t, std::uint32_t) override { return Answer(); }
    int GetNextCabinet(QvCabinetDescription& cabinet, std::uint32_t) override {
        cabinet.cabinetName.Format("set%d", cabinet.cabinetNumber);
        changeNext(cabinet);
        return Fails() ? 0 : 1;
    }
    Handle GetOpenInfo(const CString& path, std::uint16_t& date, std::uint16_t& time,
                       std::uint16_t& attributes) override {
        date = 0x5A21;
        time = 0x6000;
        attributes = 0x20;
        return Open(path, qv::cabinet::OpenMode::Read);
    }

    std::string placed;  ///< each member and its cabinet's number, with "+" if it is continued
    std::function<void(QvCabinetDescription&)> changeNext = [](QvCabinetDescription&) {};

private:
    static constexpr const char *kStore = "store", *kNew = " being made";

    int Answer() { return Fails() ? -1 : 0; }
};

struct Made {
    bool done = false;
    QvCabinetError error;
};

/// Makes a cabinet, or a set, of the members by their names. A folder ends after the member "c".
inline Made Make(MemoryMaker& maker, const std::map<std::string, std::string>& members,
                 QvCabinetDescription cabinet = {}, int compression = qv::cabinet::kMszip, unsigned threads = 1) {
    Made made;
    maker.files.insert(members.begin(), members.end());
    cabinet.cabinetName = "set0";
    cabinet.diskName = "disk";
    cabinet.setId = 7;
    const auto writer = qv::cabinet::CabinetWriter::Create(maker, cabinet, made.error, threads);
    made.done = writer != nullptr;
    for (const auto& [name, content] : members) {
        made.done = made.done && writer->AddFile(CString(name), CString(name), false, compression);
        if (name == "c") made.done = made.done && writer->FlushFolder();
    }
    made.done = made.done && writer->FlushCabinet(false);
    return made;
}

/// Copies every member into `members`, and records the notifications.
class MemoryReader : public MemoryCalls<qv::cabinet::IReaderCallbacks> {
public:
    std::map<std::string, std::string> members;
    std::string notified;  ///< the types, as digits
    bool passOver = false;

    std::intptr_t Notify(QvCabinetNotification::Type type, QvCabinetNotification& notification) override {
        notified += static_cast<char>('0' + type);
        if (type == QvCabinetNotification::closeFileInfo && !Close(notification.file)) return 0;
        if (Fails()) return -1;
        if (type == QvCabinetNotification::copyFile)
            return passOver ? 0 : Open("target " + notification.name, qv::cabinet::OpenMode::Create);
        if (type != QvCabinetNotification::closeFileInfo) return 0;
        members[notification.name.AsStd()] = files["target " + notification.name.AsStd()];
        return 1;
    }

    /// Returns the error's number, 0 for success.
    int Copy(const char* name = "set0",
             const qv::cabinet::ReadLimits& limits = {1'000'000, std::uint64_t{1} << 36, 4096}) {
        QvCabinetError error;
        qv::cabinet::CabinetReader reader(*this, error);
        const bool copied = reader.Copy(name, "", limits);
        return copied == !error.failed ? error.error : -1;
    }
};

/// Returns the error of reading one cabinet. The reader must release everything, and what it reads must be a part of the
/// data, if that is given.
inline int ErrorOf(const std::string& cabinet, const std::string* data = nullptr) {
    MemoryReader reader;
    reader.files["set0"] = cabinet;
    const int error = reader.Copy();
    for (const auto& [name, content] : reader.members) EXPECT_TRUE(!data || data->find(content) != data->npos) << name;
    EXPECT_EQ(reader.opened, 0);
    EXPECT_EQ(reader.allocated, 0);
    return error;
}
