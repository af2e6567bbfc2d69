#pragma once

/// @file The table of system calls: everything that platform/windows asks of the system goes through one of these objects,
/// which consult the fault injector in force (platform/SystemCalls.h). An entry has the name of the system's function and
/// its parameters, except where its comment says otherwise; a suffix tells entries of one function apart that differ in
/// kind.
///
/// Not in the table is what cannot fail or only computes: conversions, cases and types of characters, code pages, dates in
/// text (VarDateFromStr) and times of day; memory (GlobalAlloc and its kin, LocalFree, attribute lists' ends, values of a
/// version resource that has been read); pseudo handles, numbers and states of the calling process and thread
/// (GetCurrentProcess, GetFocus); cursors, default window procedures and the dispatch of messages; what a device context is
/// set to (SetStretchBltMode, SelectObject, GdiFlush); the run time's _isatty; threads and what they wait for; and clocks:
/// the library's has a seam of its own (platform/Clock.h), and the pumping of messages waits by the system's.

#include <windows.h>
// windows.h comes first.
#include <objbase.h>
#include <shellapi.h>
#include <wininet.h>

#include "platform/windows/SystemCall.h"

#define QV_SYSTEM_CALL_AS(entry, kind, rule, name, ...)                                      \
    inline constexpr SystemCall entry(CallKind::kind, #name, rule(), [](auto... arguments) { \
        return ::name(arguments...);                                                         \
    } __VA_OPT__(, ) __VA_ARGS__)
#define QV_SYSTEM_CALL(kind, rule, name) QV_SYSTEM_CALL_AS(name, kind, rule, name)
#define QV_TRANSFER(kind, rule, name) QV_SYSTEM_CALL_AS(name, kind, rule, name, CallTrait::Transfer)
#define QV_CLOSE(rule, name) QV_SYSTEM_CALL_AS(name, Close, rule, name, CallTrait::AlwaysMade)
#define QV_PROFILE_CALL(kind, rule, name)                           \
    inline constexpr SystemCall name(CallKind::kind, #name, rule(), \
                                     [](const char* file, auto... arguments) { return ::name(arguments..., file); })

