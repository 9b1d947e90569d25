// How far runs can be believed: words, another run that is more exact, and a shadow of the motion.
#include "Simulation/Trust/Trust.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "Model/Sharing/ModelGuards.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/History/RunRemake.h"
#include "Simulation/Trust/ChaosProbe.h"
#include "Simulation/Trust/ExactRerun.h"
#include "Tests/Simulation/History/HistoryRun.h"

namespace {

using Finding = RunHistory::Finding;

constexpr double kTurn = 2 * std::numbers::pi;

Evidence Losing(double energy, double momentum = 0.0, double cutoff = 1e-11) {
    return {{energy, momentum, 0.0}, 0, 4, cutoff, {}, {}};
}

bool GoOn(double /*part*/) {
    return true;
}

// A planet at its periapsis, of unit distance and mass of the star.
HistoryRun::Planet PlanetOf(double eccentricity) {
    return {
        0.0, 1.0 - eccentricity, 0.0, 0.0, std::sqrt((1.0 + eccentricity) / (1.0 - eccentricity)),
        0.0};
}

// A planet, and what moves so near to its orbit that resonances overlap.
std::vector<HistoryRun::Planet> NearPlanet() {
    const double far = 1.16;
    return {{1.0, 0.0, 0.0, 0.0, -1e-3, 0.0},
            {1e-3, 1.0, 0.0, 0.0, 1.0, 0.0},
            {0.0, -far, 0.0, 0.0, -1 / std::sqrt(far), 0.0}};
}

ThreeVector KeplerPlace(double eccentricity, double time) {
    const double mean = std::fmod(time, kTurn);
    double anomaly = mean;
    for (int i = 0; i < 60; i++)
        anomaly -= (anomaly - eccentricity * std::sin(anomaly) - mean) /
                   (1.0 - eccentricity * std::cos(anomaly));
    return {std::cos(anomaly) - eccentricity,
            std::sqrt(1.0 - eccentricity * eccentricity) * std::sin(anomaly), 0.0};
}

// The run of a document, made again.
struct Rerun {
    Rerun(HistoryRun& run, const ExactRerun::Method& method)
        : first(run.Focus()), again([&] {
              const ReadGuard guard(run.document.Portal());
              return std::make_unique<ExactRerun>(*first, method, HistoryLimits(), " & ");
          }()) {}

    const AbEpoch* const first;
    const std::unique_ptr<ExactRerun> again;
};

// A star with what moves about it, and what some time has made of it.
class Motion {
public:
    Motion(const std::vector<HistoryRun::Planet>& planets, double time) {
        for (std::size_t i = 0; i < planets.size(); i++) {
            const auto& p = planets[i];
            start_.RootSystem()->AddChild(
                MakeBody("", static_cast<int64>(i), p.gm, {p.x, p.y, 0}, {p.vx, p.vy, 0})
                    .release());
        }
        start_.SetCOMOnGo(false);
        auto* const end = new Epoch(start_);
        end->SetTime(time);
        start_.AddChild(end);
    }
    [[nodiscard]] const AbEpoch& End() const { return *start_.ChildAt(0); }

private:
    Epoch start_;
};

// By leaps of a length, and without bringing the shadow nearer: nothing is shared with the probe.
double FoldingTimeByLeaps(std::vector<HistoryRun::Planet> planets, double step) {
    constexpr double kFirst = 1e-13;
    constexpr double kLast = 1e-4;
    std::vector<HistoryRun::Planet> shadow = planets;
    shadow.back().x += kFirst;
    const auto leap = [step](std::vector<HistoryRun::Planet>* bodies) {
        for (auto& b : *bodies)
            b.x += b.vx * step / 2, b.y += b.vy * step / 2;
        for (auto& b : *bodies)
            for (const auto& other : *bodies) {
                if (&other == &b) continue;
                const double r = std::hypot(other.x - b.x, other.y - b.y);
                b.vx += step * other.gm * (other.x - b.x) / (r * r * r);
                b.vy += step * other.gm * (other.y - b.y) / (r * r * r);
            }
        for (auto& b : *bodies)
            b.x += b.vx * step / 2, b.y += b.vy * step / 2;
    };
    double time = 0.0;
    for (double apart = 0.0; apart < kLast; time += step) {
        leap(&planets);
        leap(&shadow);
        apart = std::hypot(planets.back().x - shadow.back().x, planets.back().y - shadow.back().y);
    }
    return time / std::log(kLast / kFirst);
}

}  // namespace

