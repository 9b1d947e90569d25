// Writes a record in its stored form, nested records included. Made for one record, which must not
// change while the writer lives; used by one thread.
//
// Nested records are taken level by level into one list, so that a chain of thousands needs neither
// recursion nor more than one look at each record: sizes are summed from the last to the first. The
// bytes are written from the first to the last, with a stack of the records that are open.
#pragma once

#include "Platform/Application/BMessage.h"

class MessageWriter {
public:
    MessageWriter(const BMessage& message, BMessage::ByteOrder order);

    // 0 if the record cannot be stored.
    [[nodiscard]] std::size_t Size() const;
    [[nodiscard]] status_t Write(const BMessage::Sink& sink) const;

private:
    using Bytes = MessageFields::Bytes;
    using Field = MessageFields::Field;

    // A record to be written. One whose stored bytes cannot be read, or have the wanted form
    // already, has no record and is copied.
    struct Node {
        std::shared_ptr<const BMessage> record;
        Bytes bytes;
        int32 nesting = 0;
        uint64 size = 0;
        std::size_t firstNested = 0;  // its nested records follow each other, in the fields' order
    };

    status_t CollectNested(std::size_t index);
    // The stored bytes of a nested record can be copied as they are.
    [[nodiscard]] bool IsReady(const BMessage& record, const Field& field, int32 index,
                               const BMessage& nested) const;
    [[nodiscard]] uint64 RecordSize(const Node& node) const;
    [[nodiscard]] uint64 DataSize(const Node& node, const Field& field, std::size_t nested) const;

    // A record that is being written, and how far.
    struct Open {
        std::size_t node = 0;
        std::size_t nested = 0;  // the next nested record
        std::size_t field = 0;
        int32 item = 0;
    };

    class Output;
    void WriteHeader(const Node& node, Output& output) const;
    void WriteFieldHeader(const Node& node, const Open& open, Output& output) const;
    // Writes up to the next nested record, whose node it answers, or to the end: then 0.
    std::size_t WriteSome(Open& open, Output& output) const;

    const bool isSwapped_;  // against this machine
    std::vector<Node> nodes_;
    status_t status_ = B_OK;
};
