// One node of the tree of gravitating things in an epoch: a body, a group, or the null system.
// Every node carries an identifier that names "the same body" in all epochs of a document. Owned by
// its enclosing composite system or by its epoch; read under the document's read lock, changed
// under its write lock.
#pragma once

#include <string>

#include "Model/Epochs/EpochLimits.h"
#include "Model/Systems/ThreeVector.h"
#include "Platform/Application/FieldDescription.h"
#include "Platform/Support/BArchivable.h"
#include "Platform/Support/Errors.h"
#include "Platform/Support/GraphicsDefs.h"

class LCommand;

class MassSystem : public BArchivable {
public:
    explicit MassSystem(int64 id);
    explicit MassSystem(BMessage* archive);

    [[nodiscard]] status_t Archive(BMessage* into, bool deep = true) const override;
    // Of what this class adds to a record itself, as the derived ones do.
    static void DescribeFields(FieldDescriptions* into);

    // A deep copy with equal identifiers and without a parent; null for the null system.
    [[nodiscard]] virtual MassSystem* Copy() const = 0;
    virtual int64 RelativeTo() const = 0;
    // Ignored when `id` is the system's own.
    virtual void SetRelativeTo(int64 id) = 0;
    // This system or the first of its children's that has the identifier; null when none has.
    virtual MassSystem* SystemFromID(int64 id) = 0;
    virtual MassSystem* ChildAt(int32 index) const = 0;
    virtual int32 CountChildren() const = 0;
    virtual int32 IndexOfChild(const MassSystem* child) const = 0;
    // 0: the child is (or one of equal identifier already was) among the children; -1: refused.
    virtual status_t AddChild(MassSystem* child) = 0;
    // The caller owns the child afterwards.
    virtual void RemoveChild(MassSystem* child) = 0;
    virtual MassSystem* Parent() const = 0;
    virtual void SetParent(MassSystem* parent) = 0;
    // The largest identifier in the subtree, -1 when there is none of 0 or more.
    virtual int64 MaxSystemID() const;
    // All bodies of the subtree.
    virtual int32 CountBodies() const;

    virtual std::string Name() const = 0;
    virtual int64 ID() const;
    // Only while the system is being read: groups are sorted by identifier.
    void SetID(int64 id) { id_ = id; }
    virtual ThreeVector Position() const = 0;  // m
    virtual ThreeVector Velocity() const = 0;  // m/s
    virtual double M() const = 0;              // GM, m3/s2
    virtual double Radius() const = 0;         // m
    virtual rgb_color TrailColor() const = 0;
    virtual rgb_color DiscColor() const = 0;
    virtual bool TrailOn() const = 0;
    virtual bool DiscOn() const = 0;
    virtual double PositionUval() const = 0;
    virtual double SpeedUval() const = 0;
    virtual double MassUval() const = 0;
    virtual double RadiusUval() const = 0;

    virtual void SetName(std::string name) = 0;
    virtual void SetPosition(ThreeVector position) = 0;
    virtual void SetVelocity(ThreeVector velocity) = 0;
    virtual void SetM(double m) = 0;
    virtual void SetRadius(double radius) = 0;
    virtual void SetTrailColor(rgb_color color) = 0;
    virtual void SetDiscColor(rgb_color color) = 0;
    virtual void SetTrailOn(bool on) = 0;
    virtual void SetDiscOn(bool on) = 0;
    virtual void SetPositionUval(double uval) = 0;
    virtual void SetSpeedUval(double uval) = 0;
    virtual void SetMassUval(double uval) = 0;
    virtual void SetRadiusUval(double uval) = 0;

    // A new command (the caller owns it) that moves the system, or changes its velocity, by
    // to - from; null for the null system.
    [[nodiscard]] virtual LCommand* DisplaceCommand(ThreeVector from, ThreeVector to) = 0;
    [[nodiscard]] virtual LCommand* BoostCommand(ThreeVector from, ThreeVector to) = 0;

protected:
    MassSystem(const MassSystem&) = default;
    MassSystem& operator=(const MassSystem&) = default;

private:
    struct Fields;

    int64 id_ = kNoSystemID;
};
