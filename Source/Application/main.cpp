// orvek: the program with windows. Without a display it only tells its version and its use.
#include <cstdio>
#include <string>
#include <string_view>

#include "ProgramResources.h"
#include "ProgramTexts.h"
#include "SimApp.h"
#include "TextTemplate.h"
#include "WindowServer.h"

namespace {

constexpr int kUsage = 2;

int Print(FILE* to, const std::string& text, int status) {
    std::fwrite(text.data(), 1, text.size(), to);
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    const ProgramResources resources;
    for (int i = 1; i < argc; i++) {
        const std::string_view argument = argv[i];
        if (argument == "--help")
            return Print(stdout, resources.InterfaceLabel(kTextProgramHelp), 0);
        if (argument == "--version")
            return Print(stdout,
                         FillIn(resources.InterfaceLabel(kTextProgramVersion), {ORVEK_VERSION}), 0);
    }
    WindowServer server(argc, argv);
    // What the toolkit has left.
    for (const std::string& argument : server.Arguments())
        if (argument.starts_with("-"))
            return Print(stderr, FillIn(resources.InterfaceLabel(kTextProgramUsage), {argument}),
                         kUsage);
    SimApp application(&resources);
    application.Run();
}
