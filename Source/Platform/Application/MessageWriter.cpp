#include "MessageWriter.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "ByteOrder.h"
#include "MessageFormat.h"

using namespace StoredRecord;

namespace {

// Nested records always vary in size, even if the record they were read from had them otherwise.
bool IsFixed(const MessageFields::Field& field) {
    return field.isFixed && field.type != B_MESSAGE_TYPE;
}

bool IsMini(const MessageFields::Field& field, uint64 dataSize) {
    return dataSize <= kMiniLimit && static_cast<std::size_t>(field.count) <= kMiniLimit;
}

}  // namespace

// The bytes to be written, all 0 at first, and the place to go on writing.
class MessageWriter::Output {
public:
    Output(std::byte* bytes, bool swapped) : bytes_(bytes), swapped_(swapped) {}

    template <typename T>
    void Number(T value) {
        StoreNumber(bytes_ + at_, value, swapped_);
        at_ += sizeof(T);
    }
    // A count or a size.
    void Size(uint64 value, bool mini) {
        if (mini)
            Number(static_cast<uint8>(value));
        else
            Number(static_cast<uint32>(value));
    }
    void Copy(const void* from, std::size_t size) {
        if (size > 0) std::memcpy(bytes_ + at_, from, size);
        at_ += size;
    }
    // Items of `itemSize` bytes each.
    void Items(type_code type, Bytes items, std::size_t itemSize) {
        std::byte* to = bytes_ + at_;
        Copy(items.data(), items.size());
        if (!swapped_ || !HasByteOrder(type)) return;
        for (std::size_t at = 0; at < items.size(); at += itemSize)
            SwapItem(type, to + at, itemSize);
    }
    void Skip(std::size_t size) { at_ += size; }
    void MoveTo(std::size_t at) { at_ = at; }
    [[nodiscard]] std::size_t At() const { return at_; }
    [[nodiscard]] Bytes Written(std::size_t from) const { return {bytes_ + from, at_ - from}; }

private:
    std::byte* bytes_;
    bool swapped_;
    std::size_t at_ = 0;
};

MessageWriter::MessageWriter(const BMessage& message) {
    nodes_.emplace_back();
    nodes_.front().record = std::shared_ptr<const BMessage>(std::shared_ptr<void>(), &message);
    for (std::size_t i = 0; i < nodes_.size(); i++) {
        status_ = CollectNested(i);
        if (status_ != B_OK) return;
    }
    for (std::size_t i = nodes_.size(); i-- > 0;) {
        Node& node = nodes_[i];
        node.size = node.record ? RecordSize(node) : node.bytes.size();
        if (node.size > MessageFields::kMaxBytes) {
            status_ = B_BUFFER_OVERFLOW;
            return;
        }
    }
}

std::size_t MessageWriter::Size() const {
    return status_ == B_OK ? static_cast<std::size_t>(nodes_.front().size) : 0;
}

status_t MessageWriter::Write(BMessage::ByteOrder order, std::vector<std::byte>* out) const {
    out->clear();
    if (status_ != B_OK) return status_;
    const bool swapped = (order == BMessage::ByteOrder::kBigEndian && !kHostIsBigEndian) ||
                         (order == BMessage::ByteOrder::kLittleEndian && kHostIsBigEndian);
    out->resize(Size());
    Output output(out->data(), swapped);
    std::vector<std::size_t> positions(nodes_.size());
    for (std::size_t i = 0; i < nodes_.size(); i++) {
        output.MoveTo(positions[i]);
        if (nodes_[i].record)
            WriteRecord(nodes_[i], positions, output);
        else
            output.Copy(nodes_[i].bytes.data(), nodes_[i].bytes.size());
    }
    return B_OK;
}

