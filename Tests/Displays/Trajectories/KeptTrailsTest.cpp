// Trails that a picture has lost come back from the kept run.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <numbers>

#include "Displays/Projection/BodyLabels.h"
#include "Displays/Projection/FrameMenu.h"
#include "Displays/Trajectories/KeptTrails.h"
#include "Displays/Trajectories/TrajectoryMap.h"
#include "Displays/Trajectories/TrajectoryView.h"
#include "Interface Widgets/HistoryMessages.h"
#include "Model/Commands/CommandFactory.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Interface/Canvas/LineClip.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Platform/Kernel/OS.h"
#include "Simulation/Document/SystemState.h"
#include "Simulation/History/BranchCommand.h"
#include "Simulation/History/Moment.h"
#include "Simulation/History/RunHistory.h"
#include "Tests/Displays/TestDocument.h"
#include "Tests/Displays/UserHand.h"
#include "Tests/Platform/WaitUntil.h"

namespace {

constexpr double kAU = 1.4959787066e11;
constexpr int64 kStepsOfAYear = 32'000;
const double kYear = 2.0 * std::numbers::pi * std::sqrt(kAU * kAU * kAU / kSunGM);

constexpr int32 kEverything = -1;

class KeptTrailsTest : public testing::Test {
protected:
    void SetUp() override {
        Epoch epoch;
        epoch.SetName("Start");
        const double speed = std::sqrt(kSunGM / kAU);
        epoch.RootSystem()->AddChild(MakeBody("Sun", 0, kSunGM, {}, {}).release());
        epoch.RootSystem()->AddChild(
            MakeBody("Earth", 1, 0.0, {kAU, 0.0, 0.0}, {0.0, speed, 0.0}).release());
        ASSERT_FALSE(document_.document.Load(RecordOf({&epoch})).Failed());
        document_.document.AddConsumer(&history_);
        display_ = document_.AddProjection();
        ASSERT_NE(display_, nullptr);
        display_->SetHistory(&history_);
        ::Settle(display_);
    }
    void TearDown() override { document_.document.RemoveConsumer(&history_); }

    template <typename Work>
    auto Locked(Work work) {
        const ViewLock lock(display_->View());
        return work();
    }
    void Run(int64 steps) {
        document_.Run(steps);
        ::Settle(display_);
    }
    void Zoom(double factor) {
        Locked([&] { display_->ZoomAbout(display_->View()->AnchorPoint(), factor); });
        ::Settle(display_);
    }
    // The part of the circle about the middle of the projection that is drawn, from one angle to
    // another.
    double Drawn(double from = 0.0, double to = 2.0 * std::numbers::pi) {
        constexpr int32 kPlaces = 200;
        int32 drawn = 0;
        for (int32 i = 0; i < kPlaces; i++) {
            const double angle = from + (to - from) * (i + 0.5) / kPlaces;
            if (IsDrawn(kAU * std::cos(angle), kAU * std::sin(angle))) drawn++;
        }
        return static_cast<double>(drawn) / kPlaces;
    }
    // By how much the trail about there is brighter than the sky, for a pixel of its length. The
    // brightest pixel would not tell: it has the more of a line the less of it is in its
    // neighbours.
    double Light(double angle) {
        constexpr double kReach = 0.1;
        constexpr double kBeside = 3.0;
        return Locked([&] {
            const BPoint middle = display_->Map(0.0, 0.0, 0.0);
            const BPoint at = display_->Map(kAU * std::cos(angle), kAU * std::sin(angle), 0.0);
            const double x = at.x - middle.x, y = at.y - middle.y;
            const double radius = std::hypot(x, y);
            const float most = static_cast<float>(std::ceil(kReach * radius + kBeside));
            const rgb_color sky = TrajectoryView::kSky;
            int32 light = 0;
            for (float dx = -most; dx <= most; dx++)
                for (float dy = -most; dy <= most; dy++) {
                    const BPoint place{std::round(at.x) + dx, std::round(at.y) + dy};
                    const double px = place.x - middle.x, py = place.y - middle.y;
                    if (std::abs(std::atan2(x * py - y * px, x * px + y * py)) > kReach ||
                        std::abs(std::hypot(px, py) - radius) > kBeside)
                        continue;
                    const rgb_color pixel = display_->View()->LowerLayer().PixelAt(place);
                    light += pixel.red + pixel.green + pixel.blue - sky.red - sky.green - sky.blue;
                }
            return light / (2.0 * kReach * radius);
        });
    }
    // A line is a pixel wide: it may be in the one beside.
    bool IsDrawn(double x, double y) {
        return Locked([&] {
            const BPoint at = display_->Map(x, y, 0.0);
            for (float dx = -1.0f; dx <= 1.0f; dx++)
                for (float dy = -1.0f; dy <= 1.0f; dy++)
                    if (display_->View()->LowerLayer().PixelAt({at.x + dx, at.y + dy}) !=
                        TrajectoryView::kSky)
                        return true;
            return false;
        });
    }

