#include "threads/WordLock.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/Path.h"
#include "tests/support/Interleaving.h"

namespace {

struct Crew {
    int writers, readers, rounds;
};

// A third reader exceeds the limit.
using Lock = qv::WordLock<SteppedWord, SteppedEventCount, 2>;

class WordLock : public testing::TestWithParam<Crew> {};

TEST_P(WordLock, ExclusionAndProgressInAnyInterleaving) {
    // Wine switches threads slowly.
    const unsigned seeds = qv::platform::HasDriveLetters() ? 25 : 100;
    std::uint64_t most = 0;
    for (unsigned seed = 0; seed < seeds; ++seed) {
        Lock lock;
        std::uint64_t reading = 0, writing = 0, together = 0;
        const auto write = [&] {
            for (int i = 0; i < GetParam().rounds; ++i) {
                lock.StartWrite();
                together += reading + writing++;
                Interleaving::Step();
                --writing;
                lock.EndWrite();
            }
        };
        const auto read = [&] {
            for (int i = 0; i < GetParam().rounds; ++i) {
                lock.StartRead();
                together += writing;
                most = std::max(most, ++reading);
                Interleaving::Step();
                --reading;
                lock.EndRead();
            }
        };
        std::vector<std::function<void()>> crew(GetParam().writers, write);
        crew.insert(crew.end(), GetParam().readers, read);
        ASSERT_TRUE(Interleaving(seed).Run(crew)) << "stuck, seed " << seed;
        ASSERT_EQ(together, 0U) << "seed " << seed;
    }
    EXPECT_EQ(most, std::min<std::uint64_t>(Lock::kMostReaders, GetParam().readers));
}

INSTANTIATE_TEST_SUITE_P(Crews, WordLock, testing::Values(Crew{1, 2, 2}, Crew{2, 2, 2}, Crew{1, 4, 2}, Crew{4, 1, 8}));

}  // namespace
