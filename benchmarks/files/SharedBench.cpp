// Acquires and releases a document's lock, and saves a document atomically, with each library's means.

#include <benchmark/benchmark.h>
#include <glib.h>

#include <QLockFile>
#include <QSaveFile>

#include "benchmarks/files/Scratch.h"
#include "qvcommon/FileUtils.h"
#include "qvcommon/LockFile.h"

namespace {

void OurLock(benchmark::State& state) {
    CLockFile lock;
    lock.SetSourceFile((TheScratch() / "document").c_str());
    for (auto _ : state) {
        if (!lock.TryLock()) state.SkipWithError("not locked");
        lock.Unlock();
    }
}

void QtLock(benchmark::State& state) {
    QLockFile lock(QString::fromStdString(TheScratch() / "document.lock"));
    for (auto _ : state) {
        if (!lock.tryLock()) state.SkipWithError("not locked");
        lock.unlock();
    }
}

BENCHMARK(OurLock)->Name("FreeLock/QvCommon");
BENCHMARK(QtLock)->Name("FreeLock/Qt's QLockFile");

std::string TextOf(const benchmark::State& state) {
    return std::string(static_cast<std::size_t>(state.range()), 'x');
}

void OurSave(benchmark::State& state) {
    const std::string path = TheScratch() / "saved";
    const CString text(TextOf(state));
    for (auto _ : state) CFileUtils::SaveFile(path.c_str(), text);
}

// Synced before it is renamed, like ours and QSaveFile's. Only ours also syncs the folder, preserves the attributes of
// the old file, and checks whether another program has it open.
void GlibSave(benchmark::State& state) {
    const std::string path = TheScratch() / "saved by glib", text = TextOf(state);
    const auto flags = static_cast<GFileSetContentsFlags>(G_FILE_SET_CONTENTS_CONSISTENT | G_FILE_SET_CONTENTS_DURABLE);
    for (auto _ : state)
        if (!g_file_set_contents_full(path.c_str(), text.data(), static_cast<gssize>(text.size()), flags, 0666,
                                      nullptr))
            state.SkipWithError("not saved");
}

void QtSave(benchmark::State& state) {
    const QString path = QString::fromStdString(TheScratch() / "saved by Qt");
    const std::string text = TextOf(state);
    for (auto _ : state) {
        QSaveFile file(path);
        const bool saved = file.open(QIODevice::WriteOnly) &&
                           file.write(text.data(), static_cast<qint64>(text.size())) == qint64(text.size()) &&
                           file.commit();
        if (!saved) state.SkipWithError("not saved");
    }
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(10'000)->Arg(10'000'000)->Unit(benchmark::kMicrosecond)->UseRealTime();
}

BENCHMARK(OurSave)->Name("Save/QvCommon")->Apply(Sizes);
BENCHMARK(QtSave)->Name("Save/Qt's QSaveFile")->Apply(Sizes);
BENCHMARK(GlibSave)->Name("Save/GLib")->Apply(Sizes);

}  // namespace
