#include "Application/Prefs/Preferences.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <thread>
#include <vector>

#include "Application/Prefs/PrefsListener.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Kernel/OS.h"
#include "Tests/Platform/TestFolder.h"

namespace {

constexpr const char* kApplication = "x-vnd.test";

// A settings directory of its own for every test.
class PreferencesTest : public testing::Test {
protected:
    void SetUp() override {
        setenv("XDG_CONFIG_HOME", folder_.Path("user").c_str(), 1);
        setenv("XDG_CONFIG_DIRS", folder_.Path("common").c_str(), 1);
        ASSERT_EQ(PREFInit(kApplication, &handle_), B_OK);
    }
    void TearDown() override {
        PREFShutdown(handle_);
        unsetenv("POLL_INTERVAL");
    }

    PreferenceSet* Load(bool isPerUser = true) const {
        PreferenceSet* set = nullptr;
        EXPECT_EQ(PREFLoadSet(handle_, "Set", isPerUser, &set), B_OK);
        return set;
    }

    // -1: no such item, or of another type.
    static float Float(PreferenceSet* set, const char* name) {
        const void* data = nullptr;
        std::size_t size = 0;
        type_code type = FourCC("----");
        if (PREFGetData(set, name, &data, &size, &type) != B_OK || type != B_FLOAT_TYPE) return -1;
        float value = 0;
        EXPECT_EQ(size, sizeof value);
        std::memcpy(&value, data, sizeof value);
        return value;
    }
    static void SetFloat(PreferenceSet* set, const char* name, float value) {
        EXPECT_EQ(PREFSetData(set, name, &value, sizeof value, B_FLOAT_TYPE), B_OK);
    }

