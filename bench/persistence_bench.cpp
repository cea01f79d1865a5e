// A node list on its way to a file and back, through each kind of stream.
#include "bench/inputs.h"

#include "tests/support/temp_dir.h"
#include "trunnion/persistence/compress_stream.h"

namespace {

constexpr int side = 200;

struct Text {
    using Stream = TqIOCL;
    static constexpr const char *writing = "w";
    static constexpr const char *reading = "r";
    static void finish(Stream &) {}
};

struct Binary : Text {
    static constexpr const char *writing = "wb";
    static constexpr const char *reading = "rb";
};

struct Compressed : Binary {
    using Stream = TqCompressIOCL;
    static void finish(Stream &stream) { stream.FinishSaveM(1); }
};

template <class Form>
void save(const NodeArr &nodes, const std::string &path) {
    typename Form::Stream stream;
    stream.SetVersionNumM(1);
    stream.OpenM(path.c_str(), Form::writing);
    nodes.FmOutputOzkLstM(&stream, "nodes");
    Form::finish(stream);
    stream.CloseM();
}

template <class Form>
void load(NodeArr &nodes, const std::string &path) {
    typename Form::Stream stream;
    stream.OpenM(path.c_str(), Form::reading);
    nodes.FmInputOzkLstM(&stream);
    stream.CloseM();
}

template <class Form>
void saveList(benchmark::State &state) {
    const test::TempDir dir;
    const std::string path = dir.path("nodes");
    const NodeArr nodes = bench::spherePatch(side).nodes;
    bench::measure(state, side * side, [&] { save<Form>(nodes, path); });
    state.counters["file_bytes"] = static_cast<double>(std::filesystem::file_size(path));
}
BENCHMARK(saveList<Text>)->Unit(benchmark::kMillisecond);
BENCHMARK(saveList<Binary>)->Unit(benchmark::kMillisecond);
BENCHMARK(saveList<Compressed>)->Unit(benchmark::kMillisecond);

template <class Form>
void loadList(benchmark::State &state) {
    const test::TempDir dir;
    const std::string path = dir.path("nodes");
    const NodeArr nodes = bench::spherePatch(side).nodes;
    save<Form>(nodes, path);
    NodeArr loaded;
    load<Form>(loaded, path);
    bench::require(loaded.GetAvailableNumM() == side * side, "number of nodes loaded");
    for (int i = 0; i < side * side; ++i) {
        const float *p = nodes.GetItemPM(i)->GetPntPM();
        const float *q = loaded.GetItemPM(i)->GetPntPM();
        bench::require(p[0] == q[0] && p[1] == q[1] && p[2] == q[2], "nodes loaded");
    }
    bench::measure(state, side * side, [&] { load<Form>(loaded, path); });
}
BENCHMARK(loadList<Text>)->Unit(benchmark::kMillisecond);
BENCHMARK(loadList<Binary>)->Unit(benchmark::kMillisecond);
BENCHMARK(loadList<Compressed>)->Unit(benchmark::kMillisecond);

} // namespace
