// Reading and writing preferences. Twenty presets of 12 nodes are what somebody who uses presets daily has, and what is
// read anew each time that the menu is built; one preset of 1,000 to 100,000 nodes is a facility's asset library. Every
// node has all its fields, empty ones too.

#include "BenchSupport.h"

#include "platform/propertylist/PropertyListFiles.h"

#include <benchmark/benchmark.h>

namespace orvane::bench {

namespace {

using Writer = std::optional<std::string> (*)(const PropertyListValue &, std::string *);

PropertyList listOf(const benchmark::State &state) {
    return preferencesWithPresets(static_cast<std::size_t>(state.range(0)), {static_cast<std::size_t>(state.range(1)), true});
}

void countBytesAndNodes(benchmark::State &state, const std::string &bytes) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
    state.SetItemsProcessed(state.iterations() * state.range(0) * state.range(1));
    state.counters["size"] =
        benchmark::Counter(static_cast<double>(bytes.size()), benchmark::Counter::kDefaults, benchmark::Counter::kIs1024);
}

void readList(benchmark::State &state, Writer form) {
    const std::string bytes = form(listOf(state).root(), nullptr).value();
    for (auto _ : state) {
        const std::optional<PropertyList> list = readPropertyList(bytes);
        if (!list) {
            state.SkipWithError("unreadable");
            return;
        }
        benchmark::DoNotOptimize(list->root());
    }
    countBytesAndNodes(state, bytes);
}

void writeList(benchmark::State &state, Writer form) {
    const PropertyList list = listOf(state);
    std::string bytes;
    for (auto _ : state) {
        bytes = form(list.root(), nullptr).value();
        benchmark::DoNotOptimize(bytes);
    }
    countBytesAndNodes(state, bytes);
}

void sizes(benchmark::internal::Benchmark *one) {
    one->ArgNames({"presets", "nodes"})
        ->Args({20, 12})
        ->Args({1, 1'000})
        ->Args({1, 10'000})
        ->Args({1, 100'000})
        ->Unit(benchmark::kMillisecond);
}
BENCHMARK_CAPTURE(readList, xml, writeXMLPropertyList)->Apply(sizes);
BENCHMARK_CAPTURE(readList, binary, writeBinaryPropertyList)->Apply(sizes);
BENCHMARK_CAPTURE(writeList, xml, writeXMLPropertyList)->Apply(sizes);
BENCHMARK_CAPTURE(writeList, binary, writeBinaryPropertyList)->Apply(sizes);

} // namespace

} // namespace orvane::bench
