// The one door to a document's model: the epoch tree, the focus epoch and focus system (never
// null), the model lock, the observers, the undo chain and the calculator. The document, its
// windows, commands and calculator share one portal, on several threads: the focus changes under
// the write lock and is read under the read lock only, as is all that it leads to. A copy is a
// value for one thread, with a focus of its own; all copies share one Subject. It owns none of the
// rest.
#pragma once

#include <vector>

#include "Model/Epochs/NullEpoch.h"
#include "Model/Sharing/Subject.h"
#include "Model/Systems/NullMassSystem.h"

class AbCalculator;
class EditGate;
class UndoChain;

// Asked before the user edits what the focus epoch records, so that another epoch may come into
// focus first. False: that was lost, and nothing is to be edited. A higher floor implements it.
// Called on any thread that holds no lock of the document.
class EditGate {
public:
    virtual ~EditGate() = default;

    virtual bool BeforeEdit() = 0;

protected:
    EditGate() = default;
    EditGate(const EditGate&) = default;
    EditGate& operator=(const EditGate&) = default;
};

class EpochPortal {
public:
    // Nothing is in focus yet: call SetEpochTo.
    EpochPortal(UndoChain* undoChain, AbEpoch* root);
    EpochPortal(const EpochPortal& other);
    EpochPortal& operator=(const EpochPortal& other);
    ~EpochPortal();

    AbEpoch* RootEpoch() const { return rootEpoch_; }
    AbEpoch* FocusEpoch() const { return focusEpoch_; }
    MassSystem* FocusSystem() const { return focusSystem_; }
    UndoChain* GetUndoChain() { return undoChain_; }
    AbCalculator* GetCalculator() const { return calculator_; }
    void SetCalculator(AbCalculator* calculator) { calculator_ = calculator; }
    // Whoever is asked before the user's edits; null: nobody. Not owned.
    void SetEditGate(EditGate* gate) { editGate_ = gate; }
    // Before an edit of the focus epoch is thought out: it may come to lie in another epoch. False:
    // there is to be none. No lock of the document may be held.
    [[nodiscard]] bool PrepareForEdit() const;

    // These tell nobody; the commands do. Null: no epoch, no system.
    // SetEpochTo keeps the same body in focus if the new epoch has it, else takes the first child
    // of its root system.
    void SetEpochTo(AbEpoch* epoch);
    void SetSystemTo(MassSystem* system);
    // Looks below the focus epoch's root system; so never finds the origin.
    void SetSystemFromID(int64 id);

    bool ReadLock() { return subject_->ReadLock(); }
    void ReadUnlock() { subject_->ReadUnlock(); }
    bool WriteLock() { return subject_->WriteLock(); }
    void WriteUnlock() { subject_->WriteUnlock(); }
    void Broadcast(bool on) { subject_->Broadcast(on); }
    bool CommitChanges() { return subject_->CommitChanges(); }
    void TellObservers(int32 what) const { subject_->TellObservers(what); }
    void AddObserver(Observer* observer) { subject_->AddObserver(observer); }
    void RemoveObserver(Observer* observer) { subject_->RemoveObserver(observer); }

    // Whether the epoch is in the tree: one that a command took out, or never put back, is not.
    // Compares addresses only, so it may be gone.
    bool HasEpoch(const AbEpoch* epoch) const;
    // All systems below the focus epoch's root system.
    std::vector<MassSystem*> SystemsInIDOrder() const;
    // All bodies below it, the heaviest first, bodies of equal mass by identifier.
    std::vector<Body*> BodiesInMassOrder() const;

private:
    void CopyPointers(const EpochPortal& other);
    void CleanupRef();
    std::vector<MassSystem*> SystemsInTreeOrder() const;

    NullEpoch nullEpoch_;
    NullMassSystem nullSystem_;
    AbEpoch* rootEpoch_;
    AbEpoch* focusEpoch_;
    MassSystem* focusSystem_;
    Subject* subject_;
    UndoChain* undoChain_;
    AbCalculator* calculator_ = nullptr;
    EditGate* editGate_ = nullptr;
};
