#pragma once

#include "tools/qv/Command.h"

/// Each function adds one command of the tool, or a family.
namespace qv::tool {

void AddArchiveCommands(Command app);
void AddBackup(Command app);
void AddBmp(Command app);
void AddChart(Command app);
void AddCopy(Command app);
void AddCrc(Command app);
void AddDelete(Command app);
void AddEmf(Command app);
void AddFind(Command app);
void AddListen(Command app);
void AddLockCommand(Command app);
void AddLog(Command app);
void AddReport(Command app);
void AddSend(Command app);
void AddText(Command app);
void AddWatch(Command app);
void AddXml(Command app);

}  // namespace qv::tool
