#include <cstdlib>
#include <cstring>

#include "platform/Clock.h"

// The other process of the tests:
//   exit CODE        ends with that code
//   compare A B      ends with 0 if the two words are the same, with 1 if not
//   sleep            does not end by itself
int main(int count, char** words) {
  if (count == 3 && std::strcmp(words[1], "exit") == 0) return std::atoi(words[2]);
  if (count == 4 && std::strcmp(words[1], "compare") == 0) {
    return std::strcmp(words[2], words[3]) == 0 ? 0 : 1;
  }
  if (count == 2 && std::strcmp(words[1], "sleep") == 0) {
    for (;;) qv::platform::SleepMilliseconds(1000);
  }
  return 99;
}
