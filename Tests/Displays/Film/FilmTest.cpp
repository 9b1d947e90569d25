// A film of what a display shows: what is followed stands still, and the window has it recorded as
// files or by an encoder.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QImage>
#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <numbers>

#include "Displays/Film/FilmWindow.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/SaveChoice.h"
#include "Simulation/History/RunHistory.h"
#include "Tests/Displays/TestDocument.h"
#include "Tests/Displays/UserHand.h"
#include "Tests/Platform/TestFolder.h"
#include "Tests/Platform/WaitUntil.h"

namespace {

constexpr double kAU = 1.4959787066e11;
constexpr double kMonth = 2.6e6;  // s
constexpr int32 kFrames = 40;     // and one at the end
constexpr const char* kWindow = "Record Film";

class FilmTest : public testing::Test {
protected:
    void SetUp() override {
        Epoch epoch;
        auto sun = MakeBody("Sun", 0, kSunGM, {}, {});
        auto earth = MakeBody("Earth", 1, 0.0, {kAU, 0, 0}, {0, std::sqrt(kSunGM / kAU), 0});
        sun->SetDiscColor({255, 255, 0, 255});
        earth->SetDiscColor({255, 0, 0, 255});
        earth->SetRadius(5e9);
        epoch.RootSystem()->AddChild(sun.release());
        epoch.RootSystem()->AddChild(earth.release());
        epoch.SetOrder(16);
        ASSERT_FALSE(document_.document.Load(RecordOf({&epoch})).Failed());
        document_.document.AddConsumer(&history_);
        document_.Run(20);
        const ReadGuard guard(document_.portal);
        runs_ = ReadFilmRuns(*document_.portal, history_);
        pace_ = (runs_.End() - runs_.Start()) * FilmPlan::kUsualRate / kFrames;
    }
    void TearDown() override {
        document_.document.RemoveConsumer(&history_);
        setenv("PATH", path_.c_str(), 1);
    }

    template <typename Fields>
    FilmView ViewOf(const Fields& fields) {
        FilmView view;
        view.width = 320;
        view.height = 240;
        view.sight = fields;
        view.distanceUnits = TestContext().distanceUnits;
        view.timeUnits = TestContext().timeUnits;
        return view;
    }
    static ProjectionFields Flat(int64 followed) {
        ProjectionFields fields;
        fields.projection.scale = 5e-10;
        fields.followed = followed;
        return fields;
    }
    static SpaceFields Deep(int64 followed) {
        SpaceFields fields;
        fields.camera.LookFrom(0.0, std::numbers::pi / 2.0);
        fields.camera.distance = 4e11;
        fields.options = {
            .names = false, .scaleBar = false, .time = false, .ecliptic = false, .axes = false};
        fields.followed = followed;
        return fields;
    }
    // Whether there is much more red than green in the middle.
    bool IsEarthInTheMiddle(const FilmView& view, double time) {
        const FilmPainter painter(document_.portal, &history_, runs_, view);
        const std::vector<std::byte> bytes = painter.FrameAt(time);
        const QImage image = QImage::fromData(reinterpret_cast<const uchar*>(bytes.data()),
                                              static_cast<int>(bytes.size()));
        const QRgb middle = image.pixel(160, 120);
        return image.size() == QSize(320, 240) && qRed(middle) > 2 * qGreen(middle) + 40;
    }

    // The user chooses the name in the panel that "Record…" opens.
    static void Record(FilmWindow* window, const std::string& place, const std::string& name) {
        BMessage message(FilmWindow::kNamed);
        entry_ref folder;
        ASSERT_EQ(get_ref_for_path(place.c_str(), &folder), B_OK);
        SaveChoice{folder, name}.AddTo(&message);
        ASSERT_EQ(window->PostMessage(&message), B_OK);
    }
    FilmWindow* Open() {
        auto* const window = new FilmWindow(
            {document_.portal, &history_, runs_, ViewOf(Flat(kNoSystemID)), pace_, "film"},
            TestContext());
        window->Show();
        UserHand::WaitForWindow(kWindow);
        return window;
    }
    [[nodiscard]] FilmPainter Painter() {
        return {document_.portal, &history_, runs_, ViewOf(Flat(kNoSystemID))};
    }
    [[nodiscard]] static std::vector<std::string> NamesIn(const std::string& folder) {
        std::vector<std::string> names;
        std::error_code error;
        for (std::filesystem::directory_iterator at(folder, error), end; !error && at != end;
             at.increment(error))
            names.push_back(at->path().filename().string());
        std::ranges::sort(names);
        return names;
    }
    static void Close(FilmWindow* window) {
        BLooper::QuitIfAlive(window);
        UserHand::WaitForWindow(kWindow, false);
    }
    // The first "ffmpeg" that is found does this.
    void PutEncoder(const std::string& script) {
        const std::string program = folder_.Write("bin/ffmpeg", "#!/bin/sh\n" + script + '\n');
        ASSERT_EQ(chmod(program.c_str(), 0755), 0);
        setenv("PATH", (folder_.Path("bin") + ':' + path_).c_str(), 1);
    }