    TestFolder folder_;
    PREFHandle* handle_ = nullptr;
};

using Names = std::vector<std::string>;

// The names that a listing gives, one call after the other.
template <typename List, typename Dispose>
Names All(List list, Dispose dispose) {
    Names names;
    PREFCookie* cookie = nullptr;
    std::string name;
    while (list(&cookie, &name) == B_OK)
        names.push_back(name);
    EXPECT_EQ(list(&cookie, &name), B_ENTRY_NOT_FOUND);
    dispose(cookie);
    return names;
}

TEST_F(PreferencesTest, OneHandleForOneName) {
    PREFHandle *other = handle_, *same = nullptr;
    EXPECT_EQ(PREFInit("a/b", &other), B_BAD_VALUE);
    EXPECT_EQ(other, nullptr);
    ASSERT_EQ(PREFInit(kApplication, &same), B_OK);
    EXPECT_EQ(same, handle_);
    EXPECT_EQ(PREFShutdown(same), B_OK);
    PREFDisposeSet(Load());  // the first one is still in use
}

TEST_F(PreferencesTest, ASavedSetComesBackWithItsTypes) {
    PreferenceSet* set = Load();
    SetFloat(set, "Open W", 1.0f);
    SetFloat(set, "Open W", 2.5f);
    const float point[] = {3.0f, 4.0f};
    EXPECT_EQ(PREFSetData(set, "Open at", point, sizeof point, B_POINT_TYPE), B_OK);
    EXPECT_EQ(PREFSetData(set, "Open in", "/tmp", 5, B_ASCII_TYPE), B_OK);
    EXPECT_EQ(PREFSetData(set, "gone", "x", 1, B_ASCII_TYPE), B_OK);
    EXPECT_EQ(PREFDelete(set, "gone"), B_OK);
    EXPECT_EQ(PREFDelete(set, "gone"), B_NAME_NOT_FOUND);
    EXPECT_EQ(PREFSaveSet(set), B_OK);
    SetFloat(set, "not saved", 1.0f);
    PREFDisposeSet(set);

    // The stored form: the count, then one flattened record.
    const std::string file = folder_.Read("user/_LP_x-vnd.test/Set");
    int32 count = 0;
    ASSERT_GT(file.size(), sizeof count);
    std::memcpy(&count, file.data(), sizeof count);
    ASSERT_EQ(static_cast<std::size_t>(count), file.size() - sizeof count);
    BMessage items, copy;
    ASSERT_EQ(items.Unflatten(file.data() + sizeof count, file.size() - sizeof count), B_OK);
    BPoint at;
    EXPECT_EQ(items.FindPoint("Open at", &at), B_OK);
    EXPECT_EQ(at, (BPoint{3.0f, 4.0f}));

    set = Load();
    EXPECT_EQ(Float(set, "Open W"), 2.5f);
    EXPECT_EQ(Float(set, "Open at"), -1.0f);
    EXPECT_EQ(Float(set, "not saved"), -1.0f);
    const void* data = nullptr;
    std::size_t size = 0;
    type_code type = 0;
    ASSERT_EQ(PREFGetData(set, "Open in", &data, &size, &type), B_OK);
    EXPECT_EQ(type, B_ASCII_TYPE);
    EXPECT_EQ(std::string(static_cast<const char*>(data), size), std::string("/tmp") + '\0');
    EXPECT_EQ(All([&](auto... out) { return PREFListData(set, out...); }, PREFDisposeDataCookie),
              (Names{"Open W", "Open at", "Open in"}));
    EXPECT_EQ(PREFGetMessage(set, &copy), B_OK);
    EXPECT_EQ(copy, items);
    PREFDisposeSet(set);
}

TEST_F(PreferencesTest, UsersSetsAndSharedOnesAreListedAndRemoved) {
    PREFDisposeSet(Load());
    PREFDisposeSet(Load(false));
    EXPECT_TRUE(
        std::filesystem::exists(folder_.Path("common/_LP_x-vnd.test/(libprefs common)/Set")));
    PreferenceSet* set = nullptr;
    EXPECT_EQ(PREFLoadSet(handle_, "../Set", true, &set), B_BAD_VALUE);
    ASSERT_EQ(PREFLoadSet(handle_, "Another", true, &set), B_OK);
    PREFDisposeSet(set);
    folder_.Write("user/unrelated", "");
    std::filesystem::create_directory(folder_.Path("user/other program"));
    const auto sets = [this](bool isPerUser) {
        return All([&](auto... out) { return PREFListSets(handle_, isPerUser, out...); },
                   PREFDisposeSetCookie);
    };
    EXPECT_EQ(sets(true), (Names{"Another", "Set"}));
    EXPECT_EQ(sets(false), (Names{"Set"}));
    EXPECT_EQ(All([](auto... out) { return PREFListApplications(true, out...); },
                  PREFDisposeApplicationCookie),
              (Names{kApplication}));
    EXPECT_EQ(PREFRemoveSet(handle_, "Set", true), B_OK);
    EXPECT_EQ(PREFRemoveSet(handle_, "Set", true), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(sets(true), (Names{"Another"}));
    EXPECT_EQ(PREFRemoveApp(handle_, true), B_OK);
    EXPECT_FALSE(std::filesystem::exists(folder_.Path("user/_LP_x-vnd.test")));
    EXPECT_TRUE(std::filesystem::exists(folder_.Path("user/other program")));
    EXPECT_EQ(sets(false), (Names{"Set"}));
}

TEST_F(PreferencesTest, DamagedFilesAreRefused) {
    PREFDisposeSet(Load());
    PreferenceSet* set = nullptr;
    for (const std::string& contents :
         {std::string("\x01"), std::string("\xff\xff\xff\x7f....", 8),
          std::string("\xff\xff\xff\xff....", 8), std::string("\x04\0\0\0....", 8)}) {
        folder_.Write("user/_LP_x-vnd.test/Set", contents);
        EXPECT_LT(PREFLoadSet(handle_, "Set", true, &set), B_OK);
        EXPECT_EQ(set, nullptr);
    }
}

// A file that may not grow stands for a full disk.
TEST_F(PreferencesTest, AFailedSaveLosesNothing) {
    PreferenceSet* set = Load();
    SetFloat(set, "kept", 1.0f);
    ASSERT_EQ(PREFSaveSet(set), B_OK);
    const std::string before = folder_.Read("user/_LP_x-vnd.test/Set");
    const std::vector<char> large(100000, 'x');
    EXPECT_EQ(PREFSetData(set, "large", large.data(), large.size(), B_RAW_TYPE), B_OK);
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    const rlimit small{4096, old.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    const status_t status = PREFSaveSet(set);
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, handler);
    EXPECT_LT(status, B_OK);
    EXPECT_EQ(folder_.Read("user/_LP_x-vnd.test/Set"), before);
    EXPECT_EQ(PREFSaveSet(set), B_OK);
    EXPECT_GT(folder_.Read("user/_LP_x-vnd.test/Set").size(), large.size());
    PREFDisposeSet(set);
}

// Two processes, each with threads, count up one number.
TEST_F(PreferencesTest, TransactionsKeepOthersOut) {
    constexpr int kRounds = 20;
    const auto countUp = [this] {
        for (int i = 0; i < kRounds; i++) {
            PreferenceSet* const set = Load();
            EXPECT_EQ(PREFBeginTransaction(set), B_OK);
            EXPECT_EQ(PREFReloadSet(set), B_OK);
            SetFloat(set, "count", std::max(Float(set, "count"), 0.0f) + 1.0f);
            EXPECT_EQ(PREFSaveSet(set), B_OK);
            // Still ours: a second save in the same transaction.
            SetFloat(set, "count", Float(set, "count"));
            EXPECT_EQ(PREFSaveSet(set), B_OK);
            EXPECT_EQ(PREFEndTransaction(set), B_OK);
            PREFDisposeSet(set);
        }
    };
    const pid_t child = fork();
    if (child == 0) {
        countUp();
        _exit(testing::Test::HasFailure() ? 1 : 0);
    }
    std::thread first(countUp);
    countUp();
    first.join();
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    PreferenceSet* const set = Load();
    EXPECT_EQ(Float(set, "count"), 3.0f * kRounds);
    EXPECT_EQ(PREFEndTransaction(set), B_NOT_ALLOWED);
    PREFDisposeSet(set);
}

TEST_F(PreferencesTest, ListenersHearOfChangesByOthers) {
    setenv("POLL_INTERVAL", "4001", 1);
    PREFHandle* again = nullptr;
    ASSERT_EQ(PREFInit(kApplication, &again), B_OK);
    PrefsListener::SetPollInterval(1000);
    PreferenceSet* const heard = Load();
    std::atomic<int> calls{0};
    const auto callback = [](PreferenceSet*, void* cookie) {
        ++*static_cast<std::atomic<int>*>(cookie);
    };
    ASSERT_EQ(PREFListen(heard, callback, &calls), B_OK);
    PreferenceSet* const writer = Load();
    SetFloat(writer, "news", 7.0f);
    ASSERT_EQ(PREFSaveSet(writer), B_OK);
    while (calls == 0)
        snooze(1000);
    EXPECT_EQ(PREFReloadSet(heard), B_OK);
    EXPECT_EQ(Float(heard, "news"), 7.0f);
    EXPECT_EQ(PREFListen(heard, nullptr, nullptr), B_OK);
    EXPECT_EQ(calls, 1) << "each change is told once";
    ASSERT_EQ(PREFSaveSet(writer), B_OK);
    snooze(20000);
    EXPECT_EQ(calls, 1);
    // A set that is disposed of while it is listened to.
    ASSERT_EQ(PREFListen(writer, callback, &calls), B_OK);
    PREFDisposeSet(writer);
    PREFDisposeSet(heard);
    PREFShutdown(again);
}

TEST(Preferences, PollIntervalsHaveThreeUnits) {
    EXPECT_EQ(PrefsListener::ParsePollInterval("soon"), 0);
    EXPECT_EQ(PrefsListener::ParsePollInterval("3999"), 3'999'000'000);
    EXPECT_EQ(PrefsListener::ParsePollInterval("4000"), 4'000'000);
    EXPECT_EQ(PrefsListener::ParsePollInterval("499999"), 499'999'000);
    EXPECT_EQ(PrefsListener::ParsePollInterval("500000"), 500'000);
}

}  // namespace
