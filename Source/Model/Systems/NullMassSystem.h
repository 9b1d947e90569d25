// The null object for "no system": it ignores every change. Each portal holds one of its own.
#pragma once

#include "Model/Systems/MassSystem.h"

class NullMassSystem final : public MassSystem {
public:
    NullMassSystem();
    explicit NullMassSystem(BMessage* archive);

    static BArchivable* Instantiate(BMessage* archive);

    [[nodiscard]] MassSystem* Copy() const override { return nullptr; }
    int64 RelativeTo() const override { return kOriginID; }
    void SetRelativeTo(int64) override {}
    MassSystem* SystemFromID(int64) override { return nullptr; }
    MassSystem* ChildAt(int32) const override { return nullptr; }
    int32 CountChildren() const override { return 0; }
    int32 IndexOfChild(const MassSystem*) const override { return -1; }
    status_t AddChild(MassSystem*) override { return B_ERROR; }
    void RemoveChild(MassSystem*) override {}
    MassSystem* Parent() const override { return nullptr; }
    void SetParent(MassSystem*) override {}
    std::string Name() const override { return {}; }
    ThreeVector Position() const override;
    ThreeVector Velocity() const override;
    double M() const override;
    double Radius() const override;
    rgb_color TrailColor() const override { return {0, 0, 0, 0}; }
    rgb_color DiscColor() const override { return {0, 0, 0, 0}; }
    bool TrailOn() const override { return false; }
    bool DiscOn() const override { return false; }
    double PositionUval() const override { return 1.0; }
    double SpeedUval() const override { return 1.0; }
    double MassUval() const override { return 1.0; }
    double RadiusUval() const override { return 1.0; }
    void SetName(std::string) override {}
    void SetPosition(ThreeVector) override {}
    void SetVelocity(ThreeVector) override {}
    void SetM(double) override {}
    void SetRadius(double) override {}
    void SetTrailColor(rgb_color) override {}
    void SetDiscColor(rgb_color) override {}
    void SetTrailOn(bool) override {}
    void SetDiscOn(bool) override {}
    void SetPositionUval(double) override {}
    void SetSpeedUval(double) override {}
    void SetMassUval(double) override {}
    void SetRadiusUval(double) override {}
    [[nodiscard]] LCommand* DisplaceCommand(ThreeVector, ThreeVector) override { return nullptr; }
    [[nodiscard]] LCommand* BoostCommand(ThreeVector, ThreeVector) override { return nullptr; }
};
