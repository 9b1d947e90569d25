// The operations of BMessage that add and find references to files.
#include <cstring>

#include "Platform/Application/BMessage.h"
#include "Platform/Storage/entry_ref.h"
#include "Platform/Support/ByteOrder.h"

namespace {

// The item: 32-bit device, 64-bit directory, then the name with its 0, or nothing if there is none.
constexpr std::size_t kDirectoryOffset = 4;
constexpr std::size_t kNameOffset = 12;

// Devices are stored without a sign, so that all 32-bit numbers come back; only "none" has one.
constexpr uint32 kNoDevice = UINT32_MAX;

}  // namespace

status_t BMessage::AddRef(const char* name, const entry_ref* value) {
    if (value == nullptr || value->device < -1 || value->device >= int64{kNoDevice})
        return B_BAD_VALUE;
    std::vector<std::byte> item(kNameOffset + (value->name.empty() ? 0 : value->name.size() + 1));
    StoreNumber(item.data(), static_cast<uint32>(value->device), false);
    StoreNumber(item.data() + kDirectoryOffset, value->directory, false);
    std::memcpy(item.data() + kNameOffset, value->name.c_str(), item.size() - kNameOffset);
    return AddItems(name, B_REF_TYPE, false, item.data(), item.size(), 1);
}

status_t BMessage::FindRef(const char* name, int32 index, entry_ref* out) const {
    if (out == nullptr) return B_BAD_VALUE;
    *out = entry_ref();
    MessageFields::Bytes item;
    if (const status_t status = FindItem(name, B_REF_TYPE, index, &item); status != B_OK)
        return status;
    if (item.size() < kNameOffset) return B_BAD_DATA;
    const auto device = LoadNumber<uint32>(item.data(), false);
    out->device = device == kNoDevice ? -1 : int64{device};
    out->directory = LoadNumber<int64>(item.data() + kDirectoryOffset, false);
    const auto letters = item.subspan(kNameOffset);
    const auto* text = reinterpret_cast<const char*>(letters.data());
    out->name.assign(text, strnlen(text, letters.size()));
    return B_OK;
}
