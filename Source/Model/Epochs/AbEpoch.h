// The interface of an epoch: a snapshot of the whole simulated system at one moment, and a node of
// the document's epoch tree. An epoch owns its children, its root system and its saved calculator
// state; read under the document's read lock, changed under its write lock.
#pragma once

#include <string>

#include "Model/Epochs/EpochLimits.h"
#include "Model/Systems/Body.h"
#include "Platform/Support/BArchivable.h"
#include "Platform/Support/Errors.h"

// The circumstance of an epoch whose origin nobody recorded; an opaque tag, like all others.
inline constexpr int32 kUnknownCircumstance = 8;

class AbEpoch : public BArchivable {
public:
    // The reference of absolute coordinates, shared by all epochs; never edited.
    static Body origin;

    AbEpoch() = default;
    explicit AbEpoch(BMessage* archive) : BArchivable(archive) {}

    // A writeable copy that takes its name from its parent; without parent and children.
    [[nodiscard]] virtual AbEpoch* Copy() const = 0;
    virtual bool Writeable() const = 0;
    virtual void SetWriteable(bool writeable) = 0;
    virtual AbEpoch* Parent() const = 0;
    virtual AbEpoch* ChildAt(int32 index) const = 0;
    virtual void SetParent(AbEpoch* parent) = 0;
    // Inserts `from`'s children first ... last - 1 before the child `before`, at the end when that
    // is no child. `from` keeps its entries: remove them there afterwards with RemoveChildren.
    virtual status_t AdoptChildren(AbEpoch* from, int32 first, int32 last, AbEpoch* before) = 0;
    virtual int32 CountChildren() const = 0;
    virtual status_t AddChild(AbEpoch* child) = 0;
    // The index is clamped to 0 ... count.
    virtual status_t AddChild(AbEpoch* child, int32 index) = 0;
    virtual int32 IndexOfChild(AbEpoch* child) const = 0;
    // Removed children are neither deleted nor re-parented.
    virtual void RemoveChild(AbEpoch* child) = 0;
    virtual void RemoveChildren(int32 from, int32 to) = 0;
    // Deletes all children.
    virtual void Prune() = 0;
    virtual std::string Name() const = 0;
    virtual void SetName(std::string name) = 0;
    virtual bool NameFromParent() const = 0;
    virtual void SetNameFromParent(bool fromParent) = 0;
    virtual int32 Circumstance() const = 0;
    virtual void SetCircumstance(int32 circumstance) = 0;
    virtual double Time() const = 0;  // s
    virtual void SetTime(double time) = 0;
    virtual double TimeUval() const = 0;
    virtual void SetTimeUval(double uval) = 0;
    virtual double Cutoff() const = 0;
    // Ignored unless IsCutoff.
    virtual void SetCutoff(double cutoff) = 0;
    virtual int32 Order() const = 0;
    virtual void SetOrder(int32 order) = 0;
    // One of those of EpochLimits.h; ignored unless IsOnContact.
    virtual int32 OnContact() const = 0;
    virtual void SetOnContact(int32 what) = 0;
    virtual bool COMOnGo() const = 0;
    virtual void SetCOMOnGo(bool comOnGo) = 0;
    virtual MassSystem* RootSystem() const = 0;
    // The origin for kOriginID, else a system of the root system or null.
    virtual MassSystem* SystemFromID(int64 id) const = 0;
    // The largest identifier in use in the epoch and all below it; at least -1.
    virtual int64 MaxSystemID() const = 0;
    // Takes the message over and deletes the one before; null for none.
    virtual void SetCalculatorState(BMessage* state) = 0;
    virtual BMessage* CalculatorState() const = 0;

protected:
    AbEpoch(const AbEpoch&) = default;
    AbEpoch& operator=(const AbEpoch&) = default;
};
