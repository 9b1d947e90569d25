#include "Simulation/Document/RecordDigest.h"

#include "Platform/Support/SupportDefs.h"

void RecordDigest::Add(std::span<const std::byte> stored) {
    SHA256Update(&context_, reinterpret_cast<const uint8*>(stored.data()), stored.size());
}

RecordDigest::Bytes RecordDigest::End() {
    Bytes digest;
    SHA256Final(reinterpret_cast<uint8*>(digest.data()), &context_);
    return digest;
}

RecordDigest::Bytes RecordDigest::Of(std::span<const std::byte> stored, std::size_t at) {
    RecordDigest digest;
    digest.Add(stored.first(at));
    digest.Add(Bytes{});
    digest.Add(stored.subspan(at + Bytes().size()));
    return digest.End();
}
