#include "platform/WordLock.h"

#include <gtest/gtest.h>

#include "tests/support/Interleaving.h"

namespace {

struct Crew {
    int writers, readers, rounds;
};

class WordLock : public testing::TestWithParam<Crew> {};

TEST_P(WordLock, KeepsApartAndLetsEverybodyInWhateverTheOrderOfSteps) {
    for (unsigned seed = 0; seed < 100; ++seed) {
        qv::platform::WordLock<Stepped> lock;
        int reading = 0, writing = 0, together = 0;
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
                ++reading;
                Interleaving::Step();
                --reading;
                lock.EndRead();
            }
        };
        std::vector<std::function<void()>> crew(GetParam().writers, write);
        crew.insert(crew.end(), GetParam().readers, read);
        ASSERT_TRUE(Interleaving(seed).Run(crew)) << "stuck, seed " << seed;
        ASSERT_EQ(together, 0) << "seed " << seed;
    }
}

INSTANTIATE_TEST_SUITE_P(Crews, WordLock, testing::Values(Crew{1, 2, 2}, Crew{2, 2, 1}, Crew{2, 2, 2}));

}  // namespace
