// An entry of one quantity of a document: shows the value in force, and turns what the user enters
// into one undoable command. A view of a window, which owns it; works through the document's own
// portal.
//
// Threads. All calls need the lock of the window, except Commit. To refresh, Read with the portal's
// read lock, for all entries of a window at once, then ShowValue without it. Commit may be called
// by any thread that holds no lock of the document, with or without the window's: all that it takes
// stands behind mutexes that are held for a moment only, never while a command runs; and it asks
// the window server nothing.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

#include "Model/Commands/CommandFactory.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BGroupView.h"

class Entry : public BGroupView {
public:
    // Reads the value in force; or that of epochs that are shown instead of the document's, as
    // those of the past are.
    virtual void Read() = 0;
    virtual void ReadFrom(const EpochPortal& portal) = 0;
    // Shows what was read. Leaves alone what the user is just entering.
    virtual void ShowValue() = 0;
    // What is shown is not in force now.
    virtual void SetFaded(bool /*isFaded*/) {}
    // Makes what is pending the value in force; true if that changed something. What cannot be
    // taken gives way to the value in force, and the user is told why. What stands in a disabled
    // entry, as for the length of a run, waits there until it is enabled.
    bool Commit() {
        commits_++;
        const bool hasChanged = CommitPending();
        if (--commits_ == 0) commits_.notify_all();
        return hasChanged;
    }

    // An entry that has been disabled changes nothing any more: what another thread is just
    // committing is awaited. No lock of the document may be held.
    void SetEnabled(bool isEnabled) {
        ShowEnabled(isEnabled);
        isEnabled_ = isEnabled;
        if (isEnabled) return;
        for (int32 count = commits_; count != 0; count = commits_)
            commits_.wait(count);
    }

    void MessageReceived(BMessage* message) override {
        if (message->what == kEntered)
            Commit();
        else
            BGroupView::MessageReceived(message);
    }

protected:
    using BGroupView::BGroupView;

    // From the entry's own lines: something was typed.
    static constexpr uint32 kEntered = FourCC("entd");

    virtual bool CommitPending() = 0;
    virtual void ShowEnabled(bool isEnabled) = 0;
    [[nodiscard]] bool IsEnabled() const { return isEnabled_; }

private:
    std::atomic<bool> isEnabled_{true};
    std::atomic<int32> commits_{0};  // that have not returned
};

// An entry of the value that a factory speaks of.
template <typename Value, typename Factory = CommandFactory<Value>>
class ValueEntry : public Entry {
public:
    using FactoryRef = std::shared_ptr<const Factory>;

    // What the entry speaks of from the next Read on; commit before. Null: of nothing.
    void SetFactory(FactoryRef factory) { next_ = std::move(factory); }

    void Read() override { ReadFrom(*portal_); }
    void ReadFrom(const EpochPortal& portal) override {
        read_.reset();
        if (next_ != nullptr) read_.emplace(next_->Current(portal));
    }

    void ShowValue() override {
        // What is half entered is never taken for another factory than it was meant for.
        const std::lock_guard lock(mutex_);
        const bool isOther = source_.factory != next_;
        source_ = {next_, read_};
        Present(read_, isOther);
    }

protected:
    // What is shown, and where it comes from. The value is there whenever the factory is and was
    // read.
    struct Source {
        FactoryRef factory;
        std::optional<Value> value;

        explicit operator bool() const { return factory != nullptr && value.has_value(); }
    };

    ValueEntry(const char* name, orientation direction, EpochPortal* portal)
        : Entry(name, direction), portal_(portal) {}

    // `replacesAll`: also what the user is just entering. May be called with what is pending held
    // fast, so it asks for nothing.
    virtual void Present(const std::optional<Value>& value, bool replacesAll) = 0;

    // Any thread. Takes what is pending together with what it is for: nobody changes that between.
    // Nothing from a disabled entry.
    template <typename Take>
    Source TakePending(Take take) const {
        if (!IsEnabled()) return {};
        const std::lock_guard lock(mutex_);
        take();
        return source_;
    }
    [[nodiscard]] Source Shown() const {
        return TakePending([] {});
    }
    [[nodiscard]] EpochPortal* Portal() const { return portal_; }

private:
    EpochPortal* const portal_;
    FactoryRef next_;
    std::optional<Value> read_;
    mutable std::mutex mutex_;
    Source source_;
};
