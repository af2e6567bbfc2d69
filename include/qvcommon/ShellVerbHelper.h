#pragma once

#include "qvcommon/framework/String.h"

/// Documents in the hands of the desktop: its own program for their kind opens or prints them, its file manager shows them.
///
/// On Windows these are the shell's verbs. On Linux `xdg-open` opens, `lp` prints, and the file manager is asked over
/// D-Bus (org.freedesktop.FileManager1, by `gdbus` or `dbus-send`); where none answers, `xdg-open` opens the folder. All
/// programs are started without a shell, so names may hold any bytes.
///
/// A member returns when the desktop has taken the document over; on Linux after 3 seconds at the latest, when the program
/// may still refuse it without an error here. It does not wait for the user. On Windows a document that is a program is run.
///
/// All members raise, when the document does not exist, CFileException* naming it; when the desktop has no program for it
/// or refuses it, CVorbexException* (severity 48, code 0) with the document and the reason. Any thread; on Windows a
/// thread without COM has it during the call.
class QVCOMMON_API CShellVerbHelper {
public:
    /// A file or folder.
    static void Open(const char* document);
    /// On Linux what the printing system itself can print: texts, PDF, pictures. On Windows kinds whose program has the verb.
    static void Print(const char* document);
    /// Shows the file or folder selected in its folder.
    static void Reveal(const char* document);
};