TEST(Trust, WordsFollowTheWorstOfWhatGravityKeeps) {
    using Verdict = Trust::Verdict;
    const ProgramResources resources;
    const auto words = [&](const Evidence& evidence) {
        return TrustWords(Judge(evidence), resources);
    };
    EXPECT_EQ(words(Losing(-2e-13)), "energy kept to 12 digits");
    EXPECT_EQ(words(Losing(0.0)), "energy kept to 15 digits");
    EXPECT_EQ(words(Losing(-1e-6)), "good for a picture");
    EXPECT_EQ(words(Losing(1e-13, 1e-6)), "good for a picture") << "momentum is lost";
    EXPECT_EQ(words(Losing(-0.01)), "not to be believed");
    EXPECT_EQ(words(Losing(1e-13, 0.0, 5e-4)), "good for a picture") << "12 steps a radian";
    EXPECT_EQ(Judge({}).verdict, Verdict::kUnknown);

    Evidence tested = Losing(1e-13);
    tested.difference = 3e-8;
    EXPECT_EQ(words(tested), "true to 7 digits");
    EXPECT_NE(ExplainTrust(tested, resources).find("3e-8"), std::string::npos);
    tested.difference = 0.3;
    EXPECT_EQ(words(tested), "not to be believed") << "it has kept energy, and gone astray";
    tested = Losing(-0.01);
    tested.difference = 1e-8;
    EXPECT_EQ(words(tested), "not to be believed");
}

