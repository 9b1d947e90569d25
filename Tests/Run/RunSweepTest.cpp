// Many runs of one document with other edits, a line for each.
#include <csignal>
#include <filesystem>
#include <sstream>

#include "Tests/Run/ProgramRun.h"
#include "Tests/Run/RunFixture.h"

namespace {

using Arguments = std::vector<std::string>;
using Table = std::vector<std::vector<std::string>>;

class RunSweep : public RunFixture {
protected:
    // The cells of all lines, none of which has commas in quotes.
    static Table Parse(const std::string& text) {
        Table table;
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);) {
            std::istringstream cells(line);
            table.emplace_back();
            for (std::string cell; std::getline(cells, cell, ',');)
                table.back().push_back(cell);
        }
        return table;
    }
    static std::string Cell(const Table& table, std::size_t line, const std::string& head) {
        const auto& heads = table.at(0);
        const auto found = std::find(heads.begin(), heads.end(), head);
        if (found == heads.end() || line >= table.size()) return "none";
        return table[line].at(static_cast<std::size_t>(found - heads.begin()));
    }
    static Outcome Run(Arguments sweep, const Arguments& more) {
        sweep.insert(sweep.end(), more.begin(), more.end());
        return RunProgram(sweep);
    }

    const std::string document_ = PutDocument("document", *TestSystem());
    // A grid of six runs, short and long ones.
    const Arguments grid_ = {"--sweep", "Light.v.y=20..30 km/s x 3",
                             "--sweep", "Heavy.mass=1e13..4e15 kg x 2 log",
                             "--for",   "2 yr",
                             "--order", "16",
                             "--body",  "Light",
                             document_};
};

TEST_F(RunSweep, LinesAreThoseOfTheRunsThemselvesWhateverTheThreads) {
    const Outcome one = Run(grid_, {"--threads", "1"});
    ASSERT_EQ(one.status, 0) << one.err;
    const Outcome three = Run(grid_, {"--threads", "3", "--csv", Path("three")});
    ASSERT_EQ(three.status, 0) << three.err;
    EXPECT_EQ(Get(Path("three")), one.out);

    const Table table = Parse(one.out);
    ASSERT_EQ(table.size(), 7u) << one.out;
    EXPECT_EQ(Cell(table, 3, "Light.v.y"), "25 km/s");
    EXPECT_EQ(Cell(table, 4, "Heavy.mass"), "4e+15 kg");
    for (const std::size_t line : {1u, 4u, 6u}) {
        const Outcome alone =
            RunProgram({"--for", "2 yr", "--order", "16", "--json", "--csv", Path("alone"),
                        "--edit", "Light.v.y=" + Cell(table, line, "Light.v.y"), "--edit",
                        "Heavy.mass=" + Cell(table, line, "Heavy.mass"), document_});
        ASSERT_EQ(alone.status, 0) << alone.err;
        for (const auto& [head, member] : {std::pair{"sha256", "sha256"},
                                           {"steps", "steps"},
                                           {"reports", "reports"},
                                           {"time", "end_time_s"},
                                           {"energy_error", "relative_energy_error"}})
            EXPECT_EQ(std::string(Cell(table, line, head)),
                      std::string(head) == "sha256" ? Member(alone.out, member).substr(1, 64)
                                                    : Member(alone.out, member))
                << head;
        const std::vector<CsvRow> rows = ParseCsv(Get(Path("alone")));
        double x = 0.0;
        for (const CsvRow& row : rows)
            if (row.name == "Light") x = row.values[0];
        EXPECT_EQ(std::strtod(Cell(table, line, "Light.x").c_str(), nullptr), x);
    }
    EXPECT_NE(Cell(table, 1, "sha256"), Cell(table, 2, "sha256"));
    EXPECT_GT(std::strtod(Cell(table, 1, "Light.a").c_str(), nullptr), 1e11);
}

