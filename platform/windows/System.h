#pragma once

/// @file The table of system calls: all calls of platform/windows to the system use one of these objects, which consult
/// the installed fault injector (platform/SystemCalls.h). An entry has the name of the system's function and its
/// parameters, unless its comment says otherwise; a suffix distinguishes entries of one function that differ in kind.
///
/// Not in the table are functions that cannot fail or only compute: conversions, cases and types of characters, code
/// pages, dates in text (VarDateFromStr) and times of day; memory (GlobalAlloc and related functions, LocalFree,
/// deletion of attribute lists, ILFree, NetApiBufferFree, values of a version resource that has been read); pseudo
/// handles, numbers and states of the calling process and thread (GetCurrentProcess, GetFocus); CoUninitialize; loaded
/// libraries (GetProcAddress, FreeLibrary); cursors, default window procedures and the dispatch of messages; settings
/// of a device context (SetStretchBltMode, SelectObject, GdiFlush); the run time's _isatty; threads and their
/// synchronization; and clocks: the library's has its own interface (platform/Clock.h), and the pumping of messages
/// uses the system's.

#include <windows.h>
// windows.h must come first.
#include <lm.h>
#include <objbase.h>
#include <shellapi.h>
#include <shlobj.h>
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

QV_SYSTEM_CALL(Open, FailsWithMinusOne, CreateFileW);
QV_TRANSFER(Read, FailsWithZero, ReadFile);
QV_TRANSFER(Write, FailsWithZero, WriteFile);
QV_SYSTEM_CALL(Flush, FailsWithZero, FlushFileBuffers);
QV_SYSTEM_CALL(Seek, FailsWithZero, SetFilePointerEx);
QV_SYSTEM_CALL(Resize, FailsWithZero, SetEndOfFile);
QV_SYSTEM_CALL(Copy, FailsWithZero, CopyFileExW);
QV_CLOSE(FailsWithZero, CloseHandle);

// Metadata of a file, and of a volume. GetFileVersionInfo reads a resource of the file.

QV_SYSTEM_CALL(Status, FailsWithZero, GetFileSizeEx);
QV_SYSTEM_CALL(Status, FailsWithZero, GetFileInformationByHandle);
QV_SYSTEM_CALL(Status, FailsWithZero, GetFileAttributesExW);
QV_SYSTEM_CALL(Status, FailsWithMinusOne, GetFileAttributesW);
QV_SYSTEM_CALL(Status, FailsWithZero, GetShortPathNameW);
QV_SYSTEM_CALL(Status, FailsWithZero, GetFinalPathNameByHandleW);
QV_SYSTEM_CALL(Status, FailsWithZero, GetVolumeInformationW);
QV_SYSTEM_CALL(Status, FailsWithZero, GetVolumePathNameW);
QV_SYSTEM_CALL(ChangeStatus, FailsWithZero, SetFileAttributesW);
QV_SYSTEM_CALL(ChangeStatus, FailsWithZero, SetFileTime);
QV_SYSTEM_CALL(ChangeStatus, FailsWithZero, SetFileInformationByHandle);
QV_SYSTEM_CALL(Read, FailsWithZero, GetFileVersionInfoSizeW);
QV_SYSTEM_CALL(Read, FailsWithZero, GetFileVersionInfoW);

// Names and folders.

QV_SYSTEM_CALL(Remove, FailsWithZero, DeleteFileW);
QV_SYSTEM_CALL(Remove, FailsWithZero, RemoveDirectoryW);
QV_SYSTEM_CALL(Rename, FailsWithZero, MoveFileExW);
QV_SYSTEM_CALL(Rename, FailsWithZero, ReplaceFileW);
QV_SYSTEM_CALL(CreateFolder, FailsWithZero, CreateDirectoryW);
QV_SYSTEM_CALL_AS(CreateFileW_folder, OpenFolder, FailsWithMinusOne, CreateFileW);
QV_SYSTEM_CALL(ListFolder, FailsWithMinusOne, FindFirstFileW);
QV_SYSTEM_CALL(ListFolder, FailsWithZero, FindNextFileW);
QV_CLOSE(FailsWithZero, FindClose);
QV_SYSTEM_CALL(Other, FailsWithZero, GetFullPathNameW);
QV_SYSTEM_CALL(Other, FailsWithZero, GetCurrentDirectoryW);
QV_SYSTEM_CALL(Other, FailsWithZero, SetCurrentDirectoryW);
QV_SYSTEM_CALL(Other, FailsWithZero, GetTempPathW);
QV_SYSTEM_CALL(Other, FailsWithZero, GetWindowsDirectoryW);
QV_SYSTEM_CALL(Other, ReturnsError, SHGetFolderPathW);

