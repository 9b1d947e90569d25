#include "Platform/Application/MessageWriter.h"

#include <algorithm>
#include <span>
#include <utility>

#include "Platform/Application/MessageFormat.h"
#include "Platform/Support/ByteOrder.h"

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

// Gathers small pieces before it hands them on.
class MessageWriter::Output {
public:
    Output(const BMessage::Sink& sink, bool swapped) : sink_(sink), swapped_(swapped) {
        buffer_.reserve(kBuffer);
    }

    template <typename T>
    void Number(T value) {
        std::byte bytes[sizeof(T)];
        StoreNumber(bytes, value, swapped_);
        Copy(bytes);
    }
    // A count or a size.
    void Size(uint64 value, bool mini) {
        if (mini)
            Number(static_cast<uint8>(value));
        else
            Number(static_cast<uint32>(value));
    }
    void Copy(Bytes bytes) {
        if (buffer_.size() + bytes.size() > kBuffer) Flush();
        if (bytes.size() > kBuffer)
            sink_(bytes);
        else
            buffer_.insert(buffer_.end(), bytes.begin(), bytes.end());
    }
    // Items of `itemSize` bytes each.
    void Items(type_code type, Bytes items, std::size_t itemSize) {
        if (!swapped_ || !HasByteOrder(type)) return Copy(items);
        std::vector<std::byte> swapped(items.begin(), items.end());
        for (std::size_t at = 0; at < swapped.size(); at += itemSize)
            SwapItem(type, swapped.data() + at, itemSize);
        Copy(swapped);
    }
    // What fills up an item of this size.
    void Padding(uint64 itemSize) {
        constexpr std::byte kZeros[8] = {};
        const auto size =
            static_cast<std::size_t>(PaddedItemSize(itemSize) - itemSize - sizeof(uint32));
        Copy(Bytes(kZeros).first(size));
    }
    void Flush() {
        if (!buffer_.empty()) sink_(buffer_);
        buffer_.clear();
    }

private:
    static constexpr std::size_t kBuffer = 64 * 1024;

    const BMessage::Sink& sink_;
    const bool swapped_;
    std::vector<std::byte> buffer_;
};

MessageWriter::MessageWriter(const BMessage& message, BMessage::ByteOrder order)
    : isSwapped_((order == BMessage::ByteOrder::kBigEndian && !kHostIsBigEndian) ||
                 (order == BMessage::ByteOrder::kLittleEndian && kHostIsBigEndian)) {
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

status_t MessageWriter::Write(const BMessage::Sink& sink) const {
    if (status_ != B_OK) return status_;
    Output output(sink, isSwapped_);
    WriteHeader(nodes_.front(), output);
    std::vector<Open> open{{0, nodes_.front().firstNested}};
    while (!open.empty()) {
        if (const std::size_t next = WriteSome(open.back(), output); next != 0) {
            WriteHeader(nodes_[next], output);
            open.push_back({next, nodes_[next].firstNested});
            continue;
        }
        const uint64 size = nodes_[open.back().node].size;
        open.pop_back();
        if (!open.empty()) output.Padding(size);
    }
    output.Flush();
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
            if (record->NestedRecord(field, i, nesting, &nested.record) != B_OK ||
                IsReady(*record, field, i, *nested.record)) {
                nested.record.reset();
                nested.bytes = record->fields_.Item(field, i);
            }
            nodes_.push_back(std::move(nested));
        }
    }
    return B_OK;
}

// Bytes of this program's own making need not be kept as a record: with a hundred thousand of them
// that would take several times the memory of the file.
bool MessageWriter::IsReady(const BMessage& record, const Field& field, int32 index,
                            const BMessage& nested) const {
    if (isSwapped_ || field.inSource || field.HoldsRecords() ||
        nested.CountNames(B_MESSAGE_TYPE) > 0)
        return false;
    const Bytes item = record.fields_.Item(field, index);
    return LoadNumber<uint32>(item.data(), false) == kMagic &&
           LoadNumber<uint32>(item.data() + kSizeOffset, false) == item.size();
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

void MessageWriter::WriteHeader(const Node& node, Output& output) const {
    std::byte covered[kHeaderSize - kSizeOffset];
    StoreNumber(covered, static_cast<uint32>(node.size), isSwapped_);
    StoreNumber(covered + (kWhatOffset - kSizeOffset), node.record->what, isSwapped_);
    StoreNumber(covered + (kFlagsOffset - kSizeOffset), kHeaderValid, isSwapped_);
    output.Number(kMagic);
    output.Number(Checksum(covered));
    output.Copy(covered);
}

void MessageWriter::WriteFieldHeader(const Node& node, const Open& open, Output& output) const {
    const MessageFields& fields = node.record->fields_;
    const Field& field = fields.All()[open.field];
    const uint64 dataSize = DataSize(node, field, open.nested);
    const bool isMini = IsMini(field, dataSize);
    const bool isSingle = field.count == 1;
    output.Number(static_cast<uint8>(kFieldValid | (isMini ? kMiniData : 0) |
                                     (IsFixed(field) ? kFixedSize : 0) |
                                     (isSingle ? kSingleItem : 0)));
    output.Number(field.type);
    if (!isSingle) output.Size(static_cast<uint64>(field.count), isMini);
    output.Size(dataSize, isMini);
    output.Number(field.nameLength);
    output.Copy(std::as_bytes(std::span(fields.Name(field))));
}

std::size_t MessageWriter::WriteSome(Open& open, Output& output) const {
    const Node& node = nodes_[open.node];
    const MessageFields& fields = node.record->fields_;
    for (; open.field < fields.All().size(); open.field++, open.item = 0) {
        const Field& field = fields.All()[open.field];
        if (open.item == 0) WriteFieldHeader(node, open, output);
        if (IsFixed(field)) {
            output.Items(field.type, fields.FixedItems(field), field.ItemSize());
            continue;
        }
        while (open.item < field.count) {
            const int32 item = open.item++;
            if (field.type == B_MESSAGE_TYPE) {
                const std::size_t nested = open.nested++;
                output.Number(static_cast<uint32>(nodes_[nested].size));
                if (nodes_[nested].record) return nested;
                output.Copy(nodes_[nested].bytes);
                output.Padding(nodes_[nested].size);
            } else {
                const Bytes bytes = fields.Item(field, item);
                output.Number(static_cast<uint32>(bytes.size()));
                output.Items(field.type, bytes, bytes.size());
                output.Padding(bytes.size());
            }
        }
    }
    output.Number(uint8{0});
    return 0;
}