namespace qv::platform::sys {

// Files and their contents.

QV_SYSTEM_CALL(Open, FailsWithMinusOne, CreateFileA);
QV_TRANSFER(Read, FailsWithZero, ReadFile);
QV_TRANSFER(Write, FailsWithZero, WriteFile);
QV_SYSTEM_CALL(Flush, FailsWithZero, FlushFileBuffers);
QV_SYSTEM_CALL(Seek, FailsWithZero, SetFilePointerEx);
QV_SYSTEM_CALL(Resize, FailsWithZero, SetEndOfFile);
QV_SYSTEM_CALL(Copy, FailsWithZero, CopyFileA);
QV_CLOSE(FailsWithZero, CloseHandle);

// What the file system keeps of a file, and of a volume. GetFileVersionInfo reads a resource of the file.

QV_SYSTEM_CALL(Status, FailsWithZero, GetFileSizeEx);
QV_SYSTEM_CALL(Status, FailsWithZero, GetFileInformationByHandle);
QV_SYSTEM_CALL(Status, FailsWithZero, GetFileAttributesExA);
QV_SYSTEM_CALL(Status, FailsWithMinusOne, GetFileAttributesA);
QV_SYSTEM_CALL(Status, FailsWithZero, GetShortPathNameA);
QV_SYSTEM_CALL(Status, FailsWithZero, GetFinalPathNameByHandleA);
QV_SYSTEM_CALL(Status, FailsWithZero, GetVolumeInformationA);
QV_SYSTEM_CALL(Status, FailsWithZero, GetVolumePathNameA);
QV_SYSTEM_CALL(ChangeStatus, FailsWithZero, SetFileAttributesA);
QV_SYSTEM_CALL(ChangeStatus, FailsWithZero, SetFileTime);
QV_SYSTEM_CALL(ChangeStatus, FailsWithZero, SetFileInformationByHandle);
QV_SYSTEM_CALL(Read, FailsWithZero, GetFileVersionInfoSizeA);
QV_SYSTEM_CALL(Read, FailsWithZero, GetFileVersionInfoA);

// Names and folders.

QV_SYSTEM_CALL(Remove, FailsWithZero, DeleteFileA);
QV_SYSTEM_CALL(Remove, FailsWithZero, RemoveDirectoryA);
QV_SYSTEM_CALL(Rename, FailsWithZero, MoveFileExA);
QV_SYSTEM_CALL(Rename, FailsWithZero, ReplaceFileA);
QV_SYSTEM_CALL(CreateFolder, FailsWithZero, CreateDirectoryA);
QV_SYSTEM_CALL_AS(CreateFileA_folder, OpenFolder, FailsWithMinusOne, CreateFileA);
QV_SYSTEM_CALL(ListFolder, FailsWithMinusOne, FindFirstFileA);
QV_SYSTEM_CALL(ListFolder, FailsWithZero, FindNextFileA);
QV_CLOSE(FailsWithZero, FindClose);
QV_SYSTEM_CALL(Other, FailsWithZero, GetFullPathNameA);
QV_SYSTEM_CALL(Other, FailsWithZero, GetCurrentDirectoryA);
QV_SYSTEM_CALL(Other, FailsWithZero, SetCurrentDirectoryA);
QV_SYSTEM_CALL(Other, FailsWithZero, GetTempPathA);
QV_SYSTEM_CALL(Other, FailsWithZero, GetWindowsDirectoryA);

// Watches.

QV_SYSTEM_CALL(Watch, FailsWithMinusOne, FindFirstChangeNotificationA);
QV_SYSTEM_CALL(Watch, FailsWithZero, FindNextChangeNotification);
QV_SYSTEM_CALL(Watch, FailsWithZero, CreateEventA);
QV_SYSTEM_CALL_AS(SetEvent, Watch, FailsWithZero, SetEvent, CallTrait::AlwaysMade);
QV_SYSTEM_CALL(Watch, FailsWithMinusOne, WaitForMultipleObjects);
QV_CLOSE(FailsWithZero, FindCloseChangeNotification);

// Windows and their messages. A window that is not found, and a message that does nothing, are answers.

QV_SYSTEM_CALL(Message, FailsWithZero, RegisterClassA);
QV_SYSTEM_CALL(Message, FailsWithZero, CreateWindowExA);
QV_SYSTEM_CALL_AS(DestroyWindow, Message, FailsWithZero, DestroyWindow, CallTrait::AlwaysMade);
QV_SYSTEM_CALL(Message, NeverFails, FindWindowA);
QV_SYSTEM_CALL(Message, NeverFails, IsWindow);
QV_SYSTEM_CALL(Message, NeverFails, GetDlgItem);
QV_SYSTEM_CALL(Message, NeverFails, GetWindowTextLengthA);
QV_SYSTEM_CALL(Message, NeverFails, GetWindowTextA);
QV_SYSTEM_CALL(Message, FailsWithZero, SetWindowTextA);
QV_SYSTEM_CALL(Message, NeverFails, SetFocus);
QV_SYSTEM_CALL(Message, NeverFails, GetWindowLongPtrA);
QV_SYSTEM_CALL(Message, NeverFails, SetWindowLongPtrA);
QV_SYSTEM_CALL(Message, NeverFails, SendMessageA);
QV_SYSTEM_CALL(Message, NeverFails, PeekMessageA);
QV_SYSTEM_CALL(Message, FailsWithMinusOne, MsgWaitForMultipleObjects);
QV_SYSTEM_CALL(Message, FailsWithZero, MessageBoxA);

// The clipboard, and drawing.

QV_SYSTEM_CALL(Other, FailsWithZero, OpenClipboard);
QV_SYSTEM_CALL(Other, FailsWithZero, EmptyClipboard);
QV_SYSTEM_CALL(Other, FailsWithZero, GetClipboardData);
QV_SYSTEM_CALL(Other, FailsWithZero, SetClipboardData);
QV_SYSTEM_CALL(Other, NeverFails, IsClipboardFormatAvailable);
QV_CLOSE(FailsWithZero, CloseClipboard);
QV_SYSTEM_CALL(Other, FailsWithZero, CreateCompatibleDC);
QV_SYSTEM_CALL(Other, FailsWithZero, CreateDIBSection);
QV_SYSTEM_CALL(Other, FailsWithZero, GetObjectType);
QV_SYSTEM_CALL(Other, FailsWithMinusOne, StretchDIBits);
QV_CLOSE(FailsWithZero, DeleteDC);
QV_CLOSE(FailsWithZero, DeleteObject);

// Processes, and what they take turns by. The name of a mutex counts as a path.

QV_SYSTEM_CALL(Process, FailsWithZero, CreatePipe);
QV_SYSTEM_CALL(Process, FailsWithZero, DuplicateHandle);
QV_SYSTEM_CALL(Process, FailsWithZero, InitializeProcThreadAttributeList);
QV_SYSTEM_CALL(Process, FailsWithZero, UpdateProcThreadAttribute);
QV_SYSTEM_CALL(Process, FailsWithZero, SetHandleInformation);
QV_SYSTEM_CALL(Process, FailsWithZero, CreateProcessA);
QV_SYSTEM_CALL(Process, FailsWithMinusOne, WaitForSingleObject);
QV_SYSTEM_CALL(Process, FailsWithZero, GetExitCodeProcess);
QV_SYSTEM_CALL(Process, FailsWithZero, TerminateProcess);
QV_SYSTEM_CALL(Process, FailsWithZero, SetConsoleCtrlHandler);
QV_SYSTEM_CALL(Lock, FailsWithZero, CreateMutexA);
QV_SYSTEM_CALL_AS(WaitForSingleObject_mutex, Lock, FailsWithMinusOne, WaitForSingleObject);
QV_SYSTEM_CALL_AS(ReleaseMutex, Lock, FailsWithZero, ReleaseMutex, CallTrait::AlwaysMade);

// Settings. The name of a registry key, or of a value in one, counts as a path.

QV_SYSTEM_CALL(Open, ReturnsError, RegCreateKeyExA);
QV_SYSTEM_CALL(Open, ReturnsError, RegOpenKeyExA);
QV_SYSTEM_CALL(Open, ReturnsError, RegOpenKeyExW);
QV_SYSTEM_CALL(Read, ReturnsError, RegQueryValueExA);
QV_SYSTEM_CALL(Read, ReturnsError, RegQueryValueExW);
QV_SYSTEM_CALL(Write, ReturnsError, RegSetValueExA);
QV_SYSTEM_CALL(Remove, ReturnsError, RegDeleteValueA);
QV_SYSTEM_CALL(Remove, ReturnsError, RegDeleteKeyA);
QV_CLOSE(ReturnsError, RegCloseKey);
// In a private profile the file comes first here: it is the path.
QV_PROFILE_CALL(Read, NeverFails, GetPrivateProfileStringA);
QV_PROFILE_CALL(Write, FailsWithZero, WritePrivateProfileStringA);

// The FTP client.

QV_SYSTEM_CALL(Open, FailsWithZero, InternetOpenA);
QV_SYSTEM_CALL(Open, FailsWithZero, InternetConnectA);
QV_SYSTEM_CALL(ListFolder, FailsWithZero, FtpFindFirstFileA);
QV_SYSTEM_CALL(ListFolder, FailsWithZero, InternetFindNextFileA);
QV_CLOSE(FailsWithZero, InternetCloseHandle);

// The user's locale and zone, and what a process asks for itself. A successful CoCreateGuid may tell more than S_OK.

QV_SYSTEM_CALL(Other, FailsWithZero, GetLocaleInfoW);
QV_SYSTEM_CALL(Other, FailsWithZero, GetCurrencyFormatW);
QV_SYSTEM_CALL(Other, FailsWithMinusOne, GetTimeZoneInformation);
QV_SYSTEM_CALL(Other, FailsWithZero, GetTimeZoneInformationForYear);
QV_SYSTEM_CALL(Other, FailsWithZero, GetUserNameA);
QV_SYSTEM_CALL(Other, FailsWithZero, FormatMessageA);
QV_SYSTEM_CALL(Other, FailsWithZero, GetModuleFileNameA);
QV_SYSTEM_CALL(Other, FailsWithZero, GetModuleHandleExA);
QV_SYSTEM_CALL(Other, FailsWithMinusOne, GetStdHandle);
inline constexpr SystemCall CoCreateGuid(CallKind::Other, "CoCreateGuid", ReturnsError(), [](GUID* id) {
    const HRESULT result = ::CoCreateGuid(id);
    return FAILED(result) ? result : S_OK;
});

// The shell. Its error numbers are partly its own.

QV_SYSTEM_CALL(Copy, ReturnsError, SHFileOperationA);

}  // namespace qv::platform::sys

#undef QV_SYSTEM_CALL
#undef QV_SYSTEM_CALL_AS
#undef QV_PROFILE_CALL
#undef QV_TRANSFER
#undef QV_CLOSE