// Watches.

QV_SYSTEM_CALL(Watch, FailsWithMinusOne, FindFirstChangeNotificationW);
QV_SYSTEM_CALL(Watch, FailsWithZero, FindNextChangeNotification);
QV_SYSTEM_CALL(Watch, FailsWithZero, CreateEventA);
QV_SYSTEM_CALL_AS(SetEvent, Watch, FailsWithZero, SetEvent, CallTrait::AlwaysMade);
QV_SYSTEM_CALL(Watch, FailsWithMinusOne, WaitForMultipleObjects);
QV_CLOSE(FailsWithZero, FindCloseChangeNotification);

// Windows and their messages. A window that is not found, and a message without effect, are not failures.

QV_SYSTEM_CALL(Message, FailsWithZero, RegisterClassA);
QV_SYSTEM_CALL(Message, FailsWithZero, CreateWindowExA);
QV_SYSTEM_CALL(Message, FailsWithZero, CreateWindowExW);
QV_SYSTEM_CALL_AS(DestroyWindow, Message, FailsWithZero, DestroyWindow, CallTrait::AlwaysMade);
QV_SYSTEM_CALL(Message, NeverFails, FindWindowA);
QV_SYSTEM_CALL(Message, NeverFails, IsWindow);
QV_SYSTEM_CALL(Message, NeverFails, GetDlgItem);
QV_SYSTEM_CALL(Message, NeverFails, GetWindowTextLengthW);
QV_SYSTEM_CALL(Message, NeverFails, GetWindowTextW);
QV_SYSTEM_CALL(Message, FailsWithZero, SetWindowTextW);
QV_SYSTEM_CALL(Message, NeverFails, SetFocus);
QV_SYSTEM_CALL(Message, NeverFails, GetWindowLongPtrA);
QV_SYSTEM_CALL(Message, NeverFails, SetWindowLongPtrA);
QV_SYSTEM_CALL(Message, NeverFails, SendMessageA);
QV_SYSTEM_CALL(Message, NeverFails, SendMessageW);
QV_SYSTEM_CALL(Message, FailsWithZero, ChangeWindowMessageFilterEx);
QV_SYSTEM_CALL(Message, NeverFails, PeekMessageA);
QV_SYSTEM_CALL(Message, FailsWithMinusOne, MsgWaitForMultipleObjects);
QV_SYSTEM_CALL(Message, FailsWithZero, MessageBoxW);

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
QV_SYSTEM_CALL(Other, FailsWithZero, StretchDIBits);
QV_SYSTEM_CALL(Other, NeverFails, RectVisible);
QV_CLOSE(FailsWithZero, DeleteDC);
QV_CLOSE(FailsWithZero, DeleteObject);

// Processes, and their synchronization. The name of a mutex counts as a path.

QV_SYSTEM_CALL(Process, FailsWithZero, CreatePipe);
QV_SYSTEM_CALL(Process, FailsWithZero, DuplicateHandle);
QV_SYSTEM_CALL(Process, FailsWithZero, InitializeProcThreadAttributeList);
QV_SYSTEM_CALL(Process, FailsWithZero, UpdateProcThreadAttribute);
QV_SYSTEM_CALL(Process, FailsWithZero, SetHandleInformation);
QV_SYSTEM_CALL(Process, FailsWithZero, CreateProcessW);
QV_SYSTEM_CALL(Process, FailsWithMinusOne, WaitForSingleObject);
QV_SYSTEM_CALL(Process, FailsWithZero, GetExitCodeProcess);
QV_SYSTEM_CALL(Process, FailsWithZero, TerminateProcess);
QV_SYSTEM_CALL(Process, FailsWithZero, SetConsoleCtrlHandler);
QV_SYSTEM_CALL(Lock, FailsWithZero, LockFileEx);
QV_SYSTEM_CALL(Lock, FailsWithZero, CreateMutexA);
QV_SYSTEM_CALL_AS(WaitForSingleObject_mutex, Lock, FailsWithMinusOne, WaitForSingleObject);
QV_SYSTEM_CALL_AS(ReleaseMutex, Lock, FailsWithZero, ReleaseMutex, CallTrait::AlwaysMade);

