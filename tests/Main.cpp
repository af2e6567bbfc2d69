#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>

#include "tests/support/Child.h"
#include "tests/support/OpenFiles.h"
#include "tests/support/Watchdog.h"

namespace {

// A test that hangs fails by name instead of by the time limit of the whole program. Runs that are made long on purpose
// are not watched.
class HangListener : public ::testing::EmptyTestEventListener {
public:
    void OnTestStart(const ::testing::TestInfo& test) override {
        if (std::getenv("QV_TEST_LARGE") || std::getenv("QV_XML_OPERATIONS")) return;
        m_watchdog.emplace(std::string(test.test_suite_name()) + "." + test.name());
    }
    void OnTestEnd(const ::testing::TestInfo&) override { m_watchdog.reset(); }

private:
    std::optional<Watchdog> m_watchdog;
};

// A test that leaves a file or folder open fails.
class LeakListener : public ::testing::EmptyTestEventListener {
public:
    void OnTestStart(const ::testing::TestInfo&) override { m_before = OpenFiles(); }
    void OnTestEnd(const ::testing::TestInfo&) override { EXPECT_EQ(OpenFiles(), m_before) << "left open"; }

private:
    std::vector<std::string> m_before;
};

}  // namespace

int main(int argc, char** argv) {
    int exitStatus = 0;
    if (RunChild(argc, argv, exitStatus)) return exitStatus;
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::UnitTest::GetInstance()->listeners().Append(new HangListener);
    ::testing::UnitTest::GetInstance()->listeners().Append(new LeakListener);
    return RUN_ALL_TESTS();
}
