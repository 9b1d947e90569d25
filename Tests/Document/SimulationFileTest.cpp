#include "SimulationFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "SampleDocument.h"

namespace {

namespace fs = std::filesystem;

struct SimulationFileTest : testing::Test {
    SimulationFileTest() {
        std::string name = (fs::temp_directory_path() / "orvek-XXXXXX").string();
        folder = mkdtemp(name.data());
    }
    ~SimulationFileTest() override { fs::remove_all(folder); }

    [[nodiscard]] std::string Path(const char* name) const { return (folder / name).string(); }
    std::string Put(const char* name, const std::string& bytes) {
        std::ofstream(Path(name), std::ios::binary) << bytes;
        return Path(name);
    }
    static std::string Get(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    fs::path folder;
};

TEST_F(SimulationFileTest, RecordsComeBackAndTheTypeIsSet) {
    const BMessage record = PlanetRecord();
    const std::string path = Path("a document");
    Put("a document", "what was there before, and is longer or shorter");
    ASSERT_FALSE(SimulationFile::Write(path, record).Failed());
    EXPECT_EQ(Get(path).substr(0, 8), "KWZXNB00");
    BMessage read;
    ASSERT_FALSE(SimulationFile::Read(path, &read).Failed());
    EXPECT_EQ(read, record);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1);

    char type[128];
    const ssize_t size = getxattr(path.c_str(), "user.haiku.BEOS:TYPE", type, sizeof type);
    if (size < 0 && errno == ENOTSUP) GTEST_SKIP() << "no attributes in the temporary directory";
    EXPECT_EQ(std::string(type, static_cast<std::size_t>(size)),
              "SMIMapplication/x-vnd.tallowby-N-Body-Simulation" + std::string(1, '\0'));
}

TEST_F(SimulationFileTest, WhatIsNoDocumentIsRefused) {
    ASSERT_FALSE(SimulationFile::Write(Path("good"), PlanetRecord()).Failed());
    const std::string good = Get(Path("good"));
    const auto textOf = [this](const std::string& bytes) {
        BMessage record;
        const DocumentError error = SimulationFile::Read(Put("bad", bytes), &record);
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
    EXPECT_EQ(SimulationFile::Read(Path("none"), &record).systemError, ENOENT);
    EXPECT_EQ(SimulationFile::Read(folder.string(), &record).systemError, EISDIR);
    ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(SimulationFile::Read(Path("pipe"), &record).text, kTextNotAFile);
    EXPECT_EQ(SimulationFile::Write(Path("no/such/folder"), record).systemError, ENOENT);
    EXPECT_EQ(SimulationFile::CanWrite(Path("no/such/folder")).systemError, ENOENT);
    EXPECT_EQ(SimulationFile::CanWrite(Path("pipe")).text, kTextNotAFile);
    EXPECT_FALSE(SimulationFile::CanWrite(Path("new")).Failed());
    EXPECT_FALSE(fs::exists(Path("new")));
}

}  // namespace
