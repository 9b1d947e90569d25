#include "DocumentCheck.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "CompositeSystem.h"
#include "SampleDocument.h"

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// What is wrong with the planet epoch after the change, which is made in a child epoch of it.
DocumentError ErrorAfter(const std::function<void(Epoch* child, MassSystem* moon)>& change) {
    auto epoch = MakePlanetEpoch("Genesis");
    auto child = MakePlanetEpoch("Child");
    change(child.get(), child->SystemFromID(2));
    epoch->AddChild(child.release());
    std::vector<std::unique_ptr<AbEpoch>> epochs;
    epochs.push_back(std::move(epoch));
    return CheckEpochs(epochs);
}

// A calculator state of two bodies; the parts' counts as given.
BMessage* State(int32 positionParts, int32 velocityParts, int32 steps) {
    auto* state = new BMessage(FourCC("ARCV"));
    for (int64 id : {0, 1})
        state->AddInt64("IDs", id);
    for (int32 i = 0; i < positionParts; i++)
        state->AddDouble("DelR", 1.0);
    for (int32 i = 0; i < velocityParts; i++)
        state->AddDouble("DelV", 1.0);
    state->AddInt32("Iter", steps);
    return state;
}

TEST(DocumentCheck, NamesTheBodyWithANumberThatIsNone) {
    const auto changes = {
        std::pair(kTextBadPosition, std::function([](MassSystem* m) {
                      m->SetPosition({0, kNaN, 0});
                  })),
        std::pair(kTextBadVelocity, std::function([](MassSystem* m) {
                      m->SetVelocity({0, 0, -kInfinity});
                  })),
        std::pair(kTextBadMass, std::function([](MassSystem* m) { m->SetM(kInfinity); })),
        std::pair(kTextBadRadius, std::function([](MassSystem* m) { m->SetRadius(kNaN); })),
    };
    for (const auto& change : changes) {
        const DocumentError error =
            ErrorAfter([&change](Epoch*, MassSystem* moon) { change.second(moon); });
        EXPECT_EQ(error.text, change.first);
        EXPECT_EQ(error.subject, "Moon");
    }
}

TEST(DocumentCheck, LooksIntoGroups) {
    const DocumentError error = ErrorAfter([](Epoch* epoch, MassSystem*) {
        auto* group = new CompositeSystem("Group", 9, {}, {}, kOriginID);
        group->AddChild(MakeBody("Inner", 10, kNaN, {}, {}).release());
        epoch->RootSystem()->AddChild(group);
    });
    EXPECT_EQ(error.text, kTextBadMass);
    EXPECT_EQ(error.subject, "Inner");
}

TEST(DocumentCheck, NamesTheEpochWithABadTimeOrState) {
    DocumentError error = ErrorAfter([](Epoch* epoch, MassSystem*) { epoch->SetTime(kNaN); });
    EXPECT_EQ(error.text, kTextBadTime);
    EXPECT_EQ(error.subject, "Child");

    for (BMessage* bad : {State(29, 24, 7), State(30, 25, 7), State(30, 24, -1),
                          State(30, 24, std::numeric_limits<int32>::max())}) {
        error = ErrorAfter([bad](Epoch* epoch, MassSystem*) { epoch->SetCalculatorState(bad); });
        EXPECT_EQ(error.text, kTextBadCalculatorState);
    }
    // A state that fits, and the one of a calculator that has never run.
    auto* unused = new BMessage(FourCC("ARCV"));
    unused->AddInt32("Iter", 0);
    for (BMessage* good : {State(30, 24, 7), unused}) {
        error = ErrorAfter([good](Epoch* epoch, MassSystem*) { epoch->SetCalculatorState(good); });
        EXPECT_FALSE(error.Failed());
    }
}

}  // namespace
