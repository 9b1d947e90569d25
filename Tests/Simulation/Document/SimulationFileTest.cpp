#include "Simulation/Document/SimulationFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <cerrno>
#include <filesystem>
#include <limits>

#include "Model/Systems/CompositeSystem.h"
#include "Resources/DocumentTexts.h"
#include "Tests/Platform/TestFolder.h"
#include "Tests/Simulation/Document/SampleDocument.h"

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

TEST_F(SimulationFileTest, AFileThatWasChangedIsToldAndOpens) {
    const auto tells = [this](const std::string& bytes) {
        BMessage record;
        SimulationDocument document(nullptr);
        EXPECT_FALSE(SimulationFile::Read(folder.Write("changed", bytes), &record).Failed());
        EXPECT_FALSE(document.Load(record).Failed());
        EXPECT_FALSE(record.HasName("Digest")) << "not passed on";
        return !document.Notices().IsEmpty();
    };
    ASSERT_FALSE(SimulationFile::Write(folder.Path("good"), PlanetRecord()).Failed());
    const std::string good = folder.Read("good");
    EXPECT_FALSE(tells(good));
    EXPECT_FALSE(tells(FileOf(PlanetRecord()))) << "of a program that makes no digest";

    std::string bad = good;
    bad[bad.find("Planet")] = 'p';
    EXPECT_TRUE(tells(bad));
    bad = good;
    bad[bad.find("Digest") + 10]++;
    EXPECT_TRUE(tells(bad));
    EXPECT_TRUE(tells(good + "more"));
    // Of another size, and twice: nothing is read outside of the file.
    for (const std::size_t size : {31u, 33u}) {
        BMessage record = PlanetRecord();
        const std::vector<std::byte> digest(size);
        record.AddData("Digest", B_RAW_TYPE, digest.data(), size);
        EXPECT_TRUE(tells(FileOf(record)));
    }
}

TEST_F(SimulationFileTest, WhatCannotBeReadBackReplacesNothing) {
    const std::string path = folder.Path("document");
    ASSERT_FALSE(SimulationFile::Write(path, PlanetRecord()).Failed());
    const std::string good = folder.Read("document");

    auto lost = MakePlanetEpoch("Lost");
    lost->SystemFromID(2)->SetVelocity({0, 0, std::numeric_limits<double>::infinity()});
    DocumentError error =
        SimulationFile::Write(path, RecordOf({MakePlanetEpoch("Good").get(), lost.get()}));
    EXPECT_EQ(error.text, kTextBadVelocity);

    auto deep = std::make_unique<Epoch>();
    MassSystem* group = deep->RootSystem();
    for (int32 i = 0; i < kMaxGroupNesting + 1; i++) {
        auto* const inner = new CompositeSystem("Group", i, {}, {}, kOriginID);
        group->AddChild(inner);
        group = inner;
    }
    error = SimulationFile::Write(path, RecordOf({deep.get()}));
    EXPECT_EQ(error.text, kTextNestedTooDeeply);
    EXPECT_EQ(SimulationFile::Write(path, BMessage()).text, kTextNoEpoch);

    EXPECT_EQ(folder.Read("document"), good);
    EXPECT_EQ(folder.Names().size(), 1u) << "and nothing lies beside it";
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
