// The command line, and documents that cannot be used.
#include <filesystem>
#include <limits>

#include "Body.h"
#include "ProgramRun.h"
#include "RunFixture.h"

namespace {

using RunUsage = RunFixture;

TEST_F(RunUsage, WrongUseIsSaidOnStandardErrorWithStatusTwo) {
    const std::pair<std::vector<std::string>, const char*> wrongUses[] = {
        {{"--frobnicate"}, "--frobnicate"},
        {{"--steps"}, "--steps"},
        {{"-n", "1e3"}, "\"1e3\""},
        {{"-n", "99999999999999999999"}, "-n"},
        {{"--for", "10 parsecs"}, "10 parsecs"},
        {{"--every=-1"}, "-1"},
        {{"--cutoff", "0.001"}, "0.001"},
        {{"--order", "5"}, "\"5\""},
        {{"--threads", "0"}, "--threads"},
        {{"--quiet=yes"}, "--quiet"},
        {{"a", "b"}, "\"b\""},
        {{"--json", "--csv", "-"}, "--json"},
        {{"--save", ""}, "--save"},
        {{"--size", "8x480"}, "8x480"},
        {{"--axis", "xy"}, "\"xy\""},
        {{"--scale", "inf"}, "inf"},
#ifndef ORVEK_GUI
        {{"--png", "run.png"}, "built without"},
#endif
    };
    for (const auto& [arguments, named] : wrongUses) {
        const Outcome outcome = RunProgram(arguments);
        EXPECT_EQ(outcome.status, 2) << named;
        EXPECT_EQ(outcome.out, "");
        EXPECT_TRUE(outcome.err.starts_with("orvek-run: ")) << outcome.err;
        EXPECT_NE(outcome.err.find(named), std::string::npos) << outcome.err;
    }
}

TEST_F(RunUsage, HelpAndVersionGoToStandardOutput) {
    const Outcome help = RunProgram({"--help", "--frobnicate"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.err, "");
    EXPECT_NE(help.out.find("--steps"), std::string::npos);
    EXPECT_TRUE(RunProgram({"--version"}).out.starts_with("orvek-run "));
}

TEST_F(RunUsage, WithoutDocumentItRunsTheTemplate) {
    const Outcome outcome = RunProgram({"--json"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(Member(outcome.out, "bodies"), "2");
    EXPECT_EQ(Member(outcome.out, "steps"), "1000");
    EXPECT_EQ(Member(outcome.out, "epoch"), "\"Genesis\"");
}

TEST_F(RunUsage, DumpShowsTheRecordsAndRunsNothing) {
    const std::string document = PutDocument("document", *TestSystem());
    const Outcome outcome = RunProgram({"--dump", "-o", Path("saved"), document});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, GetRecord(document).ToText());
    EXPECT_FALSE(std::filesystem::exists(Path("saved")));
}

class RunBadFile : public RunFixture {
protected:
    // The program must refuse the file, and touch nothing.
    void ExpectRefused(const std::string& path, const std::string& reason) {
        const Outcome outcome =
            RunProgram({"--csv", Path("out.csv"), "--save", Path("saved"), path});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.err, "orvek-run: " + path + ": " + reason + "\n");
        EXPECT_EQ(outcome.out, "");
        EXPECT_FALSE(std::filesystem::exists(Path("out.csv")));
        EXPECT_FALSE(std::filesystem::exists(Path("saved")));
#ifndef ORVEK_SANITIZED
        EXPECT_LT(outcome.peakMemory, 60 * 1024);
#endif
    }

    const std::string good_ = Get(PutDocument("good", *TestSystem()));
};

TEST_F(RunBadFile, FilesThatAreNoDocuments) {
    ExpectRefused(Path("none"), "No such file or directory");
    ExpectRefused(Put("text", "just some text"), "not a simulation document");
    std::string lying = good_;  // it says that it is 2 GB long
    lying.replace(16, 4, "\xFF\xFF\xFF\x7F");
    for (const std::string& bytes : {good_.substr(0, good_.size() / 2), lying})
        ExpectRefused(Put("damaged", bytes), "the document is cut off or damaged");
}

TEST_F(RunBadFile, DocumentsThatCannotBeRun) {
    BMessage stranger(FourCC("ARCV")), record;
    stranger.AddString("class", "Nothing of ours");
    record.AddMessage("Epochs", &stranger);
    ExpectRefused(PutRecord("stranger", record), "the document holds no epoch");
    const std::unique_ptr<Epoch> epoch = TestSystem();
    epoch->SystemFromID(2)->SetVelocity({0, std::numeric_limits<double>::quiet_NaN(), 0});
    ExpectRefused(PutDocument("nan", *epoch),
                  "the velocity of body \"Heavy\" is not a finite number");
}

TEST_F(RunBadFile, NestingWithoutEnd) {
    // Groups in groups; each is a good archive by itself.
    BMessage group;
    for (int32 depth = 0; depth < 1000; depth++) {
        BMessage outer(FourCC("ARCV"));
        outer.AddInt64("ID", 10 + depth);
        if (depth > 0) outer.AddMessage("Bodies", &group);
        outer.AddString("class", "CompositeSystem");
        group = outer;
    }
    BMessage archive;
    ASSERT_EQ(Epoch().Archive(&archive, true), B_OK);
    archive.RemoveName("Root");
    archive.AddMessage("Root", &group);
    BMessage record;
    record.AddMessage("Epochs", &archive);
    ExpectRefused(PutRecord("groups", record), "the document's records are nested too deeply");
}

}  // namespace
