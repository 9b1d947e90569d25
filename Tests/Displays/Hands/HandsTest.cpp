#include "Displays/Hands/Hands.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "Displays/Space/SpaceDisplay.h"
#include "Displays/Space/SpaceView.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Support/BAutolock.h"
#include "Simulation/History/RunHistory.h"
#include "Simulation/History/ShownMoment.h"
#include "Tests/Displays/Space/SpaceHand.h"
#include "Tests/Displays/TestDocument.h"
#include "Tests/Displays/UserHand.h"
#include "Tests/Platform/WaitUntil.h"

namespace {

using SpaceHand::Key;
using SpaceHand::With;

const std::string kTitle = "Space of Tests";

ThreeVector VectorIn(const BMessage& message, const char* field) {
    double values[3] = {};
    EXPECT_EQ(message.FindDoubles(field, 0, 3, values), B_OK) << field;
    return {values[0], values[1], values[2]};
}

// Looked at from above, in parallel: a pixel is the same length everywhere.
class HandsTest : public testing::Test {
protected:
    void SetUp() override {
        {
            const WriteGuard guard(document_.portal);
            planet_ = document_.portal->BodiesInMassOrder()[1]->ID();
            document_.portal->SetSystemFromID(planet_);
        }
        display_ = new SpaceDisplay({100, 100, 500, 400}, "test", document_.portal,
                                    document_.writeOk, document_.owner, TestContext());
        ASSERT_EQ(display_->Init("Tests"), 0);
        document_.Add(display_);
        display_->Show();
        UserHand::WaitForWindow(kTitle);
        ASSERT_TRUE(WaitUntil([&] { return display_->CountPaintings() > 0; }));
        SpaceHand::Press(kTitle, Key::kP);
        SpaceHand::Press(kTitle, Key::kZ);
        ::Settle(display_);
        before_ = Bytes();
    }
    void TearDown() override { document_.Pause(); }

    template <typename Work>
    auto Locked(Work work) {
        const BAutolock lock(display_);
        return work();
    }
    HandPlane Plane() {
        return Locked([&] { return SpaceSight(display_, nullptr).PlaneThrough({}); });
    }
    BPoint PlaceOf(std::size_t body) {
        return Locked([&] {
            const SpaceMap map = display_->View()->MapOf(display_->Fields().camera);
            const auto point = map.Project(map.See(display_->Scene().bodies[body].position));
            const BPoint at = display_->View()->PointOf(point);
            const BPoint middle = display_->View()->Middle();
            return BPoint{std::round(at.x - middle.x), std::round(at.y - middle.y)};
        });
    }
    BPoint HeadOf(std::size_t body) {
        const BPoint at = PlaceOf(body);
        const ThreeVector v = Locked([&] { return display_->Scene().bodies[body].velocity; });
        const BPoint way = Plane().See(v, BodyGrip::kArrowLength / Length(v));
        return {std::round(at.x + way.x), std::round(at.y + way.y)};
    }
    std::string Bytes() {
        const ReadGuard guard(document_.portal);
        BMessage archive;
        EXPECT_EQ(document_.portal->FocusEpoch()->RootSystem()->Archive(&archive), B_OK);
        return archive.ToText();
    }
    const Body* Planet() { return document_.portal->BodiesInMassOrder()[1]; }
    bool IsHolding() {
        ::Settle(display_);
        return Locked([&] { return display_->GetHands().IsHolding(); });
    }
    std::vector<OverlayItem> Overlay() {
        return Locked([&] {
            std::vector<OverlayItem> items;
            display_->GetHands().AddOverlay(&items);
            return items;
        });
    }
    // All that was asked for before has been heard; of what was noted nothing is an edit.
    void ExpectNothingHappened() {
        ::Settle(display_);
        SpaceHand::Click(kTitle, PlaceOf(0));
        EXPECT_TRUE(WaitUntil([&] { return document_.owner->Has(kEditBody); }));
        for (const uint32 edit : {kPlaceBody, kSteerBody, kThrowBody})
            EXPECT_FALSE(document_.owner->Has(edit));
        static_cast<void>(document_.owner->WaitFor(kEditBody));
        EXPECT_EQ(Bytes(), before_);
        EXPECT_FALSE(IsHolding());
    }

