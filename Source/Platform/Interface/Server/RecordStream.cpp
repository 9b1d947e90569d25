#include "Platform/Interface/Server/RecordStream.h"

#include <cstddef>
#include <cstring>
#include <vector>

#include "Platform/Application/BMessage.h"

namespace {

// Room for thousands of paths.
constexpr uint32 kMaxSize = 16 << 20;

}  // namespace

QByteArray RecordStream::Frame(const BMessage& record) {
    std::vector<std::byte> bytes;
    if (record.Flatten(&bytes) != B_OK) return {};
    const auto size = static_cast<uint32>(bytes.size());
    QByteArray frame(reinterpret_cast<const char*>(&size), sizeof size);
    return frame.append(reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(size));
}

RecordStream::Found RecordStream::Take(QByteArray* arrived, BMessage* record) {
    uint32 size = 0;
    if (arrived->size() < static_cast<qsizetype>(sizeof size)) return Found::kTooLittle;
    std::memcpy(&size, arrived->constData(), sizeof size);
    if (size > kMaxSize) return Found::kGarbage;
    const auto whole = static_cast<qsizetype>(sizeof size + size);
    if (arrived->size() < whole) return Found::kTooLittle;
    const status_t status = record->Unflatten(arrived->constData() + sizeof size, size);
    arrived->remove(0, whole);
    return status == B_OK ? Found::kRecord : Found::kGarbage;
}
