// Writes a record in its stored form, nested records included. Made for one record, which must not
// change while the writer lives; used by one thread.
//
// Nested records are taken level by level into one list, so that a chain of thousands needs neither
// recursion nor more than one look at each record: sizes are summed from the last to the first,
// bytes written from the first to the last.
#pragma once

#include "BMessage.h"

class MessageWriter {
public:
    explicit MessageWriter(const BMessage& message);

    // 0 if the record cannot be stored.
    [[nodiscard]] std::size_t Size() const;
    [[nodiscard]] status_t Write(BMessage::ByteOrder order, std::vector<std::byte>* out) const;

private:
    using Bytes = MessageFields::Bytes;
    using Field = MessageFields::Field;

    // A record to be written. One whose stored bytes cannot be read has no record and is copied.
    struct Node {
        std::shared_ptr<const BMessage> record;
        Bytes bytes;
        int32 nesting = 0;
        uint64 size = 0;
        std::size_t firstNested = 0;  // its nested records follow each other, in the fields' order
    };

    status_t CollectNested(std::size_t index);
    [[nodiscard]] uint64 RecordSize(const Node& node) const;
    [[nodiscard]] uint64 DataSize(const Node& node, const Field& field, std::size_t nested) const;

    class Output;
    void WriteRecord(const Node& node, std::vector<std::size_t>& positions, Output& output) const;

    std::vector<Node> nodes_;
    status_t status_ = B_OK;
};
