#include "Tests/Run/Examples/ExampleRun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sstream>

#include "Tests/Run/ProgramRun.h"

namespace examples {

namespace {

std::string Exactly(double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.17g", value);
    return text;
}

// A line of the reports: number, time, identifier, name, place, velocity.
void Take(const std::string& line, std::vector<Moment>* moments) {
    std::vector<std::string> cells;
    std::istringstream row(line);
    for (std::string cell; std::getline(row, cell, ',');)
        cells.push_back(cell);
    ASSERT_EQ(cells.size(), 10u) << line;
    const auto number = [&cells](std::size_t column) { return std::stod(cells[column]); };
    if (moments->empty() || moments->back().time != number(1)) moments->push_back({number(1), {}});
    moments->back().bodies[cells[3]] = {{number(4), number(5), number(6)},
                                        {number(7), number(8), number(9)}};
}

}  // namespace

RelativeState Moment::Between(const std::string& first, const std::string& second) const {
    const RelativeState& from = bodies.at(first);
    const RelativeState& to = bodies.at(second);
    return {to.position - from.position, to.velocity - from.velocity};
}

OrbitalElements Moment::Orbit(const std::string& centre, const std::string& body,
                              double gravitationalParameter) const {
    return ElementsOf(Between(centre, body), gravitationalParameter);
}

double Moment::Longitude(const std::string& centre, const std::string& body) const {
    const ThreeVector place = Between(centre, body).position;
    return std::atan2(place.y, place.x) / kDegree;
}

double Moment::MedianDistance() const {
    std::vector<double> distances;
    for (const auto& [name, state] : bodies)
        distances.push_back(Length(state.position));
    const auto middle = distances.begin() + static_cast<std::ptrdiff_t>(distances.size() / 2);
    std::ranges::nth_element(distances, middle);
    return *middle;
}

std::vector<double> Times(double end, int count) {
    std::vector<double> times;
    for (int i = 0; i < count; i++)
        times.push_back(end * i / (count - 1));
    return times;
}

std::vector<Moment> RunExample(const std::string& example, const std::vector<double>& times) {
    std::vector<std::string> arguments{"--quiet", "--threads", "1", "--csv", "-"};
    for (const double time : times) {
        arguments.emplace_back("--at");
        arguments.push_back(Exactly(time));
    }
    arguments.push_back(std::string(ORVEK_EXAMPLES) + '/' + example + ".orvek");
    const Outcome outcome = RunProgram(arguments);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    std::vector<Moment> moments;
    std::istringstream lines(outcome.out);
    std::string line;
    std::getline(lines, line);
    while (std::getline(lines, line))
        Take(line, &moments);
    EXPECT_EQ(moments.size(), times.size()) << example;
    return moments.size() == times.size() ? moments : std::vector<Moment>();
}

double Turned(double from, double to) {
    return std::remainder(to - from, 360.0);
}

}  // namespace examples
