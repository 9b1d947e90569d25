// Puts systems of the focus epoch into a new composite system, which takes their place in the
// innermost group that holds them all, and into focus. Owns the composite while it is not in the
// tree.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Model/Commands/FocusEpochCommand.h"

class CompositeSystem;
class SetSystemToCommand;

class GroupSystemsCommand final : public FocusEpochCommand {
public:
    // Identifiers that name no system, or a part of another one named, are passed over; with fewer
    // than one left the command does nothing. `newID` must be free in the whole document.
    GroupSystemsCommand(EpochPortal* portal, std::vector<int64> members, std::string name,
                        int64 newID);
    ~GroupSystemsCommand() override;

    // What stands against it in the focus epoch as it is; nothing is done then. Under a lock of the
    // model.
    enum class Obstacle { kNone, kNoMembers, kTooDeep };
    [[nodiscard]] Obstacle FindObstacle() const;

protected:
    bool Apply() override;
    void Revert() override;

private:
    struct Member {
        int64 id;
        int64 formerParentID;
    };
    using Systems = std::vector<MassSystem*>;
    [[nodiscard]] Systems FindMembers() const;
    static MassSystem* PlaceFor(const Systems& members);
    static bool FitsInto(const MassSystem* place, const Systems& members);

    const std::vector<int64> memberIDs_;
    const std::string name_;
    const int64 newID_;
    std::vector<Member> members_;
    std::unique_ptr<CompositeSystem> ownedGroup_;
    std::unique_ptr<SetSystemToCommand> setSystem_;
};
