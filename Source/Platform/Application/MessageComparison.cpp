#include "Platform/Application/MessageComparison.h"

#include <algorithm>

MessageComparison::MessageComparison(const BMessage& left, const BMessage& right) {
    const std::shared_ptr<void> unowned;
    pending_.emplace_back(Record(unowned, &left), Record(unowned, &right));
}

bool MessageComparison::Equal() {
    while (!pending_.empty()) {
        const auto [left, right] = std::move(pending_.back());
        pending_.pop_back();
        if (left != right && !SameRecord(*left, *right)) return false;
    }
    return true;
}

bool MessageComparison::SameRecord(const BMessage& left, const BMessage& right) {
    const std::vector<Field>& leftFields = left.fields_.All();
    const std::vector<Field>& rightFields = right.fields_.All();
    if (left.what != right.what || leftFields.size() != rightFields.size()) return false;
    for (std::size_t i = 0; i < leftFields.size(); i++) {
        const Field& leftField = leftFields[i];
        const Field& rightField = rightFields[i];
        if (leftField.type != rightField.type || leftField.count != rightField.count ||
            left.fields_.Name(leftField) != right.fields_.Name(rightField))
            return false;
        const bool same = leftField.type == B_MESSAGE_TYPE
                              ? SameNested(left, leftField, right, rightField)
                              : SameItems(left.fields_, leftField, right.fields_, rightField);
        if (!same) return false;
    }
    return true;
}

bool MessageComparison::SameItems(const MessageFields& left, const Field& leftField,
                                  const MessageFields& right, const Field& rightField) {
    for (int32 i = 0; i < leftField.count; i++)
        if (!std::ranges::equal(left.Item(leftField, i), right.Item(rightField, i))) return false;
    return true;
}

bool MessageComparison::SameNested(const BMessage& left, const Field& leftField,
                                   const BMessage& right, const Field& rightField) {
    for (int32 i = 0; i < leftField.count; i++) {
        Record leftRecord, rightRecord;
        const bool canReadLeft =
            left.NestedRecord(leftField, i, left.nesting_ + 1, &leftRecord) == B_OK;
        const bool canReadRight =
            right.NestedRecord(rightField, i, right.nesting_ + 1, &rightRecord) == B_OK;
        if (canReadLeft != canReadRight) return false;
        if (canReadLeft)
            pending_.emplace_back(std::move(leftRecord), std::move(rightRecord));
        else if (!std::ranges::equal(left.fields_.Item(leftField, i),
                                     right.fields_.Item(rightField, i)))
            return false;
    }
    return true;
}
