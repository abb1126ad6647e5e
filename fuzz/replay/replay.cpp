// Runs a fuzz target over kept files, with any compiler, so that inputs found by a fuzzer become tests.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace
{

void replay(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes(std::istreambuf_iterator<char>(file), {});
    // A block of exactly this size, so that a sanitizer detects access to the first byte after it.
    const auto block = std::make_unique<std::uint8_t[]>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), block.get());
    LLVMFuzzerTestOneInput(block.get(), bytes.size());
}

} // namespace

int main(int argc, char** argv)
{
    int count = 0;
    for (int i = 1; i < argc; ++i)
        for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[i]))
            if (entry.is_regular_file())
            {
                replay(entry.path());
                ++count;
            }
    std::printf("%d inputs replayed\n", count);
    return count > 0 ? 0 : 1;
}