TEST(Trust, AMoreExactRunTellsHowFarAnOrbitIsOff) {
    constexpr double kEccentricity = 0.6;
    HistoryRun::Settings settings;
    settings.cutoff = 1e-6;
    HistoryRun run({{1.0, 0.0, 0.0, 0.0, 0.0, 0.0}, PlanetOf(kEccentricity)}, settings);
    run.Run(20'000);
    const auto method = ExactRerun::MethodFor(4, settings.cutoff);
    ASSERT_TRUE(method);
    EXPECT_EQ(method->order, 16);
    const Rerun rerun(run, *method);
    ASSERT_EQ(rerun.again->Make(GoOn), Finding::kFound);

    const StoryDifference& difference = rerun.again->Difference();
    EXPECT_EQ(difference.CountMoments(), 512U);
    double largest = 0.0;
    for (const ReportRecorder::Report& at : run.recorder.reports) {
        const ThreeVector true_ = KeplerPlace(kEccentricity, at.time);
        largest =
            std::max(largest, std::hypot(at.positions[3] - true_.x, at.positions[4] - true_.y) /
                                  std::hypot(at.positions[3], at.positions[4]));
    }
    EXPECT_GT(largest, 1e-6);
    EXPECT_LT(difference.Largest(), largest * (1 + 1e-6));
    EXPECT_GT(difference.Largest(), 0.5 * largest);

    // It can go on from there, and be wound back.
    const std::unique_ptr<Epoch> end = rerun.again->MakeEpoch();
    EXPECT_EQ(end->Time(), rerun.first->Time());
    EXPECT_EQ(end->Order(), 16);
    EXPECT_FALSE(end->Writeable());
    const ThreeVector off =
        end->SystemFromID(1)->Position() - KeplerPlace(kEccentricity, end->Time());
    EXPECT_LT(std::hypot(off.x, off.y), 1e-10);
    const std::unique_ptr<KeptRun> kept = rerun.again->TakeRun();
    ASSERT_NE(kept, nullptr);
    EXPECT_EQ(kept->EndTime(), end->Time());
}

TEST(Trust, StoriesThatPartAreMarkedWhereTheyDo) {
    HistoryRun::Settings settings;
    settings.order = 8;
    settings.cutoff = 1e-6;
    settings.onContact = kContactPasses;
    std::vector<HistoryRun::Planet> planets = NearPlanet();
    planets.back().radius = 0.1;
    HistoryRun run(planets, settings);
    run.Run(40'000);
    const auto method = ExactRerun::MethodFor(8, 1e-6);
    ASSERT_TRUE(method);
    EXPECT_EQ(method->order, 8);
    EXPECT_DOUBLE_EQ(method->cutoff, 1e-8);
    const Rerun rerun(run, *method);
    ASSERT_EQ(rerun.again->Make(GoOn), Finding::kFound);
    const StoryDifference& difference = rerun.again->Difference();
    ASSERT_TRUE(difference.RadiusFrom());
    EXPECT_GT(*difference.PixelFrom(), 5 * kTurn);
    EXPECT_LT(*difference.PixelFrom(), *difference.PercentFrom());
    EXPECT_LE(*difference.PercentFrom(), *difference.RadiusFrom());
    EXPECT_LT(*difference.RadiusFrom(), rerun.first->Time());
    const Rerun stopped(run, *method);
    EXPECT_EQ(stopped.again->Make([](double) { return false; }), Finding::kCancelled);
    EXPECT_EQ(ExactRerun::MethodFor(16, 1e-16)->order, 20);
    EXPECT_FALSE(ExactRerun::MethodFor(kMaxOrder, 1e-16));
}

TEST(Trust, MergersAreMadeAgain) {
    HistoryRun run(TwoCollisions());
    run.Run(80'000);
    ASSERT_EQ(run.mergers, 2);
    const Rerun rerun(run, {16, 1e-16});
    ASSERT_EQ(rerun.again->Make(GoOn), Finding::kFound);
    EXPECT_EQ(rerun.again->MakeEpoch()->RootSystem()->CountChildren(), 4);
    const std::unique_ptr<KeptRun> kept = rerun.again->TakeRun();
    ASSERT_EQ(kept->Events().size(), 2U);
    for (const RunEvent& event : kept->Events())
        EXPECT_EQ(event.kind, RunEvent::Kind::kMerger);
    EXPECT_FALSE(rerun.again->Difference().BodiesFrom());
    EXPECT_LT(rerun.again->Difference().Largest(), 1e-3);
}

TEST(Trust, AnOrbitIsNotChaotic) {
    const Motion orbit({{1.0, 0.0, 0.0, 0.0, 0.0, 0.0}, PlanetOf(0.7)}, 300 * kTurn);
    ChaosProbe probe(orbit.End());
    ASSERT_EQ(probe.Make(GoOn), Finding::kFound);
    EXPECT_FALSE(probe.FoldingTime()) << *probe.FoldingTime();
    EXPECT_DOUBLE_EQ(probe.Span(), 300 * kTurn);
    EXPECT_EQ(ChaosProbe(orbit.End()).Make([](double part) { return part < 0.5; }),
              Finding::kCancelled);
}

TEST(Trust, NearToAPlanetMotionIsChaotic) {
    const std::vector<HistoryRun::Planet> planets = NearPlanet();
    const double folding = FoldingTimeByLeaps(planets, kTurn / 2000);
    const Motion motion(planets, 30 * folding);
    ChaosProbe probe(motion.End());
    ASSERT_EQ(probe.Make(GoOn), Finding::kFound);
    ASSERT_TRUE(probe.FoldingTime()) << "by leaps " << folding / kTurn << " turns";
    EXPECT_LT(*probe.FoldingTime(), 3 * folding);
    EXPECT_GT(*probe.FoldingTime(), folding / 3);
}
