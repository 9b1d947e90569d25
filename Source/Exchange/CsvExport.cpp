#include "Exchange/CsvExport.h"

#include <charconv>

#include "Model/Epochs/AbEpoch.h"
#include "Model/Systems/Body.h"

namespace {

void AppendBodies(std::string* to, const MassSystem& system) {
    for (int32 i = 0; i < system.CountChildren(); i++)
        AppendBodies(to, *system.ChildAt(i));
    if (dynamic_cast<const Body*>(&system) == nullptr) return;
    *to += QuotedCsvName(system.Name());
    AppendCsvNumber(to, system.M());
    AppendCsvNumber(to, system.Radius());
    for (const ThreeVector& vector : {system.Position(), system.Velocity()})
        for (const double component : {vector.x, vector.y, vector.z})
            AppendCsvNumber(to, component);
    *to += '\n';
}

}  // namespace

void AppendCsvNumber(std::string* to, double number) {
    char digits[32];
    *to += ',';
    to->append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

std::string QuotedCsvName(const std::string& name) {
    if (name.find_first_not_of(" \t\r\n") == std::string::npos) return "\"-\"";
    std::string quoted = "\"";
    for (const char c : name) {
        if (c == '"') quoted += '"';
        quoted += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
    }
    return quoted + '"';
}

std::string BodiesAsCsv(const AbEpoch& epoch) {
    std::string text = "name,gm [m3/s2],radius [m],x [m],y [m],z [m],vx [m/s],vy [m/s],vz [m/s]\n";
    if (const MassSystem* const root = epoch.RootSystem(); root != nullptr)
        for (int32 i = 0; i < root->CountChildren(); i++)
            AppendBodies(&text, *root->ChildAt(i));
    return text;
}
