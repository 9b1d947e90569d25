// The portal, and many threads that read and edit one document through copies of it.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <thread>

#include "Model/Commands/LockingCommand.h"
#include "Model/Commands/MacroCommand.h"
#include "Model/Commands/SetCompVectorCommand.h"
#include "Model/Units/DimValue.h"
#include "Tests/Model/TestDocument.h"

namespace {

TEST(EpochPortal, KeepsTheSameBodyInFocusAcrossEpochs) {
    TestDocument document;
    EpochPortal& portal = document.portal;
    EXPECT_EQ(portal.FocusSystem()->ID(), 0);  // nothing was selected: the first child
    portal.SetSystemFromID(3);
    const std::unique_ptr<AbEpoch> copy(document.genesis->Copy());
    portal.SetEpochTo(copy.get());
    EXPECT_EQ(portal.FocusSystem(), copy->SystemFromID(3));
    copy->RootSystem()->RemoveChild(std::unique_ptr<MassSystem>(copy->SystemFromID(0)).get());
    portal.SetEpochTo(document.genesis);
    portal.SetSystemFromID(0);
    portal.SetEpochTo(copy.get());
    EXPECT_EQ(portal.FocusSystem()->ID(), 1);
    portal.SetEpochTo(nullptr);
    EXPECT_EQ(portal.FocusSystem()->ID(), kNoSystemID);
    EXPECT_TRUE(std::isnan(portal.FocusEpoch()->Time()));
    EXPECT_TRUE(portal.BodiesInMassOrder().empty());
}

TEST(EpochPortal, OrdersSystemsByIdentifierAndBodiesByMass) {
    TestDocument document;
    document.Find(1)->AddChild(NewBody("Twin", 7, 3.0, {}));
    document.Find(kRootSystemID)->AddChild(NewBody("NaN", 5, NAN, {}));
    document.Find(kRootSystemID)->AddChild(NewBody("Massless", 6, 0.0, {}));
    const auto idsOf = [](const auto& systems) {
        std::string ids;
        for (const MassSystem* system : systems)
            ids += std::to_string(system->ID());
        return ids;
    };
    EXPECT_EQ(idsOf(document.portal.SystemsInIDOrder()), "01234567");
    EXPECT_EQ(idsOf(document.portal.BodiesInMassOrder()), "0372465");
}

TEST(EpochPortal, CopiesShareObserversAndLockAndHaveTheirOwnNullObjects) {
    TestDocument document;
    TestObserver observer;
    auto first = std::make_unique<EpochPortal>(&document.chain, &document.root);
    auto copy = std::make_unique<EpochPortal>(*first);
    EXPECT_NE(copy->FocusEpoch(), first->FocusEpoch());
    EXPECT_NE(copy->FocusSystem(), first->FocusSystem());
    first->AddObserver(&observer);
    first.reset();  // the subject lives on, and so do the copy's null objects
    EXPECT_EQ(copy->FocusSystem()->ID(), kNoSystemID);
    EXPECT_EQ(copy->FocusEpoch()->Order(), 2);
    copy->TellObservers(5);
    EXPECT_EQ(observer.last, 5);

    copy->RemoveObserver(&observer);
}

TEST(EpochPortal, ThreadsReadAndEditThroughTheirOwnCopies) {
    TestDocument document;
    constexpr int32 kRounds = 150;
    // The bodies 0 and 4 always stand at opposite x.
    document.Find(0)->SetPosition({8.0, 0.0, 0.0});
    std::vector<EpochPortal> portals(5, document.portal);
    // Like an entry box with a pending value: commits it as a command of its own.
    TestObserver pending;
    pending.onCommit = [portal = &portals[4]] {
        auto* command =
            new SetCompVectorCommand(portal, kVelocityQuantity, 0, 2, DimValue(1.0, 1.0));
        (new LockingCommand(command, portal, true))->Execute();
        return true;
    };
    document.portal.AddObserver(&pending);
    std::vector<std::thread> threads;
    for (int32 writer = 0; writer < 2; writer++) {
        threads.emplace_back([&portals, writer] {
            EpochPortal* portal = &portals[static_cast<std::size_t>(writer)];
            for (int32 i = 1; i <= kRounds; i++) {
                auto macro = std::make_unique<MacroCommand>();
                for (const double sign : {-1.0, 1.0})
                    macro->AddCommand(std::make_unique<SetCompVectorCommand>(
                        portal, kPositionQuantity, sign < 0 ? 0 : 4, 0, DimValue(sign * i, 1.0)));
                (new LockingCommand(macro.release(), portal, true))->Execute();
            }
        });
    }
    threads.emplace_back([&document] {
        for (int32 i = 0; i < kRounds; i++)
            i % 2 == 0 ? document.chain.Undo() : document.chain.Redo();
    });
    threads.emplace_back([portal = portals[2]]() mutable {
        for (int32 i = 0; i < kRounds; i++) {
            portal.ReadLock();
            const auto bodies = portal.BodiesInMassOrder();
            EXPECT_EQ(bodies.front()->Position().x, -bodies.back()->Position().x);
            portal.ReadUnlock();
        }
    });
    threads.emplace_back([portal = portals[3]]() mutable {
        for (int32 i = 0; i < kRounds; i++) {
            EpochPortal copy = portal;
            auto observer = std::make_unique<TestObserver>();
            copy.AddObserver(observer.get());
            copy.TellObservers(1);
            copy.RemoveObserver(observer.get());
        }
    });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(document.Find(0)->Position().x, -document.Find(4)->Position().x);
    EXPECT_TRUE(document.chain.CanUndo());
    document.portal.RemoveObserver(&pending);
}

}  // namespace
