// What every system that is shown has: name, colours, switches, the units its quantities are shown
// in, and the system it is shown relative to. Ownership and locking as for MassSystem.
#pragma once

#include <utility>

#include "Model/Systems/MassSystem.h"

inline constexpr rgb_color DEFAULT_TRAIL_DISC_COLOR{0, 0, 0, 255};

class DisplayedSystem : public MassSystem {
public:
    // Takes the four units from the user's preferred ones. `relTo` kOriginID: absolute.
    DisplayedSystem(const char* name, int64 id, rgb_color trail, bool trailOn, rgb_color disc,
                    bool discOn, int64 relTo);
    explicit DisplayedSystem(BMessage* archive);

    [[nodiscard]] status_t Archive(BMessage* into, bool deep = true) const override;
    static void DescribeFields(FieldDescriptions* into);

    int64 RelativeTo() const override { return relativeTo_; }
    void SetRelativeTo(int64 id) override;
    MassSystem* Parent() const override { return parent_; }
    void SetParent(MassSystem* parent) override { parent_ = parent; }
    std::string Name() const override { return name_; }
    rgb_color TrailColor() const override { return trailColor_; }
    rgb_color DiscColor() const override { return discColor_; }
    bool TrailOn() const override { return trailOn_; }
    bool DiscOn() const override { return discOn_; }
    double PositionUval() const override { return positionUval_; }
    double SpeedUval() const override { return speedUval_; }
    double MassUval() const override { return massUval_; }
    double RadiusUval() const override { return radiusUval_; }
    void SetName(std::string name) override { name_ = std::move(name); }
    void SetTrailColor(rgb_color color) override { trailColor_ = color; }
    void SetDiscColor(rgb_color color) override { discColor_ = color; }
    void SetTrailOn(bool on) override { trailOn_ = on; }
    void SetDiscOn(bool on) override { discOn_ = on; }
    void SetPositionUval(double uval) override;
    void SetSpeedUval(double uval) override;
    void SetMassUval(double uval) override;
    void SetRadiusUval(double uval) override;

protected:
    // A copy belongs to no parent, an assigned-to system neither.
    DisplayedSystem(const DisplayedSystem& other);
    DisplayedSystem& operator=(const DisplayedSystem& other);

private:
    struct Fields;

    std::string name_;
    double positionUval_ = 1.0;
    double speedUval_ = 1.0;
    double massUval_ = 1.0;
    double radiusUval_ = 1.0;
    rgb_color trailColor_;
    rgb_color discColor_;
    bool trailOn_;
    bool discOn_;
    int64 relativeTo_;
    MassSystem* parent_ = nullptr;
};
