// A named group of mass systems that can be moved, pushed and shown as one. It owns its children,
// sorted by identifier, each identifier once; its position, velocity, mass and radius are derived
// from theirs, which are absolute. Ownership and locking as for MassSystem.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "Model/Systems/DisplayedSystem.h"

class CompositeSystem final : public DisplayedSystem {
public:
    // Without children; trail and disc not shown.
    CompositeSystem(const char* name, int64 id, rgb_color trail, rgb_color disc, int64 relTo);
    explicit CompositeSystem(BMessage* archive);
    CompositeSystem(const CompositeSystem& other);
    CompositeSystem& operator=(const CompositeSystem& other);

    // Also refuses a composite nested in more than kMaxGroupNesting others.
    static BArchivable* Instantiate(BMessage* archive);
    // The children are always written in full.
    [[nodiscard]] status_t Archive(BMessage* into, bool deep = true) const override;
    static void DescribeFields(FieldDescriptions* into);

    [[nodiscard]] MassSystem* Copy() const override { return new CompositeSystem(*this); }
    MassSystem* SystemFromID(int64 id) override;
    MassSystem* ChildAt(int32 index) const override;
    int32 CountChildren() const override;
    int32 IndexOfChild(const MassSystem* child) const override;
    // Takes the child over, from its parent if it has one, unless the identifier is already
    // present.
    status_t AddChild(MassSystem* child) override;
    void RemoveChild(MassSystem* child) override;
    ThreeVector Position() const override;
    ThreeVector Velocity() const override;
    double M() const override;
    double Radius() const override;
    // Both change all children alike: the group moves rigidly and keeps its internal motion.
    void SetPosition(ThreeVector position) override;
    void SetVelocity(ThreeVector velocity) override;
    // Derived from the children: ignored.
    void SetM(double) override {}
    void SetRadius(double) override {}
    [[nodiscard]] LCommand* DisplaceCommand(ThreeVector from, ThreeVector to) override;
    [[nodiscard]] LCommand* BoostCommand(ThreeVector from, ThreeVector to) override;

    // Makes and adds every mass system among the archive's "Bodies"; drops what is none, and what
    // has the identifier of one before it.
    void AddChildrenFrom(const BMessage* archive);
    // Those below that were stored without an identifier get what `next` answers.
    void NumberChildren(const std::function<int64(const MassSystem&)>& next);

private:
    using Children = std::vector<std::unique_ptr<MassSystem>>;
    using Getter = ThreeVector (MassSystem::*)() const;
    using Setter = void (MassSystem::*)(ThreeVector);
    using CommandMaker = LCommand* (MassSystem::*)(ThreeVector, ThreeVector);

    Children::const_iterator LowerBound(int64 id) const;
    ThreeVector MassWeightedMean(Getter quantity) const;
    void ShiftChildren(Getter quantity, Setter set, ThreeVector to);
    LCommand* ChildrenCommand(Getter quantity, CommandMaker make, ThreeVector from, ThreeVector to);
    void CopyChildren(const CompositeSystem& other);
    void SortChildren();
    void AddAll(Children systems);

    Children children_;
};
