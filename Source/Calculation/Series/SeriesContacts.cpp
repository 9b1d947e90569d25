#include "Calculation/Series/SeriesContacts.h"

#include <algorithm>
#include <cmath>

#include "Calculation/Series/PairPath.h"
#include "Calculation/StopFlags.h"

void SeriesContacts::Resize(int32 bodies, int32 massive) {
    radius_.assign(static_cast<std::size_t>(bodies), 0.0);
    const int32 vectors =
        SplitStates::CountVectors(massive) + SplitStates::CountVectors(bodies - massive);
    reach_.assign(static_cast<std::size_t>(vectors), {});
}

std::optional<bool> SeriesContacts::Find(const SeriesStore& store, const SeriesInstance& kernels,
                                         const SeriesStep& step, const StopFlags& stop) {
    contacts_.clear();
    FindReaches(store, kernels, step.Theta());
    for (int32 slot = 0; slot < store.Arrays().massive; slot++) {
        if (stop.ShouldStop()) return std::nullopt;
        if (kernels.isNear(store.Arrays(), reach_.data()->numbers, slot))
            CheckBody(store, slot, step.Theta());
    }
    if (contacts_.empty()) return false;
    TakeFirst(step);
    return true;
}

void SeriesContacts::Pass(const std::vector<CollidingPair>& pairs) {
    for (const CollidingPair& pair : pairs)
        if (!IsPassed(pair)) passed_.push_back(pair);
}

bool SeriesContacts::IsPassed(const CollidingPair& pair) const {
    return std::find(passed_.begin(), passed_.end(), pair) != passed_.end();
}

void SeriesContacts::DropApart(const SeriesStore& store, double theta) {
    std::erase_if(passed_, [&](const CollidingPair& pair) {
        const double reach = radius_[static_cast<std::size_t>(pair.later)] +
                             radius_[static_cast<std::size_t>(pair.earlier)];
        return PairPath(store, store.SlotOf(pair.earlier), store.SlotOf(pair.later), theta)
            .LeavesFrom(reach);
    });
}

void SeriesContacts::FindReaches(const SeriesStore& store, const SeriesInstance& kernels,
                                 double theta) {
    constexpr double kNothingThere = -1e300;
    const SeriesArrays& arrays = store.Arrays();
    if (!reach_.empty()) kernels.reach(arrays, theta, reach_.data()->numbers);
    for (int32 body = 0; body < arrays.bodies; body++)
        ReachOf(store.SlotOf(body)) += radius_[static_cast<std::size_t>(body)];
    for (int32 slot = arrays.massive; slot < arrays.massiveVectors * kSlots; slot++)
        ReachOf(slot) = kNothingThere;
    if (arrays.bodies > arrays.massive)
        for (int32 slot = store.SlotOf(arrays.bodies - 1) + 1; slot < arrays.vectors * kSlots;
             slot++)
            ReachOf(slot) = kNothingThere;
}

void SeriesContacts::CheckBody(const SeriesStore& store, int32 slot, double theta) {
    const SeriesArrays& arrays = store.Arrays();
    const auto check = [&](int32 otherSlot, int32 other) {
        const int32 body = store.BodyIn(slot);
        const CollidingPair pair{std::max(body, other), std::min(body, other)};
        if (IsPassed(pair)) return;
        const double reach =
            radius_[static_cast<std::size_t>(body)] + radius_[static_cast<std::size_t>(other)];
        const double share = PairPath(store, slot, otherSlot, theta).FirstWithin(reach);
        if (share >= 0.0) contacts_.push_back({share * theta, pair});
    };
    for (int32 later = slot + 1; later < arrays.massive; later++)
        check(later, store.BodyIn(later));
    for (int32 other = arrays.massive; other < arrays.bodies; other++)
        check(store.SlotOf(other), other);
}

void SeriesContacts::TakeFirst(const SeriesStep& step) {
    const auto first =
        std::min_element(contacts_.begin(), contacts_.end(),
                         [](const Contact& a, const Contact& b) { return a.theta < b.theta; });
    const double time = step.TimeAt(first->theta);
    const double last = std::nextafter(time, std::copysign(HUGE_VAL, step.Scale()));
    const auto isLater = [&](double theta) {
        return step.Scale() > 0.0 ? step.TimeAt(theta) > last : step.TimeAt(theta) < last;
    };
    pairs_.clear();
    theta_ = first->theta;
    for (const Contact& contact : contacts_) {
        if (isLater(contact.theta)) continue;
        theta_ = std::max(theta_, contact.theta);
        pairs_.push_back(contact.pair);
    }
    std::sort(pairs_.begin(), pairs_.end(), [](const CollidingPair& a, const CollidingPair& b) {
        return a.earlier != b.earlier ? a.earlier > b.earlier : a.later > b.later;
    });
}
