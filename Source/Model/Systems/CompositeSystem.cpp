#include "Model/Systems/CompositeSystem.h"

#include <algorithm>

#include "Model/Commands/MacroCommand.h"
#include "Model/Systems/SystemReading.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Application/FieldTable.h"

namespace {

constexpr const char* kClassName = "CompositeSystem";
constexpr const char* kChildrenField = "Bodies";

const ArchivableClass kCompositeSystemClass(kClassName, CompositeSystem::Instantiate);

// How many composites enclose what is being read on this thread. Composites are made by class name,
// so there is no argument to pass the depth in; and an archive that nests other classes between
// them is bounded all the same.
thread_local int32 sReadNesting = 0;

struct ReadNesting {
    ReadNesting() { sReadNesting++; }
    ~ReadNesting() { sReadNesting--; }
    ReadNesting(const ReadNesting&) = delete;
    ReadNesting& operator=(const ReadNesting&) = delete;
};

}  // namespace

CompositeSystem::CompositeSystem(const char* name, int64 id, rgb_color trail, rgb_color disc,
                                 int64 relTo)
    : DisplayedSystem(name, id, trail, false, disc, false, relTo) {}

CompositeSystem::CompositeSystem(BMessage* archive) : DisplayedSystem(archive) {
    AddChildrenFrom(archive);
}

CompositeSystem::CompositeSystem(const CompositeSystem& other) : DisplayedSystem(other) {
    CopyChildren(other);
}

CompositeSystem& CompositeSystem::operator=(const CompositeSystem& other) {
    if (this != &other) {
        DisplayedSystem::operator=(other);
        children_.clear();
        CopyChildren(other);
    }
    return *this;
}

void CompositeSystem::CopyChildren(const CompositeSystem& other) {
    children_.reserve(other.children_.size());
    for (const auto& child : other.children_) {
        if (MassSystem* copy = child->Copy()) {
            children_.emplace_back(copy);
            copy->SetParent(this);
        }
    }
}

BArchivable* CompositeSystem::Instantiate(BMessage* archive) {
    if (sReadNesting > kMaxGroupNesting || !validate_instantiation(archive, kClassName))
        return nullptr;
    return new CompositeSystem(archive);
}

void CompositeSystem::AddChildrenFrom(const BMessage* archive) {
    const ReadNesting nesting;
    int32 count = 0;
    if (archive->GetInfo(kChildrenField, nullptr, &count) != B_OK) return;
    Children systems;
    for (int32 i = 0; i < count; i++) {
        BMessage record;
        if (archive->FindMessage(kChildrenField, i, &record) != B_OK) continue;
        auto system = InstantiateAs<DisplayedSystem>(&record);
        if (!system) {
            if (SystemReading* reading = SystemReading::Current()) reading->NoteForeign(record);
            continue;
        }
        if (SystemReading::Current() && system->ID() == kNoSystemID)
            system->SetID(kFirstProvisionalID + i);
        systems.push_back(std::move(system));
    }
    AddAll(std::move(systems));
}

// Sorted once: a list in falling order, added one by one, would be moved up for each.
void CompositeSystem::AddAll(Children systems) {
    for (auto& system : systems) {
        system->SetParent(this);
        children_.push_back(std::move(system));
    }
    SortChildren();
    std::size_t kept = 0;
    for (std::size_t i = 0; i < children_.size(); i++) {
        if (i > 0 && children_[i]->ID() == children_[kept - 1]->ID()) {
            if (SystemReading* reading = SystemReading::Current())
                reading->NoteLeftOut(*children_[i], *children_[kept - 1]);
            continue;
        }
        if (kept != i) children_[kept] = std::move(children_[i]);
        kept++;
    }
    children_.resize(kept);
}

void CompositeSystem::SortChildren() {
    const auto isBefore = [](const auto& a, const auto& b) { return a->ID() < b->ID(); };
    // As files have them.
    if (std::is_sorted(children_.begin(), children_.end(), isBefore)) return;
    std::stable_sort(children_.begin(), children_.end(), isBefore);
}

void CompositeSystem::NumberChildren(const std::function<int64(const MassSystem&)>& next) {
    for (const auto& child : children_) {
        if (child->ID() <= kLastProvisionalID) child->SetID(next(*child));
        if (auto* group = dynamic_cast<CompositeSystem*>(child.get())) group->NumberChildren(next);
    }
    SortChildren();
}

status_t CompositeSystem::Archive(BMessage* into, bool deep) const {
    status_t status = DisplayedSystem::Archive(into, deep);
    // In their stored form bodies take a third of the memory. Groups stay records: put into stored
    // form at every level, what lies deep would be copied once for each.
    const bool packs = std::ranges::all_of(
        children_, [](const auto& child) { return child->CountChildren() == 0; });
    std::vector<std::byte> packed;
    for (const auto& child : children_) {
        if (status != B_OK) return status;
        BMessage record(B_ARCHIVED_OBJECT);
        status = child->Archive(&record, true);
        if (status == B_OK && packs) status = record.Flatten(&packed);
        if (status != B_OK) return status;
        status = packs ? into->AddData(kChildrenField, B_MESSAGE_TYPE, packed.data(), packed.size(),
                                       false)
                       : into->AddMessage(kChildrenField, std::move(record));
    }
    return status == B_OK ? into->AddString("class", kClassName) : status;
}

