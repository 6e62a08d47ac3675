#include <wx/app.h>

#include "app/ProcessEntry.h"

int main(int argc, char** argv) {
  qv::PrepareProcess();
  return wxEntry(argc, argv);
}
