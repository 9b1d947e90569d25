// What happens to the bodies of one run of a sweep, as the text of its column: mergers, or contacts
// where bodies do not merge. Owned by a SweepRun; works on the calculation thread, and on that of
// the run while the calculator is parked.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Calculation/MotionWatcher.h"

struct Merger;

class SweepEvents final : public MotionWatcher {
public:
    // Contacts that are mergers are told by these.
    void SetMerging(bool isMerging) { isMerging_ = isMerging; }
    void Add(const Merger& merger);
    [[nodiscard]] const std::string& Text() const { return text_; }

    void BodiesAre(double time, const std::vector<Body*>& bodies, int32 massive) override;
    void Moved(const Piece&) override {}
    void Touched(double time, const BodyArrays& bodies,
                 const std::vector<CollidingPair>& pairs) override;

private:
    void Add(std::string_view what, double time, const std::string& bodies);

    bool isMerging_ = true;
    std::vector<std::string> names_;
    std::string text_;
};
