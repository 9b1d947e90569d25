#include "Interface Widgets/EntryGroup.h"

#include "Interface Widgets/Entry.h"
#include "Model/Sharing/ModelGuards.h"

void EntryGroup::Add(std::initializer_list<Entry*> entries) {
    entries_.insert(entries_.end(), entries);
}

void EntryGroup::Refresh(EpochPortal* portal) const {
    {
        const ReadGuard guard(portal);
        Read();
    }
    ShowValues();
}

void EntryGroup::Read() const {
    for (Entry* const entry : entries_)
        entry->Read();
}

void EntryGroup::ReadFrom(const EpochPortal& portal) const {
    for (Entry* const entry : entries_)
        entry->ReadFrom(portal);
}

void EntryGroup::SetFaded(bool isFaded) const {
    for (Entry* const entry : entries_)
        entry->SetFaded(isFaded);
}

void EntryGroup::ShowValues() const {
    for (Entry* const entry : entries_)
        entry->ShowValue();
}

void EntryGroup::SetEnabled(bool isEnabled) const {
    for (Entry* const entry : entries_)
        entry->SetEnabled(isEnabled);
}

bool EntryGroup::Commit() const {
    bool hasChanged = false;
    for (Entry* const entry : entries_)
        hasChanged = entry->Commit() || hasChanged;
    return hasChanged;
}
