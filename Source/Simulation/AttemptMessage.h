// Sends a message that must arrive to a looper whose port may be full. Any thread that may wait.
#pragma once

class BLooper;
class BMessage;

// Tries again every 0.1 s while the port is full, 100 times; then throws bad_alloc. Does nothing
// for a looper that is gone.
void AttemptMessage(const BMessage& message, BLooper* target);
