// What the menus do with bodies as text: copies them to the clipboard, pastes them from there, and
// imports them from files that the user chooses. Owned by the simulation's window and used on its
// thread, with no lock of the document held.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Displays/Base/DisplayContext.h"
#include "Exchange/BodyImport.h"
#include "Exchange/BodyReader.h"
#include "Platform/Support/SupportDefs.h"

class BMessage;
class MissingMassWindow;
class MyFilePanel;
class RunHistory;
class SimulationControls;

class BodyExchange {
public:
    static constexpr uint32 kCopyAsText = FourCC("cpyt");
    static constexpr uint32 kPasteBodies = FourCC("pstb");
    static constexpr uint32 kRequestImport = FourCC("rqim");
    // The answer of the file panel.
    static constexpr uint32 kImport = FourCC("impt");
    static constexpr uint32 kRequestExport = FourCC("rqex");
    static constexpr uint32 kExport = FourCC("expt");
    // Of the kept runs.
    static constexpr uint32 kRequestExportRun = FourCC("rqer");
    static constexpr uint32 kExportRun = FourCC("exrn");

    // None is owned.
    BodyExchange(SimulationDocument* document, RunControl* run, const RunHistory* history,
                 SimulationControls* controls, const ProgramResources* resources);
    ~BodyExchange();

    // False for a message about something else.
    bool Handle(const BMessage& message);

private:
    void Copy() const;
    void Paste();
    void RequestImport();
    void Import(const BMessage& files);
    void AskForMasses();
    void AddWaiting(double mass);
    void EndImport();
    void AddNews(const std::string& news);
    // What came of it.
    [[nodiscard]] std::string Add(const std::string& path, const ReadBodies& bodies);
    // `answer`: of the file panel.
    void RequestExport(uint32 answer);
    void Export(const BMessage& place) const;
    [[nodiscard]] std::string Bodies() const;
    // Without a mass for some they are of none.
    [[nodiscard]] std::string News(const ReadBodies& bodies) const;
    [[nodiscard]] std::string Filled(int32 text,
                                     std::initializer_list<std::string_view> values) const;
    void Show(int32 text, std::initializer_list<std::string_view> values = {}) const;

    SimulationDocument* const document_;
    const RunHistory* const history_;
    SimulationControls* const controls_;
    const ProgramResources* const resources_;
    const ResourceTexts texts_;
    BodyImport import_;
    // Files of which masses are missing, while the user is asked for them, and what came of the
    // others.
    struct Waiting {
        std::string path;
        ReadBodies bodies;
    };
    std::vector<Waiting> waiting_;
    std::string news_;
    MissingMassWindow* massWindow_ = nullptr;
    std::unique_ptr<MyFilePanel> openPanel_;
    std::unique_ptr<MyFilePanel> savePanel_;
};
