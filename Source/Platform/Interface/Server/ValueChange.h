// What a part tells its control: int32 "value", as the user has moved it, and bool "final" when
// that is where it stays. A plain value.
#pragma once

#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/InterfaceDefs.h"
#include "Platform/Interface/Server/ViewPart.h"

struct ValueChange {
    int32 value = 0;
    bool isFinal = false;

    [[nodiscard]] BMessage ToMessage() const {
        BMessage message(kViewChanged);
        message.AddInt32(kValueField, value);
        message.AddBool(kFinalField, isFinal);
        return message;
    }
    [[nodiscard]] static ValueChange From(const BMessage& message) {
        ValueChange change;
        message.FindInt32(kValueField, &change.value);
        message.FindBool(kFinalField, &change.isFinal);
        return change;
    }

private:
    static constexpr const char* kFinalField = "final";
};
