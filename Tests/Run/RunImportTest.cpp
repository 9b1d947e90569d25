// Bodies from files, and back into them.
#include "Tests/Run/ProgramRun.h"
#include "Tests/Run/RunFixture.h"

namespace {

class RunImport : public RunFixture {
protected:
    const std::string head_ =
        "name,gm [m3/s2],radius [m],x [m],y [m],z [m],vx [m/s],vy [m/s],vz [m/s]\n";
    // As --export writes them.
    const std::string bodies_ = head_ +
                                "\"Sun, \"\"the\"\"\",1.5e+20,695700000.5,0.1,0,0,0,0,0\n"
                                "\"Earth\",398600435507000,0,149597870700,0,1e-05,0,29784.7,0\n";
};

TEST_F(RunImport, BodiesComeAndGoToTheSameBits) {
    const std::string file = Put("bodies.csv", bodies_);
    // Without a document they are all there are; one that is given keeps its own.
    const Outcome alone = RunProgram({"-n", "0", "-q", "--import", file, "--export", "-"});
    EXPECT_EQ(alone.status, 0) << alone.err;
    EXPECT_EQ(alone.out, bodies_);
    const std::string document = PutDocument("document", *TestSystem());
    const Outcome beside =
        RunProgram({"-n", "0", "-q", "--import", file, "--export", Path("all.csv"), document});
    EXPECT_EQ(beside.status, 0) << beside.err;
    EXPECT_NE(Get(Path("all.csv")), bodies_);
    EXPECT_TRUE(Get(Path("all.csv")).ends_with(bodies_.substr(head_.size())));

    // Edits know them, and a run moves them.
    const Outcome moved = RunProgram({"--for", "1 dy", "-q", "--import", file, "--edit",
                                      "Earth.name=Terra", "--export", Path("later.csv")});
    EXPECT_EQ(moved.status, 0) << moved.err;
    EXPECT_NE(Get(Path("later.csv")).find("\"Terra\",398600435507000,0,1495"), std::string::npos);
    const Outcome again =
        RunProgram({"-n", "0", "-q", "--import", Path("later.csv"), "--export", "-"});
    EXPECT_EQ(again.out, Get(Path("later.csv")));
}

TEST_F(RunImport, WhatIsWrongIsNamedWithFileAndLine) {
    const std::string file = Put("bodies.csv", bodies_ + "\"X\",1,0,0.1,0,0,0,0,0\n");
    const Outcome same = RunProgram({"-n", "0", "--import", file, "-o", Path("saved")});
    EXPECT_EQ(same.status, 1);
    EXPECT_NE(same.err.find(file + ": line 2: "), std::string::npos) << same.err;
    EXPECT_EQ(Get(Path("saved")), "");
    EXPECT_EQ(RunProgram({"-n", "0", "--import", Path("none")}).status, 1);
    EXPECT_EQ(RunProgram({"-n", "0", "--import", file, "--export", "-", "--json"}).status, 2);
    EXPECT_EQ(RunProgram({"-n", "0", "--import", file, "--import-gm", "1 km"}).status, 2);
    EXPECT_EQ(RunProgram({"-n", "0", "--import", file, "--import-gm", "-1 Me"}).status, 2);

    // A mass is asked for where none is told.
    const std::string massless =
        Put("massless.csv", "name,x [m],y [m],z [m],vx [m/s],vy [m/s],vz [m/s]\nA,1,2,3,4,5,6\n");
    const Outcome asks = RunProgram({"-n", "0", "--import", massless});
    EXPECT_EQ(asks.status, 1);
    EXPECT_NE(asks.err.find("line 2: no mass is given for \"A\""), std::string::npos) << asks.err;
    const Outcome given = RunProgram(
        {"-n", "0", "-q", "--import", massless, "--import-gm", "2 km3/s2", "--export", "-"});
    EXPECT_EQ(given.out, head_ + "\"A\",2e+09,0,1,2,3,4,5,6\n");
}

TEST_F(RunImport, TheOldKilogramIsToldOf) {
    const std::string file = Put("kg.csv",
                                 "name,mass [kg],x [m],y [m],z [m],vx [m/s],vy [m/s],vz [m/s]\n"
                                 "A,1,1,2,3,4,5,6\n");
    const Outcome outcome = RunProgram({"-n", "0", "--import", file, "--export", "-"});
    EXPECT_NE(outcome.err.find("3.4e-4"), std::string::npos) << outcome.err;
    EXPECT_EQ(outcome.out, head_ + "\"A\",6.672e-11,0,1,2,3,4,5,6\n");
}

}  // namespace
