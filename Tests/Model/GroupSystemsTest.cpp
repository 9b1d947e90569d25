#include <gtest/gtest.h>

#include <string>

#include "CommandFactory.h"
#include "DissolveSystemCommand.h"
#include "GroupSystemsCommand.h"
#include "TestDocument.h"

namespace {

class GroupSystemsTest : public testing::Test {
protected:
    GroupSystemsTest() {
        auto* outer = NewComposite("outer", 10);
        auto* inner = NewComposite("inner", 11);
        for (const int64 id : {6, 7})
            inner->AddChild(NewBody("b", id, 1.0, {}));
        outer->AddChild(NewBody("b", 5, 1.0, {}));
        outer->AddChild(inner);
        document_.Find(kRootSystemID)->AddChild(outer);
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
    void ExpectUndoAndRedo(const std::string& before, const std::string& after) {
        const int64 focus = portal_.FocusSystem()->ID();
        EXPECT_EQ(Shape(), after);
        document_.chain.Undo();
        EXPECT_EQ(Shape(), before);
        document_.chain.Redo();
        EXPECT_EQ(Shape(), after);
        EXPECT_EQ(portal_.FocusSystem()->ID(), focus);
    }

    static constexpr const char* kShape = "0 1(2 3) 4 10(5 11(6 7))";
    TestDocument document_;
    EpochPortal& portal_ = document_.portal;
};

TEST_F(GroupSystemsTest, GroupTakesThePlaceOfItsMembers) {
    Group({0, 4});
    EXPECT_EQ(portal_.FocusSystem()->Name(), "new");
    ExpectUndoAndRedo(kShape, "1(2 3) 10(5 11(6 7)) 20(0 4)");
}

TEST_F(GroupSystemsTest, MembersOfSeveralGroupsMeetInTheInnermostCommonOne) {
    Group({7, 5});
    ExpectUndoAndRedo(kShape, "0 1(2 3) 4 10(11(6) 20(5 7))");
}

TEST_F(GroupSystemsTest, PartsOfAMemberMoveAlongWithIt) {
    Group({6, 11, 0, 99});
    ExpectUndoAndRedo(kShape, "1(2 3) 4 10(5) 20(0 11(6 7))");
}

TEST_F(GroupSystemsTest, DissolvingLeavesTheMembers) {
    portal_.SetSystemFromID(10);
    Dissolve(10);
    EXPECT_EQ(portal_.FocusSystem()->ID(), 5);
    ExpectUndoAndRedo(kShape, "0 1(2 3) 4 5 11(6 7)");
}

TEST_F(GroupSystemsTest, BodiesAndTheRootSystemAreNotDissolved) {
    Dissolve(0);
    Dissolve(kRootSystemID);
    EXPECT_EQ(Shape(), kShape);
}

TEST_F(GroupSystemsTest, ReadOnlyEpochKeepsItsGroups) {
    document_.genesis->SetWriteable(false);
    const std::string before = document_.Snapshot();
    const std::string systems = DeepArchive(*document_.genesis->RootSystem());
    Group({5, 6});
    Dissolve(10);
    EXPECT_EQ(Shape(), "0 1(2 3) 4 11(7) 20(5 6)");
    EXPECT_EQ(DeepArchive(*document_.genesis->RootSystem()), systems);
    document_.chain.Undo();
    document_.chain.Undo();
    EXPECT_EQ(document_.Snapshot(), before);
}

}  // namespace