void CompositeSystem::DescribeFields(FieldDescriptions* into) {
    DescribeField(into, kChildrenField, B_MESSAGE_TYPE, "any", "none",
                  "the systems in it, by rising \"ID\"");
}

CompositeSystem::Children::const_iterator CompositeSystem::LowerBound(int64 id) const {
    // Files list children in order, so most additions go to the end.
    if (children_.empty() || children_.back()->ID() < id) return children_.end();
    return std::lower_bound(children_.begin(), children_.end(), id,
                            [](const std::unique_ptr<MassSystem>& child, int64 wanted) {
                                return child->ID() < wanted;
                            });
}

MassSystem* CompositeSystem::SystemFromID(int64 id) {
    if (id == ID()) return this;
    for (const auto& child : children_) {
        if (MassSystem* found = child->SystemFromID(id)) return found;
    }
    return nullptr;
}

MassSystem* CompositeSystem::ChildAt(int32 index) const {
    return index >= 0 && index < CountChildren() ? children_[static_cast<std::size_t>(index)].get()
                                                 : nullptr;
}

int32 CompositeSystem::CountChildren() const {
    return static_cast<int32>(children_.size());
}

int32 CompositeSystem::IndexOfChild(const MassSystem* child) const {
    const auto found = LowerBound(child->ID());
    if (found == children_.end() || found->get() != child) return -1;
    return static_cast<int32>(found - children_.begin());
}

status_t CompositeSystem::AddChild(MassSystem* child) {
    const auto present = LowerBound(child->ID());
    if (present != children_.end() && (*present)->ID() == child->ID()) return B_OK;
    if (MassSystem* parent = child->Parent()) parent->RemoveChild(child);
    children_.emplace(LowerBound(child->ID()), child);
    child->SetParent(this);
    return B_OK;
}

void CompositeSystem::RemoveChild(MassSystem* child) {
    const int32 index = IndexOfChild(child);
    if (index < 0) return;
    const auto entry = children_.begin() + index;
    static_cast<void>(entry->release());
    children_.erase(entry);
    child->SetParent(nullptr);
}

ThreeVector CompositeSystem::Position() const {
    return MassWeightedMean(&MassSystem::Position);
}

ThreeVector CompositeSystem::Velocity() const {
    return MassWeightedMean(&MassSystem::Velocity);
}

// The barycentre: sum of (m / M) q, NaN when children have no mass at all.
ThreeVector CompositeSystem::MassWeightedMean(Getter quantity) const {
    const double f = 1.0 / M();
    ThreeVector mean;
    for (const auto& child : children_)
        mean += (f * child->M()) * ((*child).*quantity)();
    return mean;
}

double CompositeSystem::M() const {
    double sum = 0.0;
    for (const auto& child : children_)
        sum += child->M();
    return sum;
}

double CompositeSystem::Radius() const {
    double largest = 0.0;
    for (const auto& child : children_)
        largest = std::max(largest, child->Radius());
    return largest;
}

void CompositeSystem::SetPosition(ThreeVector position) {
    ShiftChildren(&MassSystem::Position, &MassSystem::SetPosition, position);
}

void CompositeSystem::SetVelocity(ThreeVector velocity) {
    ShiftChildren(&MassSystem::Velocity, &MassSystem::SetVelocity, velocity);
}

// A group without mass has no centre, and stays where it is.
void CompositeSystem::ShiftChildren(Getter quantity, Setter set, ThreeVector to) {
    const ThreeVector shift = to - MassWeightedMean(quantity);
    if (!IsFinite(shift)) return;
    for (const auto& child : children_)
        ((*child).*set)(((*child).*quantity)() + shift);
}

LCommand* CompositeSystem::DisplaceCommand(ThreeVector from, ThreeVector to) {
    return ChildrenCommand(&MassSystem::Position, &MassSystem::DisplaceCommand, from, to);
}

LCommand* CompositeSystem::BoostCommand(ThreeVector from, ThreeVector to) {
    return ChildrenCommand(&MassSystem::Velocity, &MassSystem::BoostCommand, from, to);
}

LCommand* CompositeSystem::ChildrenCommand(Getter quantity, CommandMaker make, ThreeVector from,
                                           ThreeVector to) {
    auto macro = std::make_unique<MacroCommand>(CountChildren());
    const ThreeVector mean = MassWeightedMean(quantity);
    const ThreeVector shift = to - mean;
    if (!IsFinite(shift)) return macro.release();
    // From where the group is, a child's former place is the one that it has, to the bit.
    const bool isFromHere = from == mean;
    for (const auto& child : children_) {
        const ThreeVector at = ((*child).*quantity)();
        const ThreeVector before = isFromHere ? at : from + (at - mean);
        std::unique_ptr<LCommand> command(((*child).*make)(before, at + shift));
        if (command) macro->AddCommand(std::move(command));
    }
    return macro.release();
}