    TestDocument document_;
    SpaceDisplay* display_ = nullptr;
    int64 planet_ = kNoSystemID;
    std::string before_;
};

BPoint Plus(BPoint a, BPoint b) {
    return {a.x + b.x, a.y + b.y};
}

}  // namespace

TEST_F(HandsTest, TheSelectedBodyIsDraggedInThePlaneOfViewOrAlongAnAxis) {
    const BPoint at = PlaceOf(1);
    const Camera camera = Locked([&] { return display_->Fields().camera; });
    SpaceHand::PressButton(kTitle, at);
    SpaceHand::MoveTo(kTitle, Plus(at, {20, -30}));
    EXPECT_TRUE(IsHolding());
    SpaceHand::Release(kTitle, Plus(at, {20, -30}));
    const BMessage moved = document_.owner->WaitFor(kPlaceBody);
    int64 id = kNoSystemID;
    EXPECT_EQ(moved.FindInt64(kBodyIDField, &id), B_OK);
    EXPECT_EQ(id, planet_);
    const double metre = Plane().scale;
    const ThreeVector way = VectorIn(moved, kPlaceField) - Planet()->Position();
    EXPECT_NEAR(way.x * metre, 20.0, 1e-3);
    EXPECT_NEAR(way.y * metre, 30.0, 1e-3);
    EXPECT_NEAR(way.z * metre, 0.0, 1e-3);

    SpaceHand::PressButton(kTitle, at);
    SpaceHand::HoldKey(kTitle, Key::kX, true);
    SpaceHand::MoveTo(kTitle, Plus(at, {20, -30}));
    SpaceHand::Release(kTitle, Plus(at, {20, -30}));
    const ThreeVector along =
        VectorIn(document_.owner->WaitFor(kPlaceBody), kPlaceField) - Planet()->Position();
    EXPECT_NEAR(along.x * metre, 20.0, 1e-3);
    EXPECT_EQ(along.y, 0.0);
    SpaceHand::HoldKey(kTitle, Key::kX, false);
    // Nothing turned or panned meanwhile, and the key did not look along its axis.
    EXPECT_EQ(Locked([&] { return display_->Fields().camera; }), camera);
}

TEST_F(HandsTest, TheHeadOfTheArrowSteersAndShiftMakesACircle) {
    const BPoint head = HeadOf(1);
    SpaceHand::PressButton(kTitle, head);
    SpaceHand::MoveTo(kTitle, Plus(head, {15, 10}));
    SpaceHand::Release(kTitle, Plus(head, {15, 10}));
    const ThreeVector from = Planet()->Velocity();
    const ThreeVector change =
        VectorIn(document_.owner->WaitFor(kSteerBody), kVelocityField) - from;
    const double pixels = BodyGrip::kArrowLength / Length(from);
    EXPECT_NEAR(change.x * pixels, 15.0, 0.01);
    EXPECT_NEAR(change.y * pixels, -10.0, 0.01);

    SpaceHand::PressButton(kTitle, head);
    SpaceHand::MoveTo(kTitle, Plus(head, {15, 10}), With::kShift);
    SpaceHand::Release(kTitle, Plus(head, {15, 10}), With::kShift);
    const ThreeVector velocity = VectorIn(document_.owner->WaitFor(kSteerBody), kVelocityField);
    const Body* const sun = document_.portal->BodiesInMassOrder()[0];
    const ThreeVector outward = Planet()->Position() - sun->Position();
    const ThreeVector around = velocity - sun->Velocity();
    EXPECT_NEAR(Dot(outward, around) / (Length(outward) * Length(around)), 0.0, 1e-12);
    EXPECT_NEAR(Dot(around, around) * Length(outward) / (sun->M() + Planet()->M()), 1.0, 1e-12);
}

