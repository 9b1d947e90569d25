#include "Application/Language.h"

#include <algorithm>
#include <cstdlib>

#include "Application/InstalledFiles.h"
#include "Platform/Storage/BResources.h"
#include "Simulation/Document/ProgramResources.h"

namespace {

constexpr const char* kOwn = "en";

std::string Locale() {
    for (const char* const name : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (const char* const value = std::getenv(name); value != nullptr && *value != '\0')
            return value;
    return {};
}

bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

}  // namespace

std::vector<std::string> Language::Wanted() {
    std::string locale = Locale();
    locale.resize(std::min(locale.find_first_of(".@"), locale.size()));
    const std::string language = locale.substr(0, locale.find('_'));
    // It becomes the name of a file.
    const bool isName =
        std::all_of(locale.begin(), locale.end(), [](char c) { return IsLetter(c) || c == '_'; });
    if (!isName || language.empty() || language == kOwn || language == "C" || language == "POSIX")
        return {};
    if (locale == language) return {language};
    return {locale, language};
}

std::string Language::Translate(ProgramResources* resources) {
    for (const std::string& language : Wanted()) {
        BResources translation;
        if (translation.SetTo(TranslationPath(language).c_str()) != B_OK) continue;
        resources->Translate(translation);
        return language;
    }
    return {};
}
