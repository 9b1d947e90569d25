// The operations of BMessage that add and find messengers.
#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Support/ByteOrder.h"

namespace {

// The item: port, handler and team, 32 bits each, and 12 bytes that say nothing.
constexpr std::size_t kItemSize = 24;
constexpr std::size_t kNumbersSize = 12;
constexpr std::size_t kHandlerOffset = 4;
constexpr std::size_t kTeamOffset = 8;

}  // namespace

status_t BMessage::AddMessenger(const char* name, const BMessenger& value) {
    std::byte item[kItemSize] = {};
    StoreNumber(item, value.port_, false);
    StoreNumber(item + kHandlerOffset, value.handler_, false);
    StoreNumber(item + kTeamOffset, value.team_, false);
    return AddItems(name, B_MESSENGER_TYPE, true, item, kItemSize, 1);
}

status_t BMessage::FindMessenger(const char* name, int32 index, BMessenger* out) const {
    if (out == nullptr) return B_BAD_VALUE;
    *out = BMessenger();
    MessageFields::Bytes item;
    if (const status_t status = FindItem(name, B_MESSENGER_TYPE, index, &item); status != B_OK)
        return status;
    if (item.size() < kNumbersSize) return B_BAD_DATA;
    out->port_ = LoadNumber<int32>(item.data(), false);
    out->handler_ = LoadNumber<int32>(item.data() + kHandlerOffset, false);
    out->team_ = LoadNumber<int32>(item.data() + kTeamOffset, false);
    return B_OK;
}
