#include "tests/support/TestHome.h"

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    test::use_home(test::home().path());
    return RUN_ALL_TESTS();
}
