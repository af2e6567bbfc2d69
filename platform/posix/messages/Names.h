#pragma once

/// @file What the name of a message window's class stands for: a handle, a socket, and the lock that owns the name.

#include <sys/un.h>

#include <string>

#include "platform/WindowHandle.h"
#include "platform/posix/UniqueFd.h"

namespace qv::platform::messages {

/// The handle of a class name, whichever process its window is in: one per name, valid for the life of this process.
WindowHandle HandleOf(const std::string& className);
/// The name that HandleOf was given; empty for any other handle.
std::string NameOf(WindowHandle window);

/// The path of the name's socket; creates the folder. Empty when the name is empty or too long, or when there is no folder
/// that this user owns and nobody else may enter.
std::string SocketPath(const std::string& className);
sockaddr_un AddressOf(const std::string& socketPath);

/// Locks the name of a socket path: it is owned until ReleaseName, or until the process ends, however it ends. Empty when
/// another window owns it.
UniqueFd AcquireName(const std::string& socketPath);
bool IsNameOwned(const std::string& socketPath);
/// Removes the socket and the lock file, then unlocks.
void ReleaseName(const std::string& socketPath, UniqueFd& lock);

/// Removes what killed owners have left in the folder of this path: of up to 64 names, so that a listener that comes removes
/// more than one that was killed leaves. A name that is acquired meanwhile is not touched.
void SweepNames(const std::string& socketPath);

/// Whether a connected socket's other end runs as this user.
bool IsSameUser(int socket);

}  // namespace qv::platform::messages
