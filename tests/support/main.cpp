#include "tests/support/TestHome.h"

#include <gtest/gtest.h>

// fontconfig keeps pointers as distances from where they stand, so its live memory looks lost to the leak check.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions()
{
    return "leak:libfontconfig";
}

// fontconfig looks for faces on threads of its own, which hand over by means that the race check cannot see.
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_suppressions()
{
    return "race:libfontconfig";
}

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    test::use_home(test::home().path());
    return RUN_ALL_TESTS();
}
