// The film that a run is to leave, if one is asked for: keeps the run as it goes, and draws its
// frames when it is over. Owned by the runner, on its thread, while the calculator is parked. A
// build without the displays' floor has none.
#pragma once

#include <memory>

class FilmFiles;
class ProgramResources;
class RunHistory;
class RunnerOutput;
class SimulationDocument;
struct MergeResult;
struct Options;

class RunFilm {
public:
    // Takes the document's reports from now on. Nothing is owned.
    RunFilm(const Options& options, const ProgramResources& resources, const RunnerOutput& output,
            SimulationDocument* document);
    ~RunFilm();
    RunFilm(const RunFilm&) = delete;
    RunFilm& operator=(const RunFilm&) = delete;

    // Before the run goes on.
    void NoteMergers(const MergeResult& merged);
    // These two return an exit status.
    [[nodiscard]] int CheckPlace();
    [[nodiscard]] int Write();

private:
    [[nodiscard]] int Fail(int error) const;

    const Options& options_;
    const ProgramResources& resources_;
    const RunnerOutput& output_;
    SimulationDocument* const document_;
    std::unique_ptr<RunHistory> history_;  // null: no film is asked for
    std::unique_ptr<FilmFiles> files_;
};