TEST_F(HandsTest, CtrlThrowsANewBodyInAndItsComingOrbitIsShown) {
    const BPoint at{-70, 40};
    SpaceHand::PressButton(kTitle, at, With::kCtrl);
    SpaceHand::MoveTo(kTitle, Plus(at, {0, 25}), With::kCtrl);
    const auto length = [&] {
        return Locked([&] {
            std::vector<OverlayItem> items;
            display_->GetHands().AddOverlay(&items);
            std::size_t points = 0;
            for (const OverlayItem& item : items)
                if (item.kind == OverlayItem::Kind::kDashes) points += item.points.size();
            return points;
        });
    };
    EXPECT_TRUE(WaitUntil([&] { return length() > 10; }));
    SpaceHand::Release(kTitle, Plus(at, {0, 25}), With::kCtrl);
    const BMessage thrown = document_.owner->WaitFor(kThrowBody);
    const auto seen = Locked([&] {
        const BPoint point =
            SpaceSight(display_, nullptr).PointOf(VectorIn(thrown, kPlaceField)).value();
        const BPoint middle = display_->View()->Middle();
        return BPoint{point.x - middle.x, point.y - middle.y};
    });
    EXPECT_NEAR(seen.x, at.x, 1.0);
    EXPECT_NEAR(seen.y, at.y, 1.0);
    const ThreeVector velocity = VectorIn(thrown, kVelocityField);
    EXPECT_LT(velocity.y, 0.0);
    EXPECT_NEAR(velocity.x, 0.0, 1e-6 * Length(velocity));
    EXPECT_EQ(length(), 0u);
    EXPECT_EQ(Bytes(), before_);  // it is the owner who makes it
}

TEST_F(HandsTest, WhatIsGivenUpChangesNothing) {
    const BPoint at = PlaceOf(1);
    const auto drag = [&] {
        SpaceHand::PressButton(kTitle, at);
        SpaceHand::MoveTo(kTitle, Plus(at, {20, -30}));
        EXPECT_TRUE(IsHolding());
    };
    // Escape.
    drag();
    SpaceHand::Press(kTitle, Key::kEscape);
    SpaceHand::Release(kTitle, Plus(at, {20, -30}));
    ExpectNothingHappened();
    // Out of the window.
    drag();
    SpaceHand::MoveTo(kTitle, {5000, 0});
    EXPECT_FALSE(IsHolding());
    SpaceHand::MoveTo(kTitle, at);
    SpaceHand::Release(kTitle, at);
    ExpectNothingHappened();
    // A hand that trembles.
    SpaceHand::Click(kTitle, at);
    EXPECT_TRUE(WaitUntil([&] { return document_.owner->Has(kEditBody); }));
    EXPECT_FALSE(document_.owner->Has(kPlaceBody));
    static_cast<void>(document_.owner->WaitFor(kEditBody));
    ExpectNothingHappened();
    SpaceHand::PressButton(kTitle, {-70, 40}, With::kCtrl);
    SpaceHand::Press(kTitle, Key::kEscape);
    SpaceHand::Release(kTitle, {-70, 40}, With::kCtrl);
    ExpectNothingHappened();
    SpaceHand::PressButton(kTitle, {-70, 40}, With::kCtrl);
    SpaceHand::MoveTo(kTitle, {-69, 42}, With::kCtrl);
    SpaceHand::Release(kTitle, {-69, 42}, With::kCtrl);
    ExpectNothingHappened();
}

