#include "Tools/ResourceCompiler/ResourceWriter.h"

#include <cstring>

#include "Platform/Storage/ResourceFormat.h"
#include "Platform/Support/ByteOrder.h"

using namespace ResourceFormat;

namespace {

using Bytes = ResourceWriter::Bytes;

template <typename Number>
void Append(Bytes* bytes, Number value, bool swapped) {
    bytes->resize(bytes->size() + sizeof value);
    StoreNumber(bytes->data() + bytes->size() - sizeof value, value, swapped);
}

void AppendBytes(Bytes* bytes, const void* data, std::size_t size) {
    if (size == 0) return;
    bytes->resize(bytes->size() + size);
    std::memcpy(bytes->data() + bytes->size() - size, data, size);
}

// Everything before the data. Filled with the pattern first: what is not written over keeps it.
class AdminPart {
public:
    AdminPart(std::size_t count, bool swapped)
        : indexSize_(RoundUp(kEntriesOffset - kIndexOffset + kEntrySize * count)),
          swapped_(swapped),
          bytes_(kIndexOffset + indexSize_ + kFillerPartSize) {
        for (std::size_t at = 0; at < bytes_.size(); at += 4)
            Put(at, FillerAt(at));
        for (std::size_t at = 0; at < kIndexOffset; at += 4)
            Put(at, 0);
        const std::size_t fillerPart = kIndexOffset + indexSize_;
        Put(0, kMagic);
        Put(kCountOffset, count);
        Put(kIndexOffsetOffset, kIndexOffset);
        Put(kAdminSizeOffset, fillerPart);
        Put(kIndexOffset, kIndexOffset);
        Put(kIndexSizeOffset, indexSize_);
        Put(kFillerPartOffsetOffset, fillerPart);
        Put(kFillerPartSizeOffset, kFillerPartSize);
    }

    void PutEntry(std::size_t index, std::size_t offset, std::size_t size) {
        const std::size_t at = kEntriesOffset + kEntrySize * index;
        Put(at, offset);
        Put(at + 4, size);
        Put(at + 8, 0);
    }

    void PutTable(std::size_t offset, std::size_t size) {
        Put(kTableOffsetOffset, offset);
        Put(kTableSizeOffset, size);
    }

    [[nodiscard]] const Bytes& Contents() const { return bytes_; }

private:
    static std::size_t RoundUp(std::size_t size) {
        return (size + kIndexGranularity - 1) / kIndexGranularity * kIndexGranularity;
    }

    void Put(std::size_t at, std::size_t value) {
        StoreNumber(bytes_.data() + at, static_cast<uint32>(value), swapped_);
    }

    const std::size_t indexSize_;
    const bool swapped_;
    Bytes bytes_;
};

}  // namespace

bool ResourceWriter::Add(type_code type, int32 id, const std::string& name, Bytes data) {
    if (!taken_.insert({type, id}).second) return false;
    resources_.push_back({type, id, name, std::move(data)});
    return true;
}

Bytes ResourceWriter::Table(bool swapped) const {
    const Bytes separator(kSeparatorSize, std::byte{0xFF});
    Bytes table;
    for (std::size_t i = 0; i < resources_.size(); i++) {
        const Resource& resource = resources_[i];
        const bool isNewRun = i == 0 || resources_[i - 1].type != resource.type;
        if (isNewRun && i != 0) AppendBytes(&table, separator.data(), separator.size());
        if (isNewRun) Append(&table, resource.type, swapped);
        Append(&table, resource.id, swapped);
        Append(&table, static_cast<uint32>(i + 1), swapped);
        const std::size_t nameSize = resource.name.empty() ? 0 : resource.name.size() + 1;
        Append(&table, static_cast<uint16>(nameSize), swapped);
        AppendBytes(&table, resource.name.c_str(), nameSize);
    }
    AppendBytes(&table, separator.data(), separator.size());
    Append(&table, Checksum(table), swapped);
    Append(&table, uint32{0}, swapped);
    return table;
}

Bytes ResourceWriter::File(ByteOrder order) const {
    const bool swapped = (order == ByteOrder::kBigEndian) != kHostIsBigEndian;
    AdminPart admin(resources_.size(), swapped);
    std::size_t offset = admin.Contents().size();
    for (std::size_t i = 0; i < resources_.size(); i++) {
        admin.PutEntry(i, offset, resources_[i].data.size());
        offset += resources_[i].data.size();
    }
    const Bytes table = Table(swapped);
    admin.PutTable(offset, table.size());

    Bytes file;
    if (order == ByteOrder::kLittleEndian) {
        AppendBytes(&file, kLittleEndianPrefix, sizeof kLittleEndianPrefix);
    } else {
        AppendBytes(&file, kBigEndianPrefix, sizeof kBigEndianPrefix);
        file.resize(kBigEndianBlockOffset);
    }
    AppendBytes(&file, admin.Contents().data(), admin.Contents().size());
    for (const Resource& resource : resources_)
        AppendBytes(&file, resource.data.data(), resource.data.size());
    AppendBytes(&file, table.data(), table.size());
    return file;
}
