#include "Model/Sharing/EpochPortal.h"

#include <algorithm>
#include <cmath>

#include "Model/Epochs/EpochCursor.h"

namespace {

// Each system before its own children.
void Gather(const MassSystem* parent, std::vector<MassSystem*>* systems) {
    for (int32 i = 0; i < parent->CountChildren(); i++) {
        systems->push_back(parent->ChildAt(i));
        Gather(parent->ChildAt(i), systems);
    }
}

// A mass that is no number goes last; compared as it is it would make the order inconsistent.
double OrderingMass(const Body* body) {
    const double m = body->M();
    return std::isnan(m) ? -1.0 : m;
}

}  // namespace

EpochPortal::EpochPortal(UndoChain* undoChain, AbEpoch* root)
    : rootEpoch_(root),
      focusEpoch_(&nullEpoch_),
      focusSystem_(&nullSystem_),
      subject_(new Subject),
      undoChain_(undoChain) {}

EpochPortal::EpochPortal(const EpochPortal& other) {
    CopyPointers(other);
}

EpochPortal& EpochPortal::operator=(const EpochPortal& other) {
    if (this != &other) {
        CleanupRef();
        CopyPointers(other);
    }
    return *this;
}

EpochPortal::~EpochPortal() {
    CleanupRef();
}

void EpochPortal::CopyPointers(const EpochPortal& other) {
    rootEpoch_ = other.rootEpoch_;
    focusEpoch_ = other.focusEpoch_ == &other.nullEpoch_ ? &nullEpoch_ : other.focusEpoch_;
    focusSystem_ = other.focusSystem_ == &other.nullSystem_ ? &nullSystem_ : other.focusSystem_;
    subject_ = other.subject_;
    subject_->AddRef();
    undoChain_ = other.undoChain_;
    calculator_ = other.calculator_;
    editGate_ = other.editGate_;
}

void EpochPortal::CleanupRef() {
    if (subject_->RemoveRef() == 1) delete subject_;
}

bool EpochPortal::PrepareForEdit() const {
    return editGate_ == nullptr || editGate_->BeforeEdit();
}

void EpochPortal::SetEpochTo(AbEpoch* epoch) {
    const int64 selected = focusSystem_->ID();
    focusEpoch_ = epoch ? epoch : &nullEpoch_;
    SetSystemFromID(selected);
    const MassSystem* root = focusEpoch_->RootSystem();
    if (focusSystem_ == &nullSystem_ && root) SetSystemTo(root->ChildAt(0));
}

void EpochPortal::SetSystemTo(MassSystem* system) {
    focusSystem_ = system ? system : &nullSystem_;
}

void EpochPortal::SetSystemFromID(int64 id) {
    MassSystem* root = focusEpoch_->RootSystem();
    SetSystemTo(root ? root->SystemFromID(id) : nullptr);
}

bool EpochPortal::HasEpoch(const AbEpoch* epoch) const {
    if (epoch == nullptr) return false;
    // A copy that was just put below the one in focus is found without a walk through all of them.
    for (int32 i = focusEpoch_->CountChildren() - 1; i >= 0; i--)
        if (focusEpoch_->ChildAt(i) == epoch) return true;
    for (EpochCursor cursor(rootEpoch_); cursor.GetEpoch() != nullptr; cursor.Increment())
        if (cursor.GetEpoch() == epoch) return true;
    return false;
}

std::vector<MassSystem*> EpochPortal::SystemsInTreeOrder() const {
    std::vector<MassSystem*> systems;
    if (const MassSystem* root = focusEpoch_->RootSystem()) Gather(root, &systems);
    return systems;
}

std::vector<MassSystem*> EpochPortal::SystemsInIDOrder() const {
    std::vector<MassSystem*> systems = SystemsInTreeOrder();
    std::stable_sort(systems.begin(), systems.end(),
                     [](const MassSystem* a, const MassSystem* b) { return a->ID() < b->ID(); });
    return systems;
}

std::vector<Body*> EpochPortal::BodiesInMassOrder() const {
    std::vector<Body*> bodies;
    for (MassSystem* system : SystemsInTreeOrder()) {
        if (auto* body = dynamic_cast<Body*>(system)) bodies.push_back(body);
    }
    std::stable_sort(bodies.begin(), bodies.end(), [](const Body* a, const Body* b) {
        const double ma = OrderingMass(a);
        const double mb = OrderingMass(b);
        return ma > mb || (ma == mb && a->ID() < b->ID());
    });
    return bodies;
}
