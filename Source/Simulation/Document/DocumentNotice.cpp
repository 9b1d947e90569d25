#include "Simulation/Document/DocumentNotice.h"

#include <utility>

#include "Resources/DocumentTexts.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/TextTemplate.h"

std::string DocumentNotice::Text(const ProgramResources& resources) const {
    const std::string why = reason.Failed() ? reason.Reason(resources) : std::string();
    std::vector<std::string_view> values(subjects.begin(), subjects.end());
    values.emplace_back(why);
    values.resize(4);
    return FillIn(resources.InterfaceLabel(text), {values[0], values[1], values[2], values[3]});
}

void DocumentNotices::Add(DocumentNotice notice) {
    count_++;
    if (notices_.size() < kMaxKept) notices_.push_back(std::move(notice));
}

void DocumentNotices::AddEmptied(const std::string& epoch, const std::string& position,
                                 DocumentError reason) {
    if (!firstFault_.Failed()) firstFault_ = reason;
    Add({kTextEpochEmptied, {position, epoch}, std::move(reason)});
}

std::vector<std::string> DocumentNotices::Lines(const ProgramResources& resources) const {
    std::vector<std::string> lines;
    for (const DocumentNotice& notice : notices_)
        lines.push_back(notice.Text(resources));
    if (count_ > notices_.size())
        lines.push_back(FillIn(resources.InterfaceLabel(kTextMoreNotices),
                               {std::to_string(count_ - notices_.size())}));
    return lines;
}

std::string DocumentNotices::Summary(const ProgramResources& resources) const {
    if (IsEmpty()) return {};
    std::string first = notices_.front().Text(resources);
    if (count_ == 1) return first;
    return FillIn(resources.InterfaceLabel(kTextNoticeAndMore),
                  {first, std::to_string(count_ - 1)});
}
