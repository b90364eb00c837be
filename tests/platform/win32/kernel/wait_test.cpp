#include <windows.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace {

struct CloseHandleOf {
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, CloseHandleOf>;

Handle event(BOOL manual_reset, BOOL state)
{
    return Handle(CreateEventA(nullptr, manual_reset, state, nullptr));
}

TEST(Event, IsTakenByAWaitUnlessItIsResetByHand)
{
    const Handle automatic = event(FALSE, TRUE);
    EXPECT_EQ(WaitForSingleObject(automatic.get(), 0), WAIT_OBJECT_0);
    EXPECT_EQ(WaitForSingleObject(automatic.get(), 0), WAIT_TIMEOUT);
    SetEvent(automatic.get());
    SetEvent(automatic.get());
    EXPECT_EQ(WaitForSingleObject(automatic.get(), INFINITE), WAIT_OBJECT_0);
    EXPECT_EQ(WaitForSingleObject(automatic.get(), 0), WAIT_TIMEOUT) << "set twice is set once";

    const Handle manual = event(TRUE, FALSE);
    EXPECT_EQ(WaitForSingleObject(manual.get(), 0), WAIT_TIMEOUT);
    SetEvent(manual.get());
    EXPECT_EQ(WaitForSingleObject(manual.get(), 0), WAIT_OBJECT_0);
    EXPECT_EQ(WaitForSingleObject(manual.get(), 0), WAIT_OBJECT_0);
    ResetEvent(manual.get());
    EXPECT_EQ(WaitForSingleObject(manual.get(), 0), WAIT_TIMEOUT);
}

TEST(Wait, TakesTheFirstOfManyOrAllAtOnce)
{
    const Handle a = event(FALSE, FALSE);
    const Handle b = event(FALSE, TRUE);
    const Handle c = event(FALSE, TRUE);
    const HANDLE handles[] = { a.get(), b.get(), c.get() };
    EXPECT_EQ(WaitForMultipleObjects(3, handles, TRUE, 1), WAIT_TIMEOUT) << "one is missing";
    EXPECT_EQ(WaitForMultipleObjects(3, handles, FALSE, INFINITE), WAIT_OBJECT_0 + 1) << "and b was not taken for it";
    SetEvent(a.get());
    SetEvent(b.get());
    EXPECT_EQ(WaitForMultipleObjects(3, handles, TRUE, INFINITE), WAIT_OBJECT_0);
    EXPECT_EQ(WaitForMultipleObjects(3, handles, FALSE, 0), WAIT_TIMEOUT);
}

TEST(Wait, RefusesWhatCannotBeWaitedFor)
{
    const Handle one = event(TRUE, TRUE);
    const std::vector<HANDLE> many(65, one.get());
    const HANDLE twice[] = { one.get(), one.get() };
    EXPECT_EQ(WaitForMultipleObjects(0, many.data(), FALSE, 0), WAIT_FAILED);
    EXPECT_EQ(WaitForMultipleObjects(65, many.data(), FALSE, 0), WAIT_FAILED);
    EXPECT_EQ(WaitForMultipleObjects(2, twice, TRUE, 0), WAIT_FAILED);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(WaitForMultipleObjects(2, twice, FALSE, 0), WAIT_OBJECT_0);
    EXPECT_EQ(WaitForSingleObject(INVALID_HANDLE_VALUE, 0), WAIT_FAILED);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_EQ(CreateEventA(nullptr, TRUE, TRUE, "name"), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_NOT_SUPPORTED);
}

TEST(Wait, KeepsToItsTime)
{
    const Handle never = event(TRUE, FALSE);
    const DWORD begin = GetTickCount();
    EXPECT_EQ(WaitForSingleObject(never.get(), 60), WAIT_TIMEOUT);
    Sleep(40);
    EXPECT_GE(GetTickCount() - begin, 99u); // the count may tick just after it was read
}

TEST(Wait, WakesOneThreadForEachSignal)
{
    constexpr int kSignals = 400;
    const Handle signal = event(FALSE, FALSE);
    const Handle taken = event(FALSE, FALSE);
    const Handle stop = event(TRUE, FALSE);
    std::atomic<int> woken = 0;
    std::thread threads[4];
    for (std::thread& thread : threads) {
        thread = std::thread([&] {
            const HANDLE handles[] = { stop.get(), signal.get() };
            while (WaitForMultipleObjects(2, handles, FALSE, INFINITE) == WAIT_OBJECT_0 + 1) {
                woken++;
                SetEvent(taken.get());
            }
        });
    }
    for (int i = 0; i < kSignals; i++) {
        SetEvent(signal.get());
        ASSERT_EQ(WaitForSingleObject(taken.get(), 20000), WAIT_OBJECT_0);
    }
    SetEvent(stop.get());
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(woken, kSignals);
}

DWORD WINAPI return_parameter(LPVOID parameter)
{
    return static_cast<DWORD>(reinterpret_cast<UINT_PTR>(parameter));
}

TEST(Thread, EndsWithItsExitCode)
{
    const Handle thread(CreateThread(nullptr, 0, return_parameter, reinterpret_cast<LPVOID>(747), 0, nullptr));
    ASSERT_EQ(WaitForSingleObject(thread.get(), 20000), WAIT_OBJECT_0);
    DWORD code = 0;
    EXPECT_TRUE(GetExitCodeThread(thread.get(), &code));
    EXPECT_EQ(code, 747u);
    const Handle other = event(TRUE, TRUE);
    EXPECT_FALSE(GetExitCodeThread(other.get(), &code));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE) << "an event is no thread";
}

