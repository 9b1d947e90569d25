// A vector quantity (x, y, z) of many bodies, each coordinate of which is an unevaluated sum of
// kParts numbers: part 0 is its base value, part k gathers the increments of k-th order, which
// would lose digits if each were added to the base. One array per axis and part, so that loops over
// bodies vectorise. A plain value of the integrator.
#pragma once

#include <cstddef>
#include <vector>

#include "Model/Systems/ThreeVector.h"
#include "Platform/Support/SupportDefs.h"

template <int32 kParts>
class SplitVectors {
public:
    static constexpr int32 kNumbersPerBody = 3 * kParts;

    // All zero.
    explicit SplitVectors(int32 bodies = 0)
        : bodies_(static_cast<std::size_t>(bodies)),
          stride_(OddNumberOfCacheLines(bodies_)),
          numbers_(kNumbersPerBody * stride_) {}

    // One part of one axis of all bodies.
    double* Row(int32 axis, int32 part) { return &numbers_[RowStart(axis, part)]; }
    const double* Row(int32 axis, int32 part) const { return &numbers_[RowStart(axis, part)]; }

    // From each part of an axis to the next. With few bodies, finding the row of each part would
    // take longer than adding to it.
    std::ptrdiff_t RowStride() const { return static_cast<std::ptrdiff_t>(stride_); }

    // From the last part to part 0: smallest first, and in the order in which a step adds them.
    ThreeVector Sum(int32 body) const { return {Sum(body, 0), Sum(body, 1), Sum(body, 2)}; }

    // A body whose parts are zero gets a plain value.
    void Start(int32 body, const ThreeVector& value) {
        Row(0, 0)[body] = value.x;
        Row(1, 0)[body] = value.y;
        Row(2, 0)[body] = value.z;
    }

    void Copy(int32 body, const SplitVectors& from, int32 fromBody) {
        for (int32 axis = 0; axis < 3; axis++)
            for (int32 part = 0; part < kParts; part++)
                Row(axis, part)[body] = from.Row(axis, part)[fromBody];
    }

    // Moves each part one down, towards the base, which takes in part 1. A series of that order
    // does not feed the parts above it: they are dropped.
    void Promote(int32 order) {
        for (int32 axis = 0; axis < 3; axis++) {
            for (std::size_t body = 0; body < bodies_; body++) {
                Row(axis, 0)[body] += Row(axis, 1)[body];
                for (int32 part = 1; part < kParts; part++) {
                    const bool fed = part < order && part + 1 < kParts;
                    Row(axis, part)[body] = fed ? Row(axis, part + 1)[body] : 0.0;
                }
            }
        }
    }

    // As archives have them: for each body x, y and z, for each of these part 0 and up.
    std::vector<double> ToArchive() const {
        std::vector<double> numbers;
        numbers.reserve(kNumbersPerBody * bodies_);
        for (std::size_t body = 0; body < bodies_; body++)
            for (int32 axis = 0; axis < 3; axis++)
                for (int32 part = 0; part < kParts; part++)
                    numbers.push_back(Row(axis, part)[body]);
        return numbers;
    }
    void FromArchive(const std::vector<double>& numbers) {
        auto next = numbers.begin();
        for (std::size_t body = 0; body < bodies_; body++)
            for (int32 axis = 0; axis < 3; axis++)
                for (int32 part = 0; part < kParts; part++)
                    Row(axis, part)[body] = *next++;
    }

private:
    // Avoids cache conflicts between the rows.
    static std::size_t OddNumberOfCacheLines(std::size_t numbers) {
        return (numbers + 15) / 16 * 16 + 8;
    }
    std::size_t RowStart(int32 axis, int32 part) const {
        return static_cast<std::size_t>(axis * kParts + part) * stride_;
    }
    double Sum(int32 body, int32 axis) const {
        double sum = Row(axis, kParts - 1)[body];
        for (int32 part = kParts - 2; part >= 0; part--)
            sum += Row(axis, part)[body];
        return sum;
    }

    std::size_t bodies_;
    std::size_t stride_;
    std::vector<double> numbers_;
};
