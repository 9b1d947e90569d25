#include "Platform/Interface/Server/HeadlessGraphics.h"

#include <QGuiApplication>
#include <array>
#include <clocale>
#include <cstdio>

namespace {

void DropRemarks(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    if (type == QtCriticalMsg || type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", text.toLocal8Bit().constData());
}

}  // namespace

struct HeadlessGraphics::Fonts {
    explicit Fonts(char* programName) : arguments{programName, nullptr} {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        // What the toolkit remarks about a desktop that is not there concerns nobody.
        qInstallMessageHandler(DropRemarks);
        application = std::make_unique<QGuiApplication>(count, arguments.data());
        // It has taken the user's language for numbers, too.
        std::setlocale(LC_NUMERIC, "C");
    }
    ~Fonts() {
        application.reset();
        qInstallMessageHandler(nullptr);
    }
    Fonts(const Fonts&) = delete;
    Fonts& operator=(const Fonts&) = delete;

    // The toolkit keeps references to them.
    int count = 1;
    std::array<char*, 2> arguments;
    std::unique_ptr<QGuiApplication> application;
};

HeadlessGraphics::HeadlessGraphics(char* programName)
    : fonts_(std::make_unique<Fonts>(programName)) {}

HeadlessGraphics::~HeadlessGraphics() = default;