    void Restore(AbEpoch* epoch) {
        {
            const WriteGuard guard(document_.portal);
            document_.portal->SetEpochTo(epoch);
        }
        document_.portal->TellObservers(kEverything);
        ::Settle(display_);
    }
    // A line over the picture that begins with this; empty: there is none.
    std::string LineOf(const char* start) {
        for (const OverlayItem& item : Locked([&] { return display_->MakeTexts(-1); }))
            if (item.text.starts_with(start)) return item.text;
        return {};
    }

    TestDocument document_;
    RunHistory history_{document_.portal, document_.document.GetCalculator()};
    ProjectionDisplay* display_ = nullptr;
};

class FlatMap : public TrajectoryMap {
public:
    BPoint Map(double x, double y, double /*z*/) override {
        return {static_cast<float>(x), static_cast<float>(y)};
    }
    float DiscSize(double /*radius*/) override { return 1.0f; }
};

}  // namespace

// As those of a path relative to many bodies are.
TEST(KeptTrails, SamplesCloserThanAPixelMakeASolidLine) {
    constexpr double kRadius = 80.0;
    FlatMap map;
    TrajectoryView view("trails", &map);
    view.ResizeTo(300.0f, 300.0f);
    view.Erase();
    const BRect bounds = view.BitmapBounds();
    const ThreeVector middle{std::round(0.5 * (bounds.left + bounds.right)),
                             std::round(0.5 * (bounds.top + bounds.bottom)), 0.0};
    for (const int32 samples : {40, 900, 9000}) {
        SCOPED_TRACE(samples);
        view.Erase();
        KeptTrails::Trail trail{1, {255, 200, 100, 255}, {}};
        for (int32 i = 0; i <= samples; i++) {
            const double angle = 2.0 * std::numbers::pi * i / samples;
            const ThreeVector out{std::cos(angle), std::sin(angle), 0.0};
            trail.samples.push_back(
                {angle, middle + kRadius * out, {-kRadius * out.y, kRadius * out.x, 0.0}, i > 0});
        }
        KeptTrails kept;
        kept.Begin({trail}, {bounds}, {{}, {1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}});
        kept.Paint(&view, 10'000'000);
        int32 gaps = 0;
        for (int32 i = 0; i < 500; i++) {
            const double angle = 2.0 * std::numbers::pi * (i + 0.5) / 500;
            int32 light = 0;
            for (const double beside : {-1.0, 0.0, 1.0}) {
                const BPoint at{
                    static_cast<float>(middle.x + (kRadius + beside) * std::cos(angle)),
                    static_cast<float>(middle.y + (kRadius + beside) * std::sin(angle))};
                light = std::max<int32>(
                    light, view.LowerLayer().PixelAt({std::round(at.x), std::round(at.y)}).red);
            }
            if (light < 90) gaps++;
        }
        // Where lines meet a pixel may be dimmer.
        EXPECT_LE(gaps, 5);
    }
}

TEST_F(KeptTrailsTest, WhatHasNoMassDoesNotMoveTheCenterOfMass) {
    const ReadGuard guard(document_.portal);
    const AbEpoch& epoch = *document_.portal->FocusEpoch();
    const std::vector<Body*> bodies = document_.portal->BodiesInMassOrder();
    const auto all = ReadMembers(epoch, bodies, kRootSystemID);
    ASSERT_EQ(all.size(), 1u);
    EXPECT_EQ(bodies[static_cast<std::size_t>(all[0].body)]->ID(), 0);
    // Alone it is its own center.
    EXPECT_EQ(ReadMembers(epoch, bodies, 1).size(), 1u);
}

