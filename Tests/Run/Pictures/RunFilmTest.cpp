// The film of a run: how many frames, what is where in them, and what they may not replace.
#include <QImage>
#include <cmath>
#include <cstdlib>
#include <filesystem>

#include "Model/Systems/Body.h"
#include "Tests/Run/ProgramRun.h"
#include "Tests/Run/RunFixture.h"

namespace {

namespace fs = std::filesystem;

constexpr QRgb kRed = qRgb(255, 0, 0);
constexpr QRgb kGreen = qRgb(0, 255, 0);

class RunFilm : public RunFixture {
protected:
    // A day is a second of the film.
    Outcome Record(const std::string& folder, std::vector<std::string> more) const {
        std::vector<std::string> arguments{"--frames", folder,
                                           "--pace",   "1 dy",
                                           "--fps",    "2",
                                           "--size",   "320x240",
                                           "--edit",   "Light.disc=#ff0000",
                                           "--edit",   "Light.radius=3e9 m",
                                           "--edit",   "Light.trail=off"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunProgram(arguments, {.prepare = [] { unsetenv("DISPLAY"); }});
    }

    [[nodiscard]] static std::vector<std::string> Names(const std::string& folder) {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder))
            names.push_back(entry.path().filename().string());
        std::ranges::sort(names);
        return names;
    }

    const std::string folder_ = Path("film");
    const std::string document_ = PutDocument("test.orvek", *TestSystem());
};

}  // namespace

// A body is where the run has it at the frame's very time, which is between its reports.
TEST_F(RunFilm, HasFramesAtEqualDistancesInTimeWithBodiesWhereTheyAreThen) {
    const std::string csv = Path("run.csv");
    ASSERT_EQ(Record(folder_, {"--for", "10.2 dy", "--scale", "5e-10", "--order", "12", "--csv",
                               csv, "--at", "0.5 dy", "--at", "7.5 dy", "--at", "10 dy", document_})
                  .status,
              0);
    std::vector<std::string> expected;
    for (int i = 0; i <= 20; i++)
        expected.push_back(std::string("frame-000") + (i < 10 ? "0" : "") + std::to_string(i) +
                           ".png");
    ASSERT_EQ(Names(folder_), expected);
    int checked = 0;
    for (const CsvRow& row : ParseCsv(Get(csv))) {
        const auto frame = static_cast<std::size_t>(std::lround(row.time / 43200.0));
        if (row.name != "Light" || frame == 0 || frame > 20) continue;
        const QImage image(QString::fromStdString(folder_ + '/' + expected[frame]));
        ASSERT_EQ(image.size(), QSize(320, 240));
        const auto x = static_cast<int>(std::floor(160 + 5e-10 * row.values[0] + 0.5));
        const auto y = static_cast<int>(std::floor(120 - 5e-10 * row.values[1] + 0.5));
        EXPECT_EQ(image.pixel(x, y), kRed) << frame;
        checked++;
    }
    EXPECT_EQ(checked, 3);

    // Recorded again it is the same to the byte, and in space too.
    for (const std::vector<std::string>& view :
         {std::vector<std::string>{}, std::vector<std::string>{"--camera", "30,40"}}) {
        std::vector<std::string> arguments{"--for", "3 dy", document_};
        arguments.insert(arguments.end(), view.begin(), view.end());
        const std::string first = Path("first" + std::to_string(view.size()));
        const std::string second = Path("second" + std::to_string(view.size()));
        ASSERT_EQ(Record(first, arguments).status, 0);
        ASSERT_EQ(Record(second, arguments).status, 0);
        ASSERT_EQ(Names(first).size(), 7U);
        for (const std::string& name : Names(first))
            EXPECT_EQ(Get(first + '/' + name), Get(second + '/' + name)) << name;
        EXPECT_NE(Get(first + "/frame-00000.png"), Get(first + "/frame-00006.png"));
    }
}

TEST_F(RunFilm, ReplacesNothingThatItIsNotToldTo) {
    ASSERT_EQ(Record(folder_, {"--for", "4 dy", document_}).status, 0);
    ASSERT_EQ(Names(folder_).size(), 9U);
    const std::string before = Get(folder_ + "/frame-00001.png");
    const Outcome refused = Record(folder_, {"--for", "1 dy", "--scale", "1e-10", document_});
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.err.find(folder_ + ": there are frames"), std::string::npos) << refused.err;
    EXPECT_EQ(Get(folder_ + "/frame-00001.png"), before);
    // Of the older film nothing stays, and of other files everything.
    Put("film/frame-notes.png", "mine");
    ASSERT_EQ(
        Record(folder_, {"--for", "1 dy", "--scale", "1e-10", "--overwrite", document_}).status, 0);
    EXPECT_EQ(Names(folder_), (std::vector<std::string>{"frame-00000.png", "frame-00001.png",
                                                        "frame-00002.png", "frame-notes.png"}));
    EXPECT_NE(Get(folder_ + "/frame-00001.png"), before);

    struct Refusal {
        std::vector<std::string> arguments;
        std::string folder;
        std::string reason;
    };
    const Refusal refusals[] = {
        {{"--for", "1 dy", document_}, document_, "Not a directory"},
        {{"--for", "1 dy", document_}, Path("no/film"), "No such file or directory"},
        {{"--steps", "0", document_}, Path("none"), "no run is kept"},
        {{"--for", "1 dy", "--pace", "1e-6 s", document_}, Path("long"), "more than 1000000"}};
    for (const auto& [arguments, folder, reason] : refusals) {
        const Outcome outcome = Record(folder, arguments);
        EXPECT_EQ(outcome.status, 1) << reason;
        EXPECT_NE(outcome.err.find(folder + ": "), std::string::npos) << outcome.err;
        EXPECT_NE(outcome.err.find(reason), std::string::npos) << outcome.err;
    }
}

// One that is absorbed is seen until then.
TEST_F(RunFilm, ShowsBodiesThatMergeUntilTheyDo) {
    const std::string document = PutDocument("merging.orvek", *MergingSystem());
    const Outcome outcome = RunProgram({"--for",    "5 s",
                                        "--pace",   "1 s",
                                        "--cutoff", "1e-6",
                                        "--scale",  "100",
                                        "--edit",   "epoch.com-on-go=off",
                                        "--edit",   "b1.disc=#00ff00",
                                        "--edit",   "b2.trail=off",
                                        "--edit",   "b0.disc=#ff0000",
                                        "--edit",   "b0.radius=0.2 m",
                                        "--edit",   "b1.radius=0.2 m",
                                        "--frames", folder_,
                                        "--fps",    "8",
                                        "--size",   "320x240",
                                        document});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    const std::vector<std::string> names = Names(folder_);
    ASSERT_GE(names.size(), 41U);
    const auto count = [this](const std::string& name, QRgb color) {
        const QImage image(QString::fromStdString(folder_ + '/' + name));
        int found = 0;
        for (int y = 0; y < image.height(); y++)
            for (int x = 0; x < image.width(); x++)
                found += image.pixel(x, y) == color ? 1 : 0;
        return found;
    };
    EXPECT_GT(count(names.front(), kGreen), 0);
    EXPECT_EQ(count(names.back(), kGreen), 0);
    // What it has become part of, whose colour is that of both, is larger from then on.
    const QRgb mixed = QImage(QString::fromStdString(folder_ + "/frame-00000.png")).pixel(160, 120);
    int largest = 0;
    for (const std::string& name : names)
        largest = std::max(largest, count(name, mixed));
    EXPECT_GT(largest, count(names.front(), mixed) * 5 / 4);
}
