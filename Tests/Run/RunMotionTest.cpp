// What the program writes of the motion between the reports, and runs back in time.
#include <algorithm>
#include <cmath>
#include <map>
#include <sstream>

#include "Tests/Run/ProgramRun.h"
#include "Tests/Run/RunFixture.h"
#include "Tests/Simulation/Document/SampleDocument.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

struct EventRow {
    double time;
    std::string names;
    double distance;
    double speed;
};

class RunMotion : public RunFixture {
protected:
    Outcome Run(std::vector<std::string> arguments, const std::string& document) {
        for (const char* const more : {"--order", "16", "--cutoff", "1e-15", "--json"})
            arguments.emplace_back(more);
        arguments.push_back(document);
        return RunProgram(arguments);
    }
    // By event.
    static std::map<std::string, std::vector<EventRow>> ParseEvents(const std::string& text) {
        std::map<std::string, std::vector<EventRow>> events;
        std::istringstream lines(text);
        std::string line;
        std::getline(lines, line);
        EXPECT_EQ(line, "time,event,id1,name1,id2,name2,distance,speed");
        double last = -HUGE_VAL;
        while (std::getline(lines, line)) {
            std::vector<std::string> columns(1);
            for (const char c : line)
                if (c == ',')
                    columns.emplace_back();
                else
                    columns.back() += c;
            EXPECT_EQ(columns.size(), 8u) << line;
            events[columns[1]].push_back({std::stod(columns[0]), columns[3] + '/' + columns[5],
                                          std::stod(columns[6]), std::stod(columns[7])});
            EXPECT_GE(std::stod(columns[0]), last);
            last = std::stod(columns[0]);
        }
        return events;
    }
};

TEST_F(RunMotion, StatesAtTimesAreThoseOfRunsThatEndThere) {
    const auto start = TestSystem();
    start->SetTime(0.0);
    const std::string document = PutDocument("document", *start);
    const std::string times = Put("times", "# on the way\n 31 yr\n\n50 yr # the last one\n");
    const Outcome outcome = Run({"--at", "0", "--at", "11.5 yr", "--at", "@" + times, "--at",
                                 "-2 yr", "--csv", Path("csv")},
                                document);
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_NE(outcome.err.find("did not come to: 1\n"), std::string::npos) << outcome.err;
    const std::vector<CsvRow> rows = ParseCsv(Get(Path("csv")));
    ASSERT_EQ(rows.size(), 16u);
    EXPECT_EQ(rows[0].time, 0.0);
    const char* const ends[] = {"11.5 yr", "31 yr", "50 yr"};
    for (std::size_t state = 1; state < 4; state++) {
        ASSERT_EQ(Run({"--for", ends[state - 1], "--csv", Path("end")}, document).status, 0);
        const std::vector<CsvRow> end = ParseCsv(Get(Path("end")));
        for (std::size_t i = 0; i < 4; i++) {
            const CsvRow& expected = end[end.size() - 4 + i];
            const CsvRow& found = rows[4 * state + i];
            EXPECT_EQ(found.time, expected.time);
            EXPECT_EQ(found.name, expected.name);
            EXPECT_TRUE(std::equal(found.values, found.values + 6, expected.values));
        }
    }
}

TEST_F(RunMotion, StepsAreWrittenWhereTheyEnd) {
    const std::string document = PutDocument("document", *TestSystem());
    const Outcome outcome = Run({"--steps", "40", "--step-times", "--csv", Path("csv")}, document);
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_GT(std::stoi(Member(outcome.out, "reports")), 40);
    EXPECT_EQ(Member(outcome.out, "order"), "16");
    const std::vector<CsvRow> rows = ParseCsv(Get(Path("csv")));
    ASSERT_EQ(rows.size(), 4u * 41);
    for (std::size_t i = 0; i < rows.size(); i++)
        EXPECT_EQ(rows[i].report, static_cast<int64>(i / 4));
    EXPECT_EQ(rows.back().time, std::stod(Member(outcome.out, "end_time_s")));
}

// The pairs of so many bodies have no room at order 16.
TEST_F(RunMotion, TheSummaryTellsTheOrderThatWasUsed) {
    Epoch start;
    for (int64 i = 0; i < 1460; i++) {
        const int64 row = i / 10 % 10;
        const int64 layer = i / 100;
        AddSmallBody(&start, i,
                     ThreeVector{static_cast<double>(i % 10), static_cast<double>(row),
                                 static_cast<double>(layer)} *
                         10.0);
    }
    const Outcome outcome = Run({"--steps", "1"}, PutDocument("document", start));
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(Member(outcome.out, "order"), "12");
}

