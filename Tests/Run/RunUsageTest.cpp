// The command line, and documents that cannot be used.
#include <filesystem>
#include <limits>

#include "Model/Systems/Body.h"
#include "Tests/Run/ProgramRun.h"
#include "Tests/Run/RunFixture.h"

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
        {{"--order", "25"}, "\"25\""},
        {{"--threads", "0"}, "--threads"},
        {{"--quiet=yes"}, "--quiet"},
        {{"a", "b"}, "\"b\""},
        {{"--json", "--csv", "-"}, "--json"},
        {{"--save", ""}, "--save"},
        {{"--on-collision", "bounce"}, "\"bounce\""},
        {{"--size", "8x480"}, "8x480"},
        {{"--axis", "xy"}, "\"xy\""},
        {{"--scale", "inf"}, "inf"},
        {{"--camera", "30"}, "\"30\""},
        {{"--camera", "30,95"}, "30,95"},
        {{"--camera", "30,40,0"}, "30,40,0"},
        {{"--camera", "30,40,5e11,1"}, "5e11,1"},
        {{"--camera", "30,nan"}, "nan"},
#ifdef ORVEK_GUI
        {{"--camera", "30,40"}, "--png"},
        {{"--pace", "1 dy"}, "--frames"},
        {{"--frames", "f", "--fps", "0"}, "\"0\""},
        {{"--frames", "f", "--pace", "-1 dy"}, "-1 dy"},
#endif
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

TEST_F(RunUsage, HelpVersionAndDumpRunNothing) {
    const Outcome help = RunProgram({"--help", "--frobnicate"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.err, "");
    EXPECT_NE(help.out.find("--steps"), std::string::npos);
    EXPECT_TRUE(RunProgram({"--version"}).out.starts_with("orvek-run "));
    const std::string document = PutDocument("document", *TestSystem());
    const Outcome dump = RunProgram({"--dump", "-o", Path("saved"), document});
    EXPECT_EQ(dump.status, 0);
    EXPECT_EQ(dump.out, GetRecord(document).ToText());
    EXPECT_FALSE(std::filesystem::exists(Path("saved")));
}

TEST_F(RunUsage, WithoutDocumentItRunsTheTemplate) {
    const Outcome outcome = RunProgram({"--json"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(Member(outcome.out, "bodies"), "2");
    EXPECT_EQ(Member(outcome.out, "steps"), "1000");
    EXPECT_EQ(Member(outcome.out, "epoch"), "\"Genesis\"");
}

TEST_F(RunUsage, AFileThatCannotBeRunIsRefusedAndNothingIsTouched) {
    std::string lying = Get(PutDocument("lying", *TestSystem()));  // it says that it is 2 GB long
    lying.replace(16, 4, "\xFF\xFF\xFF\x7F");
    const std::unique_ptr<Epoch> epoch = TestSystem();
    epoch->SystemFromID(2)->SetVelocity({0, std::numeric_limits<double>::quiet_NaN(), 0});
    const std::pair<std::string, const char*> files[] = {
        {Path("none"), "No such file or directory"},
        {Put("text", "just some text"), "not a simulation document"},
        {Put("damaged", lying), "the document is cut off or damaged"},
        {PutRecord("empty", BMessage()), "the document holds no epoch"},
        {PutDocument("nan", *epoch), "the velocity of body \"Heavy\" is not a finite number"},
    };
    for (const auto& [path, reason] : files) {
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
}

}  // namespace
