#include "SystemState.h"

#include <sha2.h>

#include <algorithm>
#include <array>
#include <bit>

#include "AbEpoch.h"
#include "Body.h"
#include "EpochPortal.h"

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

void Append(std::vector<double>* to, const ThreeVector& v) {
    to->insert(to->end(), {v.x, v.y, v.z});
}

}  // namespace

std::size_t SystemState::CountMassive() const {
    const auto massless = std::find_if(gm.begin(), gm.end(), [](double m) { return !(m > 0.0); });
    return static_cast<std::size_t>(massless - gm.begin());
}

std::string SystemState::NameOf(int64 id) const {
    const auto found = std::find(ids.begin(), ids.end(), id);
    return found == ids.end() ? "" : names[static_cast<std::size_t>(found - ids.begin())];
}

std::string SystemState::Digest() const {
    WordDigest digest;
    digest.Add(time);
    for (std::size_t i = 0; i < CountBodies(); i++) {
        digest.Add(static_cast<uint64>(ids[i]));
        for (std::size_t k = 3 * i; k < 3 * i + 3; k++)
            digest.Add(positions[k]);
        for (std::size_t k = 3 * i; k < 3 * i + 3; k++)
            digest.Add(velocities[k]);
    }
    return digest.Hexadecimal();
}

SystemState TakeState(EpochPortal* portal) {
    SystemState state;
    portal->ReadLock();
    state.time = portal->FocusEpoch()->Time();
    for (const Body* body : portal->BodiesInMassOrder()) {
        state.ids.push_back(body->ID());
        state.names.push_back(body->Name());
        state.gm.push_back(body->M());
        Append(&state.positions, body->Position());
        Append(&state.velocities, body->Velocity());
    }
    portal->ReadUnlock();
    return state;
}
