#include "Simulation/Document/ProgramResources.h"

#include <optional>
#include <string_view>

#include "Platform/Storage/BResources.h"
#include "Simulation/Document/SimulationFile.h"

namespace {

constexpr int32 kMaxBodyNames = 1000;

constexpr int32 kMassUnits = 1000;
constexpr int32 kDistanceUnits = 1100;
constexpr int32 kSpeedUnits = 1200;
constexpr int32 kTimeUnits = 1300;

// The texts of the windows come in runs, one for every hundred numbers; a run ends where a number
// is missing. Above them every text counts.
constexpr int32 kFirstRun = 1500;
constexpr int32 kLastRun = 3900;
constexpr int32 kRunDistance = 100;
constexpr int32 kFirstFreeLabel = 4000;

constexpr type_code kTemplateType = FourCC("kwzx");
constexpr int32 kTemplateId = 0;

BResources OwnResources() {
    BResources resources;
    // A program without resources has no texts, and nowhere to say so.
    (void)resources.SetToProgram();
    return resources;
}

}  // namespace

ProgramResources::ProgramResources() : ProgramResources(OwnResources()) {}

ProgramResources::ProgramResources(const BResources& resources)
    : massUnits_(resources, kMassUnits),
      distanceUnits_(resources, kDistanceUnits),
      speedUnits_(resources, kSpeedUnits),
      timeUnits_(resources, kTimeUnits) {
    ReadBodyNames(resources);
    ReadLabels(resources);
    ReadTemplate(resources);
}

// The template is a document's bytes. Without them, or when they are damaged, the record stays
// empty and new simulations begin with nothing.
void ProgramResources::ReadTemplate(const BResources& resources) {
    constexpr std::string_view kTag = SimulationFile::kTag;
    std::size_t size = 0;
    const auto* const file =
        static_cast<const char*>(resources.LoadResource(kTemplateType, kTemplateId, &size));
    if (file == nullptr || !std::string_view(file, size).starts_with(kTag)) return;
    (void)newSimulation_.Unflatten(file + kTag.size(), size - kTag.size());
}

void ProgramResources::ReadBodyNames(const BResources& resources) {
    for (int32 id = 0; id < kMaxBodyNames; id++) {
        std::optional<std::string> name = resources.LoadString(id);
        if (!name) return;
        bodyNames_.push_back(*std::move(name));
    }
}

void ProgramResources::ReadLabels(const BResources& resources) {
    for (int32 base = kFirstRun; base <= kLastRun; base += kRunDistance) {
        for (int32 id = base;; id++) {
            std::optional<std::string> text = resources.LoadString(id);
            if (!text) break;
            labels_[id] = *std::move(text);
        }
    }
    type_code type = 0;
    int32 id = 0;
    for (int32 i = 0; resources.GetResourceInfo(i, &type, &id, nullptr, nullptr); i++)
        if (type == B_STRING_TYPE && id >= kFirstFreeLabel) labels_[id] = *resources.LoadString(id);
}

void ProgramResources::Translate(const BResources& translation) {
    massUnits_.Translate(translation, kMassUnits);
    distanceUnits_.Translate(translation, kDistanceUnits);
    speedUnits_.Translate(translation, kSpeedUnits);
    timeUnits_.Translate(translation, kTimeUnits);
    for (auto& [id, text] : labels_)
        if (std::optional<std::string> other = translation.LoadString(id)) text = *std::move(other);
}

const std::string& ProgramResources::InterfaceLabel(int32 id) const {
    static const std::string kNone;
    const auto found = labels_.find(id);
    return found == labels_.end() ? kNone : found->second;
}

const char* ProgramResources::BodyName(int32 index) const {
    return index < 0 || index >= CountBodyNames()
               ? nullptr
               : bodyNames_[static_cast<std::size_t>(index)].c_str();
}
