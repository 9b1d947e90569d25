// orvek-ranks-check MOST: exchanges numbers among the ranks that mpirun has started, in messages of
// at most so many, in all ways there are. Exit status 1 where what arrives is not what was sent.
#include <cstdlib>
#include <vector>

#include "Run/Ranks/MpiRanks.h"

namespace {

// Some have none, the last ones the most.
RankParts PartsOf(int32 ranks, int64 unit) {
    RankParts parts = {0};
    for (int64 rank = 0; rank < ranks; rank++)
        parts.push_back(parts.back() + unit * rank * rank);
    return parts;
}

// Another one for each place, each rank and each way.
double NumberAt(int64 place, int32 from, int32 to) {
    return static_cast<double>(place) + 0.25 * from + 1000.0 * to;
}

class Check {
public:
    explicit Check(MpiRanks* ranks) : ranks_(ranks) {}

    void Tell() {
        std::vector<double> numbers(17);
        Fill(0, 17, 0, 0, &numbers);
        const std::vector<double> sent = numbers;
        if (ranks_->IsFirst()) return ranks_->Tell(sent.data(), sent.size() * sizeof(double));
        numbers.assign(17, 0.0);
        ranks_->Hear(numbers.data(), numbers.size() * sizeof(double));
        Expect(numbers == sent);
    }
    void ShareAndGather() {
        const RankParts parts = PartsOf(ranks_->Count(), 5);
        std::vector<double> all(Size(parts.back()));
        for (int32 rank = 0; rank < ranks_->Count(); rank++)
            Fill(parts[Size(rank)], parts[Size(rank) + 1], rank, 0, &all);
        std::vector<double> own(all.size(), -1.0);
        Fill(parts[ranks_->Index()], parts[ranks_->Index() + 1], ranks_->Own(), 0, &own);
        std::vector<double> shared = own;
        ranks_->Share(shared.data(), parts);
        Expect(shared == all);
        ranks_->Gather(own.data(), parts);
        Expect(!ranks_->IsFirst() || own == all);
    }
    // To each a number more than to the one before, and from each as many.
    void Exchange() {
        RankParts sentParts = {0};
        RankParts receivedParts = {0};
        for (int32 rank = 0; rank < ranks_->Count(); rank++) {
            sentParts.push_back(sentParts.back() + CountFor(ranks_->Own(), rank));
            receivedParts.push_back(receivedParts.back() + CountFor(rank, ranks_->Own()));
        }
        std::vector<double> sent(Size(sentParts.back()));
        std::vector<double> expected(Size(receivedParts.back()));
        for (int32 rank = 0; rank < ranks_->Count(); rank++) {
            const std::size_t at = Size(rank);
            Fill(sentParts[at], sentParts[at + 1], ranks_->Own(), rank, &sent);
            Fill(receivedParts[at], receivedParts[at + 1], rank, ranks_->Own(), &expected);
        }
        std::vector<double> received(expected.size(), -1.0);
        ranks_->Exchange(sent.data(), sentParts, received.data(), receivedParts);
        Expect(received == expected);
    }

private:
    static std::size_t Size(int64 number) { return static_cast<std::size_t>(number); }
    static int64 CountFor(int32 from, int32 to) { return 7 * from + 2 * to; }
    static void Fill(int64 begin, int64 end, int32 from, int32 to, std::vector<double>* numbers) {
        for (int64 place = begin; place < end; place++)
            (*numbers)[Size(place)] = NumberAt(place - begin, from, to);
    }
    void Expect(bool isRight) {
        if (!isRight) ranks_->Abort(1);
    }

    MpiRanks* const ranks_;
};

}  // namespace

int main(int argc, char** argv) {
    const int64 most = argc > 1 ? std::atoll(argv[1]) : MpiRanks::kMost;
    MpiRanks ranks(&argc, &argv, most);
    Check check(&ranks);
    for (int round = 0; round < 3; round++) {
        check.Tell();
        check.ShareAndGather();
        check.Exchange();
    }
}
