// The picture of a run. What is where in it follows from the positions in the documents and the
// reports.
#include <QImage>
#include <cmath>
#include <cstdlib>

#include "Model/Systems/Body.h"
#include "Tests/Run/ProgramRun.h"
#include "Tests/Run/RunFixture.h"

namespace {

constexpr QRgb kRed = qRgb(255, 0, 0);
constexpr QRgb kGreen = qRgb(0, 255, 0);
constexpr double kScale = 1e-9;
const char* const kScaleText = "1e-9";

class RunPng : public RunFixture {
protected:
    // Without a display server, and although the environment asks for one.
    Outcome Run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.end(), {"--png", picture_, "--size", "640x480"});
        return RunProgram(arguments, {.prepare = [] {
                              unsetenv("DISPLAY");
                              unsetenv("WAYLAND_DISPLAY");
                              setenv("QT_QPA_PLATFORM", "xcb", 1);
                          }});
    }

    [[nodiscard]] QImage Picture() const { return QImage(QString::fromStdString(picture_)); }

    // Metres to the right of and above the picture's middle.
    [[nodiscard]] QRgb At(double right, double up) const {
        return Picture().pixel(static_cast<int>(std::floor(320 + kScale * right + 0.5)),
                               static_cast<int>(std::floor(240 - kScale * up + 0.5)));
    }

    const std::string picture_ = Path("run.png");
    const std::string document_ = PutDocument("test.orvek", *TestSystem());
    // "Light" red and "Heavy" green, so that they can be told from the sky, and large enough.
    const std::vector<std::string> colors_{
        "--edit", "Light.disc=#ff0000", "--edit", "Light.trail=#ff0000",
        "--edit", "Heavy.disc=#00ff00", "--edit", "Heavy.trail=#00ff00",
        "--edit", "Light.radius=3e9 m", "--edit", "Heavy.radius=3e9 m"};
};

}  // namespace

TEST_F(RunPng, ShowsBodiesWhereTheyAreWithoutARun) {
    std::vector<std::string> arguments = colors_;
    arguments.insert(arguments.end(), {"--steps", "0", "--scale", kScaleText, document_});
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(Picture().size(), QSize(640, 480));
    EXPECT_EQ(At(2e11, 0), kRed);
    EXPECT_EQ(At(-1e11, 1e9), kGreen);
    EXPECT_NE(At(1e11, 0), kRed);
    // Along the y axis the third coordinate is up.
    arguments.insert(arguments.end(), {"--axis", "y"});
    EXPECT_EQ(Run(arguments).status, 0);
    EXPECT_EQ(At(-1e11, 0), kGreen);
    // Without a scale everything is in the picture.
    EXPECT_EQ(Run({"--steps", "0", "--edit", "Light.disc=#ff0000", "--edit", "Light.radius=1e13 m",
                   "--edit", "Light.r.x=1e15 m", document_})
                  .status,
              0);
    const QImage fitted = Picture();
    int red = 0;
    for (int x = 0; x < fitted.width(); x++)
        for (int y = 0; y < fitted.height(); y++)
            red += fitted.pixel(x, y) == kRed ? 1 : 0;
    EXPECT_GT(red, 0);
}

TEST_F(RunPng, ShowsTrailsAndEndsWhereTheReportsDo) {
    std::vector<std::string> arguments = colors_;
    arguments.insert(arguments.end(), {"--for", "60 dy", "--csv", Path("run.csv"), "--every", "100",
                                       "--scale", kScaleText, "--quiet", document_});
    const Outcome outcome = Run(arguments);
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    const std::vector<CsvRow> rows = ParseCsv(Get(Path("run.csv")));
    ASSERT_GT(rows.size(), 100U);
    int onTrail = 0;
    int reports = 0;
    for (const CsvRow& row : rows) {
        if (row.name != "Light" && row.name != "Heavy") continue;
        const QRgb pixel = At(row.values[0], row.values[1]);
        const int color = row.name == "Light" ? qRed(pixel) : qGreen(pixel);
        onTrail += color > 80 ? 1 : 0;
        reports++;
        const bool isLast = row.report == rows.back().report;
        EXPECT_TRUE(!isLast || pixel == (row.name == "Light" ? kRed : kGreen)) << row.name;
    }
    // A line's smoothed edge may lie between two pixels.
    EXPECT_GT(onTrail, reports * 95 / 100);
    // The same run has the same state with and without a picture.
    const Outcome drawn = Run({"--for", "60 dy", "--json", document_});
    const Outcome plain = RunProgram({"--for", "60 dy", "--json", document_});
    EXPECT_EQ(Member(drawn.out, "sha256"), Member(plain.out, "sha256"));
    EXPECT_NE(Member(plain.out, "sha256"), "");
}

// The bodies that merge, close by, have left a trail on their way to each other.
TEST_F(RunPng, ShowsWhatWasBeforeAMerger) {
    const std::string document = PutDocument("merging.orvek", *MergingSystem());
    const Outcome outcome = Run({"-n", "3000", "--cutoff", "1e-6", "--scale", "200", "--edit",
                                 "epoch.com-on-go=off", "--edit", "b1.trail=#00ff00", document});
    EXPECT_NE(outcome.err.find("\"b1\" merges into \"b0\""), std::string::npos);
    for (const int x : {440, 460, 480, 500})
        EXPECT_GT(qGreen(Picture().pixel(x, 240)), 120) << x;
    EXPECT_LT(qGreen(Picture().pixel(530, 240)), 40);
}

// From straight above, so that x is to the right; the heaviest body is in the middle.
TEST_F(RunPng, ACameraLooksAtSpaceFromAnywhere) {
    constexpr double kSide = 480.0;
    const double distance = 1.2071 * kSide / kScale;
    std::vector<std::string> arguments = colors_;
    arguments.insert(arguments.end(),
                     {"--steps", "0", "--camera", "-90,90," + std::to_string(distance), document_});
    const Outcome outcome = Run(arguments);
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(Picture().size(), QSize(640, 480));
    // The Sun is at (1, -2) 10^9 m.
    const QRgb heavy = At(-1.01e11, 3e9);
    EXPECT_GT(qGreen(heavy), 60);
    EXPECT_EQ(qRed(heavy), 0);
    const QRgb light = At(1.99e11, 2e9);
    EXPECT_GT(qRed(light), 60);
    EXPECT_EQ(qGreen(light), 0);
    // Without a distance all is seen, from the side too.
    arguments[arguments.size() - 2] = "40,0";
    ASSERT_EQ(Run(arguments).status, 0);
    int reds = 0;
    const QImage picture = Picture();
    for (int x = 0; x < picture.width(); x++)
        for (int y = 0; y < picture.height(); y++) {
            const QRgb pixel = picture.pixel(x, y);
            if (qRed(pixel) > 60 && qGreen(pixel) < 10 && qBlue(pixel) < 10) reds++;
        }
    EXPECT_GT(reds, 4);
}
