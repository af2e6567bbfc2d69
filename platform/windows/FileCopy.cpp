#include "platform/FileCopy.h"

#include <utility>

#include "platform/windows/FolderBody.h"
#include "platform/windows/WritableScope.h"

namespace qv::platform {
namespace {

struct Observer {
    const CopiedBytes& report;
    std::uint64_t before;
};

DWORD CALLBACK Tell(LARGE_INTEGER, LARGE_INTEGER copied, LARGE_INTEGER, LARGE_INTEGER, DWORD, DWORD, HANDLE, HANDLE,
                    void* data) {
    auto& observer = *static_cast<Observer*>(data);
    const auto now = static_cast<std::uint64_t>(copied.QuadPart);
    const std::uint64_t before = std::exchange(observer.before, now);
    if (now > before) observer.report(now - before);
    return PROGRESS_CONTINUE;
}

/// The system does not copy over a hidden or system file. The copy has the source's attributes.
Result<BOOL> Copy(const std::wstring& from, const std::wstring& to, Observer* observer) {
    const auto copy = [&] {
        return sys::CopyFileExW(from.c_str(), to.c_str(), observer ? &Tell : nullptr, observer, nullptr, DWORD{0});
    };
    const auto copied = copy();
    if (copied.error() != ERROR_ACCESS_DENIED) return copied;
    const auto attributes = sys::GetFileAttributesW(to.c_str());
    if (!attributes.ok() || !(attributes.value() & kHiddenOrSystem)) return copied;
    WritableScope replaced(to, attributes.value(), kHiddenOrSystem);
    const auto again = copy();
    if (again.ok()) replaced.Dismiss();
    return again;
}

}  // namespace

Status CopyWholeFile(const char* from, const char* to) {
    return Copy(WidePath(from), WidePath(to), nullptr).statusAt(from);
}

Status CopyFileIn(const Folder& from, const std::string& name, LastName, const Folder& to, const std::string& newName,
                  const CopiedBytes& copied) {
    Observer observer{copied, 0};
    const Status status = Copy(PathIn(from, name), PathIn(to, newName), copied ? &observer : nullptr).status();
    // Wine copies without the callback.
    FoundEntry copy;
    copy.name = newName;
    if (copied && status.ok() && observer.before == 0 && to.Find(copy).ok() && copy.size > 0) copied(copy.size);
    return status;
}

struct FileCopy::Body {
    const Folder& from;
    std::string name;
    LastName source;
    const Folder& to;
    std::string newName;
};

FileCopy::FileCopy(const Folder& from, const std::string& name, LastName source, const Folder& to,
                   const std::string& newName)
    : m_body(std::make_unique<Body>(Body{from, name, source, to, newName})) {}

FileCopy::FileCopy(FileCopy&&) noexcept = default;
FileCopy::~FileCopy() = default;

Status FileCopy::Commit(const CopiedBytes& copied) {
    return CopyFileIn(m_body->from, m_body->name, m_body->source, m_body->to, m_body->newName, copied);
}

}  // namespace qv::platform
