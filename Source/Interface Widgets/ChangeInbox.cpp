#include "Interface Widgets/ChangeInbox.h"

#include "Interface Widgets/ProgramMessages.h"
#include "Platform/Application/BLooper.h"
#include "Platform/Interface/Server/WindowServer.h"

void ChangeInbox::Put(int32 changes) {
    if (changes_.fetch_or(changes) != 0) return;
    // The one message of this burst must arrive, even if the port is full.
    if (window_->PostMessage(kRedisplay) == B_WOULD_BLOCK)
        WindowServer::Deliver(window_, BMessage(kRedisplay));
}
