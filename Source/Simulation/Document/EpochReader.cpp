#include "EpochReader.h"

#include <optional>
#include <unordered_map>
#include <utility>

#include "BMessage.h"
#include "Epoch.h"

namespace {

constexpr const char* kEpochs = "Epochs";
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

std::unique_ptr<AbEpoch> MakeEpoch(BMessage* archive) {
    std::unique_ptr<BArchivable> made(Epoch::Instantiate(archive));
    auto* epoch = dynamic_cast<AbEpoch*>(made.get());
    if (epoch != nullptr) static_cast<void>(made.release());
    return std::unique_ptr<AbEpoch>(epoch);
}

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

}  // namespace

DocumentError ReadEpochs(const BMessage& record, std::vector<std::unique_ptr<AbEpoch>>* topLevel) {
    std::vector<FlatEntry> entries;
    BMessage archive;
    int32 index = 0;
    for (; record.FindMessage(kEpochs, index, &archive) == B_OK; index++) {
        std::unique_ptr<AbEpoch> epoch = MakeEpoch(&archive);
        if (epoch == nullptr) continue;
        FlatEntry entry;
        if (archive.FindInt64(kEpochID, &entry.id) != B_OK) {
            topLevel->push_back(std::move(epoch));
            continue;
        }
        if (archive.FindInt64(kCopyOf, &entry.copyOf) != B_OK)
            entry.copyOf = entries.empty() ? kNoEpoch : entries.back().id;
        entry.epoch = std::move(epoch);
        entries.push_back(std::move(entry));
    }
    type_code type = 0;
    int32 count = 0;
    if (record.GetInfo(kEpochs, &type, &count) == B_OK && type == B_MESSAGE_TYPE && index < count)
        return DocumentError::Content(kTextDamaged);

    Links links(entries);
    if (!links.Resolve()) return DocumentError::Content(kTextNestedTooDeeply);
    // The raw pointers stay good while the owners below take the epochs over one by one.
    std::vector<AbEpoch*> epochs;
    epochs.reserve(entries.size());
    for (const FlatEntry& entry : entries)
        epochs.push_back(entry.epoch.get());
    for (std::size_t i = 0; i < entries.size(); i++) {
        if (const auto parent = links.Parent(i))
            epochs[*parent]->AddChild(entries[i].epoch.release());
        else
            topLevel->push_back(std::move(entries[i].epoch));
    }
    return {};
}