TEST_F(RunSweep, AKilledSweepGoesOnAfterItsWholeLines) {
    const std::string path = Path("lines");
    ASSERT_EQ(Run(grid_, {"--csv", Path("whole")}).status, 0);
    const std::string whole = Get(Path("whole"));
    const std::size_t thirdLine = whole.find("\n2,") + 1;
    for (const std::size_t size : {std::size_t{0}, std::size_t{5}, whole.find('\n') + 1, thirdLine,
                                   thirdLine + 1, thirdLine + 40, whole.size() - 1, whole.size()}) {
        Put("lines", whole.substr(0, size));
        const Outcome again = Run(grid_, {"--csv", path, "--threads", "2"});
        EXPECT_EQ(again.status, 0) << again.err;
        EXPECT_EQ(Get(path), whole) << size;
        EXPECT_EQ(again.err.find("6 of 6") != std::string::npos, size == whole.size());
    }
    // Killed, or told to stop, at work.
    for (const int signal : {SIGKILL, SIGTERM}) {
        std::filesystem::remove(path);
        Arguments arguments = {"--sweep", "Light.v.y=20..30 km/s x 60",
                               "--for",   "10 yr",
                               "--order", "16",
                               "--csv",   path,
                               "-q",      document_};
        const Outcome stopped = RunProgram(arguments, {.meanwhile = [&](pid_t program) {
                                               while (Parse(Get(path)).size() < 4)
                                                   usleep(1000);
                                               kill(program, signal);
                                           }});
        EXPECT_EQ(stopped.signal, signal == SIGKILL ? SIGKILL : 0);
        EXPECT_EQ(stopped.status, signal == SIGTERM ? 143 : -1);
        const std::string kept = Get(path);
        EXPECT_LT(Parse(kept).size(), 61u);
        ASSERT_EQ(RunProgram(arguments).status, 0);
        EXPECT_EQ(Get(path).substr(0, kept.rfind('\n')), kept.substr(0, kept.rfind('\n')));
        EXPECT_EQ(Parse(Get(path)).size(), 61u);
    }
}

TEST_F(RunSweep, AFileOfAnotherSweepStaysAsItIs) {
    const std::string path = Path("lines");
    ASSERT_EQ(Run(grid_, {"--csv", path}).status, 0);
    const std::string whole = Get(path);
    const std::string other = PutDocument("other", *MergingSystem());
    Arguments longer = grid_;
    longer[1] = "Light.v.y=20..30 km/s x 5";
    for (const Arguments& sweep : {longer,
                                   Arguments{"--cutoff", "1e-9"},
                                   {"--edit", "Heavy.name=Heavier"},
                                   {"--steps", "9"}}) {
        const bool isMore = sweep.size() == 2;
        const Outcome refused =
            isMore ? Run(grid_, {sweep[0], sweep[1], "--csv", path}) : Run(sweep, {"--csv", path});
        EXPECT_EQ(refused.status, 1);
        EXPECT_EQ(Get(path), whole);
    }
    Put("document", Get(other));
    EXPECT_EQ(RunProgram({"--sweep", "b0.mass=1..2 kg x 2", "--csv", path, document_}).status, 1);
    EXPECT_EQ(Get(path), whole);
}

