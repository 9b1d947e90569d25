// The command line, and documents that cannot be used.
#include <limits>

#include "Body.h"
#include "ProgramRun.h"
#include "RunFixture.h"

namespace {

using RunUsage = RunFixture;

TEST_F(RunUsage, WrongUseIsSaidOnStandardErrorWithStatusTwo) {
    const std::pair<std::vector<std::string>, const char*> wrongUses[] = {
        {{"--frobnicate"}, "--frobnicate"},
        {{"-x"}, "-x"},
        {{"--steps"}, "--steps"},
        {{"--steps", "-1"}, "\"-1\""},
        {{"-n", "1e3"}, "\"1e3\""},
        {{"-n", "99999999999999999999"}, "-n"},
        {{"--for", "10 parsecs"}, "10 parsecs"},
        {{"--for", "-1 yr"}, "-1 yr"},
        {{"--for", "nan"}, "nan"},
        {{"--every=-1"}, "-1"},
        {{"--cutoff", "0.001"}, "0.001"},
        {{"--order", "5"}, "\"5\""},
        {{"--threads", "0"}, "--threads"},
        {{"--quiet=yes"}, "--quiet"},
        {{"a", "b"}, "\"b\""},
        {{"--json", "--csv", "-"}, "--json"},
        {{"--save", ""}, "--save"},
        {{"--png", "-"}, "--png"},
        {{"--size", "640"}, "\"640\""},
        {{"--size", "8x480"}, "8x480"},
        {{"--size", "640x99999"}, "640x99999"},
        {{"--axis", "xy"}, "\"xy\""},
        {{"--axis", ""}, "--axis"},
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
    for (const char* option :
         {"--steps", "--for", "--csv", "--every", "--save", "--cutoff", "--order", "--threads",
          "--json", "--dump", "--quiet", "--version", "--png"})
        EXPECT_NE(help.out.find(option), std::string::npos) << option;
    EXPECT_TRUE(RunProgram({"--version"}).out.starts_with("orvek-run "));
}

TEST_F(RunUsage, WithoutDocumentItRunsTheTemplate) {
    const Outcome outcome = RunProgram({"--json"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(Member(outcome.out, "bodies"), "2");
    EXPECT_EQ(Member(outcome.out, "steps"), "1000");
    EXPECT_EQ(Member(outcome.out, "epoch"), "\"Genesis\"");
    EXPECT_NE(RunProgram({"--dump"}).out.find("BoskVeld"), std::string::npos);
}

TEST_F(RunUsage, DumpShowsTheRecordsAndRunsNothing) {
    const std::string document = PutDocument("document", *TestSystem());
    const Outcome outcome = RunProgram({"--dump", "-o", Path("saved"), document});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, GetRecord(document).ToText());
    EXPECT_FALSE(std::filesystem::exists(Path("saved")));
}

std::string LittleEndian(uint32 number) {
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>(number >> shift & 0xFF);
    return bytes;
}

// A stored record with one field, which holds the given record if there is one.
std::string NestedRecord(const std::string& inner) {
    std::string field;
    if (!inner.empty()) {
        const auto padding = (8 - (4 + inner.size()) % 8) % 8;
        const auto size = static_cast<uint32>(4 + inner.size() + padding);
        field =
            "\x09"
            "GGSM" +
            LittleEndian(size) + "\x01m" + LittleEndian(static_cast<uint32>(inner.size())) + inner +
            std::string(padding, '\0');
    }
    const std::string header =
        LittleEndian(static_cast<uint32>(18 + field.size())) + "VCRA" + '\x01';
    uint32 checksum = static_cast<uint8>(header[8]);
    for (std::size_t i = 0; i < 8; i += 4)
        for (std::size_t k = 0; k < 4; k++)
            checksum += uint32{static_cast<uint8>(header[i + k])} << (24 - 8 * k);
    return "1BOF" + LittleEndian(checksum) + header + field + '\0';
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
    ExpectRefused(Path(""), "Is a directory");
    ExpectRefused(Put("empty", ""), "not a simulation document");
    ExpectRefused(Put("text", "just some text"), "not a simulation document");
    const std::string damaged = "the document is cut off or damaged";
    for (std::size_t length = 8; length < good_.size(); length += 97)
        ExpectRefused(Put("cut", good_.substr(0, length)), damaged);
    // It says that it is 2 GB long, and that its first field is.
    for (const std::size_t at : {8u + 8u, 8u + 17u + 5u}) {
        std::string lying = good_;
        lying.replace(at, 4, "\xFF\xFF\xFF\x7F");
        ExpectRefused(Put("lying", lying), damaged);
    }
}

TEST_F(RunBadFile, DocumentsWithNothingToRun) {
    BMessage empty;
    ExpectRefused(PutRecord("empty", empty), "the document holds no epoch");
    BMessage stranger(FourCC("ARCV"));
    stranger.AddString("class", "Nothing of ours");
    empty.AddMessage("Epochs", &stranger);
    ExpectRefused(PutRecord("stranger", empty), "the document holds no epoch");
}

TEST_F(RunBadFile, NumbersThatAreNone) {
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
    // Records in records that mean nothing, made byte by byte from the inside out.
    std::string inner;
    for (int32 depth = 0; depth < 6000; depth++)
        inner = NestedRecord(inner);
    ExpectRefused(Put("records", "KWZXNB00" + inner), "the document holds no epoch");
}

}  // namespace
