#pragma once

#include <functional>

#include "framework/FileFaults.h"

/// Makes calls to the file system fail for as long as it lives, as `before` decides.
class FileFaults : public qv::IFileFaults {
public:
    using Decision = std::function<qv::platform::FileFailure(qv::FileCall, const char*)>;

    explicit FileFaults(Decision before) : m_decision(std::move(before)), m_previous(qv::SetFileFaults(this)) {}
    ~FileFaults() override { qv::SetFileFaults(m_previous); }
    FileFaults(const FileFaults&) = delete;
    FileFaults& operator=(const FileFaults&) = delete;

    qv::platform::FileFailure Before(qv::FileCall call, const char* path) override { return m_decision(call, path); }

    /// Every call of one kind fails.
    static Decision Always(qv::FileCall failing, qv::platform::FileCause cause) {
        return [=](qv::FileCall call, const char*) {
            return call == failing ? qv::platform::FileFailure{cause, 5} : qv::platform::FileFailure{};
        };
    }

private:
    Decision m_decision;
    qv::IFileFaults* m_previous;
};
