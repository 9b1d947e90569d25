// The preference store: named sets of typed values for each application, one file a set. Plain
// functions; any thread may call. They return B_OK or a negative status.
//
// A set's file is <settings>/_LP_<application>/<set> for a set of this user's, and
// <common settings>/_LP_<application>/(libprefs common)/<set> for one that all users share. It
// holds a 32-bit byte count in this machine's byte order and a flattened record, whose fields are
// the set's items. While it is read or written the file is locked, against other programs too.
#pragma once

#include <cstddef>
#include <string>

#include "Platform/Support/Errors.h"
#include "Platform/Support/TypeConstants.h"

class BMessage;
struct PREFCookie;
struct PREFHandle;
struct PreferenceSet;

// --- Applications ---

// The same handle for the same name, as often as it is asked for; each needs a PREFShutdown.
// B_BAD_VALUE: not a name, or one with a slash.
[[nodiscard]] status_t PREFInit(const char* application, PREFHandle** out);
// Its sets must have been disposed of.
status_t PREFShutdown(PREFHandle* handle);

// --- Sets ---

// Opens a set, making its file if it is missing; an empty file is an empty set. B_BAD_DATA and the
// statuses of BMessage::Unflatten: the file is damaged.
[[nodiscard]] status_t PREFLoadSet(PREFHandle* handle, const char* name, bool isPerUser,
                                   PreferenceSet** out);
// The old contents stay when the new ones cannot be written.
[[nodiscard]] status_t PREFSaveSet(PreferenceSet* set);
// Forgets what was not saved; after a failure the set is as it was.
[[nodiscard]] status_t PREFReloadSet(PreferenceSet* set);
// Frees the set without saving it, and ends its listening.
status_t PREFDisposeSet(PreferenceSet* set);
// Deletes a set's file.
status_t PREFRemoveSet(PREFHandle* handle, const char* name, bool isPerUser);
// Deletes all sets of this application, of this user or the shared ones.
status_t PREFRemoveApp(PREFHandle* handle, bool isPerUser);

// --- Items ---

// Replaces the item by one value.
status_t PREFSetData(PreferenceSet* set, const char* name, const void* data, std::size_t size,
                     type_code type);
// The item's first value, in the set's own memory until the set is next changed. B_NAME_NOT_FOUND:
// no such item; the out values stay as they were.
[[nodiscard]] status_t PREFGetData(PreferenceSet* set, const char* name, const void** data,
                                   std::size_t* size, type_code* type);
// A copy of all items.
[[nodiscard]] status_t PREFGetMessage(PreferenceSet* set, BMessage* out);
status_t PREFDelete(PreferenceSet* set, const char* name);

// --- Listing ---

// The first call, with a null cookie, makes the cookie; each call gives one name, in alphabetical
// order as it was at the first one. B_ENTRY_NOT_FOUND: no more. The caller disposes of the cookie.
[[nodiscard]] status_t PREFListApplications(bool isPerUser, PREFCookie** cookie, std::string* name);
[[nodiscard]] status_t PREFListSets(PREFHandle* handle, bool isPerUser, PREFCookie** cookie,
                                    std::string* name);
[[nodiscard]] status_t PREFListData(PreferenceSet* set, PREFCookie** cookie, std::string* name);
void PREFDisposeApplicationCookie(PREFCookie* cookie);
void PREFDisposeSetCookie(PREFCookie* cookie);
void PREFDisposeDataCookie(PREFCookie* cookie);

// --- Other users of the same file ---

// Keeps everybody else from the set's file until PREFEndTransaction, which the same thread calls:
// between the two it may reload, change and save the set. Transactions nest; waits as long as it
// takes.
[[nodiscard]] status_t PREFBeginTransaction(PreferenceSet* set);
status_t PREFEndTransaction(PreferenceSet* set);
// Calls back, on a thread of its own, when the set's file has changed; looks every poll interval.
// Replaces a former callback; null ends the listening, and returns when no call is running any
// more (so it is not for the callback itself to do).
status_t PREFListen(PreferenceSet* set, void (*callback)(PreferenceSet* set, void* cookie),
                    void* cookie);

// --- About the store ---

// B_BUFFER_OVERFLOW: the text does not fit.
status_t PREFVersion(char* buffer, std::size_t size);
// The directory of the running program's file.
status_t getappdir(char* buffer, std::size_t size);
