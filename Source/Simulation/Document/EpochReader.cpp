#include "Simulation/Document/EpochReader.h"

#include <cmath>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>

#include "Model/Epochs/Epoch.h"
#include "Model/Epochs/EpochCursor.h"
#include "Model/Systems/CompositeSystem.h"
#include "Model/Systems/NewIdentifiers.h"
#include "Model/Systems/SystemReading.h"
#include "Platform/Application/BMessage.h"
#include "Resources/DocumentTexts.h"
#include "Simulation/Document/DocumentCheck.h"

namespace {

constexpr const char* kEpochID = "Epoch ID";
constexpr const char* kCopyOf = "Copy of";
constexpr int64 kNoEpoch = -1;
// A chain of flat entries becomes a tree as deep, and a tree is stored as records in records.
constexpr int32 kMaxChain = BMessage::kMaxNesting / 2;

struct FlatEntry {
    std::unique_ptr<AbEpoch> epoch;
    int64 id = kNoEpoch;
    int64 copyOf = kNoEpoch;
};

// For each entry the index of the one it hangs beneath, or none. Entries that would hang beneath
// themselves hang beneath nothing. False when a chain is too long.
class Links {
public:
    explicit Links(const std::vector<FlatEntry>& entries) : depths_(entries.size(), kUnknown) {
        std::unordered_map<int64, std::size_t> byID;
        for (std::size_t i = 0; i < entries.size(); i++)
            byID.emplace(entries[i].id, i);
        for (const FlatEntry& entry : entries) {
            const auto found = entry.copyOf == kNoEpoch ? byID.end() : byID.find(entry.copyOf);
            parents_.push_back(found == byID.end() ? std::nullopt : std::optional(found->second));
        }
    }

    [[nodiscard]] bool Resolve() {
        for (std::size_t i = 0; i < parents_.size(); i++)
            if (!ResolveChain(i)) return false;
        return true;
    }

    [[nodiscard]] std::optional<std::size_t> Parent(std::size_t entry) const {
        return parents_[entry];
    }

private:
    static constexpr int32 kUnknown = 0;
    static constexpr int32 kVisiting = -1;

    bool ResolveChain(std::size_t entry) {
        std::vector<std::size_t> chain;
        for (std::optional<std::size_t> at = entry; at && depths_[*at] == kUnknown;
             at = parents_[*at]) {
            depths_[*at] = kVisiting;
            chain.push_back(*at);
        }
        while (!chain.empty()) {
            const std::size_t at = chain.back();
            chain.pop_back();
            if (parents_[at] && depths_[*parents_[at]] == kVisiting) parents_[at].reset();
            depths_[at] = parents_[at] ? depths_[*parents_[at]] + 1 : 1;
            if (depths_[at] > kMaxChain) return false;
        }
        return true;
    }

    std::vector<std::optional<std::size_t>> parents_;
    std::vector<int32> depths_;
};

// What stands for a record that is no epoch's, so that its children keep their place.
std::unique_ptr<Epoch> EmptyOf(const BMessage& archive) {
    auto epoch = std::make_unique<Epoch>();
    std::string name;
    double time = 0.0;
    if (archive.FindString(Epoch::kNameField, &name) == B_OK) epoch->SetName(name.c_str());
    if (archive.FindDouble(Epoch::kTimeField, &time) == B_OK && std::isfinite(time))
        epoch->SetTime(time);
    return epoch;
}

class Reader {
public:
    explicit Reader(DocumentNotices* notices) : notices_(notices) {}

    DocumentError Read(const BMessage& record);
    // Empties what cannot be used.
    DocumentError Check();
    void Number();
    [[nodiscard]] std::vector<std::unique_ptr<AbEpoch>> TakeEpochs() {
        return std::move(topLevel_);
    }

private:
    // What was found when an epoch was made.
    struct Findings {
        DocumentError fault;
        std::vector<SystemReading::LeftOut> leftOut;  // the first few of them
        int32 leftOutCount = 0;
        std::string foreignClass;  // of the first one
        int32 foreignCount = 0;
    };

    std::unique_ptr<Epoch> Make(BMessage* archive, status_t status);
    void AddEntry(std::unique_ptr<AbEpoch> epoch, const BMessage& archive);
    DocumentError Link();
    template <typename Visit>
    void ForEach(Visit visit) const;
    DocumentError FaultOf(const AbEpoch& epoch) const;
    void TellLeftOut(const AbEpoch& epoch, const std::string& position) const;

