// Stored records for the tests: the files beside them, and others made from these by small changes.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Application/BMessage.h"

using RecordBytes = std::vector<std::byte>;

// A file of the data folder; a missing one fails the test.
RecordBytes ReadVector(const std::string& name);

// The message that archive-le.bin and its relatives hold.
BMessage VectorMessage();

// `bytes` with `number` in little-endian order at `at`.
RecordBytes WithUInt32(RecordBytes bytes, std::size_t at, uint32 number);
RecordBytes WithByte(RecordBytes bytes, std::size_t at, uint8 byte);
// With another size word, and the checksum that belongs to it (little-endian, plain header).
RecordBytes WithSize(RecordBytes bytes, int32 size);
// A little-endian record of what 0 with these fields, given byte for byte.
RecordBytes RecordOf(std::string_view fields);

std::shared_ptr<const RecordBytes> Shared(RecordBytes bytes);
