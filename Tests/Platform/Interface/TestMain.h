// The tests of this floor run on a thread of their own, beside a window server without a screen on
// the main thread.
#pragma once

#include <functional>

// Has the main thread leave the server's event loop, do this, and go on.
void RunOnMainThread(const std::function<void()>& job);
// For such a job, which must leave a server behind.
void EndServer();
void StartServer();
