// Another program gives the orders.
#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <sstream>

#include "Tests/Run/ProgramRun.h"
#include "Tests/Run/RunFixture.h"

namespace {

class RunDialogue : public RunFixture {
protected:
    // The answers to the orders, line by line.
    std::vector<std::string> Ask(const std::string& orders, const std::string& document = {},
                                 const std::string& note = {}) {
        const std::string file = Put("orders", orders);
        RunSetup setup;
        setup.prepare = [file] { dup2(open(file.c_str(), O_RDONLY), STDIN_FILENO); };
        std::vector<std::string> arguments{"-q", "--json-lines"};
        if (!document.empty()) arguments.push_back(document);
        const Outcome outcome = RunProgram(arguments, setup);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_TRUE(Has(outcome.err, note)) << outcome.err;
        std::vector<std::string> lines;
        std::istringstream text(outcome.out);
        for (std::string line; std::getline(text, line);)
            lines.push_back(line);
        return lines;
    }
    static bool Has(const std::string& text, const std::string& part) {
        return text.find(part) != std::string::npos;
    }
};

TEST_F(RunDialogue, OrdersAreCarriedOutOneAfterTheOther) {
    const std::vector<std::string> answers =
        Ask("{\"edit\": \"BoskVeld.name=B\\u00e4r \\ud83d\\ude00\"}\n"
            "{\"run\": \"1 dy\"}\n"
            "{\"edit\": \"Arrakis.mass=2 Ms\"}\n"
            "\n"
            "{\"steps\": 3}\n"
            "{\"state\": \"\"}\n"
            "{\"save\": \"" +
            Path("saved") + "\"}\n");
    ASSERT_EQ(answers.size(), 6u);
    EXPECT_EQ(answers[0], "{\"ok\":true}");
    EXPECT_TRUE(Has(answers[1], "\"name\":\"B\xc3\xa4r \xf0\x9f\x98\x80\"")) << answers[1];
    EXPECT_EQ(Member(answers[1], "ending"), "\"done\"");
    EXPECT_EQ(Member(answers[1], "mergers"), "0");
    EXPECT_EQ(answers[2], answers[0]);
    EXPECT_NE(answers[3], answers[1]);
    EXPECT_TRUE(Has(answers[3], "2.6542488e+20")) << answers[3];
    EXPECT_EQ(answers[4], answers[3]);
    EXPECT_EQ(answers[5], answers[0]);
    EXPECT_TRUE(std::filesystem::exists(Path("saved")));

    // The run is the one that the program makes by itself, to the bit.
    const Outcome run = RunProgram({"-q", "--for", "1 dy", "--csv", "-", "--every", "1000000"});
    const CsvRow last = ParseCsv(run.out).back();
    const std::size_t at = answers[1].rfind("\"r\":[");
    ASSERT_NE(at, std::string::npos);
    EXPECT_EQ(std::stod(answers[1].substr(at + 5)), last.values[0]);
}

// Edits that pause a run, and those that do not.
TEST_F(RunDialogue, RunsGoOnAfterEveryEdit) {
    const std::vector<std::string> answers =
        Ask("{\"run\": \"1 dy\"}\n{\"edit\": \"new-body\"}\n{\"run\": \"1 dy\"}\n"
            "{\"edit\": \"delete=BoskVeld\"}\n{\"run\": \"1 dy\"}\n");
    ASSERT_EQ(answers.size(), 5u);
    for (const std::string& answer : answers)
        EXPECT_FALSE(answer.starts_with("{\"error\"")) << answer;
    EXPECT_EQ(Member(answers[4], "ending"), "\"done\"");
}

TEST_F(RunDialogue, WhatIsNotUnderstoodIsAnsweredAndChangesNothing) {
    const std::vector<std::string> answers =
        Ask("{\"state\": 1}\n"
            "{\"edit\": \"Nobody.mass=1 kg\"}\n"
            "{\"fly\": \"1\"}\n"
            "{\"run\": \"1 parsec\"}\n{\"steps\": -1}\n{\"until\": \"supper\"}\n{\"import\": "
            "\"none\"}\n"
            "{\"run\": \"1 dy\"\n{\"run\": \"\\ud800\"}\nrun\n{\"a\":1}{}\n"
            "{\"state\": 1}\n");
    ASSERT_EQ(answers.size(), 12u);
    for (std::size_t i = 1; i + 1 < answers.size(); i++)
        EXPECT_TRUE(answers[i].starts_with("{\"error\":\"")) << answers[i];
    EXPECT_TRUE(Has(answers[1], "Nobody")) << answers[1];
    EXPECT_TRUE(Has(answers[2], "fly")) << answers[2];
    EXPECT_EQ(answers.back(), answers.front());
    EXPECT_EQ(RunProgram({"--json-lines", "--for", "1 dy"}).status, 2);
}

// The answers are the same, and standard error tells of the damage.
TEST_F(RunDialogue, ADamagedDocumentIsToldOf) {
    const std::string whole = Path("whole");
    const std::string document = PutDocument("document", *TestSystem());
    ASSERT_EQ(RunProgram({"-q", "--steps", "0", "--save", whole, document}).status, 0);
    std::string bytes = Get(whole);
    bytes.replace(bytes.find("Light"), 5, "Night");
    const std::vector<std::string> answers =
        Ask("{\"state\": 1}\n", Put("damaged", bytes), "the file is damaged");
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_TRUE(Has(answers[0], "Night")) << answers[0];
    EXPECT_TRUE(Has(Ask("{\"state\": 1}\n", whole)[0], "Light"));
}

TEST_F(RunDialogue, PythonDrivesTheEngine) {
    const Outcome python = RunOther("python3", {"--version"});
    if (python.status != 0) GTEST_SKIP() << "there is no python3";
    const Outcome outcome = RunOther("python3", {ORVEK_NOTEBOOK, ORVEK_RUN});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    // A year, from aphelion to aphelion or the like: back where it was.
    std::istringstream lines(outcome.out);
    std::vector<double> distances;
    for (std::string month, time, day, distance, unit;
         lines >> month >> time >> day >> distance >> unit;)
        distances.push_back(std::stod(distance));
    ASSERT_EQ(distances.size(), 13u) << outcome.out;
    EXPECT_NEAR(distances[0], 149.6 * (1.0 - 0.0167), 0.1);
    EXPECT_NEAR(distances[6], 149.6 * (1.0 + 0.0167), 0.1);
    EXPECT_NEAR(distances[12], distances[0], 0.01);
}

}  // namespace
