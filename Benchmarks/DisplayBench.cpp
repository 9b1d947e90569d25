// Displays: how fast trails are drawn, how many updates of a large system reach the screen, how
// busy the window server is with it, what a display costs the engine, and how soon the program is
// there. Displays use the real widgets, on the toolkit's platform without a screen.
#include <QImage>
#include <QPainter>
#include <cmath>
#include <memory>
#include <random>
#include <thread>

#include "Benchmarks/BenchTable.h"
#include "Benchmarks/Benchmarks.h"
#include "Benchmarks/Stopwatch.h"
#include "Displays/Base/DisplayContext.h"
#include "Displays/Projection/ProjectionDisplay.h"
#include "Displays/Trajectories/TrajectoryView.h"
#include "Interface Widgets/MenuArchives.h"
#include "Model/Epochs/Epoch.h"
#include "Platform/Application/BLooper.h"
#include "Platform/Interface/Canvas/Canvas.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/RunControl.h"
#include "Simulation/Document/RunControlView.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Tests/Desktop/DesktopSession.h"

namespace {

constexpr float kWidth = 800.0f;
constexpr float kHeight = 600.0f;
// The disc of the example's Sun.
constexpr QRgb kSunColor = qRgb(255, 204, 0);
constexpr QRgb kSkyColor = qRgb(6, 7, 12);
constexpr int kBesideSun = 40;
constexpr double kMicroseconds = 1e-6;
constexpr double kMilliseconds = 1e-3;
// The pacing measures over a second; this many let it settle.
constexpr bigtime_t kSettling = 5'000'000;
constexpr bigtime_t kMeasuring = 3'000'000;

// --- Lines ---

struct Line {
    BPoint from;
    BPoint to;
    rgb_color color;
};

// Lines as a display draws them: batch by batch, and in a batch body by body, every line going on
// where the last one of its body ended, after two pixels of its way (the program's first setting)
// or at the end of the batch. Inner bodies are faster.
std::vector<Line> TrailLines() {
    constexpr int kBodies = 10;
    constexpr int kBatches = 40;
    constexpr int kReports = 100;
    constexpr float kPiece = 2.0f;
    std::vector<Line> lines;
    for (int batch = 0; batch < kBatches; batch++)
        for (int body = 0; body < kBodies; body++) {
            const auto shade = static_cast<uint8>(60 + 19 * body);
            const double radius = 40.0 + 24.0 * body;
            const double turn = 6.0 / std::pow(radius, 1.5);  // between two reports
            const auto at = [radius, turn, batch](int report) {
                const double angle = turn * (kReports * batch + report);
                return BPoint{static_cast<float>(400.0 + radius * std::cos(angle)),
                              static_cast<float>(300.0 + radius * std::sin(angle))};
            };
            BPoint from = at(0);
            BPoint before = from;
            float travelled = 0.0f;
            for (int report = 1; report <= kReports; report++) {
                const BPoint to = at(report);
                travelled += std::abs(to.x - before.x) + std::abs(to.y - before.y);
                before = to;
                if (travelled < kPiece && report < kReports) continue;
                lines.push_back({from, to, {shade, 255, 90, 255}});
                from = to;
                travelled = 0.0f;
            }
        }
    return lines;
}

// Both draw on a clean picture; cleaning it does not count. Nothing is asked of the single calls
// that a display would not ask: the pen is set once for all lines of a colour.
void BenchLines(BenchTable* table) {
    constexpr std::size_t kArray = 128;
    const std::vector<Line> lines = TrailLines();
    Canvas canvas({0, 0, kWidth - 1, kHeight - 1}, TrajectoryView::kSky);
    QImage image(static_cast<int>(kWidth), static_cast<int>(kHeight), QImage::Format_RGB32);
    const auto clearCanvas = [&] {
        canvas.Fill(TrajectoryView::kSky);
        canvas.ClearDamage();
    };
    const auto clearImage = [&] { image.fill(kSkyColor); };
    const auto arrays = [&] {
        for (std::size_t at = 0; at < lines.size(); at += kArray) {
            canvas.BeginLineArray(kArray);
            for (std::size_t i = at; i < std::min(at + kArray, lines.size()); i++)
                canvas.AddLine(lines[i].from, lines[i].to, lines[i].color);
            canvas.EndLineArray();
        }
    };
    const auto calls = [&] {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        const Line* before = nullptr;
        for (const Line& line : lines) {
            if (before == nullptr || line.color != before->color)
                painter.setPen(QPen(QColor(line.color.red, line.color.green, line.color.blue), 1.0,
                                    Qt::SolidLine, Qt::RoundCap));
            painter.drawLine(QPointF(line.from.x, line.from.y), QPointF(line.to.x, line.to.y));
            before = &line;
        }
    };
    const std::vector<Timing> timings = Measure({clearCanvas, arrays, clearImage, calls}, 1, 301);
    // Not the medians: on a busy machine the longer piece is interrupted more often.
    const double arrayTime = timings[1].least;
    const double callTime = timings[3].least;
    table->AddAtLeast("trail lines, smoothed, against single calls", 4, callTime / arrayTime, "x");
    table->AddFigure("trail lines, smoothed", static_cast<double>(lines.size()) / arrayTime * 1e-6,
                     "million/s");
}

// --- Displays ---

// A star with planets on circular orbits and a belt of massless bodies.
BMessage MakeRecord(int32 massive, int32 massless) {
    constexpr double kStar = 1.32712440018e20;
    constexpr double kAU = 1.495978707e11;
    std::mt19937 random(1);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    Epoch epoch;
    for (int32 i = 0; i < massive + massless; i++) {
        const bool isPlanet = i < massive;
        auto body = std::make_unique<Body>("body", i, rgb_color{255, 200, 60, 255},
                                           rgb_color{90, 200, 255, 255}, kOriginID);
        const double radius = isPlanet ? 0.4 * i * kAU : (1.0 + 1.2 * unit(random)) * kAU;
        const double angle = 2 * 3.14159265358979 * unit(random);
        const double speed = i == 0 ? 0.0 : std::sqrt(kStar / radius);
        body->SetM(i == 0 ? kStar : isPlanet ? 1e14 / i : 0.0);
        body->SetRadius(isPlanet ? 7e6 : 0.0);
        body->SetPosition({radius * std::cos(angle), radius * std::sin(angle), 0});
        body->SetVelocity({-speed * std::sin(angle), speed * std::cos(angle), 0});
        epoch.RootSystem()->AddChild(body.release());
    }
    BMessage archive;
    BMessage record;
    if (epoch.Archive(&archive, true) == B_OK) record.AddMessage("Epochs", &archive);
    return record;
}

class Program {
public:
    Program()
        : texts_(&resources_),
          menus_(texts_, resources_.MassUnits(), resources_.DistanceUnits(),
                 resources_.SpeedUnits(), resources_.TimeUnits()) {}

