#include "Model/Epochs/Epoch.h"

#include <algorithm>

#include "Model/Systems/CompositeSystem.h"
#include "Model/Units/DimValue.h"
#include "Model/Units/UnitTable.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/FieldTable.h"

namespace {

constexpr char kClassName[] = "Epoch";
constexpr const char* kRootField = "Root";
constexpr int32 kFreshCircumstance = 1;

const ArchivableClass kEpochClass(kClassName, Epoch::Instantiate);

std::unique_ptr<CompositeSystem> NewRootSystem() {
    return std::make_unique<CompositeSystem>("Root system", kRootSystemID, DEFAULT_TRAIL_DISC_COLOR,
                                             DEFAULT_TRAIL_DISC_COLOR, kOriginID);
}

}  // namespace

struct Epoch::Fields {
    static constexpr FieldTable kTable{
        Field<&Epoch::name_>{.name = kNameField,
                             .meaning = "its own name, unless it has its parent's",
                             .isWritten = [](const Epoch& epoch) { return !epoch.nameFromParent_; },
                             .whenMissing = "empty"},
        Field<&Epoch::time_>{kTimeField, "s", 0.0},
        Field<&Epoch::timeUval_>{"T Uval", "unit of times, s", &TIME_UVAL_PREF, IsValidUval},
        Field<&Epoch::circumstance_>{"Reason", "a tag, kept as it is; new epochs have 1",
                                     kUnknownCircumstance},
        Field<&Epoch::cutoff_>{
            "Cutoff",
            "corrections smaller than this are ignored; between 0 and 0.001, both excluded",
            kDefaultCutoff, IsCutoff},
        Field<&Epoch::order_>{"Order",
                              "order of the series: 2, 3, 4, or 5 to 24, which runs as the next of "
                              "8, 12, 16, 20, 24; "
                              "older programs run what is above 4 as 4",
                              kDefaultOrder},
        Field<&Epoch::onContact_>{
            .name = "On contact",
            .meaning = "bodies that touch merge (0), end the run (1) or pass (2); older programs "
                       "merge them",
            .missing = kContactMerges,
            .accepts = IsOnContact,
            .isWritten = [](const Epoch& epoch) { return epoch.onContact_ != kContactMerges; }},
        Field<&Epoch::comOnGo_>{"COM on Go", "a run first puts the centre of mass at the origin",
                                true},
        Field<&Epoch::writeable_>{"Writ", "writeable", false},
        Field<&Epoch::nameFromParent_>{
            .name = "N Inh",
            .meaning = "the name is the parent's, even where there is one of its own",
            .whenMissing = "true without a name of its own"},
    };
};

Epoch::Epoch()
    : root_(NewRootSystem()), circumstance_(kFreshCircumstance), timeUval_(TIME_UVAL_PREF) {}

Epoch::Epoch(const Epoch& other)
    : AbEpoch(other),
      root_(other.root_->Copy()),
      name_(other.name_),
      circumstance_(other.circumstance_),
      time_(other.time_),
      timeUval_(other.timeUval_),
      cutoff_(other.cutoff_),
      order_(other.order_),
      onContact_(other.onContact_),
      comOnGo_(other.comOnGo_) {
    if (other.calculatorState_)
        calculatorState_ = std::make_unique<BMessage>(*other.calculatorState_);
}

Epoch::Epoch(BMessage* archive) : Epoch(archive, WithoutChildren{}) {
    ReadChildren(*archive, [](BMessage* record, status_t) { return ReadAlone(record); });
}

Epoch::Epoch(BMessage* archive, WithoutChildren)
    : AbEpoch(archive), root_(ReadRootSystem(archive)), timeUval_(TIME_UVAL_PREF) {
    std::string ownName;
    nameFromParent_ = archive->FindString(kNameField, &ownName) != B_OK;
    Fields::kTable.Read(*archive, this);
    auto state = std::make_unique<BMessage>();
    if (archive->FindMessage(kStateField, state.get()) == B_OK) calculatorState_ = std::move(state);
}

Epoch::~Epoch() {
    Prune();
}

BArchivable* Epoch::Instantiate(BMessage* archive) {
    return validate_instantiation(archive, kClassName) ? new Epoch(archive) : nullptr;
}

