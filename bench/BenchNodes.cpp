// Making whole hierarchies through the real adapter, in memory: the engine's own work and the kernel's, without a program's
// start and without reading the preset. 12 nodes are a project as somebody lays it out by hand, the larger ones a library;
// with contents, half of the files are copies of one file of 4 KB.

#include "BenchSupport.h"

#include "platform/posix/PosixFileSystem.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>

namespace orvane::bench {

namespace {

PropertyList namedRoot(const PropertyList &tree, std::string_view name) {
    PropertyListBuilder builder;
    std::vector<PropertyListEntry> entries;
    for (const PropertyListEntry &entry : builder.adopt(tree).dictionary()) {
        entries.push_back({entry.key, entry.key == "filename" ? builder.string(name) : entry.value});
    }
    return builder.finish(builder.dictionary(entries));
}

void writeContent(const std::filesystem::path &home) {
    const std::filesystem::path store = home / "Orvane" / ORVFileContentFolder;
    std::filesystem::create_directories(store);
    std::ofstream(store / ContentName) << std::string(4096, 'x');
}

void createTree(benchmark::State &state, bool hasContents) {
    const ScratchFolder scratch;
    writeContent(scratch.path());
    PosixFileSystem files;
    const Engine engine(files, scratch.path());
    const PropertyList root = namedRoot(treeOfShape({static_cast<std::size_t>(state.range(0)), hasContents}), "Project");
    const std::vector<PromptValueRow> rows = rowsOfTrees();
    for (auto _ : state) {
        const bool isMade = engine.manager().createFileNodeAtBasePathWithReplacePairs(root.root(), scratch.path(), rows);
        state.PauseTiming();
        if (!isMade) {
            state.SkipWithError("not made");
        }
        std::filesystem::remove_all(std::filesystem::path(scratch.path()) / "Project");
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * (state.range(0) + 1));
}
BENCHMARK_CAPTURE(createTree, emptyFiles, false)->Arg(12)->Arg(100)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(createTree, contents, true)->Arg(12)->Arg(100)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace orvane::bench