    DocumentNotices* const notices_;
    std::vector<std::unique_ptr<AbEpoch>> topLevel_;
    std::vector<FlatEntry> flat_;
    std::unordered_map<const AbEpoch*, Findings> findings_;
    bool isTooDeep_ = false;
};

DocumentError Reader::Read(const BMessage& record) {
    type_code type = 0;
    int32 count = 0;
    if (record.GetInfo(kEpochsField, &type, &count) != B_OK || type != B_MESSAGE_TYPE) return {};
    const auto make = [this](BMessage* archive, status_t status) { return Make(archive, status); };
    for (int32 i = 0; i < count; i++) {
        BMessage archive;
        const status_t status = record.FindMessage(kEpochsField, i, &archive);
        AddEntry(status == B_OK ? Epoch::ReadTree(archive, make) : Make(&archive, status), archive);
    }
    if (isTooDeep_) return DocumentError::Content(kTextNestedTooDeeply);
    return Link();
}

std::unique_ptr<Epoch> Reader::Make(BMessage* archive, status_t status) {
    isTooDeep_ = isTooDeep_ || status == B_UNSUPPORTED;
    Findings found;
    found.fault = DocumentError::Record(status);
    std::unique_ptr<Epoch> epoch;
    if (found.fault.Failed()) {
        epoch = std::make_unique<Epoch>();
    } else {
        const SystemReading reading;
        epoch = Epoch::ReadAlone(archive);
        if (epoch) {
            found.fault = CheckEpochRecord(*archive);
            found.leftOut = reading.Told();
            found.leftOutCount = reading.CountLeftOut();
            found.foreignClass = reading.ForeignClass();
            found.foreignCount = reading.CountForeign();
        } else {
            epoch = EmptyOf(*archive);
            found.fault = DocumentError::Record(B_BAD_DATA);
        }
    }
    if (found.fault.Failed() || found.leftOutCount > 0 || found.foreignCount > 0)
        findings_.emplace(epoch.get(), std::move(found));
    return epoch;
}

void Reader::AddEntry(std::unique_ptr<AbEpoch> epoch, const BMessage& archive) {
    if (!epoch) return;
    FlatEntry entry;
    if (archive.FindInt64(kEpochID, &entry.id) != B_OK) {
        topLevel_.push_back(std::move(epoch));
        return;
    }
    if (archive.FindInt64(kCopyOf, &entry.copyOf) != B_OK)
        entry.copyOf = flat_.empty() ? kNoEpoch : flat_.back().id;
    entry.epoch = std::move(epoch);
    flat_.push_back(std::move(entry));
}

DocumentError Reader::Link() {
    Links links(flat_);
    if (!links.Resolve()) return DocumentError::Content(kTextNestedTooDeeply);
    // The raw pointers stay good while the owners below take the epochs over one by one.
    std::vector<AbEpoch*> epochs;
    epochs.reserve(flat_.size());
    for (const FlatEntry& entry : flat_)
        epochs.push_back(entry.epoch.get());
    for (std::size_t i = 0; i < flat_.size(); i++) {
        if (const auto parent = links.Parent(i))
            epochs[*parent]->AddChild(flat_[i].epoch.release());
        else
            topLevel_.push_back(std::move(flat_[i].epoch));
    }
    return {};
}

// In visiting order, with the position that epochs are listed and focused by.
template <typename Visit>
void Reader::ForEach(Visit visit) const {
    int32 position = 0;
    for (const auto& top : topLevel_)
        for (EpochCursor cursor(top.get()); cursor.GetEpoch() != nullptr; cursor.Increment())
            visit(static_cast<Epoch*>(cursor.GetEpoch()), std::to_string(position++));
}

DocumentError Reader::FaultOf(const AbEpoch& epoch) const {
    const auto found = findings_.find(&epoch);
    if (found != findings_.end() && found->second.fault.Failed()) return found->second.fault;
    return CheckEpoch(epoch);
}

DocumentError Reader::Check() {
    int32 usable = 0;
    ForEach([&](Epoch* epoch, const std::string& position) {
        MassSystem* const root = epoch->RootSystem();
        if (root->ID() == kNoSystemID) root->SetID(kRootSystemID);
        if (DocumentError fault = FaultOf(*epoch); fault.Failed()) {
            notices_->AddEmptied(epoch->Name(), position, std::move(fault));
            if (!std::isfinite(epoch->Time())) epoch->SetTime(0.0);
            epoch->RemoveSystems();
        } else {
            TellLeftOut(*epoch, position);
            usable++;
        }
    });
    if (topLevel_.empty()) return DocumentError::Content(kTextNoEpoch);
    return usable == 0 ? notices_->FirstFault() : DocumentError();
}

void Reader::TellLeftOut(const AbEpoch& epoch, const std::string& position) const {
    const auto found = findings_.find(&epoch);
    if (found == findings_.end()) return;
    const Findings& findings = found->second;
    for (const SystemReading::LeftOut& system : findings.leftOut)
        notices_->Add({kTextLeftOut, {position, epoch.Name(), system.name, system.sibling}});
    const int32 more = findings.leftOutCount - static_cast<int32>(findings.leftOut.size());
    if (more > 0) notices_->Add({kTextMoreLeftOut, {position, epoch.Name(), std::to_string(more)}});
    if (const int32 foreign = findings.foreignCount; foreign > 0)
        notices_->Add({kTextForeign,
                       {position, epoch.Name(), std::to_string(foreign), findings.foreignClass}});
}

void Reader::Number() {
    std::vector<const AbEpoch*> trees;
    for (const auto& top : topLevel_)
        trees.push_back(top.get());
    NewIdentifiers identifiers(std::move(trees));
    ForEach([&](Epoch* epoch, const std::string& position) {
        auto* const root = dynamic_cast<CompositeSystem*>(epoch->RootSystem());
        if (root == nullptr) return;
        int32 count = 0;
        root->NumberChildren([&](const MassSystem& system) {
            const int64 id = identifiers.Next();
            if (count++ < SystemReading::kMaxTold)
                notices_->Add(
                    {kTextNumbered, {position, epoch->Name(), system.Name(), std::to_string(id)}});
            return id;
        });
        if (const int32 more = count - SystemReading::kMaxTold; more > 0)
            notices_->Add({kTextMoreNumbered, {position, epoch->Name(), std::to_string(more)}});
    });
}

}  // namespace

DocumentError ReadEpochs(const BMessage& record, std::vector<std::unique_ptr<AbEpoch>>* topLevel,
                         DocumentNotices* notices) {
    Reader reader(notices);
    if (DocumentError error = reader.Read(record); error.Failed()) return error;
    if (DocumentError error = reader.Check(); error.Failed()) return error;
    reader.Number();
    *topLevel = reader.TakeEpochs();
    return {};
}
