// Runs every operation that writes many times and disturbs another one of its system calls each time: the call fails, moves
// a single byte, is interrupted, or is where the process ends. In each case the operation must report it or do all that it
// should, files must be as promised, and the next run must leave no temporary files.

#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include "tests/faults/Operations.h"
#include "tests/support/Child.h"
#include "tests/support/FileTests.h"
#include "tests/support/RecordingClock.h"

namespace {

using Fault = SystemFaults::Fault;

constexpr int kKilled = 77;

/// A fresh folder in which the operation can run.
class PreparedPlace : TempFolder, public Place {
public:
    explicit PreparedPlace(const Operation& operation) : Place{Native(), *this / ""} { operation.prepare(*this); }
};

enum class How { Once, FromThenOn };

/// Whether the file system has files without names.
enum class NewFiles { Unnamed, Named };

/// With Named, the calls fail that create files without names.
Fault FaultOf(const SystemFaults::Call& call, NewFiles files) {
    const bool unnamed = call.kind == CallKind::Open && (call.path.ends_with('/') || call.path == ".");
    return unnamed && files == NewFiles::Named ? Fault{.error = EOPNOTSUPP} : Fault{};
}

/// Runs it once more, to its end.
void ExpectWholeAfterNextRun(const Operation& operation, const Place& place, const std::string& after,
                             NewFiles files = NewFiles::Unnamed) {
    const RecordingClock clock;
    const SystemFaults faults([files](const SystemFaults::Call& call) { return FaultOf(call, files); });
    EXPECT_FALSE(operation.run(place)) << after;
    EXPECT_TRUE(operation.done(ReadTree(place.native))) << after << ::testing::PrintToString(ReadTree(place.native));
}

class Sweep : public ::testing::TestWithParam<std::size_t> {
protected:
    const Operation& m_operation = Operations()[GetParam()];

    /// Disturbs the Nth call, or with FromThenOn that one and all later ones. False when the operation makes fewer calls.
    bool Disturb(int nth, Fault fault, How how) {
        const PreparedPlace place(m_operation);
        int calls = 0;
        bool reported = false, isSilent = false;
        std::string after;
        {
            const RecordingClock clock;
            const SystemFaults faults([&](const SystemFaults::Call& call) {
                ++calls;
                if (calls == nth) after = "call " + std::to_string(nth) + " " + call.name + " ";
                const bool disturbed = calls == nth || (how == How::FromThenOn && calls > nth);
                isSilent |= disturbed && m_operation.silent(call);
                return disturbed ? fault : Fault{};
            });
            reported = m_operation.run(place);
        }
        if (calls < nth) return false;
        const Tree tree = ReadTree(place.native);
        EXPECT_TRUE(reported || isSilent || m_operation.done(tree)) << after;
        EXPECT_TRUE(m_operation.kept(tree)) << after << ::testing::PrintToString(tree);
        ExpectWholeAfterNextRun(m_operation, place, after);
        return true;
    }
};

TEST_P(Sweep, FailuresAreReportedWithoutDataLoss) {
    const Fault full = SystemFaults::Of(FileCause::DiskFull);
    for (int nth = 1; Disturb(nth, full, How::Once); ++nth)
        if (HasFailure()) return;
    for (int nth = 1; Disturb(nth, full, How::FromThenOn); ++nth)
        if (HasFailure()) return;
}

/// Whether a signal may interrupt such a call.
bool IsInterruptible(CallKind kind) {
    using enum CallKind;
    constexpr CallKind kKinds[] = {Open, OpenFolder, Read, Write, Flush, Copy};
    return !qv::platform::HasDriveLetters() && std::ranges::find(kKinds, kind) != std::end(kKinds);
}

TEST_P(Sweep, HandlesInterruptedAndShortCalls) {
    const PreparedPlace place(m_operation);
    int calls = 0;
    bool interrupted = false, reported = true;
    {
        const RecordingClock clock;
        const SystemFaults faults([&](const SystemFaults::Call& call) {
            interrupted = IsInterruptible(call.kind) && !interrupted;
            ++calls;
            return Fault{.error = interrupted ? static_cast<unsigned long>(EINTR) : 0, .shorten = true};
        });
        reported = m_operation.run(place);
    }
    EXPECT_GT(calls, 0);
    EXPECT_FALSE(reported);
    EXPECT_TRUE(m_operation.done(ReadTree(place.native))) << ::testing::PrintToString(ReadTree(place.native));
}

/// Runs an operation and ends the process before the Nth call, as a kill would.
QV_CHILD(RunAndDie) {
    const Operation& operation = Operations()[std::stoul(arguments.at(0))];
    const Place place{arguments.at(1), CString(arguments.at(2))};
    int left = std::stoi(arguments.at(3));
    const auto files = static_cast<NewFiles>(std::stoi(arguments.at(4)));
    const SystemFaults faults([&](const SystemFaults::Call& call) {
        if (--left == 0) std::_Exit(kKilled);
        return FaultOf(call, files);
    });
    return operation.run(place);
}

class KillSweep : public Sweep {
protected:
    static int RunAndKill(const Place& place, int nth, NewFiles files) {
        CProcess child;
        StartChild(child, "RunAndDie",
                   {CString(std::to_string(GetParam())), CString(place.native.string()), place.path,
                    CString(std::to_string(nth)), CString(std::to_string(static_cast<int>(files)))});
        return child.Wait();
    }
    void KillAtEveryCall(NewFiles files);
};

void KillSweep::KillAtEveryCall(NewFiles files) {
    // Programs start slowly under Wine.
    const int usual = qv::platform::HasDriveLetters() ? 5 : files == NewFiles::Named ? 3 : 1;
    const int step = std::getenv("QV_TEST_LARGE") ? 1 : usual;
    for (int nth = 1, status = kKilled; status == kKilled; nth += step) {
        const PreparedPlace place(m_operation);
        status = RunAndKill(place, nth, files);
        const Tree tree = ReadTree(place.native);
        const std::string after = "killed at call " + std::to_string(nth) + " ";
        ASSERT_TRUE(status == kKilled || status == 0) << after << status;
        ASSERT_TRUE(status == kKilled ? m_operation.kept(tree) : m_operation.done(tree))
            << after << ::testing::PrintToString(tree);
        ExpectWholeAfterNextRun(m_operation, place, after, files);
        if (HasFailure()) return;
    }
}

TEST_P(KillSweep, AtomicWhenKilled) {
    KillAtEveryCall(NewFiles::Unnamed);
}

TEST_P(KillSweep, AtomicWhenKilledWithNamedFiles) {
    if (qv::platform::HasDriveLetters()) GTEST_SKIP() << "all files have names there";
    KillAtEveryCall(NewFiles::Named);
}

const auto kAllOperations = ::testing::Range<std::size_t>(0, Operations().size());
const auto kNameOf = [](const auto& operation) { return Operations()[operation.param].name; };

INSTANTIATE_TEST_SUITE_P(Operations, Sweep, kAllOperations, kNameOf);
INSTANTIATE_TEST_SUITE_P(Operations, KillSweep, kAllOperations, kNameOf);

}  // namespace
