#include "RunFixture.h"

#include <charconv>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>

#include "SampleDocument.h"
#include "SimulationFile.h"

namespace {

template <typename Number>
Number Parse(const std::string& text) {
    Number number{};
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    EXPECT_TRUE(read.ec == std::errc() && read.ptr == text.data() + text.size()) << text;
    return number;
}

// The columns of one line; quoted ones without their quotes.
std::vector<std::string> Columns(const std::string& line) {
    std::vector<std::string> columns(1);
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); i++) {
        if (line[i] == '"' && quoted && i + 1 < line.size() && line[i + 1] == '"')
            columns.back() += line[i++];
        else if (line[i] == '"')
            quoted = !quoted;
        else if (line[i] == ',' && !quoted)
            columns.emplace_back();
        else
            columns.back() += line[i];
    }
    return columns;
}

}  // namespace

std::string RunFixture::Get(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::string RunFixture::PutDocument(const std::string& name, const Epoch& epoch) const {
    return PutRecord(name, RecordOf({&epoch}));
}

std::string RunFixture::PutRecord(const std::string& name, const BMessage& record) const {
    EXPECT_FALSE(SimulationFile::Write(Path(name), record).Failed());
    return Path(name);
}

BMessage RunFixture::GetRecord(const std::string& path) {
    BMessage record;
    EXPECT_FALSE(SimulationFile::Read(path, &record).Failed()) << path;
    return record;
}

std::vector<CsvRow> RunFixture::ParseCsv(const std::string& text) {
    std::istringstream lines(text);
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line, "report,time,id,name,x,y,z,vx,vy,vz");
    EXPECT_TRUE(text.ends_with('\n'));
    std::vector<CsvRow> rows;
    while (std::getline(lines, line)) {
        const std::vector<std::string> columns = Columns(line);
        EXPECT_EQ(columns.size(), 10u) << line;
        if (columns.size() != 10) break;
        CsvRow row{Parse<int64>(columns[0]),
                   Parse<double>(columns[1]),
                   Parse<int64>(columns[2]),
                   columns[3],
                   {}};
        for (std::size_t k = 0; k < 6; k++)
            row.values[k] = Parse<double>(columns[4 + k]);
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
