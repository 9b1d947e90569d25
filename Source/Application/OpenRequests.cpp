#include "Application/OpenRequests.h"

#include <algorithm>

#include "Platform/Storage/BPath.h"
#include "Resources/ApplicationFeatures.h"
#include "Resources/SimulationFeatures.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

// Of more complaints a line tells only how many there are.
constexpr std::size_t kMaxComplaints = 3;

}  // namespace

OpenRequests::Request OpenRequests::Begin(Simulation* requester, int32 handOver) {
    auto request = std::make_shared<OpenRequest>();
    request->requester = requester;
    request->handOver = handOver;
    return request;
}

void OpenRequests::Await(Simulation* reader, Reading reading) {
    reading.request->pending++;
    readings_.insert_or_assign(reader, std::move(reading));
}

std::optional<OpenRequests::Reading> OpenRequests::Take(const Simulation* reader) {
    auto node = readings_.extract(reader);
    return node.empty() ? std::nullopt : std::optional(std::move(node.mapped()));
}

std::string OpenRequests::Text(const std::string& document, const std::string& reason) const {
    return FillIn(resources_->InterfaceLabel(kTextNotOpened), {document, reason});
}

std::vector<std::string> OpenRequests::Lines(const OpenRequest& request) const {
    std::vector<std::string> lines;
    for (const auto& [path, reason] : request.complaints)
        lines.push_back(Text(path, reason));
    return lines;
}

std::string OpenRequests::Summary(const OpenRequest& request) const {
    const std::string& separator = resources_->InterfaceLabel(kTextBetweenFigures);
    const std::size_t shown = std::min(request.complaints.size(), kMaxComplaints);
    std::string text;
    for (std::size_t i = 0; i < shown; i++) {
        const auto& [path, reason] = request.complaints[i];
        text += (i == 0 ? "" : separator) + Text(BPath(path.c_str()).Leaf(), reason);
    }
    if (const std::size_t more = request.complaints.size() - shown; more > 0)
        text = FillIn(resources_->InterfaceLabel(kTextMoreNotOpened), {text, std::to_string(more)});
    return text;
}