std::unique_ptr<MassSystem> Epoch::ReadRootSystem(BMessage* archive) {
    BMessage record;
    if (archive->FindMessage(kRootField, &record) == B_OK) {
        if (auto system = InstantiateAs<MassSystem>(&record)) return system;
        return NewRootSystem();
    }
    // The older layout: the bodies stand in the epoch's own record.
    auto root = NewRootSystem();
    root->AddChildrenFrom(archive);
    return root;
}

std::unique_ptr<Epoch> Epoch::ReadAlone(BMessage* archive) {
    if (!validate_instantiation(archive, kClassName)) return nullptr;
    return std::unique_ptr<Epoch>(new Epoch(archive, WithoutChildren{}));
}

std::unique_ptr<Epoch> Epoch::ReadTree(const BMessage& archive, const Maker& make) {
    BMessage record(archive);
    std::unique_ptr<Epoch> epoch = make(&record, B_OK);
    if (epoch) epoch->ReadChildren(record, make);
    return epoch;
}

void Epoch::ReadChildren(const BMessage& archive, const Maker& make) {
    struct Unread {
        Epoch* epoch;
        BMessage record;
    };
    std::vector<Unread> unread;
    unread.push_back({this, archive});
    while (!unread.empty()) {
        const Unread next = std::move(unread.back());
        unread.pop_back();
        type_code type = 0;
        int32 count = 0;
        if (next.record.GetInfo(kChildrenField, &type, &count) != B_OK || type != B_MESSAGE_TYPE)
            continue;
        for (int32 i = 0; i < count; i++) {
            BMessage record;
            const status_t status = next.record.FindMessage(kChildrenField, i, &record);
            std::unique_ptr<Epoch> child = make(&record, status);
            if (!child) continue;
            child->parent_ = next.epoch;
            next.epoch->children_.push_back(child.get());
            unread.push_back({child.release(), std::move(record)});
        }
    }
}

status_t Epoch::Archive(BMessage* into, bool deep) const {
    struct Open {
        const Epoch* epoch;
        BMessage record;  // unused for the first one, which writes into `into`
        std::size_t nextChild = 0;
    };
    std::vector<Open> open;
    const auto innermostRecord = [&] { return open.size() == 1 ? into : &open.back().record; };

    status_t status = AbEpoch::Archive(into, deep);
    if (status == B_OK) status = ArchiveBeforeChildren(into);
    open.push_back({this, BMessage()});
    while (status == B_OK) {
        const Epoch* epoch = open.back().epoch;
        if (deep && open.back().nextChild < epoch->children_.size()) {
            const AbEpoch& child = *epoch->children_[open.back().nextChild++];
            BMessage record(B_ARCHIVED_OBJECT);
            if (const auto* next = dynamic_cast<const Epoch*>(&child)) {
                status = next->ArchiveBeforeChildren(&record);
                open.push_back({next, std::move(record)});
            } else {
                // The analyzer takes a cast that fails for a null reference.
                // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage)
                status = child.Archive(&record, true);
                if (status == B_OK)
                    status = innermostRecord()->AddMessage(kChildrenField, std::move(record));
            }
            continue;
        }
        status = epoch->ArchiveAfterChildren(innermostRecord());
        if (open.size() == 1) break;
        BMessage finished = std::move(open.back().record);
        open.pop_back();
        if (status == B_OK)
            status = innermostRecord()->AddMessage(kChildrenField, std::move(finished));
    }
    return status;
}

status_t Epoch::ArchiveBeforeChildren(BMessage* into) const {
    if (const status_t status = Fields::kTable.Write(*this, into); status != B_OK) return status;
    BMessage root(B_ARCHIVED_OBJECT);
    const status_t status = root_->Archive(&root, true);
    return status == B_OK ? into->AddMessage(kRootField, std::move(root)) : status;
}

status_t Epoch::ArchiveAfterChildren(BMessage* into) const {
    const status_t status =
        calculatorState_ ? into->AddMessage(kStateField, calculatorState_.get()) : B_OK;
    return status == B_OK ? into->AddString("class", kClassName) : status;
}

void Epoch::DescribeFields(FieldDescriptions* into) {
    Fields::kTable.Describe(into);
    DescribeField(into, kRootField, B_MESSAGE_TYPE, "1", "an empty one", "the root system");
    DescribeField(into, kChildrenField, B_MESSAGE_TYPE, "any", "none", "child epochs in order");
    DescribeField(into, kStateField, B_MESSAGE_TYPE, "0, 1", "none", "the integrator's state");
    DescribeField(into, "class", B_STRING_TYPE, "1", "refused", kClassName);
}