TEST_F(KeptTrailsTest, ZoomedAndPannedPicturesAreThoseDrawnAtOnceInThatView) {
    Zoom(0.6);
    Run(2 * kStepsOfAYear);
    Zoom(1.9);
    for (const BPoint by : {BPoint{150, 0}, BPoint{170, 90}, BPoint{-500, 40}, BPoint{60, -250}})
        Locked([&] { display_->PanBy(by.x, by.y); });
    const auto look = [this] {
        return Locked([&] {
            const Canvas& canvas = display_->View()->LowerLayer();
            const BRect bounds = display_->View()->Bounds();
            std::vector<rgb_color> pixels;
            for (float y = bounds.top; y <= bounds.bottom; y++)
                for (float x = bounds.left; x <= bounds.right; x++)
                    pixels.push_back(canvas.PixelAt({x, y}));
            return pixels;
        });
    };
    const std::vector<rgb_color> panned = look();
    Locked([&] { display_->SetTrailLength({}); });
    ::Settle(display_);
    const std::vector<rgb_color> atOnce = look();
    int32 drawn = 0;
    int32 differing = 0;
    ASSERT_EQ(panned.size(), atOnce.size());
    for (std::size_t i = 0; i < panned.size(); i++) {
        if (atOnce[i] != TrajectoryView::kSky) drawn++;
        if (std::abs(panned[i].green - atOnce[i].green) > 24) differing++;
    }
    EXPECT_GT(drawn, 300);
    EXPECT_LE(differing, drawn / 100);
}

TEST_F(KeptTrailsTest, ScrollBarsTellWhichPartOfTheTrailsIsInView) {
    const std::string title = "Projection";
    const auto bar = [&](bool isVertical) {
        ::Settle(display_);
        return UserHand::FindBar(title, isVertical);
    };
    Zoom(0.6);
    Run(3 * kStepsOfAYear / 4);  // three quarters of a circle: the bodies alone would be near
    EXPECT_FALSE(bar(false).isSeen || bar(true).isSeen);
    Zoom(6.0);
    const double radius = kAU * Locked([&] { return display_->GetProjection().scale; });
    const BRect bounds = Locked([&] { return display_->View()->Bounds(); });
    for (const bool isVertical : {false, true}) {
        const UserHand::Bar seen = bar(isVertical);
        const double shown = isVertical ? bounds.Height() : bounds.Width();
        EXPECT_TRUE(seen.isSeen);
        EXPECT_NEAR(seen.all, 2.0 * radius, 0.01 * radius);
        EXPECT_NEAR(seen.shown, shown, 2);
        EXPECT_NEAR(seen.value, radius - 0.5 * shown, 0.01 * radius);
    }
    const BPoint before = Locked([&] { return display_->View()->AnchorPoint(); });
    const UserHand::Bar across = bar(false);
    UserHand::DragBar(title, false, 30);
    ::Settle(display_);
    UserHand::DragBar(title, true, -40);
    EXPECT_EQ(bar(false).value, across.value + 30);
    EXPECT_EQ(Locked([&] { return display_->View()->AnchorPoint(); }),
              (BPoint{before.x + 30, before.y - 40}));
    // Erased trails are not there any more.
    ASSERT_EQ(display_->PostMessage(FourCC("eras")), B_OK);
    ::Settle(display_);
    ASSERT_EQ(display_->PostMessage(B_PULSE), B_OK);
    EXPECT_LT(bar(true).all, 1.5 * radius + bounds.Height());
    Zoom(1.0 / 6.0);
    EXPECT_FALSE(bar(false).isSeen || bar(true).isSeen);
}

