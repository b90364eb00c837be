#include "tests/support/TestHome.h"

#include <optional>

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

namespace {

class HomeForEachTest : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override { home_.emplace(); }
    void OnTestEnd(const testing::TestInfo&) override
    {
        std::filesystem::current_path(folder_); // a test may have entered one that goes now
        home_.reset();
    }

    const std::filesystem::path folder_ = std::filesystem::current_path();
    std::optional<test::FreshHome> home_;
};

} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    test::use_home(test::home().path());
    testing::UnitTest::GetInstance()->listeners().Append(new HomeForEachTest); // theirs from now on
    return RUN_ALL_TESTS();
}
