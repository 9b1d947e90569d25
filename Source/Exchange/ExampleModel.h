// Makes the epoch that an example's text describes: places bodies on their orbits, groups about
// their centres, stars in their clusters, and gives each system its identifier in the order of the
// text. Owned by the caller, used on one thread for one text.
#pragma once

#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Exchange/ExampleText.h"
#include "Model/Systems/MassSystem.h"

class CompositeSystem;
class DisplayedSystem;
class Epoch;
class ProgramResources;

// The systems that statements about the whole name.
struct ChosenSystems {
    int64 focus = 0;
    int64 followed = kNoSystemID;
    int64 turnsAbout = kNoSystemID;
    int64 turnsWith = kNoSystemID;
};

class ExampleModel {
public:
    explicit ExampleModel(const ProgramResources& resources) : resources_(resources) {}

    // Where identifiers come from; without it they count from 0.
    void SetIdentifiers(std::function<int64()> next) { nextID_ = std::move(next); }
    // Null when something is wrong: Line() and Reason() then say where and what.
    [[nodiscard]] std::unique_ptr<Epoch> Build(const ExampleText& text);
    [[nodiscard]] int Line() const { return line_; }
    [[nodiscard]] const std::string& Reason() const { return reason_; }
    [[nodiscard]] const ChosenSystems& Chosen() const { return chosen_; }
    // On which the system begins.
    [[nodiscard]] int LineOf(int64 id) const;

private:
    // A name that a system is shown relative to.
    struct Reference {
        DisplayedSystem* system;
        std::string name;
        int line;
    };

    bool Fail(int line, int32 text, std::initializer_list<std::string_view> values = {});
    bool Find(const std::string& name, int line, int32 otherwise, int64* id);
    bool Choose(const ExampleMention& mention, int64* id);
    bool SetReferences();
    bool Add(const ExampleSystem& text, MassSystem* parent);
    bool AddMembers(const ExampleSystem& text, CompositeSystem* group);
    bool AddCluster(const ExampleSystem& text, MassSystem* parent);
    bool AddBelt(const ExampleSystem& text, MassSystem* parent);
    bool Place(const ExampleSystem& text, const MassSystem& parent, MassSystem* system);
    void SetLook(const ExampleSystem& text, DisplayedSystem* system);
    int64 GiveIdentifier(const ExampleSystem& text);

    const ProgramResources& resources_;
    std::function<int64()> nextID_;
    std::map<std::string, int64> identifiers_;  // of all systems so far, by name
    std::vector<Reference> references_;
    std::map<int64, int> lines_;  // of all systems so far, by identifier
    int64 nextIdentifier_ = 0;
    ChosenSystems chosen_;
    int line_ = 0;
    std::string reason_;
};