// In a revolution a millimetre further out becomes six pi of them.
TEST_F(KeptTrailsTest, ComparedWithAnotherRunAMillimetreShowsItsGrowth) {
    Zoom(0.6);
    Run(kStepsOfAYear / 2);
    AbEpoch* const first = document_.portal->FocusEpoch();
    Run(kStepsOfAYear);
    {
        const WriteGuard guard(document_.portal);
        AbEpoch* const start = first->Parent();
        AbEpoch* const copy = start->Copy();
        start->AddChild(copy);
        copy->SystemFromID(1)->SetPosition({kAU + 0.001, 0.0, 0.0});
        document_.portal->SetEpochTo(copy);
    }
    document_.portal->TellObservers(kEverything);
    Run(kStepsOfAYear / 3);
    const AbEpoch* const ghost = document_.portal->FocusEpoch();
    {
        const WriteGuard guard(document_.portal);
        document_.portal->SetEpochTo(first->ChildAt(0));
    }
    document_.portal->TellObservers(kEverything);
    ::Settle(display_);
    Locked([&] { display_->CompareWith(first); });
    const auto texts = [&] { return Locked([&] { return display_->MakeTexts(-1); }); };
    const auto line = [&] {
        for (const OverlayItem& item : texts())
            if (item.text.starts_with("Compared")) return item.text;
        return std::string();
    };
    const auto distance = [&] {
        for (const OverlayItem& item : texts())
            if (item.text.starts_with("At most")) return item.text;
        return std::string();
    };
    // The other run is over by then.
    EXPECT_NE(line().find("which is over"), std::string::npos) << line();
    EXPECT_EQ(distance(), "");
    Locked([&] { display_->CompareWith(ghost); });
    EXPECT_NE(line().find("which is over"), std::string::npos) << line();

    {
        const WriteGuard guard(document_.portal);
        document_.portal->SetEpochTo(const_cast<AbEpoch*>(ghost));
    }
    document_.portal->TellObservers(kEverything);
    Run(2 * kStepsOfAYear / 3);
    const AbEpoch* const longer = first->ChildAt(0);
    Locked([&] { display_->CompareWith(longer); });
    EXPECT_TRUE(WaitUntil([&] { return !distance().empty(); })) << line();
    const std::string text = distance();
    const double apart = std::strtod(text.c_str() + std::strlen("At most"), nullptr);
    EXPECT_NEAR(apart, 0.019, 0.004) << text;
    EXPECT_NE(text.find(" m apart (Earth)"), std::string::npos) << text;
    EXPECT_EQ(std::ranges::count(texts(), OverlayItem::Kind::kRing, &OverlayItem::kind), 2);
    Locked([&] { display_->CompareWith(nullptr); });
    EXPECT_EQ(line(), "");
    // Nothing is left of what the tree has no more.
    Locked([&] { display_->CompareWith(longer); });
    {
        const WriteGuard guard(document_.portal);
        first->Prune();
    }
    document_.portal->TellObservers(kEverything);
    ::Settle(display_);
    EXPECT_EQ(line(), "");
}

// From where the two part: a branch shares the run that it begins in. What is known of the distance
// goes with an edit, and the simulation is told of it.
TEST_F(KeptTrailsTest, ABranchIsComparedWithTheRunThatItBeganIn) {
    Zoom(0.4);
    Run(kStepsOfAYear / 2);
    AbEpoch* const run = document_.portal->FocusEpoch();
    Moment moment;
    std::unique_ptr<LCommand> command;
    {
        const ReadGuard guard(document_.portal);
        moment = NearMoment(*run, 0.25 * kYear, history_);
        command = MakeBranchCommand(document_.portal, &history_, moment);
    }
    ASSERT_TRUE(ExecuteFiled(document_.portal, std::move(command)));
    auto* const earth = dynamic_cast<Body*>(document_.portal->FocusEpoch()->SystemFromID(1));
    earth->SetVelocity(earth->Velocity() * 1.3);
    Run(kStepsOfAYear / 8);
    constexpr double kPi = std::numbers::pi;
    ASSERT_GT(document_.portal->FocusEpoch()->Time(), 0.34 * kYear);
    EXPECT_TRUE(WaitUntil([&] { return Drawn(0.1, 0.4 * kPi) == 1.0; }));
    EXPECT_LT(Drawn(0.64 * kPi, 0.67 * kPi), 0.1);
    Locked([&] { display_->CompareWith(run); });
    EXPECT_TRUE(WaitUntil([&] { return Drawn(0.64 * kPi, 0.67 * kPi) == 1.0; }));
    EXPECT_LT(Drawn(0.85 * kPi, 0.98 * kPi), 0.1) << "what comes later";

    EXPECT_TRUE(WaitUntil([&] { return !LineOf("At most").empty(); }));
    const std::string before = LineOf("At most");
    EXPECT_TRUE(WaitUntil([&] {
        const BMessage told = document_.owner->WaitFor(kTellSeparation);
        std::string text;
        return told.FindString(kTextField, &text) == B_OK && text == before;
    }));
    {
        const WriteGuard guard(document_.portal);
        auto* const sun = dynamic_cast<Body*>(document_.portal->FocusEpoch()->SystemFromID(0));
        sun->SetPosition({0.0, 0.0, 9.0 * kAU});
    }
    document_.portal->TellObservers(kBodyDataChanged);
    EXPECT_TRUE(WaitUntil([&] { return LineOf("At most").find("(Sun)") != std::string::npos; }))
        << LineOf("At most");
}