TEST_F(RunMotion, TimeFallsToTheVeryTimeAskedForAndBack) {
    const std::string document = PutDocument("document", *TestSystem());
    const Outcome back =
        Run({"--for", "-3 yr", "--csv", Path("csv"), "-o", Path("past")}, document);
    ASSERT_EQ(back.status, 0) << back.err;
    const std::vector<CsvRow> rows = ParseCsv(Get(Path("csv")));
    EXPECT_NEAR(rows.back().time, 1000.0 - 3 * 3.15576e7, 1.0e5);
    EXPECT_EQ(rows.back().time, std::stod(Member(back.out, "end_time_s")));
    EXPECT_TRUE(std::is_sorted(rows.rbegin(), rows.rend(),
                               [](const CsvRow& a, const CsvRow& b) { return a.time < b.time; }));
    const Outcome there = Run({"--at", "1000", "--csv", Path("again")}, Path("past"));
    ASSERT_EQ(there.status, 0) << there.err;
    const std::vector<CsvRow> again = ParseCsv(Get(Path("again")));
    ASSERT_EQ(again.size(), 4u);
    // A metre in 3e11.
    for (std::size_t i = 0; i < 4; i++)
        for (int axis = 0; axis < 3; axis++)
            EXPECT_NEAR(again[i].values[axis], rows[i].values[axis], 1.0) << i;
}

TEST_F(RunMotion, WhatALowOrderCannotDoIsRefused) {
    const std::string document = PutDocument("document", *TestSystem());
    for (const std::vector<std::string>& what :
         std::vector<std::vector<std::string>>{{"--at", "1 yr", "--csv", Path("csv")},
                                               {"--events", Path("events")},
                                               {"--for", "-1 yr"}}) {
        std::vector<std::string> arguments = what;
        arguments.insert(arguments.end(), {"-o", Path("saved"), document});
        const Outcome outcome = RunProgram(arguments);
        EXPECT_EQ(outcome.status, 1) << what[0];
        EXPECT_NE(outcome.err.find("order 5 or more"), std::string::npos) << outcome.err;
        EXPECT_EQ(Get(Path("saved")), "");
    }
    for (const std::vector<std::string>& what :
         std::vector<std::vector<std::string>>{{"--at", "1 yr"},
                                               {"--step-times"},
                                               {"--at", "1 yr", "--csv", "a", "--every", "2"},
                                               {"--escape-distance", "1 AU"},
                                               {"--at", "@" + Path("nothing"), "--csv", "a"}})
        EXPECT_EQ(RunProgram(what).status, 2) << what[0];
}

// A pair on an ellipse of eccentricity 0.6, tilted out of the plane, that begins where it is
// nearest.
TEST_F(RunMotion, EventsAreTheRootsOfTheMotion) {
    Epoch start;
    start.SetCOMOnGo(false);
    AddSmallBody(&start, 0, {});
    start.SystemFromID(0)->SetM(1.0);
    const double speed = std::sqrt((1 + 0.6) / (1 - 0.6));
    AddSmallBody(&start, 1, {0.4, 0, 0}, {0, 0.8 * speed, 0.6 * speed});
    start.SystemFromID(1)->SetM(0.0);
    // Leaves the others for good.
    AddSmallBody(&start, 2, {0, 0, 5}, {0, 0, 3});
    start.SystemFromID(2)->SetM(0.0);
    const std::string document = PutDocument("document", start);
    const Outcome outcome =
        Run({"--for", "32", "--events", Path("events"), "--escape-distance", "20 m"}, document);
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    auto events = ParseEvents(Get(Path("events")));
    ASSERT_EQ(events["closest approach"].size(), 5u);
    for (std::size_t i = 0; i < 5; i++) {
        const EventRow& row = events["closest approach"][i];
        EXPECT_NEAR(row.time, 2 * kPi * static_cast<double>(i + 1), 1e-12);
        EXPECT_NEAR(row.distance, 0.4, 1e-14);
        EXPECT_NEAR(row.speed, speed, 1e-13);
        EXPECT_EQ(row.names, "b0/b1");
    }
    // At both ends of the axis; from there on it is on the other side.
    ASSERT_EQ(events["plane crossing"].size(), 10u);
    for (std::size_t i = 0; i < 10; i++)
        EXPECT_NEAR(events["plane crossing"][i].time, kPi * static_cast<double>(i + 1), 1e-12);
    ASSERT_EQ(events["escape"].size(), 1u);
    EXPECT_EQ(events["escape"][0].names, "b2/");
    EXPECT_NEAR(events["escape"][0].distance, 20.0, 1e-12);
    EXPECT_TRUE(events["contact"].empty());
}

// Between two reports of a long step bodies of two tight pairs may both near each other and part
// again; in short steps each turn has a report for itself.
TEST_F(RunMotion, NoTurnOfTightPairsIsMissedInLongSteps) {
    Epoch start;
    start.SetCOMOnGo(false);
    for (const int64 pair : {0, 1}) {
        const double side = pair == 0 ? -1.0 : 1.0;
        const double speed = std::sqrt(2.0 / 0.25) / 2;
        for (const int64 body : {0, 1}) {
            const double sign = body == 0 ? -1.0 : 1.0;
            AddSmallBody(&start, 2 * pair + body, {0.5 * side, 0.125 * sign, 0.03 * side},
                         {100 + speed * sign * side, side + 0.25 * sign, 0});
            start.SystemFromID(2 * pair + body)->SetRadius(0.0);
        }
    }
    const std::string document = PutDocument("document", start);
    const auto count = [&](const char* order, const char* cutoff) {
        const Outcome outcome = RunProgram({"--for", "12", "--order", order, "--cutoff", cutoff,
                                            "--events", Path("events"), "--json", document});
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        return std::pair(ParseEvents(Get(Path("events")))["closest approach"].size(),
                         std::stoi(Member(outcome.out, "reports")));
    };
    const auto few = count("24", "1e-6");
    const auto many = count("8", "1e-15");
    EXPECT_GT(many.second, 5 * few.second);
    EXPECT_EQ(few.first, many.first) << few.second;
}

