#include "Simulation/History/SampleChooser.h"

#include <algorithm>
#include <limits>

namespace {

// Between the notes, and beyond the newest of them, a cubic may be a little farther off than there.
constexpr double kNotedTolerance = 0.5 * SampleChooser::kTolerance;
// Of what the acceleration changes from note to note: on a smooth path it is a tenth.
constexpr double kSurprise = 0.2;
// Of velocities and places: what arithmetic leaves of them.
constexpr double kRounding = 1e-13;
// With fewer notes than these between two samples they are taken too seldom.
constexpr int32 kFewNotes = 5;

double Square(double x) {
    return x * x;
}

double Square(const ThreeVector& v) {
    return Dot(v, v);
}

}  // namespace

void SampleChooser::Start(const Sample& first) {
    base_ = last_ = first;
    count_ = 0;
    spacing_ = untilNote_ = 1;
}

bool SampleChooser::Look(const Sample& now, Sample* kept) {
    // Sooner than planned: something happens.
    if (untilNote_ > 0) spacing_ = std::max((spacing_ - untilNote_) / 2, 1);
    untilNote_ = spacing_;
    if (now.time == last_.time) return false;
    Take(now);
    if (Fits(now)) {
        if (count_ == kMaxNotes) HalveNotes();
        return false;
    }
    *kept = base_ = notes_[static_cast<std::size_t>(count_ - 2)].at;
    if (count_ < kFewNotes) spacing_ = untilNote_ = std::max(spacing_ / 2, 1);
    notes_[0] = notes_[static_cast<std::size_t>(count_ - 1)];
    count_ = 1;
    return true;
}

void SampleChooser::Take(const Sample& now) {
    const double span = now.time - last_.time;
    acceleration_ = (1.0 / span) * (now.velocity - last_.velocity);
    const double a2 = Square(acceleration_);
    const double v2 = Square(now.velocity);
    mostSurprise_ = Square(kSurprise * span) * a2 + Square(kRounding) * v2;
    last_ = now;
    notes_[static_cast<std::size_t>(count_++)] = {
        now, a2 > 0.0 ? v2 / std::sqrt(a2) : std::numeric_limits<double>::infinity()};
}

bool SampleChooser::Fits(const Sample& end) const {
    for (int32 i = 0; i < count_ - 1; i++) {
        const auto& [at, reach] = notes_[static_cast<std::size_t>(i)];
        const double way =
            std::max(Square(at.position - base_.position), Square(end.position - at.position));
        const double most = Square(kNotedTolerance) * std::max(Square(reach), way) +
                            Square(kRounding) * Square(at.position);
        if (!(Square(Between(base_, end, at.time).position - at.position) <= most)) return false;
    }
    return true;
}

// Every second one, the newest among them.
void SampleChooser::HalveNotes() {
    for (std::size_t i = 1; i < kMaxNotes; i += 2)
        notes_[i / 2] = notes_[i];
    count_ = kMaxNotes / 2;
    spacing_ = untilNote_ = std::min(2 * spacing_, std::numeric_limits<int32>::max() / 4);
}