TEST_F(HandsTest, WithoutAMouseABodyIsThrownInOnACircleInTheMiddleOfThePicture) {
    Locked([&] { display_->PanBy(60, 50); });
    UserHand::Choose(kTitle, "Throw In a Body");
    const BMessage thrown = document_.owner->WaitFor(kThrowBody);
    const ThreeVector place = VectorIn(thrown, kPlaceField);
    const auto seen = Locked([&] { return SpaceSight(display_, nullptr).PointOf(place).value(); });
    const BPoint middle = Locked([&] { return display_->View()->Middle(); });
    EXPECT_NEAR(seen.x, middle.x, 1.0);
    EXPECT_NEAR(seen.y, middle.y, 1.0);
    const Body* const sun = document_.portal->BodiesInMassOrder()[0];
    const ThreeVector outward = place - sun->Position();
    const ThreeVector around = VectorIn(thrown, kVelocityField) - sun->Velocity();
    EXPECT_NEAR(Dot(around, around) * Length(outward) / sun->M(), 1.0, 1e-3);
    EXPECT_NEAR(Dot(around, outward) / (Length(outward) * Length(around)), 0.0, 1e-9);
}

TEST_F(HandsTest, ALineIsMeasuredFromTheSelectedBodyToTheOneClickedNext) {
    // What it says of the two, and where it lies.
    const auto found = [&](OverlayItem::Kind kind) -> OverlayItem {
        for (const OverlayItem& item : Overlay())
            if (item.kind == kind && item.color == rgb_color{120, 200, 255, 255}) return item;
        return {};
    };
    EXPECT_TRUE(found(OverlayItem::Kind::kLine).points.empty());
    UserHand::Choose(kTitle, "To the Next Click");
    ::Settle(display_);
    SpaceHand::Click(kTitle, PlaceOf(0));
    ASSERT_TRUE(WaitUntil([&] { return found(OverlayItem::Kind::kLine).points.size() == 2; }));
    EXPECT_FALSE(document_.owner->Has(kEditBody));  // that click selects nothing
    const BPoint middle = Locked([&] { return display_->View()->Middle(); });
    const OverlayItem line = found(OverlayItem::Kind::kLine);
    for (std::size_t end = 0; end < 2; end++) {
        const BPoint at = Plus(PlaceOf(1 - end), middle);
        EXPECT_NEAR(line.points[end].x, at.x, 1.5);
        EXPECT_NEAR(line.points[end].y, at.y, 1.5);
    }
    const std::vector<Body*> bodies = document_.portal->BodiesInMassOrder();
    const std::string before = found(OverlayItem::Kind::kText).text;
    const auto motion = [&](std::size_t i) {
        return BodyMotion{bodies[i]->Position(), bodies[i]->Velocity()};
    };
    const MeasuredValues values = MeasureBetween(motion(1), motion(0), motion(2));
    EXPECT_NEAR(std::stod(before), values.distance / bodies[1]->PositionUval(),
                1e-5 * values.distance / bodies[1]->PositionUval());
    EXPECT_NE(before.find(" at " + std::string(bodies[2]->Name())), std::string::npos) << before;

    // Live, during a run; saved; and gone again.
    document_.Run(200);
    ::Settle(display_);
    EXPECT_NE(found(OverlayItem::Kind::kText).text, before);
    BMessage archive;
    EXPECT_EQ(Locked([&] { return display_->MiniArchive(&archive); }), B_OK);
    int64 from = 0;
    int64 to = 0;
    EXPECT_EQ(archive.FindInt64("View measures from", &from), B_OK);
    EXPECT_EQ(archive.FindInt64("View measures to", &to), B_OK);
    EXPECT_EQ(from, planet_);
    EXPECT_EQ(to, bodies[0]->ID());
    UserHand::Choose(kTitle, "Off");
    ::Settle(display_);
    EXPECT_TRUE(found(OverlayItem::Kind::kLine).points.empty());
}

TEST(Measurement, AnglesAreSeenFromAThirdBody) {
    const MeasuredValues values = MeasureBetween({{3.0, 0.0, 0.0}, {1.0, 0.0, 0.0}},
                                                 {{0.0, 4.0, 0.0}, {1.0, 2.0, 0.0}}, BodyMotion{});
    EXPECT_EQ(values.distance, 5.0);
    EXPECT_EQ(values.speed, 2.0);
    EXPECT_NEAR(values.angle.value(), std::acos(0.0), 1e-15);
    // To the last digit where the two are seen side by side.
    const BodyMotion far{{1e11, 1.0, 0.0}, {}};
    EXPECT_NEAR(MeasureBetween({{1e11, 0.0, 0.0}, {}}, far, BodyMotion{}).angle.value(), 1e-11,
                1e-20);
    EXPECT_FALSE(MeasureBetween(far, {}, BodyMotion{}).angle.has_value());
    EXPECT_FALSE(MeasureBetween(far, {}, std::nullopt).angle.has_value());
}