DWORD WINAPI return_own_id(LPVOID)
{
    return GetCurrentThreadId();
}

TEST(Thread, WaitsToBeResumed)
{
    DWORD id = 0;
    const Handle thread(CreateThread(nullptr, 1, return_own_id, nullptr, CREATE_SUSPENDED, &id));
    EXPECT_EQ(WaitForSingleObject(thread.get(), 20), WAIT_TIMEOUT);
    DWORD code = 0;
    EXPECT_TRUE(GetExitCodeThread(thread.get(), &code));
    EXPECT_EQ(code, STILL_ACTIVE);
    EXPECT_EQ(ResumeThread(thread.get()), 1u);
    ASSERT_EQ(WaitForSingleObject(thread.get(), 20000), WAIT_OBJECT_0);
    EXPECT_EQ(ResumeThread(thread.get()), 0u);
    EXPECT_TRUE(GetExitCodeThread(thread.get(), &code));
    EXPECT_EQ(code, id);
    EXPECT_NE(id, GetCurrentThreadId());
}

TEST(Thread, CannotBeMadeOfNothing)
{
    EXPECT_EQ(CreateThread(nullptr, 0, nullptr, nullptr, 0, nullptr), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(CreateThread(nullptr, SIZE_MAX, return_own_id, nullptr, 0, nullptr), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_NOT_ENOUGH_MEMORY) << "a stack larger than memory";
}

// Two threads open, wait, set and close over one set of handles: each call serves the object it names or is refused,
// and a closed handle never names a later object.
TEST(Handle, SurvivesThreadsThatCloseItUnderEachOther)
{
    constexpr int kRounds = 3000;
    std::atomic<HANDLE> shared[4] = {};
    std::atomic<int> closed = 0;
    const auto race = [&](unsigned seed) {
        for (int i = 0; i < kRounds; i++) {
            std::atomic<HANDLE>& place = shared[(seed + static_cast<unsigned>(i) * 7) % 4];
            const HANDLE old = place.exchange(CreateEventA(nullptr, FALSE, TRUE, nullptr));
            SetEvent(shared[i % 4]);
            const DWORD result = WaitForSingleObject(shared[(i + 1) % 4], 0);
            EXPECT_TRUE(result == WAIT_OBJECT_0 || result == WAIT_TIMEOUT || result == WAIT_FAILED);
            closed += CloseHandle(old) ? 1 : 0;
        }
    };
    std::thread first(race, 1);
    std::thread second(race, 2);
    first.join();
    second.join();
    for (const std::atomic<HANDLE>& handle : shared)
        closed += CloseHandle(handle) ? 1 : 0;
    EXPECT_EQ(closed, 2 * kRounds) << "each was closed once";
}

} // namespace
