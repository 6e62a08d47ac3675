#include <windows.h>
#include <wx/app.h>
#include <wx/msw/init.h>

#include "app/ProcessEntry.h"

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE previous, wchar_t*, int show) {
  qv::PrepareProcess();
  return wxEntry(instance, previous, nullptr, show);
}
