#include "Platform/Application/BLooper.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <utility>

#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"

namespace {

const char* NameOrDefault(const char* name) {
    return name == nullptr ? "anonymous looper" : name;
}

}  // namespace

BLooper::BLooper(const char* name, int32 priority, int32 portCapacity)
    : BHandler(NameOrDefault(name)),
      link_(LooperRegistry::Add(this, Token(), NameOrDefault(name),
                                portCapacity > 0 ? portCapacity : kDefaultPortCapacity)),
      priority_(priority) {
    link_->lock.Lock();
    AddHandler(this);
}

BLooper::~BLooper() {
    if (thread_ >= 0 && !isQuitting_) debugger("A looper was deleted while its thread runs.");
    link_->lock.Lock();
    link_->port.Close();
    while (!handlers_.empty())
        RemoveHandler(handlers_.back());
    LooperRegistry::Remove(link_);
    link_->lock.Close();
}

// --- Thread ---

thread_id BLooper::Run() {
    AssertLocked();
    if (thread_ >= 0) debugger("Run() of a looper that was run before.");
    const thread_id thread = spawn_thread(StartThread, Name().c_str(), priority_, this);
    if (thread < 0) return thread;
    thread_ = thread;
    if (const status_t status = resume_thread(thread); status != B_OK) {
        thread_ = -1;
        return status;
    }
    Unlock();  // from here on the looper may be gone
    return thread;
}

int32 BLooper::StartThread(void* looper) {
    static_cast<BLooper*>(looper)->ThreadMain();
    return B_OK;
}

void BLooper::ThreadMain() {
    Loop();
    delete this;
}

void BLooper::Loop() {
    for (;;) {
        link_->port.TakeAll(&queue_);
        std::unique_ptr<Delivery> next = std::move(queue_.front());
        queue_.pop_front();
        link_->lock.Lock();
        if (next == nullptr) EndLoop();
        current_ = std::move(next);
        if (current_ != nullptr)
            if (BHandler* const handler = HandlerOf(current_->HandlerToken()); handler != nullptr)
                DispatchMessage(current_->Message(), handler);
        current_.reset();
        if (isQuitting_) return;
        link_->lock.Unlock();
    }
}

BHandler* BLooper::HandlerOf(int32 token) {
    if (token == Delivery::kPreferredHandler) return preferred_ != nullptr ? preferred_ : this;
    const auto found =
        std::find_if(handlers_.begin(), handlers_.end(),
                     [token](const BHandler* handler) { return handler->Token() == token; });
    return found == handlers_.end() ? nullptr : *found;
}

void BLooper::DispatchMessage(BMessage* message, BHandler* handler) {
    if (message->what == B_QUIT_REQUESTED && handler == this)
        QuitIfAllowed();
    else
        handler->MessageReceived(message);
}

// A looper's Quit does not return: a sender that waits hears of it by B_NO_REPLY, from the
// destroyed message. It is answered by a looper that stays, or whose owner deletes it.
void BLooper::QuitIfAllowed() {
    const bool isQuitting = QuitRequested();
    if (isQuitting) Quit();
    BMessage reply(B_REPLY);
    reply.AddBool("result", isQuitting);
    reply.AddInt32("thread", thread_);
    // A looper that Quit has deleted does not come here.
    SendReply(reply);  // NOLINT(clang-analyzer-cplusplus.NewDelete)
}

bool BLooper::QuitRequested() {
    return true;
}

void BLooper::Quit() {
    if (!IsLocked()) {
        if (!Lock()) return;
        std::fprintf(stderr,
                     "ERROR - you must Lock a looper before calling Quit(), team=%d, looper=%s\n",
                     getpid(), Name().c_str());
    }
    const thread_id thread = thread_;
    if (thread < 0) {
        delete this;
    } else if (thread == find_thread(nullptr)) {
        EndLoop();
        delete this;
        exit_thread(B_OK);
    } else {
        const LooperRef link = link_;  // the looper may be gone as soon as it is unlocked
        link->port.PutQuit();
        while (link->lock.IsLocked())
            link->lock.Unlock();
        wait_for_thread(thread, nullptr);
    }
}

bool BLooper::QuitIfAlive(BLooper* looper) {
    if (LockIfAlive(looper) != B_OK) return false;
    looper->Quit();
    return true;
}

// --- Lock ---

bool BLooper::Lock() {
    return LockIfAlive(this) == B_OK;
}

status_t BLooper::LockWithTimeout(bigtime_t microseconds) {
    return LockIfAlive(this, microseconds);
}

status_t BLooper::LockIfAlive(const BLooper* looper, bigtime_t microseconds) {
    const LooperRef link = LooperRegistry::Find(looper);
    return link == nullptr ? B_BAD_VALUE : link->lock.LockWithTimeout(microseconds);
}

void BLooper::Unlock() {
    link_->lock.Unlock();
}

bool BLooper::IsLocked() const {
    const LooperRef link = LooperRegistry::Find(this);
    return link != nullptr && link->lock.IsLocked();
}

void BLooper::AssertLocked() const {
    if (!link_->lock.IsLocked()) debugger("The looper must be locked before this call.");
}

// --- Messages ---

status_t BLooper::PostMessage(uint32 what) {
    const BMessage message(what);
    return Post(this, &message, this);
}

status_t BLooper::PostMessage(const BMessage* message) {
    return Post(this, message, this);
}

status_t BLooper::PostMessage(uint32 what, const BHandler* handler) {
    const BMessage message(what);
    return Post(this, &message, handler);
}

status_t BLooper::PostMessage(const BMessage* message, const BHandler* handler) {
    return Post(this, message, handler);
}

status_t BLooper::Post(const BLooper* looper, const BMessage* message, const BHandler* handler) {
    const LooperRef link = LooperRegistry::Find(looper);
    if (link == nullptr || message == nullptr) return B_BAD_VALUE;
    int32 token = Delivery::kPreferredHandler;
    if (handler == looper) {
        token = link->handlerToken;  // the looper itself may be gone by now
    } else if (handler != nullptr) {
        if (handler->Looper() != looper) return B_MISMATCHED_VALUES;
        token = handler->Token();
    }
    return link->port.Put(std::make_unique<Delivery>(*message, token), 0);
}

std::unique_ptr<Delivery> BLooper::DetachCurrentMessage() {
    AssertLocked();
    return std::move(current_);
}

status_t BLooper::SendReply(const BMessage& reply) {
    AssertLocked();
    return current_ == nullptr ? B_BAD_REPLY : current_->SendReply(reply);
}

// --- Handlers ---

void BLooper::AddHandler(BHandler* handler) {
    AssertLocked();
    if (handler == nullptr || handler->Looper() != nullptr) return;
    handlers_.push_back(handler);
    handler->looper_ = this;
    handler->next_ = handler == this ? nullptr : this;
}

bool BLooper::RemoveHandler(BHandler* handler) {
    AssertLocked();
    if (handler == nullptr || handler->Looper() != this) return false;
    std::erase(handlers_, handler);
    for (BHandler* other : handlers_)
        if (other->next_ == handler) other->next_ = handler->next_;
    if (preferred_ == handler) preferred_ = nullptr;
    handler->looper_ = nullptr;
    handler->next_ = nullptr;
    return true;
}

int32 BLooper::CountHandlers() const {
    AssertLocked();
    return static_cast<int32>(handlers_.size());
}

void BLooper::SetPreferredHandler(BHandler* handler) {
    AssertLocked();
    preferred_ = handler != nullptr && handler->Looper() == this ? handler : nullptr;
}