// Its trails are not those of the run that is left, and come back with that.
TEST_F(KeptTrailsTest, ARestoredEpochHasItsOwnTrails) {
    Zoom(0.6);
    Run(kStepsOfAYear / 4);
    AbEpoch* const end = document_.portal->FocusEpoch();
    constexpr double kPi = std::numbers::pi;
    EXPECT_EQ(Drawn(0.05, 0.45 * kPi), 1.0);
    Restore(end->Parent());
    EXPECT_EQ(Drawn(), 0.0);
    Restore(end);
    EXPECT_TRUE(WaitUntil([&] { return Drawn(0.05, 0.45 * kPi) == 1.0; }));
    // Erased ones do not.
    ASSERT_EQ(display_->PostMessage(FourCC("eras")), B_OK);
    ::Settle(display_);
    Restore(end->Parent());
    Restore(end);
    EXPECT_LT(Drawn(), 0.02);
    // What is edited has the trails that led to it.
    Run(kStepsOfAYear / 4);
    const auto hasTrail = [&] { return Drawn(0.55 * kPi, 0.95 * kPi) == 1.0; };
    EXPECT_TRUE(WaitUntil(hasTrail));
    AbEpoch* const record = document_.portal->FocusEpoch();
    AbEpoch* const copy = record->Copy();
    {
        const WriteGuard guard(document_.portal);
        record->AddChild(copy);
    }
    Restore(copy);
    EXPECT_TRUE(WaitUntil(hasTrail));
}

TEST_F(KeptTrailsTest, ARunThatGoesBackIsOverWhereItEnds) {
    AbEpoch* const start = document_.portal->FocusEpoch();
    start->SetOrder(16);
    document_.document.GetCalculator()->SetBackwards(true);
    Run(20);
    AbEpoch* const brief = document_.portal->FocusEpoch();
    ASSERT_LT(brief->Time(), 0.0);
    Run(20);
    const AbEpoch* const both = document_.portal->FocusEpoch();
    Restore(start);
    Run(60);
    ASSERT_LT(document_.portal->FocusEpoch()->Time(), both->Time());
    Locked([&] { display_->CompareWith(both); });
    EXPECT_NE(LineOf("Compared").find("which is over"), std::string::npos) << LineOf("Compared");
    Restore(start);
    Run(10);
    ASSERT_GT(document_.portal->FocusEpoch()->Time(), brief->Time());
    EXPECT_EQ(LineOf("Compared").find("which is over"), std::string::npos) << LineOf("Compared");
    EXPECT_TRUE(WaitUntil([&] { return !LineOf("At most").empty(); }));
}

TEST_F(KeptTrailsTest, TrailsOfALimitedLengthEndThereAndFade) {
    Zoom(0.6);
    Locked([&] { display_->SetTrailLength({0.0, 0.5, true}); });
    Run(kStepsOfAYear + kStepsOfAYear / 4);
    const double now = 2.0 * std::numbers::pi * display_->Epoch()->FocusEpoch()->Time() / kYear;
    constexpr double kPi = std::numbers::pi;
    EXPECT_EQ(Drawn(now - 0.95 * kPi, now - 0.05), 1.0);
    EXPECT_LT(Drawn(now - 1.95 * kPi, now - 1.05 * kPi), 0.02);
    const double full = Light(now - 0.2);
    EXPECT_GT(full, 20.0);
    double newer = full;
    for (const double back : {0.3, 0.5, 0.7, 0.9}) {
        const double older = Light(now - back * kPi);
        EXPECT_LT(older, newer - 0.1 * full) << back;
        newer = older;
    }
    EXPECT_LT(3.0 * newer, full);
    // By time: the same here.
    Locked([&] { display_->SetTrailLength({0.25 * kYear, 0.0, false}); });
    EXPECT_EQ(Drawn(now - 0.45 * kPi, now - 0.05), 1.0);
    EXPECT_LT(Drawn(now - 1.95 * kPi, now - 0.55 * kPi), 0.02);
    EXPECT_NEAR(Light(now - 0.4 * kPi), Light(now - 0.2), 4.0);
    Locked([&] { display_->SetTrailLength({}); });
    EXPECT_EQ(Drawn(), 1.0);
}

