#include "Platform/Storage/BEntry.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "Platform/Storage/BDirectory.h"
#include "Platform/Storage/BPath.h"
#include "Tests/Platform/InThreads.h"
#include "Tests/Platform/TestFolder.h"

namespace {

std::string PathOf(const entry_ref& ref) {
    std::string path;
    EXPECT_EQ(get_path_for_ref(ref, &path), B_OK);
    return path;
}

entry_ref RefOf(const std::string& path) {
    entry_ref ref;
    EXPECT_EQ(get_ref_for_path(path.c_str(), &ref), B_OK) << path;
    return ref;
}

struct BEntryTest : testing::Test {
    TestFolder folder_;
};

TEST_F(BEntryTest, ReferencesLeadBackToTheirPaths) {
    folder_.Write("file", "");
    std::filesystem::create_directories(folder_.Path("a/b"));
    EXPECT_EQ(PathOf(RefOf(folder_.Path("file"))), folder_.Path("file"));
    EXPECT_EQ(PathOf(RefOf(folder_.Path("a/b/not there"))), folder_.Path("a/b/not there"));
    // Two ways to one directory are one reference.
    EXPECT_EQ(RefOf(folder_.Path("a//b/")), RefOf(folder_.Path("a/b/../b/.")));
    EXPECT_EQ(PathOf(RefOf(folder_.Path("a/b/.."))), folder_.Path("a"));
    std::filesystem::create_directory_symlink("a/b", folder_.Path("link"));
    EXPECT_EQ(RefOf(folder_.Path("link/x")), RefOf(folder_.Path("a/b/x")));
    EXPECT_EQ(PathOf(RefOf(folder_.Path("link"))), folder_.Path("link"));
    EXPECT_EQ(PathOf(RefOf("/")), "/");
    EXPECT_EQ(PathOf(RefOf("/usr")), "/usr");

    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder_.Path());
    for (const char* file : {"file", "./file"})
        EXPECT_EQ(RefOf(file), RefOf(folder_.Path("file"))) << file;
    EXPECT_EQ(BPath("sub/../file").Path(), folder_.Path("file"));
    std::filesystem::current_path(before);
}

TEST_F(BEntryTest, RefusesWhatLeadsNowhere) {
    entry_ref ref;
    EXPECT_EQ(get_ref_for_path("", &ref), B_BAD_VALUE);
    EXPECT_EQ(get_ref_for_path(folder_.Path("no/file").c_str(), &ref), B_ENTRY_NOT_FOUND);
    folder_.Write("file", "");
    EXPECT_EQ(get_ref_for_path(folder_.Path("file/x").c_str(), &ref), B_NOT_A_DIRECTORY);
    EXPECT_EQ(ref, entry_ref());

    std::string path;
    EXPECT_EQ(get_path_for_ref(entry_ref(), &path), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(get_path_for_ref({1, 2, "never seen"}, &path), B_ENTRY_NOT_FOUND);
    // The directory has moved away, and another is in its place.
    std::filesystem::create_directory(folder_.Path("old"));
    ref = RefOf(folder_.Path("old/file"));
    std::filesystem::rename(folder_.Path("old"), folder_.Path("new"));
    std::filesystem::create_directory(folder_.Path("old"));
    EXPECT_EQ(get_path_for_ref(ref, &path), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(path, "");
}

TEST_F(BEntryTest, FollowsLinksWhenAsked) {
    folder_.Write("file", "");
    std::filesystem::create_symlink("file", folder_.Path("link"));
    std::filesystem::create_symlink("nothing", folder_.Path("dangling"));
    EXPECT_STREQ(BEntry(folder_.Path("link").c_str(), false).Name(), "link");
    EXPECT_STREQ(BEntry(folder_.Path("link").c_str(), true).Name(), "file");
    EXPECT_STREQ(BEntry(RefOf(folder_.Path("link")), true).Name(), "file");
    EXPECT_EQ(BEntry(folder_.Path("dangling").c_str(), true).InitCheck(), B_ENTRY_NOT_FOUND);
    EXPECT_TRUE(BEntry(folder_.Path("dangling").c_str()).Exists());
}

TEST_F(BEntryTest, DirectoriesAreSteppedThroughAndMade) {
    ASSERT_EQ(create_directory(folder_.Path("a/b/c").c_str(), 0777), B_OK);
    EXPECT_EQ(create_directory(folder_.Path("a/b/c").c_str(), 0777), B_OK);
    folder_.Write("a/file", "");
    EXPECT_EQ(create_directory(folder_.Path("a/file").c_str(), 0777), B_NOT_A_DIRECTORY);
    EXPECT_EQ(create_directory(folder_.Path("a/file/x").c_str(), 0777), B_NOT_A_DIRECTORY);

    BDirectory directory(folder_.Path("a").c_str());
    std::set<std::string> names;
    for (BEntry entry; directory.GetNextEntry(&entry) == B_OK;)
        names.insert(entry.Name());
    EXPECT_EQ(names, (std::set<std::string>{"b", "file"}));
}

TEST_F(BEntryTest, ReferencesMayBeMadeByManyThreads) {
    InThreads(4, [this](int) {
        for (int i = 0; i < 50; i++) {
            const std::string path = folder_.Path(std::to_string(i));
            std::filesystem::create_directory(path);
            EXPECT_EQ(PathOf(RefOf(path + "/file")), path + "/file");
        }
    });
}

TEST(BPathTest, IsAbsoluteAndWithoutASlashAtItsEnd) {
    EXPECT_STREQ(BPath("/a/./b//c/..").Path(), "/a/b");
    EXPECT_STREQ(BPath("/a/b/").Leaf(), "b");
    EXPECT_STREQ(BPath("/a", "b/c").Path(), "/a/b/c");
    EXPECT_STREQ(BPath("/").Path(), "/");
    EXPECT_EQ(BPath("/a", "/b").InitCheck(), B_NO_INIT);
    BPath path("/a");
    EXPECT_EQ(path.GetParent(&path), B_OK);
    EXPECT_STREQ(path.Path(), "/");
    EXPECT_EQ(path.GetParent(&path), B_ENTRY_NOT_FOUND);
}

}  // namespace
