// Reads stored records: 'FOB1' in both byte orders, and the tabular '1FMH'. Nothing in the bytes is
// trusted: every length is checked before it is used, and no memory is taken that the bytes do not
// account for. Nested records are left as they are, to be read when they are asked for. Static
// functions without state, any thread.
#pragma once

#include "Platform/Application/BMessage.h"

class MessageReader {
public:
    using Bytes = MessageFields::Bytes;
    using Buffer = MessageFields::Buffer;

    // The length of the record at the start of `bytes`, never more than those. B_NOT_A_MESSAGE: no
    // known form; B_BAD_DATA: its length is impossible.
    static status_t Measure(Bytes bytes, std::size_t* length);

    // Reads the record that `bytes` begin with, as views into `buffer`, in which they lie. After a
    // failure `out` is empty. `nesting`: how deep the record lies in its outermost one.
    static status_t Read(Buffer buffer, Bytes bytes, int32 nesting, BMessage::Checksum checksum,
                         BMessage* out);
    // The same through a copy of the record.
    static status_t ReadCopy(Bytes bytes, int32 nesting, BMessage::Checksum checksum,
                             BMessage* out);
};
