#include "bench/peers/contest.h"

#include <algorithm>
#include <ctime>
#include <limits>
#include <utility>

namespace bench {

namespace {

constexpr int leastRounds = 5;
constexpr int mostRounds = 150;
// Short rows get more rounds, until this much time was measured.
constexpr double enoughSeconds = 1.5;

double processorSeconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

class Measurement : public benchmark::Fixture {
public:
    Measurement(const std::string &name, int rowSize, std::function<void(Contest &)> declareRow)
        : size(rowSize), declare(std::move(declareRow)) {
        SetName(name.c_str());
        Iterations(1);
        UseManualTime();
        Unit(benchmark::kMillisecond);
    }

protected:
    void BenchmarkCase(benchmark::State &state) override {
        Contest contest(state, size);
        declare(contest);
    }

private:
    int size;
    std::function<void(Contest &)> declare;
};

} // namespace

double Contest::Contender::timeOnce() const {
    if (prepare) {
        prepare();
    }
    const double start = processorSeconds();
    run();
    return processorSeconds() - start;
}

void Contest::items(double count, const char *what, double bytesPerItem) {
    itemCount = count;
    state.counters[std::string("items: ") + what] = count;
    if (bytesPerItem > 0.0) {
        state.counters["bytes per item"] = bytesPerItem;
    }
}

void Contest::ours(Action run, Action prepare) {
    contenders.insert(contenders.begin(),
                      {"Trunnion", 0.0, std::move(run), std::move(prepare), 0.0});
}

void Contest::peer(const char *name, double ratioToReach, Action run, Action prepare) {
    contenders.push_back({name, ratioToReach, std::move(run), std::move(prepare), 0.0});
}

void Contest::growthLimit(double factor) {
    state.counters["growth limit"] = factor;
}

void Contest::note(const std::string &text) {
    state.SetLabel(text);
}

void Contest::measure(const Action &compare) {
    for ([[maybe_unused]] auto _ : state) {
        for (Contender &contender : contenders) {
            contender.timeOnce();
            contender.best = std::numeric_limits<double>::infinity();
        }
        compare();
        runRounds();
        state.SetIterationTime(contenders.front().best);
    }
    report();
}

void Contest::runRounds() {
    double spent = 0.0;
    for (std::size_t round = 0;
         round < leastRounds || (round < mostRounds && spent < enoughSeconds); ++round) {
        for (std::size_t turn = 0; turn < contenders.size(); ++turn) {
            Contender &contender = contenders[(round + turn) % contenders.size()];
            const double seconds = contender.timeOnce();
            contender.best = std::min(contender.best, seconds);
            spent += seconds;
        }
    }
}

void Contest::report() {
    state.SetItemsProcessed(static_cast<std::int64_t>(itemCount));
    for (const Contender &contender : contenders) {
        state.counters["seconds: " + contender.name] = contender.best;
        if (&contender != &contenders.front()) {
            state.counters["ratio: " + contender.name] = contender.best / contenders.front().best;
        }
        if (contender.ratioToReach > 0.0) {
            state.counters["to reach: " + contender.name] = contender.ratioToReach;
        }
    }
}

void Contest::skip(const std::string &reason) {
    state.SkipWithError(("not measured: " + reason).c_str());
}

Row::Row(const std::string &work, const std::string &input, int size,
         const std::function<void(Contest &)> &declare) {
    const std::string name = work + "/" + input + (size > 0 ? "/" + std::to_string(size) : "");
    // The list of benchmarks owns what is registered, until the program ends.
    benchmark::internal::RegisterBenchmarkInternal(new Measurement(name, size, declare)); // NOLINT
}

} // namespace bench
