// The real epoch. Chains of thousands of epochs are ordinary (each run adds one below the last), so
// nothing here recurses once per level: archives, destruction and questions about the subtree walk
// with stacks of their own. Ownership and locking as for AbEpoch.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "Model/Epochs/AbEpoch.h"

class Epoch final : public AbEpoch {
public:
    // Fields of its record that others look for, too.
    static constexpr const char* kNameField = "Epoch Name";
    static constexpr const char* kTimeField = "Time";
    static constexpr const char* kChildrenField = "Children";
    static constexpr const char* kStateField = "Calc";

    // At time 0, writeable, with an empty root system.
    Epoch();
    Epoch(const Epoch& other);
    explicit Epoch(BMessage* archive);
    ~Epoch() override;
    Epoch& operator=(const Epoch&) = delete;

    static BArchivable* Instantiate(BMessage* archive);
    // Makes an epoch of its record alone; null if there shall be none. Where the record could not
    // be read `archive` is empty and `status` says why.
    using Maker = std::function<std::unique_ptr<Epoch>(BMessage* archive, status_t status)>;
    // The archive's epoch with its descendants, each made by `make`; null if the first one is.
    static std::unique_ptr<Epoch> ReadTree(const BMessage& archive, const Maker& make);
    // Null if the archive is of another class.
    static std::unique_ptr<Epoch> ReadAlone(BMessage* archive);
    // The root system is always written in full, the child epochs only when `deep`.
    [[nodiscard]] status_t Archive(BMessage* into, bool deep = true) const override;
    static void DescribeFields(FieldDescriptions* into);

    [[nodiscard]] AbEpoch* Copy() const override { return new Epoch(*this); }
    bool Writeable() const override { return writeable_; }
    void SetWriteable(bool writeable) override { writeable_ = writeable; }
    AbEpoch* Parent() const override { return parent_; }
    AbEpoch* ChildAt(int32 index) const override;
    void SetParent(AbEpoch* parent) override { parent_ = parent; }
    status_t AdoptChildren(AbEpoch* from, int32 first, int32 last, AbEpoch* before) override;
    int32 CountChildren() const override;
    status_t AddChild(AbEpoch* child) override;
    status_t AddChild(AbEpoch* child, int32 index) override;
    int32 IndexOfChild(AbEpoch* child) const override;
    void RemoveChild(AbEpoch* child) override;
    void RemoveChildren(int32 from, int32 to) override;
    void Prune() override;
    std::string Name() const override;
    void SetName(std::string name) override;
    bool NameFromParent() const override { return nameFromParent_; }
    void SetNameFromParent(bool fromParent) override;
    int32 Circumstance() const override { return circumstance_; }
    void SetCircumstance(int32 circumstance) override { circumstance_ = circumstance; }
    double Time() const override { return time_; }
    void SetTime(double time) override { time_ = time; }
    double TimeUval() const override { return timeUval_; }
    void SetTimeUval(double uval) override;
    double Cutoff() const override { return cutoff_; }
    void SetCutoff(double cutoff) override;
    int32 Order() const override { return order_; }
    void SetOrder(int32 order) override { order_ = order; }
    int32 OnContact() const override { return onContact_; }
    void SetOnContact(int32 what) override;
    bool COMOnGo() const override { return comOnGo_; }
    void SetCOMOnGo(bool comOnGo) override { comOnGo_ = comOnGo; }
    MassSystem* RootSystem() const override { return root_.get(); }
    MassSystem* SystemFromID(int64 id) const override;
    int64 MaxSystemID() const override;
    // Name, time and children stay, the systems and what the calculator knows of them go.
    void RemoveSystems();
    void SetCalculatorState(BMessage* state) override;
    BMessage* CalculatorState() const override { return calculatorState_.get(); }
    // For whoever keeps something about the epoch and does not own it: expires with it.
    [[nodiscard]] std::weak_ptr<const void> Life() const { return life_; }

private:
    struct Fields;
    struct WithoutChildren {};
    Epoch(BMessage* archive, WithoutChildren);

    static std::unique_ptr<MassSystem> ReadRootSystem(BMessage* archive);
    void ReadChildren(const BMessage& archive, const Maker& make);
    status_t ArchiveBeforeChildren(BMessage* into) const;
    status_t ArchiveAfterChildren(BMessage* into) const;
    status_t InsertChild(AbEpoch* child, std::vector<AbEpoch*>::iterator at);

    AbEpoch* parent_ = nullptr;
    // Owning; raw because an adopted child stands in two epochs for a moment.
    std::vector<AbEpoch*> children_;
    std::unique_ptr<MassSystem> root_;
    std::unique_ptr<BMessage> calculatorState_;
    std::string name_;
    int32 circumstance_ = kUnknownCircumstance;
    double time_ = 0.0;  // s
    double timeUval_;
    double cutoff_ = kDefaultCutoff;
    int32 order_ = kDefaultOrder;
    int32 onContact_ = kContactMerges;
    bool comOnGo_ = true;
    bool writeable_ = true;
    bool nameFromParent_ = true;
    const std::shared_ptr<const void> life_ = std::make_shared<char>();  // one's own in a copy
};
