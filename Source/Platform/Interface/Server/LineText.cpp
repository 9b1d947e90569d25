#include "Platform/Interface/Server/LineText.h"

#include <algorithm>

// --- Any thread ---

void LineText::ExpectReplace() {
    const std::lock_guard lock(mutex_);
    replaces_++;
}

std::optional<std::string> LineText::Take() {
    const std::lock_guard lock(mutex_);
    if (isGone_ || replaces_ > 0 || !Pends()) return std::nullopt;
    unanswered_++;
    taken_ = line_;
    return taken_;
}

// --- The server's thread ---

void LineText::LineIs(std::string text) {
    const std::lock_guard lock(mutex_);
    line_ = std::move(text);
}

void LineText::LineIsGone() {
    const std::lock_guard lock(mutex_);
    isGone_ = true;
}

std::string LineText::Written() const {
    const std::lock_guard lock(mutex_);
    return Writes();
}

bool LineText::IsPending() const {
    const std::lock_guard lock(mutex_);
    return Pends();
}

// Nothing in the line is the user's any more.
void LineText::Write(bool isFull) {
    isFull_ = isFull;
    line_ = Writes();
    taken_.reset();
    unanswered_ = 0;
    isTyping_ = false;
}

void LineText::Replace(const Writing& writing, bool isFull) {
    const std::lock_guard lock(mutex_);
    replaces_--;
    writing_ = writing;
    Write(isFull);
}

void LineText::Restore(bool isFull) {
    const std::lock_guard lock(mutex_);
    Write(isFull);
}

bool LineText::Show(const Writing& writing, bool isFull, bool isMarked) {
    const std::lock_guard lock(mutex_);
    // An answer comes yet; and what is no news changes nothing, not even another writing.
    if (unanswered_ > 0 || writing.full == writing_.full) return false;
    const bool isOwn = isMarked || Pends();
    writing_ = writing;
    if (!isOwn) Write(isFull);
    return !isOwn;
}

bool LineText::Accept(const Writing& writing, bool isFull) {
    const std::lock_guard lock(mutex_);
    unanswered_ = std::max(unanswered_ - 1, 0);
    writing_ = writing;
    if (unanswered_ > 0 || isTyping_ || Pends()) return false;
    Write(isFull);
    return true;
}

bool LineText::Refuse(const Writing& writing) {
    const std::lock_guard lock(mutex_);
    unanswered_ = std::max(unanswered_ - 1, 0);
    writing_ = writing;
    // Only a beginning, which is nobody's yet.
    if (isTyping_) taken_.reset();
    return unanswered_ == 0 && !isTyping_;
}

void LineText::Insist() {
    const std::lock_guard lock(mutex_);
    taken_.reset();
}

// What is the user's stays, and is compared with the full text from now on: who types the brief one
// means just that.
bool LineText::KeyboardComes(bool isMarked) {
    const std::lock_guard lock(mutex_);
    const bool isOwn = isMarked || Pends() || unanswered_ > 0 || isTyping_;
    isFull_ = true;
    if (!isOwn) line_ = Writes();
    return !isOwn;
}

bool LineText::KeyboardGoes(bool isMarked) {
    const std::lock_guard lock(mutex_);
    if (isMarked || Pends() || unanswered_ > 0) return false;
    isFull_ = false;
    line_ = Writes();
    return true;
}

void LineText::Typed(std::string text) {
    const std::lock_guard lock(mutex_);
    line_ = std::move(text);
    isTyping_ = true;
}

LineText::Finished LineText::FinishTyping(bool isFull, bool isMarked) {
    const std::lock_guard lock(mutex_);
    isTyping_ = false;
    if (Pends()) return Finished::kPending;
    if (unanswered_ > 0 || isMarked) return Finished::kNothing;
    Write(isFull);
    return Finished::kToBeWritten;
}
