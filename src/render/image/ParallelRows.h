#pragma once

#include <algorithm>
#include <system_error>
#include <thread>
#include <vector>

namespace qv {

// Calls `work(first, last)` for bands of the rows 0 to `rows`, each on a thread of its own, the
// last one on the caller's; waits for all.
template <class Work>
void ForBandsOfRows(int rows, int threadCount, const Work& work) {
  // Fewer rows than this are not worth a thread.
  constexpr int kLeastRows = 64;
  const int bands = std::clamp(rows / kLeastRows, 1, std::max(1, threadCount));
  std::vector<std::thread> threads;
  threads.reserve(static_cast<std::size_t>(bands) - 1);
  int first = 0;
  for (int band = 1; band < bands; ++band) {
    const int last = static_cast<int>(static_cast<long>(rows) * band / bands);
    try {
      threads.emplace_back([&work, first, last] { work(first, last); });
    } catch (const std::system_error&) {
      break;  // the rest is for the caller's thread
    }
    first = last;
  }
  work(first, rows);
  for (std::thread& thread : threads) thread.join();
}

}  // namespace qv