    const std::string path_ = std::getenv("PATH");
    TestFolder folder_;
    TestDocument document_;
    RunHistory history_{document_.portal, document_.document.GetCalculator()};
    FilmRuns runs_;
    double pace_ = 1.0;  // s of the simulation in a second of the film
};

}  // namespace

TEST_F(FilmTest, WhatIsFollowedStandsStillInBothKindsOfPictures) {
    ASSERT_FALSE(runs_.IsEmpty());
    ASSERT_GT(runs_.End(), 2.0 * kMonth);
    for (const double time : {0.5 * kMonth, 2.0 * kMonth}) {
        EXPECT_TRUE(IsEarthInTheMiddle(ViewOf(Flat(1)), time)) << time;
        EXPECT_TRUE(IsEarthInTheMiddle(ViewOf(Deep(1)), time)) << time;
        EXPECT_FALSE(IsEarthInTheMiddle(ViewOf(Flat(0)), time)) << time;
        EXPECT_FALSE(IsEarthInTheMiddle(ViewOf(Deep(0)), time)) << time;
    }
    // When the document is another one there is nothing left to draw.
    const FilmPainter painter(document_.portal, &history_, runs_, ViewOf(Flat(1)));
    Epoch other;
    ASSERT_FALSE(document_.document.Load(RecordOf({&other})).Failed());
    EXPECT_TRUE(painter.FrameAt(kMonth).empty());
}

// The same frames as files and to an encoder, which has a file to show for it or none.
TEST_F(FilmTest, IsRecordedAsFilesOrByAnEncoder) {
    const FilmPlan plan = FilmPlan::Of(runs_, pace_, FilmPlan::kUsualRate);
    const auto frames = static_cast<std::size_t>(plan.CountFrames());
    ASSERT_EQ(frames, kFrames + 1U);
    const TestFolder films;
    FilmWindow* const window = Open();
    Record(window, films.Path(), "one");
    EXPECT_TRUE(WaitUntil([&] { return NamesIn(films.Path("one")).size() == frames; }));
    Record(window, films.Path(), "two");
    EXPECT_TRUE(WaitUntil([&] { return NamesIn(films.Path("two")).size() == frames; }));
    Close(window);
    std::string all;
    for (const std::string& name : NamesIn(films.Path("one"))) {
        EXPECT_TRUE(films.Read("one/" + name) == films.Read("two/" + name)) << name;
        all += films.Read("one/" + name);
    }

    const auto encode = [&](const char* script) {
        PutEncoder(script);
        EXPECT_TRUE(FilmEncoder::IsInstalled());
        FilmRecorder recorder(Painter(), plan,
                              std::make_unique<FilmEncoder>(films.Path("film.mp4"), 25),
                              BMessenger(document_.owner));
        int32 error = -1;
        EXPECT_EQ(document_.owner->WaitFor(FilmRecorder::kEnd).FindInt32("error", &error), B_OK);
        return error;
    };
    const char* const good = "for last; do :; done; exec cat > \"$last\"";
    EXPECT_EQ(encode("for last; do :; done; echo x > \"$last\"; cat > /dev/null; exit 3"), EINVAL);
    EXPECT_EQ(encode("exit 0"), EINVAL);
    EXPECT_EQ(films.Names(), (std::vector<std::string>{"one", "two"}));
    EXPECT_EQ(encode(good), 0);
    EXPECT_TRUE(films.Read("film.mp4") == all);
    // What is cancelled leaves the older film, and nothing of its own.
    PutEncoder(good);
    {
        const FilmPlan longer = FilmPlan::Of(runs_, pace_ / 1000, FilmPlan::kUsualRate);
        const FilmRecorder recorder(Painter(), longer,
                                    std::make_unique<FilmEncoder>(films.Path("film.mp4"), 25),
                                    BMessenger(document_.owner));
        EXPECT_TRUE(WaitUntil([&] { return films.Names().size() == 4; }));
    }
    EXPECT_EQ(films.Names(), (std::vector<std::string>{"film.mp4", "one", "two"}));
    EXPECT_TRUE(films.Read("film.mp4") == all);
}
