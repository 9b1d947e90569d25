// A point mass with a radius: the only thing that the integrator moves. Ownership and locking as
// for MassSystem.
#pragma once

#include "Model/Systems/DisplayedSystem.h"

class Body final : public DisplayedSystem {
public:
    // At rest at the origin, without mass and radius; trail and disc shown.
    Body(const char* name, int64 id, rgb_color trail, rgb_color disc, int64 relTo);
    explicit Body(BMessage* archive);
    Body(const Body&) = default;
    Body& operator=(const Body&) = default;

    static BArchivable* Instantiate(BMessage* archive);
    [[nodiscard]] status_t Archive(BMessage* into, bool deep = true) const override;
    static void DescribeFields(FieldDescriptions* into);

    [[nodiscard]] MassSystem* Copy() const override { return new Body(*this); }
    MassSystem* SystemFromID(int64 id) override { return id == ID() ? this : nullptr; }
    MassSystem* ChildAt(int32) const override { return nullptr; }
    int32 CountChildren() const override { return 0; }
    int32 CountBodies() const override { return 1; }
    int32 IndexOfChild(const MassSystem*) const override { return -1; }
    status_t AddChild(MassSystem*) override { return B_ERROR; }
    void RemoveChild(MassSystem*) override {}
    ThreeVector Position() const override { return position_; }
    ThreeVector Velocity() const override { return velocity_; }
    double M() const override { return m_; }
    double Radius() const override { return radius_; }
    void SetPosition(ThreeVector position) override { position_ = position; }
    void SetVelocity(ThreeVector velocity) override { velocity_ = velocity; }
    // Both store the magnitude.
    void SetM(double m) override;
    void SetRadius(double radius) override;
    [[nodiscard]] LCommand* DisplaceCommand(ThreeVector from, ThreeVector to) override;
    [[nodiscard]] LCommand* BoostCommand(ThreeVector from, ThreeVector to) override;

private:
    struct Fields;

    ThreeVector position_;  // m
    ThreeVector velocity_;  // m/s
    double m_ = 0.0;        // GM, m3/s2
    double radius_ = 0.0;   // m
};
