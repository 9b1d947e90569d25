#include <gtest/gtest.h>

#include <string>

#include "Model/Commands/CommandFactory.h"
#include "Model/Commands/DissolveSystemCommand.h"
#include "Model/Commands/GroupSystemsCommand.h"
#include "Model/Systems/CompositeSystem.h"
#include "Tests/Model/TestDocument.h"

namespace {

class GroupSystemsTest : public testing::Test {
protected:
    GroupSystemsTest() {
        document_.Find(kRootSystemID)->AddChild(NewComposite("outer", 10));
        document_.Find(10)->AddChild(NewBody("b", 5, 1.0, {}));
        document_.Find(10)->AddChild(NewComposite("inner", 11));
        for (const int64 id : {6, 7})
            document_.Find(11)->AddChild(NewBody("b", id, 1.0, {}));
    }

    // As kShape.
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

    static constexpr const char* kShape = "0 1(2 3) 4 10(5 11(6 7))";
    TestDocument document_;
    EpochPortal& portal_ = document_.portal;
};

// In the innermost group that holds them all; parts of a member move along with it.
TEST_F(GroupSystemsTest, GroupTakesThePlaceOfItsMembers) {
    const std::pair<std::vector<int64>, const char*> cases[] = {
        {{0, 4}, "1(2 3) 10(5 11(6 7)) 20(0 4)"},
        {{7, 5}, "0 1(2 3) 4 10(11(6) 20(5 7))"},
        {{6, 11, 0, 99}, "1(2 3) 4 10(5) 20(0 11(6 7))"}};
    for (const auto& [members, shape] : cases) {
        Group(members);
        EXPECT_EQ(portal_.FocusSystem()->Name(), "new");
        EXPECT_EQ(Shape(), shape);
        document_.chain.Undo();
        EXPECT_EQ(Shape(), kShape);
    }
}

TEST_F(GroupSystemsTest, DissolvingLeavesTheMembers) {
    portal_.SetSystemFromID(10);
    Dissolve(10);
    EXPECT_EQ(portal_.FocusSystem()->ID(), 5);
    // Neither a body nor the root system is dissolved.
    Dissolve(0);
    Dissolve(kRootSystemID);
    EXPECT_EQ(Shape(), "0 1(2 3) 4 5 11(6 7)");
}

// What is nested more deeply cannot be read again.
TEST_F(GroupSystemsTest, GroupsNestAsDeeplyAsADocumentHoldsThem) {
    using Obstacle = GroupSystemsCommand::Obstacle;
    const auto obstacle = [this](std::vector<int64> ids) {
        return GroupSystemsCommand(&portal_, std::move(ids), "new", 5000).FindObstacle();
    };
    EXPECT_EQ(obstacle({99, kRootSystemID}), Obstacle::kNoMembers);
    EXPECT_EQ(obstacle({0}), Obstacle::kNone);
    int64 id = 100;
    for (int64 outermost = 0; obstacle({outermost}) == Obstacle::kNone; outermost = id++)
        ExecuteFiled(&portal_, std::make_unique<GroupSystemsCommand>(
                                   &portal_, std::vector{outermost}, "new", id));
    EXPECT_EQ(id - 100, kMaxGroupNesting - 1);
    EXPECT_EQ(obstacle({0}), Obstacle::kTooDeep);
    EXPECT_EQ(obstacle({4}), Obstacle::kNone);

    BMessage archive;
    ASSERT_EQ(portal_.FocusEpoch()->Archive(&archive), B_OK);
    const Epoch read(&archive);
    EXPECT_NE(read.SystemFromID(0), nullptr) << "nothing is lost";

    const std::string before = Shape();
    ExecuteFiled(&portal_, std::make_unique<GroupSystemsCommand>(&portal_, std::vector<int64>{0},
                                                                 "new", 5000));
    EXPECT_EQ(Shape(), before);
}

}  // namespace
