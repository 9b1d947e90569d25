#include "Exchange/RunCsv.h"

#include <algorithm>
#include <string>
#include <vector>

#include "Exchange/CsvExport.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Simulation/History/RunHistory.h"
#include "Simulation/History/TimeLine.h"

namespace {

// One body in one run.
struct Track {
    const AbEpoch* run;  // only compared
    double from;         // s, and likewise:
    double to;
    int64 body;
    std::string name;
};

// One that has merged has its name from where the run began.
std::string NameOf(const AbEpoch& run, int64 body) {
    for (const AbEpoch* epoch : {&run, static_cast<const AbEpoch*>(run.Parent())})
        if (epoch != nullptr && epoch->RootSystem() != nullptr)
            if (const MassSystem* const system = epoch->SystemFromID(body); system != nullptr)
                return system->Name();
    return {};
}

std::vector<Track> FindTracks(EpochPortal* portal, const RunHistory& history) {
    std::vector<Track> tracks;
    const ReadGuard guard(portal);
    for (const TimeLine::Run& run : ReadRuns(*portal, history).runs) {
        if (!run.isKept) continue;
        std::vector<int64> bodies = history.BodiesOf(run.epoch);
        std::ranges::sort(bodies);
        for (const int64 body : bodies)
            tracks.push_back({run.epoch, std::min(run.start, run.end), std::max(run.start, run.end),
                              body, NameOf(*run.epoch, body)});
    }
    return tracks;
}

}  // namespace

bool WriteRunsAsCsv(EpochPortal* portal, const RunHistory& history,
                    const std::function<void(std::string_view)>& write) {
    const std::vector<Track> tracks = FindTracks(portal, history);
    if (tracks.empty()) return false;
    write("id,name,time [s],x [m],y [m],z [m],vx [m/s],vy [m/s],vz [m/s]\n");
    for (const Track& track : tracks) {
        const std::string begin = std::to_string(track.body) + ',' + QuotedCsvName(track.name);
        std::string text;
        for (const Sample& sample : history.Samples(track.run, track.body, track.from, track.to)) {
            // Samples around a branch's beginning reach beyond it.
            if (sample.time < track.from || sample.time > track.to) continue;
            text += begin;
            AppendCsvNumber(&text, sample.time);
            for (const ThreeVector& vector : {sample.position, sample.velocity})
                for (const double component : {vector.x, vector.y, vector.z})
                    AppendCsvNumber(&text, component);
            text += '\n';
        }
        write(text);
    }
    return true;
}
