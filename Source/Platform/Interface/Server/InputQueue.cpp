#include "Platform/Interface/Server/InputQueue.h"

#include <utility>

namespace {

// Makes `last` both events, if they can be one.
bool Join(InputEvent* last, const InputEvent& next) {
    if (last->index() != next.index()) return false;
    if (auto* const mouse = std::get_if<MouseEvent>(last)) {
        const auto& move = std::get<MouseEvent>(next);
        if (mouse->kind != MouseEvent::Kind::kMoved || move.kind != MouseEvent::Kind::kMoved)
            return false;
        *mouse = move;
        return true;
    }
    if (auto* const wheel = std::get_if<WheelInput>(last)) {
        const auto& turn = std::get<WheelInput>(next);
        if (turn.modifiers != wheel->modifiers) return false;
        wheel->where = turn.where;
        wheel->stepsX += turn.stepsX;
        wheel->stepsY += turn.stepsY;
        return true;
    }
    if (auto* const pinch = std::get_if<PinchInput>(last)) {
        pinch->where = std::get<PinchInput>(next).where;
        pinch->factor *= std::get<PinchInput>(next).factor;
        return true;
    }
    return std::holds_alternative<ResizeEvent>(next);
}

}  // namespace

bool InputQueue::Put(const InputEvent& event) {
    const std::lock_guard lock(mutex_);
    if (events_.empty() || !Join(&events_.back(), event)) events_.push_back(event);
    return !std::exchange(isTold_, true);
}

std::deque<InputEvent> InputQueue::TakeAll() {
    const std::lock_guard lock(mutex_);
    isTold_ = false;
    return std::exchange(events_, {});
}

bool InputQueue::ForgetTold() {
    const std::lock_guard lock(mutex_);
    isTold_ = !events_.empty();
    return isTold_;
}
