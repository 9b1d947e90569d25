// Waits until the server has done what was queued, and the window what came of that.
#pragma once

#include "BMessage.h"
#include "BMessenger.h"
#include "BWindow.h"
#include "WindowServer.h"

inline void Settle(BWindow* window) {
    constexpr int kRounds = 3;
    for (int i = 0; i < kRounds; i++) {
        WindowServer::Perform([] {});
        BMessage reply;
        const BMessage ping(FourCC("ping"));
        (void)BMessenger(static_cast<BHandler*>(window)).SendMessage(&ping, &reply);
    }
}
