// Where a body that is being dragged would go: a private calculator goes on from a copy of the
// epoch, on a thread of its own, until the next change. The target is told that there is more to be
// seen after a twentieth of a second, and then ten times a second. Any thread may ask.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "Displays/Hands/HandSystem.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Support/SupportDefs.h"

class BHandler;
class Epoch;

class OrbitPreview {
public:
    static constexpr uint32 kNews = FourCC("hnew");

    struct Wish {
        std::unique_ptr<Epoch> epoch;  // as it is without the change
        HandBody body;                 // the changed one; one that is not in the epoch is new
        HandSystem system;             // what stands still there, stands still in the picture
        double span;                   // s
    };
    struct Path {
        std::vector<ThreeVector> places;  // m, relative to what stands still
        bool isComplete = false;
        std::optional<std::string> hits;  // the body that it ends at
    };

    // Not owned.
    explicit OrbitPreview(const BHandler* target);
    ~OrbitPreview();
    OrbitPreview(const OrbitPreview&) = delete;
    OrbitPreview& operator=(const OrbitPreview&) = delete;

    // Instead of what was wanted before.
    void Want(Wish wish);
    void WantNothing();
    [[nodiscard]] Path GetPath() const;

private:
    class Follower;

    void Work();
    void Compute(Wish wish, int64 number);
    // False: it is not wanted any more.
    bool Put(int64 number, Path path);
    [[nodiscard]] bool IsWanted(int64 number) const;

    const BHandler* const target_;
    mutable std::mutex mutex_;  // guards what follows
    std::condition_variable changed_;
    std::optional<Wish> wish_;
    int64 wishes_ = 0;
    Path path_;
    bool isEnding_ = false;
    std::thread thread_;  // last: it uses the above; begins with the first wish
};
