#include "Tests/Run/RunFixture.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>

#include "Simulation/Document/SimulationFile.h"
#include "Tests/Simulation/Document/SampleDocument.h"

std::string RunFixture::Get(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::string RunFixture::PutDocument(const std::string& name, const Epoch& epoch) const {
    return PutRecord(name, RecordOf({&epoch}));
}

std::string RunFixture::PutRecord(const std::string& name, const BMessage& record) const {
    return Put(name, FileOf(record));
}

BMessage RunFixture::GetRecord(const std::string& path) {
    BMessage record;
    EXPECT_FALSE(SimulationFile::Read(path, &record).Failed()) << path;
    return record;
}

std::vector<CsvRow> RunFixture::ParseCsv(const std::string& text) {
    static const std::regex kRow(
        R"rx((\d+),([^,]+),(\d+),("(?:[^"]|"")*"|[^,"]*),([^,]+),([^,]+),([^,]+),([^,]+),([^,]+),([^,]+))rx");
    std::istringstream lines(text);
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line, "report,time,id,name,x,y,z,vx,vy,vz");
    EXPECT_TRUE(text.ends_with('\n'));
    std::vector<CsvRow> rows;
    std::smatch columns;
    while (std::getline(lines, line)) {
        EXPECT_TRUE(std::regex_match(line, columns, kRow)) << line;
        const auto number = [&columns](std::size_t i) {
            return std::strtod(columns.str(i).c_str(), nullptr);
        };
        CsvRow row{
            std::stoll(columns.str(1)), number(2), std::stoll(columns.str(3)), columns.str(4), {}};
        for (std::size_t k = 0; k < 6; k++)
            row.values[k] = number(5 + k);
        rows.push_back(row);
    }
    return rows;
}

std::string RunFixture::Member(const std::string& json, const std::string& name) {
    const std::string key = '"' + name + "\":";
    const std::size_t at = json.find(key);
    if (at == std::string::npos) return "";
    const std::size_t begin = at + key.size();
    return json.substr(begin, json.find_first_of(",}", begin) - begin);
}

std::unique_ptr<Epoch> TestSystem() {
    auto epoch = std::make_unique<Epoch>();
    epoch->SetName("Start");
    epoch->SetTime(1000.0);
    MassSystem* const root = epoch->RootSystem();
    root->AddChild(
        MakeBody("Sun, \"Sol\"", 5, 1.32712440018e20, {1e9, -2e9, 0}, {10, 0, 3}).release());
    root->AddChild(MakeBody("Light", 1, 4e13, {2e11, 0, 0}, {0, 2.5e4, 100}).release());
    root->AddChild(MakeBody("Heavy", 2, 4e15, {-1e11, 1e9, 0}, {0, -3.5e4, 0}).release());
    root->AddChild(MakeBody("Dust", 0, 0.0, {0, 3e11, 1e9}, {-2e4, 0, 0}).release());
    return epoch;
}

void AddSmallBody(Epoch* epoch, int64 id, ThreeVector position, ThreeVector velocity) {
    const std::string name = 'b' + std::to_string(id);
    std::unique_ptr<Body> body = MakeBody(name.c_str(), id, 1.0, position, velocity);
    body->SetRadius(0.05);
    epoch->RootSystem()->AddChild(body.release());
}

std::unique_ptr<Epoch> MergingSystem() {
    auto epoch = std::make_unique<Epoch>();
    AddSmallBody(epoch.get(), 0, {0, 0, 0});
    AddSmallBody(epoch.get(), 1, {1, 0, 0});
    epoch->SystemFromID(1)->SetM(0.9);
    AddSmallBody(epoch.get(), 2, {50, 0, 0}, {0, 0.24, 0});
    return epoch;
}