// Settings. The name of a registry key, or of a value in one, counts as a path.

QV_SYSTEM_CALL(Open, ReturnsError, RegCreateKeyExW);
QV_SYSTEM_CALL(Open, ReturnsError, RegOpenKeyExW);
QV_SYSTEM_CALL(Read, ReturnsError, RegQueryValueExW);
QV_SYSTEM_CALL(Write, ReturnsError, RegSetValueExW);
QV_SYSTEM_CALL(Remove, ReturnsError, RegDeleteValueW);
QV_SYSTEM_CALL(Remove, ReturnsError, RegDeleteKeyW);
QV_SYSTEM_CALL(Remove, ReturnsError, RegDeleteTreeW);
QV_SYSTEM_CALL(Read, ReturnsError, RegEnumKeyExW);
QV_SYSTEM_CALL(Read, ReturnsError, RegEnumValueW);
QV_CLOSE(ReturnsError, RegCloseKey);
// The file of a private profile is the first parameter here: it is the path.
QV_PROFILE_CALL(Read, NeverFails, GetPrivateProfileStringA);
QV_PROFILE_CALL(Write, FailsWithZero, WritePrivateProfileStringA);

// The FTP client.

QV_SYSTEM_CALL(Open, FailsWithZero, InternetOpenA);
QV_SYSTEM_CALL(Open, FailsWithZero, InternetConnectA);
QV_SYSTEM_CALL(ListFolder, FailsWithZero, FtpFindFirstFileA);
QV_SYSTEM_CALL(ListFolder, FailsWithZero, InternetFindNextFileA);
QV_CLOSE(FailsWithZero, InternetCloseHandle);

// The user's locale and zone, and queries of the process's own state. A successful CoCreateGuid may return values other
// than S_OK.

QV_SYSTEM_CALL(Other, FailsWithZero, GetLocaleInfoW);
QV_SYSTEM_CALL(Other, FailsWithZero, GetCurrencyFormatW);
QV_SYSTEM_CALL(Other, FailsWithMinusOne, GetTimeZoneInformation);
QV_SYSTEM_CALL(Other, FailsWithZero, GetTimeZoneInformationForYear);
QV_SYSTEM_CALL(Other, FailsWithZero, GetUserNameW);
QV_SYSTEM_CALL(Other, FailsWithZero, FormatMessageW);
QV_SYSTEM_CALL(Other, ReturnsError, NetUserEnum);
QV_SYSTEM_CALL(Other, ReturnsError, NetUserGetInfo);
QV_SYSTEM_CALL(Other, FailsWithZero, GetComputerNameExW);
QV_SYSTEM_CALL(Other, FailsWithZero, GetModuleFileNameW);
QV_SYSTEM_CALL(Other, FailsWithZero, GetModuleHandleExA);
QV_SYSTEM_CALL(Other, FailsWithMinusOne, GetStdHandle);
inline constexpr SystemCall CoCreateGuid(CallKind::Other, "CoCreateGuid", ReturnsError(), [](GUID* id) {
    const HRESULT result = ::CoCreateGuid(id);
    return FAILED(result) ? result : S_OK;
});

// Libraries that a program loads.

QV_SYSTEM_CALL(Open, FailsWithZero, LoadLibraryExW);
QV_SYSTEM_CALL(Other, FailsWithZero, SetThreadErrorMode);

// The shell. Some of its error numbers are its own. A successful CoInitializeEx may return values other than S_OK.

inline constexpr SystemCall CoInitializeEx(CallKind::Other, "CoInitializeEx", ReturnsError(),
                                           [](void* reserved, DWORD form) {
                                               const HRESULT result = ::CoInitializeEx(reserved, form);
                                               return FAILED(result) ? result : S_OK;
                                           });
QV_SYSTEM_CALL(Process, FailsWithZero, ShellExecuteExW);
QV_SYSTEM_CALL(Process, FailsWithZero, ILCreateFromPathW);
QV_SYSTEM_CALL(Process, ReturnsError, SHOpenFolderAndSelectItems);
QV_SYSTEM_CALL(Copy, ReturnsError, SHFileOperationW);

}  // namespace qv::platform::sys

#undef QV_SYSTEM_CALL
#undef QV_SYSTEM_CALL_AS
#undef QV_PROFILE_CALL
#undef QV_TRANSFER
#undef QV_CLOSE
