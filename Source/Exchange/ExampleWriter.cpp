#include "Exchange/ExampleWriter.h"

#include <algorithm>
#include <charconv>

#include "Model/Epochs/AbEpoch.h"
#include "Model/Systems/Body.h"
#include "Simulation/Document/ProgramResources.h"

namespace {

// The shortest that reads back to the same bits.
std::string Exact(double number) {
    char digits[32];
    return {digits, std::to_chars(digits, digits + sizeof digits, number).ptr};
}

// In quotation marks; a line has no room for control characters.
std::string Quoted(const std::string& name) {
    std::string quoted = "\"";
    for (const char c : name) {
        if (c == '"') quoted += '"';
        quoted += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
    }
    return quoted + '"';
}

std::string Triple(const ThreeVector& vector) {
    return Exact(vector.x) + ' ' + Exact(vector.y) + ' ' + Exact(vector.z);
}

std::string Color(rgb_color color) {
    return std::to_string(color.red) + ' ' + std::to_string(color.green) + ' ' +
           std::to_string(color.blue);
}

}  // namespace

std::string ExampleWriter::Write(const AbEpoch& epoch) {
    text_.clear();
    names_.clear();
    shownIn_ = {};
    depth_ = 0;
    WriteEpoch(epoch);
    const MassSystem* const root = epoch.RootSystem();
    for (int32 i = 0; root != nullptr && i < root->CountChildren(); i++)
        CountNames(*root->ChildAt(i));
    for (int32 i = 0; root != nullptr && i < root->CountChildren(); i++)
        WriteSystem(*root->ChildAt(i), epoch);
    return std::move(text_);
}

void ExampleWriter::CountNames(const MassSystem& system) {
    names_[system.Name()]++;
    for (int32 i = 0; i < system.CountChildren(); i++)
        CountNames(*system.ChildAt(i));
}

void ExampleWriter::WriteEpoch(const AbEpoch& epoch) {
    const std::string name = epoch.Name();
    Line("epoch " + Quoted(name.empty() ? " " : name));
    const UnitInfo* const unit = resources_.TimeUnits().FindExact(epoch.TimeUval());
    const double shown = unit == nullptr ? 0.0 : epoch.Time() / unit->factor;
    const bool isExact = unit != nullptr && shown * unit->factor == epoch.Time();
    Line("time " +
         (isExact ? Exact(shown) + ' ' + unit->abbreviation : Exact(epoch.Time()) + " s"));
    Line("cutoff " + Exact(epoch.Cutoff()));
    Line("order " + std::to_string(std::clamp(epoch.Order(), kMinOrder, kMaxOrder)));
    if (!epoch.COMOnGo()) Line("centred no");
}

void ExampleWriter::WriteSystem(const MassSystem& system, const AbEpoch& epoch) {
    WriteUnits(system);
    const bool isBody = dynamic_cast<const Body*>(&system) != nullptr;
    // An empty name cannot be written.
    const std::string name = system.Name().empty() ? " " : system.Name();
    text_ += '\n';
    Line((isBody ? "body " : "group ") + Quoted(name));
    depth_++;
    if (isBody) {
        Line("mass " + Exact(system.M()) + " m3/s2");
        if (system.Radius() > 0.0) Line("radius " + Exact(system.Radius()) + " m");
        Line("at " + Triple(system.Position()) + " m");
        Line("moving " + Triple(system.Velocity()) + " m/s");
    }
    WriteLook(system, epoch);
    // Those of a group stand where they stand: it is placed by them.
    for (int32 i = 0; i < system.CountChildren(); i++)
        WriteSystem(*system.ChildAt(i), epoch);
    depth_--;
    if (!isBody) Line("end");
}

void ExampleWriter::WriteUnits(const MassSystem& system) {
    ShowIn("position", resources_.DistanceUnits(), system.PositionUval(), &shownIn_.position);
    ShowIn("speed", resources_.SpeedUnits(), system.SpeedUval(), &shownIn_.speed);
    ShowIn("mass", resources_.MassUnits(), system.MassUval(), &shownIn_.mass);
    ShowIn("radius", resources_.DistanceUnits(), system.RadiusUval(), &shownIn_.radius);
}

void ExampleWriter::ShowIn(const char* quantity, const UnitTable& units, double factor,
                           double* shown) {
    const UnitInfo* const unit = units.FindExact(factor);
    if (unit == nullptr || factor == *shown) return;
    *shown = factor;
    Line(std::string("show ") + quantity + ' ' + unit->abbreviation);
}

void ExampleWriter::WriteLook(const MassSystem& system, const AbEpoch& epoch) {
    WriteColor("trail", system.TrailColor(), system.TrailOn());
    WriteColor("disc", system.DiscColor(), system.DiscOn());
    if (system.RelativeTo() < 0) return;
    const MassSystem* const referent = epoch.SystemFromID(system.RelativeTo());
    if (referent == nullptr || referent->Name().empty()) return;
    const auto found = names_.find(referent->Name());
    if (found != names_.end() && found->second == 1) Line("relative " + Quoted(referent->Name()));
}

// What is hidden keeps its colour.
void ExampleWriter::WriteColor(const char* word, rgb_color color, bool isOn) {
    Line(std::string(word) + ' ' + Color(color));
    if (!isOn) Line(std::string(word) + " off");
}

void ExampleWriter::Line(const std::string& statement) {
    text_.append(4 * depth_, ' ');
    text_ += statement + '\n';
}
