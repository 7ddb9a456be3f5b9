// Stands in for libFuzzer where it is not built in: runs the fuzzer's entry point once on the empty input and once on
// every file of the folders (or on the files) named as arguments. A find is a crash or an abort.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace {

bool replay(const std::filesystem::path &file) {
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    if (!stream) {
        std::fprintf(stderr, "%s: cannot be read\n", file.c_str());
        return false;
    }
    // A copy of exactly this size, so that the address sanitizer sees a read past its end.
    const std::vector<std::uint8_t> exact(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(exact.data(), exact.size());
    return true;
}

std::vector<std::filesystem::path> filesIn(const std::filesystem::path &place) {
    if (!std::filesystem::is_directory(place)) {
        return {place};
    }
    std::vector<std::filesystem::path> files;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(place)) {
        if (entry.is_regular_file()) {
            files.push_back(entry.path());
        }
    }
    return files;
}

} // namespace

int main(int count, char **arguments) {
    LLVMFuzzerTestOneInput(nullptr, 0);
    std::size_t replayed = 0;
    for (int i = 1; i < count; ++i) {
        for (const std::filesystem::path &file : filesIn(arguments[i])) {
            if (!replay(file)) {
                return 1;
            }
            ++replayed;
        }
    }
    std::printf("%zu inputs replayed\n", replayed);
    return replayed == 0 ? 1 : 0; // a corpus that is not there proves nothing
}
