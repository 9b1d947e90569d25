// The tests of this floor run on a thread of their own, beside a window server without a screen on
// the main thread.
#pragma once

#include <functional>

// Has the main thread end the server's event loop, do this, and go on. The job may end the server.
void RunOnMainThread(const std::function<void()>& job);
// For such a job: ends the server and makes another.
void RenewServer();
