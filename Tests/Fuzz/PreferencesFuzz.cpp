// Reading the preference set, and what the program remembers in it.
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "Application/DefaultResponses.h"
#include "Application/Prefs/Preferences.h"
#include "Application/RememberedSettings.h"
#include "Tests/Fuzz/FuzzKit.h"

namespace {

// A settings folder of this process, for as long as it lives.
class SettingsFolder {
public:
    SettingsFolder() {
        std::string name = std::filesystem::temp_directory_path() / "orvek-fuzz-XXXXXX";
        fuzz::Check(mkdtemp(name.data()) != nullptr, "there is a folder for the settings");
        path_ = name;
        setenv("HOME", name.c_str(), 1);
        setenv("XDG_CONFIG_HOME", name.c_str(), 1);
        PREFHandle* handle = nullptr;
        PreferenceSet* set = nullptr;
        fuzz::Check(PREFInit("x-vnd.tallowby-Orvek", &handle) == B_OK, "there is a store");
        fuzz::Check(PREFLoadSet(handle, "OrvekAppPrefs", true, &set) == B_OK, "there is a set");
        PREFDisposeSet(set);
        PREFShutdown(handle);
        for (const auto& entry : std::filesystem::recursive_directory_iterator(path_))
            if (entry.is_regular_file()) file_ = entry.path();
    }
    ~SettingsFolder() {
        std::error_code error;
        std::filesystem::remove_all(path_, error);
    }
    SettingsFolder(const SettingsFolder&) = delete;
    SettingsFolder& operator=(const SettingsFolder&) = delete;

    void Write(std::string_view contents) const {
        std::ofstream(file_, std::ios::binary) << contents;
    }

private:
    std::filesystem::path path_;
    std::filesystem::path file_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const SettingsFolder folder;
    folder.Write(fuzz::TextOf(data, size));
    RememberedSettings settings;
    DefaultResponses responses;
    if (settings.Load(&responses) != B_OK) return 0;
    fuzz::Check(settings.Save(responses) == B_OK, "what was remembered can be saved");
    RememberedSettings again;
    DefaultResponses otherResponses;
    fuzz::Check(again.Load(&otherResponses) == B_OK, "what was saved can be loaded");
    fuzz::Check(again.openIn == settings.openIn && again.hasArea == settings.hasArea &&
                    again.recentDocuments == settings.recentDocuments,
                "what is remembered stays the same");
    return 0;
}
