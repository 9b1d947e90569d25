// The line of a quantity, a number and perhaps a unit: "384400 km". The one place where such texts
// are shown, read, and rejected when invalid. Part of an entry, whose window's lock guards it; but
// what stands under "Any thread" needs no lock.
#pragma once

#include <mutex>
#include <optional>
#include <string>

#include "Model/Units/DimValue.h"
#include "Platform/Interface/Handles/BEntryControl.h"

class InterfaceTexts;
class UnitTable;

class NumberTextControl : public BEntryControl {
public:
    // `units` and `texts` are not owned; without units the line takes plain numbers. `label` is
    // what a screen reader says.
    NumberTextControl(const char* name, const char* label, const UnitTable* units,
                      const InterfaceTexts& texts, BMessage* message);

    // The unit stands behind the number, where no menu beside the line says it. Before a value is
    // shown.
    void SetShowsUnit(bool showsUnit) { showsUnit_ = showsUnit; }

    // `replacesAll`: also what the user is just typing. Nothing for no value.
    void ShowValue(const std::optional<DimValue>& value, bool replacesAll);
    // With seven digits even where the keyboard is: one that follows from others, and that nobody
    // has typed.
    void ShowBrief(const DimValue& value, bool replacesAll);

    // --- Any thread ---
    // Answers a text that was taken: the value that it means, shown in the unit it names, else in
    // that of `inForce`. Nothing if it means none: then the user has been told why.
    [[nodiscard]] std::optional<DimValue> Read(const std::string& text, const DimValue& inForce);
    // The value was not taken after all.
    void RefuseRange(const DimValue& inForce);

private:
    [[nodiscard]] double FactorFor(double uval) const;
    [[nodiscard]] double AsTyped(double value) const;
    [[nodiscard]] Writing WritingOf(const DimValue& value) const;
    void Write(const Writing& writing, bool replacesAll);
    [[nodiscard]] std::string WhyNot(int32 reason) const;

    const UnitTable* const units_;
    const InterfaceTexts& texts_;
    bool showsUnit_ = false;
    mutable std::mutex mutex_;  // guards the next one
    std::optional<double> typed_;
};
