#include <iostream>

#include "host/app/CommandLine.h"

int main(int argc, char** argv) {
  return qv::host::RunCommandLine({argv + 1, argv + argc}, std::cout, std::cerr);
}