AbEpoch* Epoch::ChildAt(int32 index) const {
    return index >= 0 && index < CountChildren() ? children_[static_cast<std::size_t>(index)]
                                                 : nullptr;
}

int32 Epoch::CountChildren() const {
    return static_cast<int32>(children_.size());
}

int32 Epoch::IndexOfChild(AbEpoch* child) const {
    const auto found = std::find(children_.begin(), children_.end(), child);
    return found == children_.end() ? -1 : static_cast<int32>(found - children_.begin());
}

status_t Epoch::InsertChild(AbEpoch* child, std::vector<AbEpoch*>::iterator at) {
    if (IndexOfChild(child) < 0) children_.insert(at, child);
    child->SetParent(this);
    return B_OK;
}

status_t Epoch::AddChild(AbEpoch* child) {
    return InsertChild(child, children_.end());
}

status_t Epoch::AddChild(AbEpoch* child, int32 index) {
    return InsertChild(child, children_.begin() + std::clamp(index, 0, CountChildren()));
}

status_t Epoch::AdoptChildren(AbEpoch* from, int32 first, int32 last, AbEpoch* before) {
    first = std::clamp(first, 0, from->CountChildren());
    last = std::clamp(last, first, from->CountChildren());
    std::vector<AbEpoch*> adopted;
    adopted.reserve(static_cast<std::size_t>(last - first));
    for (int32 i = first; i < last; i++) {
        adopted.push_back(from->ChildAt(i));
        adopted.back()->SetParent(this);
    }
    children_.insert(std::find(children_.begin(), children_.end(), before), adopted.begin(),
                     adopted.end());
    return B_OK;
}

void Epoch::RemoveChild(AbEpoch* child) {
    const auto found = std::find(children_.begin(), children_.end(), child);
    if (found != children_.end()) children_.erase(found);
}

void Epoch::RemoveChildren(int32 from, int32 to) {
    from = std::clamp(from, 0, CountChildren());
    to = std::clamp(to, from, CountChildren());
    children_.erase(children_.begin() + from, children_.begin() + to);
}

void Epoch::Prune() {
    std::vector<AbEpoch*> doomed;
    doomed.swap(children_);
    while (!doomed.empty()) {
        const std::unique_ptr<AbEpoch> child(doomed.back());
        doomed.pop_back();
        if (auto* epoch = dynamic_cast<Epoch*>(child.get())) {
            doomed.insert(doomed.end(), epoch->children_.begin(), epoch->children_.end());
            epoch->children_.clear();
        }
    }
}

std::string Epoch::Name() const {
    const AbEpoch* named = this;
    while (named->NameFromParent() && named->Parent())
        named = named->Parent();
    return named == this ? name_ : named->Name();
}

void Epoch::SetName(std::string name) {
    name_ = std::move(name);
    nameFromParent_ = false;
}

void Epoch::SetNameFromParent(bool fromParent) {
    if (nameFromParent_ && !fromParent && parent_) name_ = parent_->Name();
    nameFromParent_ = fromParent;
}

void Epoch::SetTimeUval(double uval) {
    if (IsValidUval(uval)) timeUval_ = uval;
}

void Epoch::SetCutoff(double cutoff) {
    if (IsCutoff(cutoff)) cutoff_ = cutoff;
}

void Epoch::SetOnContact(int32 what) {
    if (IsOnContact(what)) onContact_ = what;
}

MassSystem* Epoch::SystemFromID(int64 id) const {
    return id == kOriginID ? &origin : root_->SystemFromID(id);
}

int64 Epoch::MaxSystemID() const {
    int64 largest = kNoSystemID;
    std::vector<const AbEpoch*> unvisited{this};
    while (!unvisited.empty()) {
        const AbEpoch* epoch = unvisited.back();
        unvisited.pop_back();
        if (const MassSystem* root = epoch->RootSystem())
            largest = std::max(largest, root->MaxSystemID());
        for (int32 i = 0; i < epoch->CountChildren(); i++)
            unvisited.push_back(epoch->ChildAt(i));
    }
    return largest;
}

void Epoch::RemoveSystems() {
    root_ = NewRootSystem();
    calculatorState_.reset();
}

void Epoch::SetCalculatorState(BMessage* state) {
    calculatorState_.reset(state);
}
