#include "SimulationFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <cerrno>
#include <filesystem>

#include "SampleDocument.h"
#include "TestFolder.h"

namespace {

struct SimulationFileTest : testing::Test {
    TestFolder folder;
};

TEST_F(SimulationFileTest, RecordsComeBackAndTheTypeIsSet) {
    const BMessage record = PlanetRecord();
    const std::string path =
        folder.Write("a document", "what was there before, and is longer or shorter");
    ASSERT_FALSE(SimulationFile::Write(path, record).Failed());
    EXPECT_EQ(folder.Read("a document").substr(0, 8), "KWZXNB00");
    BMessage read;
    ASSERT_FALSE(SimulationFile::Read(path, &read).Failed());
    EXPECT_EQ(read, record);
    EXPECT_EQ(folder.Names().size(), 1u);

    char type[128];
    const ssize_t size = getxattr(path.c_str(), "user.haiku.BEOS:TYPE", type, sizeof type);
    if (size < 0 && errno == ENOTSUP) GTEST_SKIP() << "no attributes in the temporary directory";
    EXPECT_EQ(std::string(type, static_cast<std::size_t>(size)),
              "SMIMapplication/x-vnd.tallowby-N-Body-Simulation" + std::string(1, '\0'));
}

TEST_F(SimulationFileTest, WhatIsNoDocumentIsRefused) {
    ASSERT_FALSE(SimulationFile::Write(folder.Path("good"), PlanetRecord()).Failed());
    const std::string good = folder.Read("good");
    const auto textOf = [this](const std::string& bytes) {
        BMessage record;
        const DocumentError error = SimulationFile::Read(folder.Write("bad", bytes), &record);
        EXPECT_TRUE(record.IsEmpty());
        return error.Failed() ? error.text : 0;
    };
    EXPECT_EQ(textOf(""), kTextNotADocument);
    EXPECT_EQ(textOf("KWZXNB0"), kTextNotADocument);
    EXPECT_EQ(textOf("KWZXNB01" + good.substr(8)), kTextNotADocument);
    for (const std::size_t length : {std::size_t{8}, std::size_t{9}, std::size_t{20},
                                     std::size_t{300}, good.size() / 2, good.size() - 1})
        EXPECT_EQ(textOf(good.substr(0, length)), kTextDamaged) << length;
}

TEST_F(SimulationFileTest, SystemErrorsKeepTheirReason) {
    BMessage record;
    EXPECT_EQ(SimulationFile::Read(folder.Path("none"), &record).systemError, ENOENT);
    EXPECT_EQ(SimulationFile::Read(folder.Path(), &record).systemError, EISDIR);
    ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(SimulationFile::Read(folder.Path("pipe"), &record).text, kTextNotAFile);
    EXPECT_EQ(SimulationFile::Write(folder.Path("no/such/folder"), record).systemError, ENOENT);
    EXPECT_EQ(SimulationFile::CanWrite(folder.Path("no/such/folder")).systemError, ENOENT);
    EXPECT_EQ(SimulationFile::CanWrite(folder.Path("pipe")).text, kTextNotAFile);
    EXPECT_FALSE(SimulationFile::CanWrite(folder.Path("new")).Failed());
    EXPECT_FALSE(std::filesystem::exists(folder.Path("new")));
}

}  // namespace
