// The digest that a document's record carries of its own stored form, with the digest's bytes taken
// as zero: a SHA-256. Made for one record; used by one thread.
#pragma once

#include <sha2.h>

#include <array>
#include <cstddef>
#include <span>

class RecordDigest {
public:
    using Bytes = std::array<std::byte, SHA256_DIGEST_LENGTH>;

    RecordDigest() { SHA256Init(&context_); }
    void Add(std::span<const std::byte> stored);
    [[nodiscard]] Bytes End();

    // Of a stored form in which the digest stands at `at`.
    static Bytes Of(std::span<const std::byte> stored, std::size_t at);

private:
    SHA2_CTX context_;
};
