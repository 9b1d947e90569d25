#include "Exchange/CsvExport.h"

#include <charconv>

#include "Model/Epochs/AbEpoch.h"
#include "Model/Systems/Body.h"

namespace {

void Append(std::string* to, double number) {
    char digits[32];
    *to += ',';
    to->append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

std::string Quoted(const std::string& name) {
    std::string quoted = "\"";
    for (const char c : name) {
        if (c == '"') quoted += '"';
        quoted += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
    }
    return quoted + '"';
}

void AppendBodies(std::string* to, const MassSystem& system) {
    for (int32 i = 0; i < system.CountChildren(); i++)
        AppendBodies(to, *system.ChildAt(i));
    if (dynamic_cast<const Body*>(&system) == nullptr) return;
    // A body without a name needs one there.
    const std::string name = system.Name();
    const bool isBlank = name.find_first_not_of(" \t\r\n") == std::string::npos;
    *to += Quoted(isBlank ? "-" : name);
    Append(to, system.M());
    Append(to, system.Radius());
    for (const ThreeVector& vector : {system.Position(), system.Velocity()})
        for (const double component : {vector.x, vector.y, vector.z})
            Append(to, component);
    *to += '\n';
}

}  // namespace

std::string BodiesAsCsv(const AbEpoch& epoch) {
    std::string text = "name,gm [m3/s2],radius [m],x [m],y [m],z [m],vx [m/s],vy [m/s],vz [m/s]\n";
    if (const MassSystem* const root = epoch.RootSystem(); root != nullptr)
        for (int32 i = 0; i < root->CountChildren(); i++)
            AppendBodies(&text, *root->ChildAt(i));
    return text;
}
