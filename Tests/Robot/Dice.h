// Random numbers and choices, from one seed. Used by one thread at a time.
#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <vector>

class Dice {
public:
    explicit Dice(unsigned seed) : random_(seed) {}

    // Both ends may come.
    int Number(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }
    bool Chance(int percent) { return Number(1, 100) <= percent; }
    double Real(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random_);
    }
    template <typename Value>
    const Value& Any(const std::vector<Value>& values) {
        return values[static_cast<std::size_t>(Number(0, static_cast<int>(values.size()) - 1))];
    }

    // A number of moderate size, as a user types it.
    std::string PlainNumber();
    // What is typed into any line: numbers great and small, units, words, nonsense.
    std::string Text();

private:
    std::mt19937 random_;
};
