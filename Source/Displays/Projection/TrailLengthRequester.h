// The dialog that takes any length of a display's trails: a number of orbits, or a time with its
// unit. Made, shown and quit by the display. What cannot be read keeps it open.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Displays/Trajectories/TrailSource.h"
#include "Platform/Interface/Handles/BWindow.h"

class BEntryControl;
class Display;
struct DisplayContext;

class TrailLengthRequester : public BWindow {
public:
    // The answer is that of an item of TrailMenu.
    static constexpr uint32 kCancel = FourCC("cntl");

    TrailLengthRequester(const TrailLength& length, Display* display,
                         const DisplayContext& context);

    bool QuitRequested() override;

private:
    [[nodiscard]] std::string Write(const TrailLength& length) const;
    // Nothing: it is none, and the user is told why.
    [[nodiscard]] std::optional<TrailLength> Read(const std::string& typed);
    [[nodiscard]] bool MeansOrbits(std::string_view word) const;

    Display* const display_;
    const DisplayContext& context_;
    BEntryControl* const line_;
    TrailLength length_;
};