TEST_F(HandsTest, ABodyThatGoesOrMovesMeanwhileAndADisplayThatClosesEndTheGesture) {
    const BPoint at = PlaceOf(1);
    SpaceHand::PressButton(kTitle, at);
    SpaceHand::MoveTo(kTitle, Plus(at, {20, -30}));
    EXPECT_TRUE(IsHolding());
    {
        const WriteGuard guard(document_.portal);
        MassSystem* const planet = document_.portal->FocusEpoch()->SystemFromID(planet_);
        document_.portal->SetSystemFromID(document_.portal->BodiesInMassOrder()[2]->ID());
        planet->Parent()->RemoveChild(planet);
        delete planet;
    }
    document_.portal->TellObservers(kSystemRemoved);
    EXPECT_TRUE(WaitUntil([&] { return !IsHolding(); }));
    SpaceHand::Release(kTitle, Plus(at, {20, -30}));
    before_ = Bytes();
    ExpectNothingHappened();

    SpaceHand::PressButton(kTitle, {-70, 40}, With::kCtrl);
    SpaceHand::MoveTo(kTitle, {-70, 70}, With::kCtrl);
    EXPECT_TRUE(IsHolding());
    document_.Remove(display_);  // while the coming orbit is computed
    EXPECT_FALSE(document_.owner->Has(kThrowBody));
}

TEST_F(HandsTest, DuringARunADragPausesItFirstAndAClickLetsItGoOn) {
    Locked([&] { display_->Follow(planet_); });  // there it stays
    document_.Go();
    ASSERT_TRUE(WaitUntil([&] { return document_.document.GetCalculator()->IsRunning(); }));
    SpaceHand::Click(kTitle, {});
    ::Settle(display_);
    EXPECT_FALSE(document_.owner->Has(kPauseForUser));
    SpaceHand::PressButton(kTitle, {});
    SpaceHand::MoveTo(kTitle, {40, 40});  // not yet
    static_cast<void>(document_.owner->WaitFor(kPauseForUser));
    EXPECT_TRUE(IsHolding());
    document_.Pause();
    ::Settle(display_);
    SpaceHand::MoveTo(kTitle, {5, 5});
    EXPECT_TRUE(IsHolding());  // two moves may come as one
    SpaceHand::MoveTo(kTitle, {25, 5});
    SpaceHand::Release(kTitle, {25, 5});
    const ThreeVector way =
        VectorIn(document_.owner->WaitFor(kPlaceBody), kPlaceField) - Planet()->Position();
    EXPECT_NEAR(way.x * Plane().scale, 20.0, 1e-3);
    EXPECT_NEAR(way.y * Plane().scale, 0.0, 1e-3);
}

