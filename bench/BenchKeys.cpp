// Finding and replacing variables. The names model what people have in presets: mostly plain ones of a dozen characters, a
// fifth with one variable, the odd template with several. A preset is scanned once for each creation, before the prompt, and
// every name of it is filled in once.

#include "BenchSupport.h"

#include "platform/posix/PosixFileSystem.h"

#include <benchmark/benchmark.h>

namespace orvane::bench {

namespace {

constexpr std::string_view PlainName = "Footage_001234.txt";
constexpr std::string_view OneVariable = "{Client}_Footage_001234.txt";
constexpr std::string_view SeveralVariables = "{Date}_{Client}_{Project}_{Camera}_{Editor}";
constexpr std::string_view EscapedBraces = "\\{kept\\}_{Client}_\\{kept too\\}";

void findKeys(benchmark::State &state, std::string_view text) {
    PosixFileSystem files;
    const Engine engine(files, "/nonexistent");
    for (auto _ : state) {
        benchmark::DoNotOptimize(engine.manager().findBracketedKeys(text));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK_CAPTURE(findKeys, plain, PlainName);
BENCHMARK_CAPTURE(findKeys, oneVariable, OneVariable);
BENCHMARK_CAPTURE(findKeys, severalVariables, SeveralVariables);
BENCHMARK_CAPTURE(findKeys, escapedBraces, EscapedBraces);

void replaceKeys(benchmark::State &state, std::string_view text) {
    PosixFileSystem files;
    const Engine engine(files, "/nonexistent");
    const std::vector<PromptValueRow> rows = rowsOfTrees();
    for (auto _ : state) {
        benchmark::DoNotOptimize(engine.manager().replaceBracketedKeysReplace(text, rows));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK_CAPTURE(replaceKeys, plain, PlainName);
BENCHMARK_CAPTURE(replaceKeys, oneVariable, OneVariable);
BENCHMARK_CAPTURE(replaceKeys, severalVariables, SeveralVariables);
BENCHMARK_CAPTURE(replaceKeys, escapedBraces, EscapedBraces);

void scanTree(benchmark::State &state) {
    PosixFileSystem files;
    const Engine engine(files, "/nonexistent");
    const PropertyList tree = treeOfShape({static_cast<std::size_t>(state.range(0))});
    for (auto _ : state) {
        std::vector<std::string> names;
        engine.manager().scanHierarchyForVariableNamesVariableNames(tree.root(), names);
        benchmark::DoNotOptimize(names);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(scanTree)->RangeMultiplier(10)->Range(100, 100'000)->Unit(benchmark::kMicrosecond);

void cleanName(benchmark::State &state, std::string_view name) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(ORVPresetManager::cleanFilesystemEntities(name));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(name.size()));
}
BENCHMARK_CAPTURE(cleanName, plain, PlainName);
BENCHMARK_CAPTURE(cleanName, slashesAndColons, std::string_view("a/b:c/d:e/f:g/h:"));

/// Counters as they are after years: many names, of which one is asked for.
void defaultOfCounter(benchmark::State &state) {
    PropertyListBuilder builder;
    ORVAutomaticVariables counters;
    for (int i = 0; i < 50; ++i) {
        counters["AutoCounter" + std::to_string(i)] = builder.string(std::to_string(1000 + i));
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(ORVPresetManager::defaultValueForVariable("AutoCounter25", counters));
    }
}
BENCHMARK(defaultOfCounter);

} // namespace

} // namespace orvane::bench
