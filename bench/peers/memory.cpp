// What the machine itself allows: the page tells for every row how far it is from these.
#include <vector>

#include <benchmark/benchmark.h>
#include <sys/mman.h>

namespace {

// Three arrays of 128 MiB: far more than a cache holds.
constexpr std::size_t count = std::size_t{1} << 24;

// The rate at which memory is read and written in order, by the triad of J. D. McCalpin's STREAM:
// two arrays are read, one is written.
void memoryTriad(benchmark::State &state) {
    std::vector<double> sum(count, 0.0);
    const std::vector<double> first(count, 1.0);
    const std::vector<double> second(count, 2.0);
    for ([[maybe_unused]] auto _ : state) {
        for (std::size_t i = 0; i < count; ++i) {
            sum[i] = first[i] + 3.0 * second[i];
        }
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() *
                            static_cast<std::int64_t>(3 * count * sizeof(double)));
}
BENCHMARK(memoryTriad)->Name("memory/triad")->Unit(benchmark::kMillisecond)->Repetitions(5);

// The rate at which the system hands out memory that was not used before: each page is cleared when
// it is first touched. Taken past the heap, which may hold as much that other rows gave back.
void freshMemory(benchmark::State &state) {
    constexpr std::size_t bytes = count * sizeof(double);
    constexpr std::size_t page = 4096;
    for ([[maybe_unused]] auto _ : state) {
        void *const block =
            mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (block == MAP_FAILED) {
            state.SkipWithError("no memory");
            break;
        }
        for (std::size_t i = 0; i < bytes; i += page) {
            static_cast<char *>(block)[i] = 1;
        }
        benchmark::ClobberMemory();
        munmap(block, bytes);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}
BENCHMARK(freshMemory)->Name("memory/fresh")->Unit(benchmark::kMillisecond)->Repetitions(5);

} // namespace
