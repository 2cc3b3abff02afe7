// Runs a fuzzer's target over its seeds where libFuzzer is not at hand: each seed whole, cut off at
// every length, and with bytes changed in a fixed order, so that every run does the same.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Bytes = std::vector<std::uint8_t>;

int inputs = 0;

void Try(const Bytes& bytes, std::size_t size) {
  ++inputs;
  LLVMFuzzerTestOneInput(bytes.data(), size);
}

void Replay(const Bytes& seed) {
  constexpr std::size_t kMostCuts = 200;
  constexpr int kChanges = 200;
  Try(seed, seed.size());
  for (std::size_t size = 0; size < seed.size() && size < kMostCuts; ++size) Try(seed, size);
  std::uint32_t random = 1;
  const auto next = [&random] { return (random = random * 1664525U + 1013904223U) >> 8; };
  for (int change = 0; change < kChanges && !seed.empty(); ++change) {
    Bytes changed = seed;
    for (int bytes = 0; bytes < 3; ++bytes) {
      changed[next() % changed.size()] = static_cast<std::uint8_t>(next());
    }
    Try(changed, changed.size());
  }
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) return 2;
  int seeds = 0;
  for (const auto& entry : std::filesystem::directory_iterator(arguments[1])) {
    std::ifstream file(entry.path(), std::ios::binary);
    Replay(Bytes(std::istreambuf_iterator<char>(file), {}));
    ++seeds;
  }
  std::printf("%d seeds, %d inputs\n", seeds, inputs);
  return seeds > 0 ? 0 : 1;
}
