#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerInitialize(int*, char***);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

// Runs the files of a folder through the fuzzer's target, without a fuzzer. Fails if there are
// none.
int main(int count, char** words) {
  if (count != 2) return 2;
  LLVMFuzzerInitialize(&count, &words);
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(words[1])) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    ++files;
  }
  std::printf("%d inputs\n", files);
  return files > 0 ? 0 : 1;
}