    [[nodiscard]] const DisplayContext& Context() const { return context_; }
    [[nodiscard]] const ProgramResources& Resources() const { return resources_; }

private:
    const ProgramResources resources_;
    const ResourceTexts texts_;
    const MenuArchives menus_;
    const DisplayContext context_{&texts_,
                                  &resources_.MassUnits(),
                                  &resources_.DistanceUnits(),
                                  &resources_.SpeedUnits(),
                                  &resources_.TimeUnits(),
                                  &menus_};
};

class OpenDocument {
public:
    OpenDocument(const Program& program, const BMessage& record, bool hasDisplay) {
        static_cast<void>(document_.Load(record).Failed());
        owner_->Run();
        if (!hasDisplay) return;
        display_ = new ProjectionDisplay({100, 100, 100 + kWidth - 1, 100 + kHeight - 1}, "bench",
                                         document_.Portal(), document_.GetCalculator()->WriteOk(),
                                         owner_, program.Context());
        static_cast<void>(display_->Init("bench"));
        document_.AddConsumer(display_);
        display_->Show();
    }
    ~OpenDocument() {
        control_.Pause();
        if (display_ != nullptr) {
            document_.RemoveConsumer(display_);
            if (display_->Lock()) display_->Quit();
        }
        if (owner_->Lock()) owner_->Quit();
    }
    OpenDocument(const OpenDocument&) = delete;
    OpenDocument& operator=(const OpenDocument&) = delete;