TEST_F(HandsTest, AGestureOfThePastGoesOnWhenItsExactMomentIsFound) {
    RunHistory history(document_.portal, document_.document.GetCalculator());
    document_.document.AddConsumer(&history);
    document_.Remove(display_);
    document_.Run(20'000);
    ShownMoment shown(document_.portal, &history, "");
    display_ = new SpaceDisplay({100, 100, 500, 400}, "test", document_.portal, document_.writeOk,
                                document_.owner, TestContext());
    display_->SetHistory(&history, &shown);
    ASSERT_EQ(display_->Init("Tests"), 0);
    document_.Add(display_);
    display_->Show();
    UserHand::WaitForWindow(kTitle);
    ASSERT_TRUE(WaitUntil([&] { return display_->CountPaintings() > 0; }));
    SpaceHand::Press(kTitle, Key::kZ);
    ::Settle(display_);
    const double end = [&] {
        const ReadGuard guard(document_.portal);
        return document_.portal->FocusEpoch()->Time();
    }();
    // The exact moment is looked for a little later; a slow hand tries again.
    bool wasNear = false;
    for (int32 attempt = 1; attempt < 20 && !wasNear; attempt++) {
        shown.SeekTo(end * (0.9 - 0.03 * attempt));
        ::Settle(display_);
        const BPoint at = PlaceOf(1);
        SpaceHand::PressButton(kTitle, at);
        SpaceHand::MoveTo(kTitle, Plus(at, {20, -30}));
        wasNear = IsHolding() && !shown.Get().isExact;
        ASSERT_TRUE(WaitUntil([&] { return shown.Get().isExact; }));
        ::Settle(display_);
        if (wasNear) {
            EXPECT_TRUE(IsHolding());
            SpaceHand::Release(kTitle, Plus(at, {20, -30}));
            EXPECT_TRUE(WaitUntil([&] { return document_.owner->Has(kPlaceBody); }));
        }
        SpaceHand::Press(kTitle, Key::kEscape);
        SpaceHand::Release(kTitle, at);
    }
    EXPECT_TRUE(wasNear);
    document_.Remove(display_);
    document_.document.RemoveConsumer(&history);
}

TEST(HandSystem, ANeighbourIsWhatABodyGoesAbout) {
    HandSystem system;
    system.bodies = {{1, 1.327e20, 7e8, {}, {}},
                     {2, 3.986e14, 6e6, {1.496e11, 0.0, 0.0}, {0.0, 29780.0, 0.0}},
                     {3, 4.9e12, 2e6, {1.496e11 + 3.844e8, 0.0, 0.0}, {0.0, 30800.0, 0.0}}};
    EXPECT_EQ(system.NeighbourOf(system.bodies[2].position, 3)->id, 2);
    EXPECT_EQ(system.NeighbourOf(system.bodies[1].position, 2)->id, 1);
    EXPECT_EQ(system.NeighbourOf({}, 1)->id, 2);
    EXPECT_NEAR(system.PeriodOf(system.bodies[1]) / 86400.0, 365.2, 1.0);
    // One that stands still is sent round; one at the very place of its neighbour stays as it is.
    HandBody still{9, 0.0, 0.0, {1e11, 0.0, 0.0}, {}};
    EXPECT_NEAR(system.CircularVelocity(still).y, std::sqrt(1.327e20 / 1e11), 1.0);
    still.position = {};
    EXPECT_EQ(system.CircularVelocity(still), ThreeVector{});
    EXPECT_EQ(HandSystem{}.NeighbourOf({}, 1), nullptr);
    EXPECT_EQ(HandSystem{}.PeriodOf(still), 0.0);
}

TEST(OrbitPreview, AFollowedBodyIsSeenToGoAboutItsNeighbour) {
    auto epoch = std::make_unique<Epoch>();
    auto sun = MakeBody("Sun", 0, kSunGM, {}, {});
    auto planet = MakeBody("Planet", 1, 1.0, {1e11, 0.0, 0.0}, {0.0, 3e4, 0.0});
    EXPECT_EQ(epoch->RootSystem()->AddChild(sun.release()), B_OK);
    EXPECT_EQ(epoch->RootSystem()->AddChild(planet.release()), B_OK);
    const HandSystem system = ReadHandSystem(
        *epoch,
        {dynamic_cast<Body*>(epoch->SystemFromID(0)), dynamic_cast<Body*>(epoch->SystemFromID(1))},
        1);
    HandBody body = system.bodies[1];
    body.position.x = 1.2e11;
    body.velocity.y = std::sqrt(kSunGM / 1.2e11);
    const double span = system.PeriodOf(body);
    OrbitPreview computed(nullptr);
    computed.Want({std::move(epoch), body, system, span});
    ASSERT_TRUE(WaitUntil([&] { return computed.GetPath().isComplete; }));
    const OrbitPreview::Path path = computed.GetPath();
    ASSERT_GT(path.places.size(), 20u);
    // The picture's origin is where the body was, and the Sun is seen beside it.
    EXPECT_NEAR(path.places.front().x, 2e10, 1e9);
    for (const ThreeVector& place : path.places)
        EXPECT_NEAR(Length(place + ThreeVector{1e11, 0.0, 0.0}) / 1.2e11, 1.0, 1e-3);
}

TEST(OrbitPreview, GoesOnWhereOthersMeet) {
    auto epoch = std::make_unique<Epoch>();
    std::vector<Body*> bodies;
    const auto add = [&](const char* name, int64 id, double gm, ThreeVector at, ThreeVector v) {
        auto body = MakeBody(name, id, gm, at, v);
        body->SetRadius(1e7);
        bodies.push_back(body.get());
        EXPECT_EQ(epoch->RootSystem()->AddChild(body.release()), B_OK);
    };
    add("Sun", 0, kSunGM, {}, {});
    const double speed = std::sqrt(kSunGM / 3e11);
    add("Heavy", 1, 1e12, {3e11, 0.0, 0.0}, {0.0, speed, 0.0});
    add("Light", 2, 1e10, {3e11, 5e7, 0.0}, {0.0, speed - 100.0, 0.0});
    const HandSystem system = ReadHandSystem(*epoch, bodies, kNoSystemID);
    const HandBody body{7, 0.0, 1e6, {0.0, 1e11, 0.0}, {-std::sqrt(kSunGM / 1e11), 0.0, 0.0}};
    const double span = system.PeriodOf(body);
    OrbitPreview computed(nullptr);
    computed.Want({std::move(epoch), body, system, span});
    ASSERT_TRUE(WaitUntil([&] { return computed.GetPath().isComplete; }));
    const OrbitPreview::Path path = computed.GetPath();
    EXPECT_FALSE(path.hits.has_value());
    // All the way round, not only as far as that meeting after a few days.
    ASSERT_GT(path.places.size(), 20u);
    EXPECT_NEAR(Length(path.places.back() - body.position) / 1e11, 0.0, 0.1);
    EXPECT_NEAR(path.places[path.places.size() / 2].y / 1e11, -1.0, 0.1);
}

TEST(OrbitPreview, GoesAsFarAsAskedAndSaysWhatItHits) {
    const auto preview = [](ThreeVector velocity, double revolutions) {
        auto epoch = std::make_unique<Epoch>();
        auto sun = MakeBody("Sun", 0, kSunGM, {}, {});
        sun->SetRadius(7e8);
        EXPECT_EQ(epoch->RootSystem()->AddChild(sun.release()), B_OK);
        const HandSystem system =
            ReadHandSystem(*epoch, {dynamic_cast<Body*>(epoch->SystemFromID(0))}, kNoSystemID);
        const HandBody body{7, 0.0, 1e6, {1e11, 0.0, 0.0}, velocity};
        const double span = revolutions * system.PeriodOf(body);
        OrbitPreview computed(nullptr);
        computed.Want({std::move(epoch), body, system, span});
        EXPECT_TRUE(WaitUntil([&] { return computed.GetPath().isComplete; }));
        return computed.GetPath();
    };
    const double circular = std::sqrt(kSunGM / 1e11);
    const OrbitPreview::Path round = preview({0.0, circular, 0.0}, 1.0);
    EXPECT_FALSE(round.hits.has_value());
    ASSERT_GT(round.places.size(), 20u);
    for (const ThreeVector& place : round.places)
        EXPECT_NEAR(Length(place) / 1e11, 1.0, 1e-4);
    EXPECT_NEAR(Length(round.places.back() - ThreeVector{1e11, 0.0, 0.0}) / 1e11, 0.0, 0.1);
    const OrbitPreview::Path fall = preview({-circular, 0.0, 0.0}, 1.0);
    ASSERT_TRUE(fall.hits.has_value());
    EXPECT_EQ(*fall.hits, "Sun");
}
