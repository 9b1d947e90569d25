// Records in a stream of bytes: the size of each, in the machine's own order, and its flattened
// form. Plain functions, any thread.
#pragma once

#include <QByteArray>

class BMessage;

namespace RecordStream {

enum class Found { kRecord, kTooLittle, kGarbage };

// Empty for a record that cannot be flattened.
[[nodiscard]] QByteArray Frame(const BMessage& record);
// Takes the first record out of what has arrived so far.
Found Take(QByteArray* arrived, BMessage* record);

}  // namespace RecordStream
