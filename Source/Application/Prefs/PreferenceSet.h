// One named set of remembered values of one application, as the store's functions keep it; nobody
// else looks inside. The items are guarded by the store's lock.
#pragma once

#include <memory>
#include <string>

#include "Application/Prefs/PrefsListener.h"
#include "Application/Prefs/PrefsTransaction.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Support/SupportDefs.h"

// One application whose preferences are in use: an entry of the process's list of them. Guarded by
// the store's lock.
struct PREFHandle {
    PREFHandle* next;
    const std::string application;
    int32 references;
};

struct PreferenceSet {
    PreferenceSet(PREFHandle* owner, std::string setName, const std::string& path)
        : handle(owner), name(std::move(setName)), file(path) {}

    PREFHandle* const handle;
    const std::string name;
    PrefsTransaction file;
    BMessage items;
    std::unique_ptr<PrefsListener> listener;  // null: nobody listens
};
