#include <gtest/gtest.h>

#include <string>

#include "BMessage.h"
#include "Body.h"
#include "CommandFactory.h"
#include "CompositeSystem.h"
#include "DissolveSystemCommand.h"
#include "Epoch.h"
#include "GroupSystemsCommand.h"
#include "UndoChain.h"

namespace {

// Root system: 0, group 10 (1, group 11 (2, 3)), 4.
class GroupSystemsTest : public testing::Test {
protected:
    GroupSystemsTest() {
        auto* outer = new CompositeSystem("outer", 10, {}, {}, kOriginID);
        auto* inner = new CompositeSystem("inner", 11, {}, {}, kOriginID);
        for (const int64 id : {2, 3})
            inner->AddChild(MakeBody(id));
        outer->AddChild(MakeBody(1));
        outer->AddChild(inner);
        for (MassSystem* system : {MakeBody(0), static_cast<MassSystem*>(outer), MakeBody(4)})
            epoch_->RootSystem()->AddChild(system);
        root_.AddChild(epoch_);
        portal_.SetEpochTo(epoch_);
    }

    static MassSystem* MakeBody(int64 id) {
        auto* body = new Body(std::to_string(id).c_str(), id, {}, {}, kOriginID);
        body->SetPosition({static_cast<double>(id), 1.0, 0.0});
        return body;
    }
    // "0 10(1 11(2 3)) 4"
    std::string Shape() const { return Shape(portal_.FocusEpoch()->RootSystem()); }
    static std::string Shape(const MassSystem* group) {
        std::string shape;
        for (int32 i = 0; i < group->CountChildren(); i++) {
            const MassSystem* child = group->ChildAt(i);
            EXPECT_EQ(child->Parent(), group);
            shape += (i ? " " : "") + std::to_string(child->ID());
            if (child->CountChildren() > 0) shape += "(" + Shape(child) + ")";
        }
        return shape;
    }
    void Group(std::vector<int64> ids) {
        ExecuteFiled(&portal_,
                     std::make_unique<GroupSystemsCommand>(&portal_, std::move(ids), "new", 20));
    }
    void Dissolve(int64 id) {
        ExecuteFiled(&portal_, std::make_unique<DissolveSystemCommand>(&portal_, id));
    }
    void ExpectUndoAndRedo(const std::string& before, const std::string& after) {
        const int64 focus = portal_.FocusSystem()->ID();
        EXPECT_EQ(Shape(), after);
        chain_.Undo();
        EXPECT_EQ(Shape(), before);
        chain_.Redo();
        EXPECT_EQ(Shape(), after);
        EXPECT_EQ(portal_.FocusSystem()->ID(), focus);
    }

    static constexpr const char* kShape = "0 4 10(1 11(2 3))";
    UndoChain chain_;
    Epoch root_;
    Epoch* epoch_ = new Epoch;
    EpochPortal portal_{&chain_, &root_};
};

TEST_F(GroupSystemsTest, GroupTakesThePlaceOfItsMembers) {
    Group({0, 4});
    EXPECT_EQ(portal_.FocusSystem()->Name(), "new");
    ExpectUndoAndRedo(kShape, "10(1 11(2 3)) 20(0 4)");
}

TEST_F(GroupSystemsTest, MembersOfSeveralGroupsMeetInTheInnermostCommonOne) {
    Group({3, 1});
    ExpectUndoAndRedo(kShape, "0 4 10(11(2) 20(1 3))");
}

TEST_F(GroupSystemsTest, PartsOfAMemberMoveAlongWithIt) {
    Group({2, 11, 0, 99});
    ExpectUndoAndRedo(kShape, "4 10(1) 20(0 11(2 3))");
}

TEST_F(GroupSystemsTest, DissolvingLeavesTheMembers) {
    portal_.SetSystemFromID(10);
    Dissolve(10);
    EXPECT_EQ(portal_.FocusSystem()->ID(), 1);
    ExpectUndoAndRedo(kShape, "0 1 4 11(2 3)");
}

TEST_F(GroupSystemsTest, BodiesAndTheRootSystemAreNotDissolved) {
    Dissolve(0);
    Dissolve(kRootSystemID);
    EXPECT_EQ(Shape(), kShape);
}

TEST_F(GroupSystemsTest, ReadOnlyEpochKeepsItsGroups) {
    epoch_->SetWriteable(false);
    BMessage before, after;
    ASSERT_EQ(epoch_->RootSystem()->Archive(&before), B_OK);
    Group({1, 2});
    Dissolve(10);
    EXPECT_EQ(Shape(), "0 4 11(3) 20(1 2)");
    ASSERT_EQ(epoch_->RootSystem()->Archive(&after), B_OK);
    EXPECT_TRUE(before == after);
    chain_.Undo();
    chain_.Undo();
    EXPECT_EQ(portal_.FocusEpoch(), epoch_);
    EXPECT_EQ(epoch_->CountChildren(), 0);
}

}  // namespace
