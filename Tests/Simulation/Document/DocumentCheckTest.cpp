#include "Simulation/Document/DocumentCheck.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "Model/Systems/CompositeSystem.h"
#include "Resources/DocumentTexts.h"
#include "Tests/Simulation/Document/SampleDocument.h"

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// What is wrong with the planet epoch after the change, which is made in a child epoch of it.
DocumentError ErrorAfter(const std::function<void(Epoch* child, MassSystem* moon)>& change) {
    auto epoch = MakePlanetEpoch("Genesis");
    auto child = MakePlanetEpoch("Child");
    change(child.get(), child->SystemFromID(2));
    epoch->AddChild(child.get());
    EXPECT_FALSE(CheckEpoch(*epoch).Failed());
    return CheckEpoch(*child.release());
}

// A calculator state of two bodies; the parts' counts as given.
BMessage* State(int32 positionParts, int32 velocityParts, int32 steps) {
    auto* state = new BMessage(FourCC("ARCV"));
    for (int64 id : {0, 1})
        state->AddInt64("IDs", id);
    const std::vector<double> parts(100, 1.0);
    state->AddDoubles("DelR", parts.data(), positionParts);
    state->AddDoubles("DelV", parts.data(), velocityParts);
    state->AddInt32("Iter", steps);
    return state;
}

TEST(DocumentCheck, NamesTheBodyWithANumberThatIsNone) {
    const std::pair<int32, std::function<void(MassSystem*)>> changes[] = {
        {kTextBadPosition,
         [](MassSystem* m) {
             m->SetPosition(ThreeVector{0, kNaN, 0});
         }},
        {kTextBadVelocity,
         [](MassSystem* m) {
             m->SetVelocity(ThreeVector{0, 0, -kInfinity});
         }},
        {kTextBadMass, [](MassSystem* m) { m->SetM(kInfinity); }},
        {kTextBadRadius, [](MassSystem* m) { m->SetRadius(kNaN); }},
    };
    for (const auto& [text, change] : changes) {
        const DocumentError error = ErrorAfter([&change = change](Epoch* epoch, MassSystem* moon) {
            change(moon);
            // In a group.
            auto* group = new CompositeSystem("Group", 9, {}, {}, kOriginID);
            group->AddChild(moon);
            epoch->RootSystem()->AddChild(group);
        });
        EXPECT_EQ(error.text, text);
        EXPECT_EQ(error.subject, "Moon");
    }
}

TEST(DocumentCheck, NamesTheEpochWithABadTime) {
    const DocumentError error = ErrorAfter([](Epoch* epoch, MassSystem*) { epoch->SetTime(kNaN); });
    EXPECT_EQ(error.text, kTextBadTime);
    EXPECT_EQ(error.subject, "Child");
}

// The calculator takes what fits, and the bodies are there without it.
TEST(DocumentCheck, ACalculatorStateIsNeverAFault) {
    auto* unused = new BMessage(FourCC("ARCV"));
    unused->AddInt32("Iter", 0);
    for (BMessage* state :
         {State(29, 24, 7), State(30, 25, 7), State(30, 24, -1),
          State(30, 24, std::numeric_limits<int32>::max()), State(30, 24, 7), unused}) {
        const DocumentError error =
            ErrorAfter([state](Epoch* epoch, MassSystem*) { epoch->SetCalculatorState(state); });
        EXPECT_FALSE(error.Failed());
    }
}

}  // namespace
