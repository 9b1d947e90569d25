// Compares what two records hold, not how it is stored: byte order, short and long forms and
// whether a nested record is an object or stored bytes make no difference. Works through nested
// records one after the other, without recursion. Used by one thread, while both records live.
#pragma once

#include <utility>

#include "Platform/Application/BMessage.h"

class MessageComparison {
public:
    MessageComparison(const BMessage& left, const BMessage& right);

    [[nodiscard]] bool Equal();

private:
    using Field = MessageFields::Field;
    using Record = MessageFields::Record;

    [[nodiscard]] static bool SameItems(const MessageFields& left, const Field& leftField,
                                        const MessageFields& right, const Field& rightField);
    // Compares what can be compared at once, and remembers the nested records.
    [[nodiscard]] bool SameRecord(const BMessage& left, const BMessage& right);
    [[nodiscard]] bool SameNested(const BMessage& left, const Field& leftField,
                                  const BMessage& right, const Field& rightField);

    std::vector<std::pair<Record, Record>> pending_;
};