status_t MessageWriter::CollectNested(std::size_t index) {
    nodes_[index].firstNested = nodes_.size();
    const std::shared_ptr<const BMessage> record = nodes_[index].record;
    if (!record) return B_OK;
    const int32 nesting = nodes_[index].nesting + 1;
    for (const Field& field : record->fields_.All()) {
        if (field.type != B_MESSAGE_TYPE) continue;
        if (nesting > BMessage::kMaxNesting) return B_UNSUPPORTED;
        for (int32 i = 0; i < field.count; i++) {
            Node nested;
            nested.nesting = nesting;
            // Read again and written in this record's form and byte order, whatever it had. What
            // cannot be read is none of the writer's business.
            if (record->NestedRecord(field, i, nesting, &nested.record) != B_OK)
                nested.bytes = record->fields_.Item(field, i);
            nodes_.push_back(std::move(nested));
        }
    }
    return B_OK;
}

uint64 MessageWriter::RecordSize(const Node& node) const {
    uint64 size = kMinSize;
    std::size_t nested = node.firstNested;
    for (const Field& field : node.record->fields_.All()) {
        const uint64 dataSize = DataSize(node, field, nested);
        const uint64 word = IsMini(field, dataSize) ? 1 : 4;
        const uint64 words = field.count == 1 ? 1 : 2;
        size += 1 + sizeof(type_code) + words * word + 1 + field.nameLength + dataSize;
        if (field.type == B_MESSAGE_TYPE) nested += static_cast<std::size_t>(field.count);
    }
    return size;
}

uint64 MessageWriter::DataSize(const Node& node, const Field& field, std::size_t nested) const {
    if (IsFixed(field)) return field.dataSize;
    uint64 size = 0;
    for (int32 i = 0; i < field.count; i++) {
        if (field.type == B_MESSAGE_TYPE)
            size += PaddedItemSize(nodes_[nested++].size);
        else
            size += PaddedItemSize(node.record->fields_.Item(field, i).size());
    }
    return size;
}

void MessageWriter::WriteRecord(const Node& node, std::vector<std::size_t>& positions,
                                Output& output) const {
    const std::size_t start = output.At();
    output.Number(kMagic);
    output.Skip(sizeof(uint32));
    output.Number(static_cast<uint32>(node.size));
    output.Number(node.record->what);
    output.Number(kHeaderValid);
    const uint32 checksum = Checksum(output.Written(start + kSizeOffset));
    output.MoveTo(start + kChecksumOffset);
    output.Number(checksum);
    output.MoveTo(start + kHeaderSize);

    const MessageFields& fields = node.record->fields_;
    std::size_t nested = node.firstNested;
    for (const Field& field : fields.All()) {
        const uint64 dataSize = DataSize(node, field, nested);
        const bool isMini = IsMini(field, dataSize);
        const bool isSingle = field.count == 1;
        output.Number(static_cast<uint8>(kFieldValid | (isMini ? kMiniData : 0) |
                                         (IsFixed(field) ? kFixedSize : 0) |
                                         (isSingle ? kSingleItem : 0)));
        output.Number(field.type);
        if (!isSingle) output.Size(static_cast<uint64>(field.count), isMini);
        output.Size(dataSize, isMini);
        output.Number(field.nameLength);
        output.Copy(fields.Name(field).data(), field.nameLength);

        if (IsFixed(field)) {
            output.Items(field.type, fields.FixedItems(field), field.ItemSize());
            continue;
        }
        for (int32 i = 0; i < field.count; i++) {
            const bool isRecord = field.type == B_MESSAGE_TYPE;
            const Bytes item = isRecord ? Bytes() : fields.Item(field, i);
            const std::size_t size =
                isRecord ? static_cast<std::size_t>(nodes_[nested].size) : item.size();
            const std::size_t end = output.At() + static_cast<std::size_t>(PaddedItemSize(size));
            output.Number(static_cast<uint32>(size));
            if (isRecord)
                positions[nested++] = output.At();
            else
                output.Items(field.type, item, size);
            output.MoveTo(end);
        }
    }
}
