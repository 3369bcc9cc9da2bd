#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

// Runs a fuzz target over every file of a corpus and over variations of it, the same every time.

// NOLINTNEXTLINE(readability-identifier-naming): the name that libFuzzer calls.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr int variationsOfEach = 100;

Bytes contentOf(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// @p original with a few bytes changed, taken out or doubled.
Bytes variationOf(const Bytes& original, std::mt19937& random)
{
    Bytes bytes = original;
    for (unsigned change = 0; change < 1 + random() % 4 && !bytes.empty(); ++change) {
        const auto place = bytes.begin() + static_cast<std::ptrdiff_t>(random() % bytes.size());
        switch (random() % 4) {
        case 0:
            *place = static_cast<std::uint8_t>(random());
            break;
        case 1:
            bytes.erase(place);
            break;
        case 2:
            bytes.insert(place, static_cast<std::uint8_t>(random()));
            break;
        default:
            bytes.erase(place, bytes.end());
        }
    }
    return bytes;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fputs("usage: the folder of a corpus\n", stderr);
        return 2;
    }
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(argv[1]))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());

    std::mt19937 random(1); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same variations every time.
    for (const auto& file : files) {
        const Bytes original = contentOf(file);
        LLVMFuzzerTestOneInput(original.data(), original.size());
        for (int i = 0; i < variationsOfEach; ++i) {
            const Bytes variation = variationOf(original, random);
            LLVMFuzzerTestOneInput(variation.data(), variation.size());
        }
    }
    std::printf("%zu files\n", files.size());
    return files.empty() ? 1 : 0;
}
