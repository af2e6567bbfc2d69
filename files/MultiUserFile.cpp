#include "qvcommon/MultiUserFile.h"

#include "files/BackOff.h"

namespace {

/// Opens again while that fails with a sharing violation, at most `retries` times after the first attempt.
template <class TryOpen, class Wait>
BOOL OpenInTurn(TryOpen tryOpen, Wait wait, std::int32_t retries, CFileException* error) {
    CFileException local;
    CFileException& reason = error ? *error : local;
    for (std::int32_t attempt = 0;; ++attempt) {
        if (tryOpen(&reason)) return 1;
        if (reason.m_cause != CFileException::sharingViolation || attempt >= retries) return 0;
        wait();
    }
}

}  // namespace

BOOL CMultiUserFile::Open(const char* fileName, UINT openFlags, CFileException* error) {
    const CString name = fileName;  // may be this object's own name, which the first attempt clears
    const auto tryOpen = [&](CFileException* reason) { return CFile::Open(name, openFlags, reason); };
    return OpenInTurn(
        tryOpen, [this] { Wait(); }, m_retryCount, error);
}

BOOL CMultiUserFile::Open(CFile& file, const char* fileName, UINT openFlags, CFileException* error) {
    constexpr std::int32_t kRetries = 8;
    qv::BackOff backOff;
    const CString name = fileName;
    const auto tryOpen = [&](CFileException* reason) { return file.Open(name, openFlags, reason); };
    return OpenInTurn(
        tryOpen, [&] { backOff.Wait(); }, kRetries, error);
}

void CMultiUserFile::Wait() {
    qv::platform::Sleep(std::chrono::milliseconds(500));
}
