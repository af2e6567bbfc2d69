#pragma once

#include <string>
#include <vector>

#include "qvcommon/CopyTree.h"
#include "qvcommon/FileFinder.h"
#include "tests/support/LeftOutRecorder.h"

inline void Discover(FileFinder& finder, const CString& folder, const char* mask = "*.*", int recurse = 1,
                     int directories = 0) {
    finder.SetSearchPath(folder);
    finder.SetSearchMask(mask);
    finder.SetRecurse(recurse);
    finder.SetIncludeDirectories(directories);
    finder.Discover();
}

/// The number of errors that copying a tree reports.
inline int CopyErrors(const CString& from, const CString& to) {
    struct Counter : ICopyProgress {
        int count = 0;
        int OnError(DWORD, const char*) override { return ++count; }
    } errors;
    CCopyTree copy;
    copy.SetProgressMonitor(&errors);
    copy.CopyTree(from, to);
    return errors.count;
}

/// Copies a tree and returns what it leaves out.
inline std::vector<std::string> LeftOutOfCopy(const CString& from, const CString& to) {
    Recorder recorder;
    CCopyTree copy;
    copy.SetLeftOut(&recorder);
    copy.CopyTree(from, to);
    return recorder.names;
}
