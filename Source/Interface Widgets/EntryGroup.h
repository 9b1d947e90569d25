// Entries that are shown, committed and disabled together. They are views of a window, which owns
// them; rules as for Entry.
#pragma once

#include <initializer_list>
#include <vector>

class Entry;
class EpochPortal;

class EntryGroup {
public:
    // Before anybody commits.
    void Add(std::initializer_list<Entry*> entries);

    // Shows what is in force. Takes the read lock, which the caller must not hold.
    void Refresh(EpochPortal* portal) const;
    // The two halves of it: with the read lock, and without.
    void Read() const;
    void ReadFrom(const EpochPortal& portal) const;
    void ShowValues() const;
    void SetFaded(bool isFaded) const;
    void SetEnabled(bool isEnabled) const;
    // Of all, even if one has changed something; true then. Any thread that holds no lock of the
    // document.
    [[nodiscard]] bool Commit() const;

private:
    std::vector<Entry*> entries_;
};
