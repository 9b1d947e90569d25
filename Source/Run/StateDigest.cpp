#include "Run/StateDigest.h"

#include <sha2.h>

#include <array>
#include <bit>

#include "Platform/Support/SupportDefs.h"
#include "Simulation/Document/SystemState.h"

namespace {

class WordDigest {
public:
    WordDigest() { SHA256Init(&context_); }

    void Add(uint64 word) {
        std::array<uint8, sizeof word> bytes;
        for (std::size_t i = 0; i < bytes.size(); i++)
            bytes[i] = static_cast<uint8>(word >> (8 * i));
        SHA256Update(&context_, bytes.data(), bytes.size());
    }
    void Add(double value) { Add(std::bit_cast<uint64>(value)); }

    std::string Hexadecimal() {
        std::array<char, SHA256_DIGEST_STRING_LENGTH> text{};
        SHA256End(&context_, text.data());
        return text.data();
    }

private:
    SHA2_CTX context_;
};

}  // namespace

std::string DigestOf(const SystemState& state) {
    WordDigest digest;
    digest.Add(state.time);
    for (std::size_t i = 0; i < state.CountBodies(); i++) {
        digest.Add(static_cast<uint64>(state.ids[i]));
        for (std::size_t k = 3 * i; k < 3 * i + 3; k++)
            digest.Add(state.positions[k]);
        for (std::size_t k = 3 * i; k < 3 * i + 3; k++)
            digest.Add(state.velocities[k]);
    }
    return digest.Hexadecimal();
}
