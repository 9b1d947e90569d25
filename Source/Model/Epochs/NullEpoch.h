// The null object for "no epoch": it ignores every change. Each portal holds one of its own.
#pragma once

#include "Model/Epochs/AbEpoch.h"

class NullEpoch final : public AbEpoch {
public:
    NullEpoch() = default;
    explicit NullEpoch(BMessage* archive) : AbEpoch(archive) {}

    static BArchivable* Instantiate(BMessage* archive);

    [[nodiscard]] AbEpoch* Copy() const override { return nullptr; }
    bool Writeable() const override { return true; }
    void SetWriteable(bool) override {}
    AbEpoch* Parent() const override { return nullptr; }
    AbEpoch* ChildAt(int32) const override { return nullptr; }
    void SetParent(AbEpoch*) override {}
    status_t AdoptChildren(AbEpoch*, int32, int32, AbEpoch*) override { return B_OK; }
    int32 CountChildren() const override { return 0; }
    status_t AddChild(AbEpoch*) override { return B_OK; }
    status_t AddChild(AbEpoch*, int32) override { return B_OK; }
    int32 IndexOfChild(AbEpoch*) const override { return -1; }
    void RemoveChild(AbEpoch*) override {}
    void RemoveChildren(int32, int32) override {}
    void Prune() override {}
    std::string Name() const override { return {}; }
    void SetName(std::string) override {}
    bool NameFromParent() const override { return true; }
    void SetNameFromParent(bool) override {}
    int32 Circumstance() const override;
    void SetCircumstance(int32) override {}
    double Time() const override;
    void SetTime(double) override {}
    double TimeUval() const override { return 1.0; }
    void SetTimeUval(double) override {}
    double Cutoff() const override;
    void SetCutoff(double) override {}
    // Deliberately not the order of a new epoch.
    int32 Order() const override { return 2; }
    void SetOrder(int32) override {}
    int32 OnContact() const override { return kContactMerges; }
    void SetOnContact(int32) override {}
    bool COMOnGo() const override { return true; }
    void SetCOMOnGo(bool) override {}
    MassSystem* RootSystem() const override { return nullptr; }
    MassSystem* SystemFromID(int64) const override { return nullptr; }
    int64 MaxSystemID() const override { return kNoSystemID; }
    void SetCalculatorState(BMessage* state) override;
    BMessage* CalculatorState() const override { return nullptr; }
};
