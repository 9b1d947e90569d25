#include "Platform/Storage/ResourceBlock.h"

#include <algorithm>
#include <set>
#include <span>

#include "Platform/Storage/ResourceFormat.h"
#include "Platform/Support/ByteOrder.h"
#include "Platform/Support/TypeConstants.h"

using namespace ResourceFormat;

namespace {

using Bytes = std::span<const std::byte>;

struct Place {
    std::size_t offset = 0;
    std::size_t size = 0;
};

bool Fits(Place place, std::size_t total) {
    return place.offset <= total && place.size <= total - place.offset;
}

class BlockReader {
public:
    BlockReader(Bytes block, bool swapped) : block_(block), swapped_(swapped) {}

    bool Read(std::vector<ResourceBlock::Resource>* resources) {
        return ReadHeader() && ReadEntries() && FindTable() && ReadTable(resources);
    }

private:
    [[nodiscard]] uint32 Word(std::size_t at) const {
        return LoadNumber<uint32>(block_.data() + at, swapped_);
    }

    bool ReadHeader() {
        if (block_.size() < kEntriesOffset) return false;
        count_ = Word(kCountOffset);
        indexEnd_ = kIndexOffset + Word(kIndexSizeOffset);
        return count_ <= kMaxCount && Word(kIndexOffsetOffset) == kIndexOffset &&
               indexEnd_ >= kEntriesOffset && indexEnd_ <= block_.size() &&
               count_ <= (indexEnd_ - kEntriesOffset) / kEntrySize;
    }

    [[nodiscard]] bool IsFiller(std::size_t at) const {
        for (std::size_t word = at; word < at + kEntrySize; word += 4)
            if (Word(word) != FillerAt(word)) return false;
        return true;
    }

    // The header's count may be too low: entries go on until the filler begins.
    bool ReadEntries() {
        std::size_t total = 0;
        for (std::size_t at = kEntriesOffset; at + kEntrySize <= indexEnd_; at += kEntrySize) {
            if (entries_.size() >= count_ && IsFiller(at)) break;
            const Place entry{Word(at), Word(at + 4)};
            if (entry.size != 0 && !Fits(entry, block_.size())) return false;
            total += entry.size;
            entries_.push_back(entry);
            if (entries_.size() > kMaxCount || total > block_.size()) return false;
        }
        return true;
    }

    // A table that ends with 0 has a checksum before it.
    bool FindTable() {
        const Place place{Word(kTableOffsetOffset), Word(kTableSizeOffset)};
        if (!Fits(place, block_.size()) || place.size < kSeparatorSize) return false;
        table_ = block_.subspan(place.offset, place.size);
        const auto wordFromEnd = [&](std::size_t distance) {
            return LoadNumber<uint32>(table_.data() + table_.size() - distance, swapped_);
        };
        if (wordFromEnd(4) != 0) return true;
        const uint32 checksum = wordFromEnd(8);
        table_ = table_.first(table_.size() - kTableEndSize);
        return Checksum(table_) == checksum;
    }

    [[nodiscard]] bool SkipSeparator() {
        if (table_.size() < kSeparatorSize) return false;
        const Bytes next = table_.first(kSeparatorSize);
        if (!std::all_of(next.begin(), next.end(),
                         [](std::byte b) { return b == std::byte{0xFF}; }))
            return false;
        table_ = table_.subspan(kSeparatorSize);
        return true;
    }

    template <typename Number>
    bool Take(Number* number) {
        if (table_.size() < sizeof(Number)) return false;
        *number = LoadNumber<Number>(table_.data(), swapped_);
        table_ = table_.subspan(sizeof(Number));
        return true;
    }

    bool TakeName(std::string* name) {
        uint16 size = 0;
        if (!Take(&size) || size > table_.size()) return false;
        if (size == 0) return true;
        if (table_[size - 1] != std::byte{0}) return false;
        name->assign(reinterpret_cast<const char*>(table_.data()));
        table_ = table_.subspan(size);
        return true;
    }

    bool ReadTable(std::vector<ResourceBlock::Resource>* resources) {
        if (SkipSeparator()) return table_.empty();
        std::set<uint32> seen;
        while (!table_.empty()) {
            type_code type = 0;
            if (!Take(&type)) return false;
            do {
                ResourceBlock::Resource resource{type, 0, {}, 0, 0};
                uint32 index = 0;
                if (!Take(&resource.id) || !Take(&index) || !TakeName(&resource.name)) return false;
                if (index < 1 || index > entries_.size()) continue;
                if (!seen.insert(index).second) return false;
                resource.offset = entries_[index - 1].offset;
                resource.size = entries_[index - 1].size;
                resources->push_back(std::move(resource));
            } while (!SkipSeparator());
        }
        return true;
    }

    const Bytes block_;
    const bool swapped_;
    uint32 count_ = 0;
    std::size_t indexEnd_ = 0;
    std::vector<Place> entries_;
    Bytes table_;  // what of it is not read yet
};

// The version record: numbers, then texts.
constexpr type_code kVersionType = FourCC("APPV");
constexpr std::size_t kVersionNumbersSize = 20;

void SwapData(const ResourceBlock::Resource& resource, std::byte* data) {
    if (resource.type == kVersionType)
        SwapItem(B_UINT32_TYPE, data, std::min(resource.size, kVersionNumbersSize));
    else
        SwapItem(resource.type, data, resource.size);
}

}  // namespace

status_t ResourceBlock::Read(std::vector<std::byte>* block, std::vector<Resource>* resources) {
    resources->clear();
    if (block->size() < sizeof kMagic) return B_BAD_DATA;
    const bool swapped = LoadNumber<uint32>(block->data(), false) != kMagic;
    if (LoadNumber<uint32>(block->data(), swapped) != kMagic) return B_BAD_DATA;
    if (!BlockReader(*block, swapped).Read(resources)) {
        resources->clear();
        return B_BAD_DATA;
    }
    if (swapped)
        for (const Resource& resource : *resources)
            if (resource.size != 0) SwapData(resource, block->data() + resource.offset);
    return B_OK;
}
