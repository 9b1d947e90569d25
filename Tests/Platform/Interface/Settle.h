// Waits until the server has done what was queued, and the window what came of that.
#pragma once

#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Interface/Handles/BWindow.h"
#include "Platform/Interface/Server/WindowServer.h"

inline void Settle(BWindow* window) {
    constexpr int kRounds = 3;
    for (int i = 0; i < kRounds; i++) {
        WindowServer::Perform([] {});
        BMessage reply;
        const BMessage ping(FourCC("ping"));
        (void)BMessenger(static_cast<BHandler*>(window)).SendMessage(&ping, &reply);
    }
}
