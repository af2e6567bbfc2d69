#include <gtest/gtest.h>

#include "tests/support/Child.h"

int main(int argc, char** argv) {
    int exitStatus = 0;
    if (RunChild(argc, argv, exitStatus)) return exitStatus;
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
