#include "HeadlessGraphics.h"

#include <QGuiApplication>
#include <array>

struct HeadlessGraphics::Fonts {
    explicit Fonts(char* programName) : arguments{programName, nullptr} {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        application = std::make_unique<QGuiApplication>(count, arguments.data());
    }

    // The toolkit keeps references to them.
    int count = 1;
    std::array<char*, 2> arguments;
    std::unique_ptr<QGuiApplication> application;
};

HeadlessGraphics::HeadlessGraphics(char* programName)
    : fonts_(std::make_unique<Fonts>(programName)) {}

HeadlessGraphics::~HeadlessGraphics() = default;
