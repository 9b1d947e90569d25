#include "Platform/Storage/BNode.h"

#include <gtest/gtest.h>
#include <sys/xattr.h>

#include <cerrno>
#include <string>

#include "Platform/Storage/BNodeInfo.h"
#include "Platform/Support/TypeConstants.h"
#include "Tests/Platform/TestFolder.h"

namespace {

constexpr const char* kDocumentType = "application/x-vnd.example-Document";

class BNodeTest : public testing::Test {
protected:
    void SetUp() override {
        path_ = folder_.Write("file", "contents");
        ASSERT_EQ(node_.SetTo(path_.c_str()), B_OK);
        if (setxattr(path_.c_str(), "user.test", "x", 1, 0) != 0 && errno == ENOTSUP)
            GTEST_SKIP() << "this file system has no attributes";
    }

    void SetExtended(const char* name, std::string_view value) const {
        EXPECT_EQ(setxattr(path_.c_str(), name, value.data(), value.size(), 0), 0);
    }

    [[nodiscard]] std::string Extended(const char* name) const {
        char value[256];
        const ssize_t size = getxattr(path_.c_str(), name, value, sizeof value);
        return size < 0 ? "none" : std::string(value, static_cast<std::size_t>(size));
    }

    TestFolder folder_;
    std::string path_;
    BNode node_;
};

TEST_F(BNodeTest, AttributesHaveTypeAndData) {
    ASSERT_EQ(node_.WriteAttr("a/b%c", B_STRING_TYPE, "hello", 6), B_OK);
    type_code type = 0;
    std::vector<char> data;
    ASSERT_EQ(BNode(path_.c_str()).ReadAttr("a/b%c", &type, &data), B_OK);
    EXPECT_EQ(type, B_STRING_TYPE);
    EXPECT_EQ(std::string(data.data(), data.size()), std::string("hello\0", 6));
    EXPECT_EQ(Extended("user.haiku.a%\\b%%c").substr(4), std::string("hello\0", 6));

    // A shorter value leaves nothing of the longer one.
    ASSERT_EQ(node_.WriteAttr("a/b%c", B_RAW_TYPE, "", 0), B_OK);
    ASSERT_EQ(node_.ReadAttr("a/b%c", &type, &data), B_OK);
    EXPECT_EQ(type, B_RAW_TYPE);
    EXPECT_TRUE(data.empty());

    EXPECT_EQ(node_.RemoveAttr("a/b%c"), B_OK);
    EXPECT_EQ(node_.ReadAttr("a/b%c", &type, &data), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(node_.RemoveAttr("a/b%c"), B_ENTRY_NOT_FOUND);
    SetExtended("user.haiku.short", "abc");
    EXPECT_EQ(node_.ReadAttr("short", &type, &data), B_BAD_DATA);
}

TEST_F(BNodeTest, TypeIsWrittenForBothWorlds) {
    BNodeInfo info(&node_);
    ASSERT_EQ(info.SetType(kDocumentType), B_OK);
    ASSERT_EQ(info.SetPreferredApp("application/x-vnd.example"), B_OK);
    EXPECT_EQ(Extended("user.mime_type"), kDocumentType);
    EXPECT_EQ(Extended("user.haiku.BEOS:TYPE").substr(4), std::string(kDocumentType) + '\0');
    EXPECT_EQ(Extended("user.haiku.BEOS:PREF_APP").substr(4),
              std::string("application/x-vnd.example") + '\0');
    std::string text;
    EXPECT_EQ(info.GetPreferredApp(&text), B_OK);
    EXPECT_EQ(text, "application/x-vnd.example");
    EXPECT_EQ(info.SetType(nullptr), B_OK);
    EXPECT_EQ(info.GetType(&text), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(Extended("user.mime_type"), "none");
}

TEST_F(BNodeTest, TypeIsReadAsOthersWriteIt) {
    const BNodeInfo info(&node_);
    std::string type;
    SetExtended("user.mime_type", "text/plain");
    EXPECT_EQ(info.GetType(&type), B_OK);
    EXPECT_EQ(type, "text/plain");
    SetExtended("user.haiku.BEOS:TYPE", "MIMStext/x-other-order");
    EXPECT_EQ(info.GetType(&type), B_OK);
    EXPECT_EQ(type, "text/x-other-order");
    // What is no type there does not hide the other.
    for (const std::string& bad : {std::string("SMIM"), std::string("RTSCtext/html"),
                                   std::string("SMIMa\nb"), "SMIM" + std::string(240, 'x')}) {
        SetExtended("user.haiku.BEOS:TYPE", bad);
        EXPECT_EQ(info.GetType(&type), B_OK) << bad;
        EXPECT_EQ(type, "text/plain") << bad;
        SetExtended("user.haiku.BEOS:PREF_APP", bad);
        EXPECT_NE(info.GetPreferredApp(&type), B_OK) << bad;
        EXPECT_EQ(type, "");
    }
}

}  // namespace
