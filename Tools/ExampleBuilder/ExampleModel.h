// Makes the epoch that an example's text describes: places bodies on their orbits, groups about
// their centres, stars in their clusters, and gives each system its identifier in the order of the
// text. Owned by the caller, used on one thread for one text.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "Model/Systems/MassSystem.h"
#include "Tools/ExampleBuilder/ExampleText.h"

class CompositeSystem;
class DisplayedSystem;
class Epoch;

// The systems that statements about the whole name.
struct ChosenSystems {
    int64 focus = 0;
    int64 followed = kNoSystemID;
    int64 turnsAbout = kNoSystemID;
    int64 turnsWith = kNoSystemID;
};

class ExampleModel {
public:
    // Null when something is wrong: Line() and Reason() then say where and what.
    [[nodiscard]] std::unique_ptr<Epoch> Build(const ExampleText& text);
    [[nodiscard]] int Line() const { return line_; }
    [[nodiscard]] const std::string& Reason() const { return reason_; }
    [[nodiscard]] const ChosenSystems& Chosen() const { return chosen_; }

private:
    bool Fail(int line, std::string reason);
    bool Choose(const ExampleMention& mention, int64* id);
    bool Add(const ExampleSystem& text, MassSystem* parent);
    bool AddMembers(const ExampleSystem& text, CompositeSystem* group);
    bool AddCluster(const ExampleSystem& text, MassSystem* parent);
    bool AddBelt(const ExampleSystem& text, MassSystem* parent);
    bool Place(const ExampleSystem& text, const MassSystem& parent, MassSystem* system);
    bool SetLook(const ExampleSystem& text, DisplayedSystem* system);
    bool GiveIdentifier(const ExampleSystem& text, int64* id);

    std::map<std::string, int64> identifiers_;  // of all systems so far, by name
    int64 nextIdentifier_ = 0;
    ChosenSystems chosen_;
    int line_ = 0;
    std::string reason_;
};