TEST_F(KeptTrailsTest, AChangeOfColourDuringARunDrawsNoFalseLines) {
    Zoom(0.6);
    document_.Go();
    constexpr int32 kMinChanges = 60;
    constexpr double kRevolution = 3.3e7;  // s, amply
    for (int32 i = 0; i < kMinChanges || TakeState(document_.portal).time < kRevolution; i++) {
        document_.portal->TellObservers(kTrailChanged);
        snooze(10'000);
    }
    document_.Pause();
    ::Settle(display_);
    ASSERT_EQ(Drawn(), 1.0) << "too short a run";
    int32 chords = 0;
    for (int32 i = 0; i < 400; i++) {
        const double angle = 2.0 * std::numbers::pi * i / 400;
        for (const double part : {0.3, 0.6, 0.9})
            if (IsDrawn(part * kAU * std::cos(angle), part * kAU * std::sin(angle))) chords++;
    }
    EXPECT_EQ(chords, 0);
}

TEST_F(KeptTrailsTest, FitShowsWholeOrbitsBeforeAndAfterARun) {
    // An ellipse to the left, of which the instant is the right end.
    const double a = 10 * kAU, e = 0.8;
    Epoch epoch;
    epoch.RootSystem()->AddChild(MakeBody("Sun", 0, kSunGM, {}, {}).release());
    const double speed = std::sqrt(kSunGM / a * (1 + e) / (1 - e));
    epoch.RootSystem()->AddChild(
        MakeBody("Comet", 1, 0.0, {a * (1 - e), 0.0, 0.0}, {0.0, speed, 0.0}).release());
    ASSERT_FALSE(document_.document.Load(RecordOf({&epoch})).Failed());
    document_.portal->TellObservers(kEverything);
    ::Settle(display_);
    const auto expectAllSeen = [&] {
        Locked([&] { display_->FitAll(); });
        ::Settle(display_);
        Locked([&] {
            const BRect bounds = display_->View()->Bounds();
            float left = bounds.right, right = bounds.left;
            for (int32 i = 0; i < 360; i++) {
                const double angle = i * std::numbers::pi / 180;
                const BPoint at = display_->Map(a * (std::cos(angle) - e),
                                                a * std::sqrt(1 - e * e) * std::sin(angle), 0.0);
                EXPECT_TRUE(IsInside(at, bounds)) << i;
                left = std::min(left, at.x);
                right = std::max(right, at.x);
            }
            EXPECT_GT(right - left, 0.6f * bounds.Width());
        });
    };
    expectAllSeen();
    Run(1000);
    expectAllSeen();
    // A trail that covers more than a revolution is all that there is to see.
    Run(60'000);
    expectAllSeen();
}

TEST_F(KeptTrailsTest, InTheFrameOfItsPlanetATrojanStaysWhereItIs) {
    const double a = 5.2 * kAU;
    const double mass = 1e-3 * kSunGM;
    const double rate = std::sqrt((kSunGM + mass) / (a * a * a));
    const auto turning = [rate](ThreeVector r) { return ThreeVector{-rate * r.y, rate * r.x, 0}; };
    const double share = mass / (kSunGM + mass);
    const ThreeVector sun{-share * a, 0, 0}, planet{(1 - share) * a, 0, 0};
    const ThreeVector trojan{sun.x + 0.5 * a, std::sqrt(0.75) * a, 0};
    Epoch epoch;
    epoch.RootSystem()->AddChild(MakeBody("Sun", 0, kSunGM, sun, turning(sun)).release());
    epoch.RootSystem()->AddChild(MakeBody("Jupiter", 1, mass, planet, turning(planet)).release());
    epoch.RootSystem()->AddChild(MakeBody("Trojan", 2, 0.0, trojan, turning(trojan)).release());
    ASSERT_FALSE(document_.document.Load(RecordOf({&epoch})).Failed());
    document_.portal->TellObservers(kEverything);
    Zoom(0.1);
    BMessage turn(FrameMenu::kTurn);
    turn.AddInt64(FrameMenu::kSystem, 1);
    ASSERT_EQ(display_->PostMessage(&turn), B_OK);
    ::Settle(display_);
    Run(3 * kStepsOfAYear);
    const auto expectStill = [&] {
        int32 drawn = 0;
        Locked([&] {
            const BPoint at = display_->Map(trojan.x, trojan.y, 0.0);
            const BPoint planetAt = display_->Map(planet.x, planet.y, 0.0);
            const BPoint sunAt = display_->Map(sun.x, sun.y, 0.0);
            const BRect bounds = display_->View()->Bounds();
            for (float y = bounds.top; y <= bounds.bottom; y++)
                for (float x = bounds.left; x <= bounds.right; x++) {
                    const auto isAt = [&](BPoint p) {
                        return std::abs(p.x - x) <= 2 && std::abs(p.y - y) <= 2;
                    };
                    if (display_->View()->LowerLayer().PixelAt({x, y}) == TrajectoryView::kSky)
                        continue;
                    EXPECT_TRUE(isAt(at) || isAt(planetAt) || isAt(sunAt)) << x << ", " << y;
                    drawn++;
                }
        });
        EXPECT_GT(drawn, 0);
        const ThreeVector seen = Locked([&] {
            const TrajectoryCache& cache = display_->View()->Cache();
            return cache.LastFrame().See(cache.LastPosition(2));
        });
        EXPECT_NEAR(seen.x, trojan.x, 1e-3 * a);
        EXPECT_NEAR(seen.y, trojan.y, 1e-3 * a);
    };
    ASSERT_GT(rate * display_->Epoch()->FocusEpoch()->Time(), 2 * std::numbers::pi);
    expectStill();
    // And from what is kept.
    Zoom(1.2);
    expectStill();
    // In a fixed frame it goes round.
    ASSERT_EQ(display_->PostMessage(FrameMenu::kFixed), B_OK);
    ::Settle(display_);
    const double around = std::hypot(trojan.x, trojan.y);
    for (int32 i = 0; i < 100; i++) {
        const double angle = 2 * std::numbers::pi * i / 100;
        EXPECT_TRUE(IsDrawn(around * std::cos(angle), around * std::sin(angle))) << i;
    }
}

TEST_F(KeptTrailsTest, ZoomingPanningAndFollowingShowThemAndAnErasureStays) {
    Zoom(0.6);
    Run(kStepsOfAYear);
    ASSERT_GT(display_->Epoch()->FocusEpoch()->Time(), 365.25 * 86400.0);
    EXPECT_EQ(Drawn(), 1.0);
    Zoom(1.1);
    EXPECT_EQ(Drawn(), 1.0);
    // What was far outside comes into sight.
    Zoom(5.0);
    const BPoint place = Locked([&] { return display_->Map(kAU, 0.0, 0.0); });
    ASSERT_GT(place.x, Locked([&] { return display_->View()->BitmapBounds().right; }));
    Locked([&] { display_->PanBy(place.x, 0.0f); });
    EXPECT_EQ(Drawn(-0.2, 0.2), 1.0);
    Locked([&] { display_->PanBy(-place.x, 0.0f); });
    Zoom(0.2);
    // Seen from the planet the star goes round.
    Locked([&] { display_->FollowBody(1); });
    EXPECT_EQ(Drawn(), 1.0);
    Locked([&] { display_->Follow(kNoSystemID); });
    EXPECT_EQ(Drawn(), 1.0);

    ASSERT_EQ(display_->PostMessage(kErase), B_OK);
    ::Settle(display_);
    EXPECT_LT(Drawn(), 0.05);
    Zoom(0.9);
    EXPECT_LT(Drawn(), 0.05);
    // The next run's trail is there, and those of before the erasure are not.
    Run(kStepsOfAYear / 4);
    Zoom(0.9);
    EXPECT_NEAR(Drawn(), 0.25, 0.06);
    // An undone run has no trail any more.
    document_.document.GetUndoChain()->Undo();
    Zoom(0.9);
    EXPECT_LT(Drawn(), 0.05);
}
