#include "Calculation/RankHelper.h"

RankHelper::RankHelper(Ranks* ranks, int32 threads)
    : ranks_(ranks), evaluator_(threads), forces_(threads) {
    evaluator_.SetRanks(ranks);
    forces_.SetRanks(ranks);
}

void RankHelper::Help() {
    while (true) {
        RankTask task;
        ranks_->AwaitCall(&task, sizeof task);
        switch (task.kind) {
            case RankTask::Kind::kEnd:
                return;
            case RankTask::Kind::kForces:
                evaluator_.Help(task);
                break;
            case RankTask::Kind::kSeries:
                MakeSeries(task);
                break;
        }
    }
}

void RankHelper::End(Ranks* ranks) {
    const RankTask task;
    ranks->Call(&task, sizeof task);
}

void RankHelper::MakeSeries(const RankTask& task) {
    const SeriesArrays& arrays = store_.Arrays();
    if (arrays.order != task.order || arrays.bodies != task.bodies ||
        arrays.massive != task.massive) {
        store_.Resize(task.order, task.bodies, task.massive);
        states_.Resize(task.bodies, task.massive);
        forces_.Resize(store_);
    }
    store_.SetScale(task.scale);
    forces_.Help(&store_, &states_, task.theta, task.cutoff);
}
