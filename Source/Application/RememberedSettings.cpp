#include "Application/RememberedSettings.h"

#include <cstddef>
#include <cstring>

#include "Application/DefaultResponses.h"
#include "Application/Prefs/Preferences.h"
#include "Platform/Application/BMessage.h"

namespace {

constexpr const char* kApplication = "x-vnd.tallowby-Orvek";
constexpr const char* kSet = "OrvekAppPrefs";

constexpr const char* kOpenIn = "Open in";
constexpr const char* kOpenAt = "Open at";
constexpr const char* kOpenWidth = "Open W";
constexpr const char* kOpenHeight = "Open H";
constexpr const char* kGallery = "Gallery shown";
constexpr const char* kHistory = "History MB";
constexpr const char* kRecent = "Recent documents";  // a flattened record of strings "path"
constexpr const char* kPath = "path";

// The application's set, for as long as this lives.
class OpenSet {
public:
    OpenSet() {
        status_ = PREFInit(kApplication, &handle_);
        if (status_ == B_OK) status_ = PREFLoadSet(handle_, kSet, true, &set_);
    }
    ~OpenSet() {
        if (set_ != nullptr) PREFDisposeSet(set_);
        if (handle_ != nullptr) PREFShutdown(handle_);
    }
    OpenSet(const OpenSet&) = delete;
    OpenSet& operator=(const OpenSet&) = delete;

    [[nodiscard]] status_t InitCheck() const { return status_; }
    [[nodiscard]] PreferenceSet* Get() const { return set_; }

    // A damaged file would be in the way for ever.
    void ReplaceIfDamaged() {
        if (handle_ == nullptr || set_ != nullptr) return;
        PREFRemoveSet(handle_, kSet, true);
        status_ = PREFLoadSet(handle_, kSet, true, &set_);
    }

private:
    PREFHandle* handle_ = nullptr;
    PreferenceSet* set_ = nullptr;
    status_t status_ = B_OK;
};

struct Item {
    const void* data = nullptr;
    std::size_t size = 0;
};

// No data unless the item has this type.
Item Find(PreferenceSet* set, const char* name, type_code type) {
    Item item;
    type_code found = FourCC("----");
    const status_t status = PREFGetData(set, name, &item.data, &item.size, &found);
    return status == B_OK && found == type ? item : Item{};
}

template <typename Value>
bool Read(PreferenceSet* set, const char* name, type_code type, Value* value) {
    const Item item = Find(set, name, type);
    if (item.data == nullptr || item.size != sizeof *value) return false;
    std::memcpy(value, item.data, sizeof *value);
    return true;
}

template <typename Value>
void Write(PreferenceSet* set, const char* name, type_code type, const Value& value) {
    PREFSetData(set, name, &value, sizeof value, type);
}

bool ReadRecord(PreferenceSet* set, const char* name, BMessage* record) {
    const Item item = Find(set, name, B_MESSAGE_TYPE);
    return item.data != nullptr && record->Unflatten(item.data, item.size) == B_OK;
}

}  // namespace

status_t RememberedSettings::Load(DefaultResponses* responses) {
    const OpenSet open;
    PreferenceSet* const set = open.Get();
    if (set == nullptr) return open.InitCheck();
    if (const Item path = Find(set, kOpenIn, B_ASCII_TYPE); path.data != nullptr) {
        const auto* const text = static_cast<const char*>(path.data);
        openIn.assign(text, strnlen(text, path.size));
    }
    BMessage record;
    if (ReadRecord(set, DefaultResponses::kKey, &record)) responses->Merge(record);
    BPoint at;
    float width = 0.0f;
    float height = 0.0f;
    hasArea = Read(set, kOpenAt, B_POINT_TYPE, &at) &&
              Read(set, kOpenWidth, B_FLOAT_TYPE, &width) &&
              Read(set, kOpenHeight, B_FLOAT_TYPE, &height);
    if (hasArea) {
        openAt = at;
        openWidth = width;
        openHeight = height;
    }
    galleryShown = Find(set, kGallery, B_BOOL_TYPE).data != nullptr;
    if (!Read(set, kHistory, B_INT32_TYPE, &historyMegabytes)) historyMegabytes = 0;
    std::string path;
    if (ReadRecord(set, kRecent, &record))
        for (int32 i = 0; record.FindString(kPath, i, &path) == B_OK; i++)
            recentDocuments.push_back(path);
    return B_OK;
}

status_t RememberedSettings::Save(const DefaultResponses& responses) const {
    OpenSet open;
    open.ReplaceIfDamaged();
    PreferenceSet* const set = open.Get();
    if (set == nullptr) return open.InitCheck();
    if (!openIn.empty()) PREFSetData(set, kOpenIn, openIn.c_str(), openIn.size() + 1, B_ASCII_TYPE);
    if (hasArea) {
        Write(set, kOpenAt, B_POINT_TYPE, openAt);
        Write(set, kOpenWidth, B_FLOAT_TYPE, openWidth);
        Write(set, kOpenHeight, B_FLOAT_TYPE, openHeight);
    }
    if (galleryShown) Write(set, kGallery, B_BOOL_TYPE, true);
    if (historyMegabytes > 0) Write(set, kHistory, B_INT32_TYPE, historyMegabytes);
    responses.AddTo(set);
    BMessage recent;
    for (const std::string& path : recentDocuments)
        recent.AddString(kPath, path);
    std::vector<std::byte> record;
    if (recent.IsEmpty())
        PREFDelete(set, kRecent);
    else if (recent.Flatten(&record) == B_OK)
        PREFSetData(set, kRecent, record.data(), record.size(), B_MESSAGE_TYPE);
    return PREFSaveSet(set);
}
