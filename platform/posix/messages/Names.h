#pragma once

/// @file Mapping of a message window's class name to a handle, a socket, and the lock of the name's owner.

#include <sys/un.h>

#include <string>

#include "platform/WindowHandle.h"
#include "platform/posix/UniqueFd.h"

namespace qv::platform::messages {

/// Returns the handle of a class name, regardless of the process of its window: one per name, valid for the lifetime of
/// this process.
WindowHandle HandleOf(const std::string& className);
/// Returns the name passed to HandleOf; empty for any other handle.
std::string NameOf(WindowHandle window);

/// Returns the path of the name's socket; creates the folder. If a program that was started before the user logged in
/// owns the name, the path is in the folder of that time. Empty if the name is empty or too long, or if no folder is
/// owned by this user and inaccessible to others.
std::string SocketPath(const std::string& className);
sockaddr_un AddressOf(const std::string& socketPath);

/// Locks the name of a socket path: it is owned until ReleaseName, or until the process ends, even abnormally. Empty if
/// another window owns it.
UniqueFd AcquireName(const std::string& socketPath);
bool IsNameOwned(const std::string& socketPath);
/// Removes the socket and the lock file, then unlocks. If the lock file was deleted meanwhile, the socket may belong to
/// another window of that name, and is left.
void ReleaseName(const std::string& socketPath, UniqueFd& lock);

/// Removes what killed owners have left in the folder of this path, for up to 64 names, so that a new listener removes
/// more than one killed listener leaves. A name that is acquired meanwhile is not affected.
void SweepNames(const std::string& socketPath);

/// Returns whether a connected socket's other end runs as this user.
bool IsSameUser(int socket);

}  // namespace qv::platform::messages