    void Go() { control_.UnPause(); }
    void Pause() { control_.Pause(); }

    [[nodiscard]] int64 CountShown() {
        display_->Lock();
        const int64 shown = display_->View()->CountShown();
        display_->Unlock();
        return shown;
    }
    // s, of the simulation.
    [[nodiscard]] double Time() {
        document_.Portal()->ReadLock();
        const double time = document_.Portal()->FocusEpoch()->Time();
        document_.Portal()->ReadUnlock();
        return time;
    }

private:
    BLooper* const owner_ = new BLooper("owner");
    RunControlView view_;
    SimulationDocument document_{nullptr};
    RunControl control_{document_.Portal(), document_.GetCalculator(), &view_};
    ProjectionDisplay* display_ = nullptr;
};

double Seconds(bigtime_t start) {
    return static_cast<double>(system_time() - start) * kMicroseconds;
}

void BenchUpdates(BenchTable* table, const Program& program) {
    OpenDocument open(program, MakeRecord(10, 10'000), true);
    open.Go();
    snooze(kSettling);
    WindowServer::ResetLongestTurn();
    const int64 before = open.CountShown();
    const bigtime_t start = system_time();
    snooze(kMeasuring);
    const auto shown = static_cast<double>(open.CountShown() - before);
    const double rate = shown / Seconds(start);
    open.Pause();
    table->AddAtLeast("10 + 10000 bodies, updates that reach the screen", 30, rate, "/s");
    table->AddAtMost("longest time that keeps the window server, Pause included", 16,
                     static_cast<double>(WindowServer::LongestTurn()) * kMilliseconds, "ms");
}

// Simulated seconds in a second.
double Speed(const Program& program, const BMessage& record, bool hasDisplay) {
    OpenDocument open(program, record, hasDisplay);
    open.Go();
    snooze(kSettling);
    const double before = open.Time();
    const bigtime_t start = system_time();
    snooze(kMeasuring);
    return (open.Time() - before) / Seconds(start);
}

void BenchEngine(BenchTable* table, const Program& program) {
    const BMessage record = MakeRecord(10, 0);
    double alone = 0.0;
    double shown = 0.0;
    for (int round = 0; round < 2; round++) {
        alone = std::max(alone, Speed(program, record, false));
        shown = std::max(shown, Speed(program, record, true));
    }
    table->AddAtLeast("10 bodies, engine speed with a display against none", 80,
                      100 * shown / alone, "%");
}

// From the start of the real program, on a screen in memory, until the bodies of a document are
// seen there.
void BenchStart(BenchTable* table) {
    if (!DesktopSession::MissingProgram().empty()) return;
    std::vector<double> times;
    for (int round = 0; round < 5; round++) {
        DesktopSession desktop;
        const bigtime_t begin = system_time();
        const auto program = desktop.Start({ORVEK_PROGRAM, ORVEK_EXAMPLE});
        const auto isSeen = [&desktop] {
            const QImage screen = desktop.Screen();
            for (int y = 0; y < screen.height(); y++)
                for (int x = kBesideSun; x < screen.width(); x++)
                    if (screen.pixel(x, y) == kSunColor &&
                        screen.pixel(x - kBesideSun, y) == kSkyColor)
                        return true;
            return false;
        };
        while (!isSeen())
            snooze(1000);
        times.push_back(Seconds(begin));
    }
    std::sort(times.begin(), times.end());
    table->AddAtMost("start of the program to first picture", 0.5, times[2], "s");
}

}  // namespace

void BenchDisplays(BenchTable* table) {
    int argc = 1;
    char name[] = "orvek-bench";
    char* argv[] = {name, nullptr};
    BenchStart(table);
    WindowServer server(argc, argv, WindowServer::Screen::kOffscreen);
    std::thread work([table] {
        BenchLines(table);
        const Program program;
        BenchUpdates(table, program);
        BenchEngine(table, program);
        WindowServer::Stop();
    });
    server.Run();
    work.join();
}