TEST_F(RunSweep, ValuesFromAFileMergersAndRunsThatCannotBe) {
    const std::string document = PutDocument("merging", *MergingSystem());
    const std::string values =
        Put("values", "\"b2.name\" , b0.r.x\r\n\"third, \"\"3\"\"\",0 m\r\n\r\nb,-30 m\r\n");
    const Outcome outcome = RunProgram({"--sweep-file", values, "--sweep", "epoch.order=4..16 x 2",
                                        "--for", "100", "--body", "b1", document});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_NE(outcome.out.find("\n1,\"third, \"\"3\"\"\",0 m,4,done,"), std::string::npos)
        << outcome.out;
    const Table table = Parse(outcome.out);
    EXPECT_EQ(table.size(), 5u);
    EXPECT_EQ(Cell(table, 3, "mergers"), "0");
    // Commas in the name: one cell more.
    EXPECT_NE(outcome.out.find(",merger "), std::string::npos);
    EXPECT_NE(outcome.out.find(" b0 < b1,"), std::string::npos);
    // The absorbed body has no place any more.
    EXPECT_TRUE(table.at(1).size() < table.at(3).size() ||
                outcome.out.find(",,,,,,,,,,,,,") != std::string::npos);

    // Contacts where bodies do not merge.
    const Outcome stopped = RunProgram(
        {"--sweep", "epoch.order=4..16 x 2", "--for", "100", "--on-collision", "stop", document});
    EXPECT_NE(stopped.out.find(",contact "), std::string::npos) << stopped.out;
    EXPECT_NE(stopped.out.find(" b0 + b1,"), std::string::npos);

    // Each value is possible alone, but no hyperbola comes from behind its focus.
    const Outcome refused = RunProgram({"--sweep", "Light.orbit.e=0.1..2 x 2", "--sweep",
                                        "Light.orbit.nu=0..150 deg x 2", "-n", "3", document_});
    ASSERT_EQ(refused.status, 0) << refused.err;
    const Table some = Parse(refused.out);
    EXPECT_EQ(Cell(some, 3, "ending"), "done");
    EXPECT_EQ(Cell(some, 4, "ending"), "refused") << refused.out;
    EXPECT_EQ(some.at(4).size(), some.at(0).size());
}

TEST_F(RunSweep, WhatIsWrongIsToldBeforeAnythingRuns) {
    const std::string path = Path("lines");
    const std::string ragged = Put("ragged", "Light.mass,Heavy.mass\n1 kg,2 kg\n3 kg\n");
    const std::string bare = Put("bare", "Light.mass\n");
    const struct {
        Arguments arguments;
        std::string said;
        int status = 1;
    } kCases[] = {
        {{"--sweep", "Light.mass=1..2 kg"}, "FIELD=FROM..TO"},
        {{"--sweep", "Light.mass=1..2 kg x 1"}, "FIELD=FROM..TO"},
        {{"--sweep", "Light.mass=1..x kg x 3"}, "FIELD=FROM..TO"},
        {{"--sweep", "Light.mass=-1..2 kg x 3 log"}, "FIELD=FROM..TO"},
        {{"--sweep", "Light.mass=0..1e999 kg x 3"}, "FIELD=FROM..TO"},
        {{"--sweep", "Light.mass=1..2 kg x 2000000"}, "FIELD=FROM..TO"},
        {{"--sweep", "Light.mass=1..2 furlongs x 3"}, "unknown unit"},
        {{"--sweep", "Nobody.mass=1..2 kg x 3"}, "no system \"Nobody\""},
        {{"--sweep", "Light.weight=1..2 kg x 3"}, "no field \"weight\""},
        {{"--sweep", "Light.orbit.e=0.5..-1 x 3"}, "Light.orbit.e=-0.25"},
        {{"--sweep", "Light.mass=1..2 kg x 1000", "--sweep", "Heavy.mass=1..2 kg x 1001"},
         "at most 1000000"},
        {{"--sweep", "Light.mass=1..2 kg x 3", "--body", "Nobody"}, "no system \"Nobody\""},
        {{"--sweep", "Light.mass=1..2 kg x 3", "--order", "4", "--for", "-1 yr"}, "back"},
        {{"--sweep-file", Path("missing")}, "missing"},
        {{"--sweep-file", ragged}, "line 3"},
        {{"--sweep-file", bare}, "a line of values"},
        {{"--sweep", "Light.mass=1..2 kg x 3", "--json"}, "--json does not go with --sweep", 2},
        {{"--sweep", "Light.mass=1..2 kg x 3", "-o", "x"}, "--save does not go with --sweep", 2},
        {{"--body", "Light"}, "--body needs --sweep", 2},
    };
    for (const auto& wrong : kCases) {
        SCOPED_TRACE(wrong.said);
        const Outcome outcome = Run(wrong.arguments, {"--csv", path, document_});
        EXPECT_EQ(outcome.status, wrong.status);
        EXPECT_NE(outcome.err.find(wrong.said), std::string::npos) << outcome.err;
        EXPECT_FALSE(std::filesystem::exists(path));
    }
}

}  // namespace