// Nothing pulls, and what happens on the way is told all the same.
TEST_F(RunMotion, StraightWaysHaveEventsAndStatesToo) {
    Epoch start;
    start.SetCOMOnGo(false);
    AddSmallBody(&start, 0, {0, 0, -3}, {0, 0, 2});
    start.SystemFromID(0)->SetM(0.0);
    AddSmallBody(&start, 1, {5, 0, 1}, {0.5, 0, 0.25});
    start.SystemFromID(1)->SetM(0.0);
    const Outcome outcome =
        Run({"--for", "10", "--events", Path("events"), "--at", "4", "--csv", Path("csv")},
            PutDocument("document", start));
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    const auto crossings = ParseEvents(Get(Path("events")))["plane crossing"];
    ASSERT_EQ(crossings.size(), 1u);
    EXPECT_EQ(crossings[0].time, 1.5);
    const std::vector<CsvRow> rows = ParseCsv(Get(Path("csv")));
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[1].time, 4.0);
    EXPECT_EQ(rows[0].values[2] + rows[1].values[2], 5.0 + 2.0);
}

// Between two reports a body may come and go again.
TEST_F(RunMotion, WhoComesBackEscapesAgain) {
    Epoch start;
    start.SetCOMOnGo(false);
    AddSmallBody(&start, 0, {-30, 12, 0}, {1, 0, 0});
    start.SystemFromID(0)->SetM(0.0);
    const Outcome outcome =
        Run({"--for", "100", "--events", Path("events"), "--escape-distance", "20 m"},
            PutDocument("document", start));
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    const auto escapes = ParseEvents(Get(Path("events")))["escape"];
    ASSERT_EQ(escapes.size(), 1u);
    EXPECT_NEAR(escapes[0].time, 30.0 + 16.0, 1e-12);
    EXPECT_NEAR(escapes[0].distance, 20.0, 1e-12);
}

// At its near end the orbit of a body is below the plane for less time than passes between reports.
TEST_F(RunMotion, ADipIntoThePlaneIsTwoCrossings) {
    constexpr double kDepth = 1e-6;
    Epoch start;
    start.SetCOMOnGo(false);
    AddSmallBody(&start, 0, {0, 0, 0.4 - kDepth});
    start.SystemFromID(0)->SetM(1.0);
    AddSmallBody(&start, 1, {0, 0, 2.0 - kDepth}, {0.5, 0, 0});
    start.SystemFromID(1)->SetM(0.0);
    const Outcome outcome =
        Run({"--for", "5", "--events", Path("events")}, PutDocument("document", start));
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    const auto crossings = ParseEvents(Get(Path("events")))["plane crossing"];
    ASSERT_EQ(crossings.size(), 2u);
    const double half = std::sqrt(2 * kDepth * 0.4 * 0.4);
    EXPECT_NEAR(crossings[0].time, kPi - half, 1e-6);
    EXPECT_NEAR(crossings[1].time, kPi + half, 1e-6);
}

// In the file of events, and in the epoch that is saved.
TEST_F(RunMotion, BodiesThatTouchDoAsTheyAreTold) {
    const std::string document = PutDocument("document", *MergingSystem());
    for (const char* const what : {"merge", "stop", "pass"}) {
        const Outcome outcome = Run({"--for", "150", "--on-collision", what, "--events",
                                     Path("events"), "-o", Path("saved")},
                                    document);
        EXPECT_EQ(outcome.status, std::string(what) == "pass" ? 3 : 0) << outcome.err;
        auto events = ParseEvents(Get(Path("events")));
        ASSERT_EQ(events["contact"].size(), 1u) << what;
        EXPECT_NEAR(events["contact"][0].distance, 0.1, 1e-14);
        EXPECT_EQ(events["contact"][0].names, "b0/b1");
        const std::string ending = Member(outcome.out, "ending");
        // Points that fall onto each other: somewhere there is no next step.
        EXPECT_EQ(ending, *what == 'm'   ? "\"done\""
                          : *what == 's' ? "\"collision\""
                                         : "\"time stands\"");
        EXPECT_EQ(Member(outcome.out, "mergers"), *what == 'm' ? "1" : "0");
    }
    // What the epoch says holds where the command line says nothing.
    const Outcome edited = Run({"--for", "150", "--edit", "epoch.on-contact=stop"}, document);
    EXPECT_EQ(Member(edited.out, "ending"), "\"collision\"");
}

}  // namespace
