#pragma once

#include "qvcommon/framework/String.h"

/// Opens or prints documents with the program associated with their type, and shows them in the file manager.
///
/// On Windows it uses the shell's verbs. On Linux it opens with `xdg-open`, prints with `lp`, and calls the file
/// manager over D-Bus (org.freedesktop.FileManager1, by `gdbus` or `dbus-send`); if none responds, `xdg-open` opens the
/// folder. Programs are started without a shell, so names may contain any bytes.
///
/// Members return when the desktop has accepted the document; on Linux after at most 3 seconds (Reveal after 7 if the
/// file manager does not respond), when the program may still reject it without an error here. They do not wait for the
/// user. On Windows a document that is a program is run.
///
/// All members raise CFileException* naming the document if it does not exist, and CVorbexException* (severity 48, code
/// 0) with the document and the reason if the desktop has no program for it or rejects it. Thread-safe; on Windows COM
/// is initialized for the call on a thread without it.
class QVCOMMON_API CShellVerbHelper {
public:
    /// Opens a file or folder.
    static void Open(const char* document);
    /// Prints. On Linux, types supported by the printing system: text, PDF, pictures. On Windows, types whose program
    /// has the verb.
    static void Print(const char* document);
    /// Shows the file or folder, selected in its parent folder.
    static void Reveal(const char* document);
};
