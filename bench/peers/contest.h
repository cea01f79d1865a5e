// The comparison beside what a user would take instead: the same work on the same input by the
// library and by its peers, in one program and in turns.
//
// A row is declared in the file of its subject:
//
//     void mergeGrid(bench::Contest &contest) {
//         const Soup soup = makeSoup(contest.size());          // the input, freed with the row
//         NodeArr ours;
//         std::vector<Node> theirs;
//         contest.items(soup.size(), "corners");
//         contest.ours([&] { merge(soup, ours); }, [&] { ours = NodeArr(); });
//         contest.peer("that library", 1.2, [&] { theirs = merge(soup); }, [&] { theirs = {}; });
//         contest.measure([&] { bench::require(ours == theirs, "merged nodes"); });
//     }
//     const bench::Row rows[] = {{"node merge", "grid", 125000, mergeGrid},
//                                {"node merge", "grid", 1000000, mergeGrid}};
//
// Its name is "node merge/grid/1000000", for --benchmark_filter.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "bench/inputs.h"

namespace bench {

class Contest {
public:
    using Action = std::function<void()>;

    Contest(benchmark::State &benchmarkState, int rowSize)
        : state(benchmarkState), size_(rowSize) {}

    // The size in the row's name, 0 if it has none.
    int size() const { return size_; }

    // What one run works on, for items a second; and the bytes that each item has to be read and
    // written at least, if that is told, for the share of the machine's memory rate.
    void items(double count, const char *what, double bytesPerItem = 0.0);
    // The library's side. `run` is measured and repeats the whole work; it should last a
    // millisecond or more. `prepare` comes before each run, is not measured, and is where the
    // result of the run before is freed.
    void ours(Action run, Action prepare = {});
    // A peer, with the ratio of our throughput to its own that is to be reached; 0 for none.
    void peer(const char *name, double ratioToReach, Action run, Action prepare = {});
    // How many times as long the row of this work and input with the greatest size may take as the
    // one with the least.
    void growthLimit(double factor);
    // Goes with the row into the page: what differs between the contenders, what could not be
    // compared.
    void note(const std::string &text);

    // Runs every contender once, calls `compare`, which ends the program where results differ
    // (bench::require), and then measures at least five rounds. In each all contenders run once,
    // and each round starts with the next one. The processor time of the best round counts, that of
    // all threads together.
    void measure(const Action &compare);
    // Instead of all that: tells why there is no figure.
    void skip(const std::string &reason);

private:
    struct Contender {
        std::string name;
        double ratioToReach;
        Action run;
        Action prepare;
        double best;

        double timeOnce() const;
    };

    void runRounds();
    void report();

    benchmark::State &state;
    int size_;
    double itemCount = 0.0;
    std::vector<Contender> contenders; // ours is the first
};

// Registers a row under "work/input" or "work/input/size". Made at namespace scope.
class Row {
public:
    Row(const std::string &work, const std::string &input, int size,
        const std::function<void(Contest &)> &declare);
};

} // namespace bench
