// The image formats that this build of FreeImage leaves out. Each is registered with its name but
// without functions, so that the formats after it keep their numbers; asked for, such a format is
// one that cannot be read or written.
#include "FreeImage.h"

namespace {

const char* DLL_CALLCONV NoExtensions() {
  return "";
}

template <const char* (*kName)()>
void LeaveOut(Plugin* plugin) {
  plugin->format_proc = kName;
  plugin->extension_proc = NoExtensions;
}

const char* DLL_CALLCONV NameEXR() {
  return "EXR";
}
const char* DLL_CALLCONV NameJ2K() {
  return "J2K";
}
const char* DLL_CALLCONV NameJP2() {
  return "JP2";
}
const char* DLL_CALLCONV NameRAW() {
  return "RAW";
}
const char* DLL_CALLCONV NameWEBP() {
  return "WEBP";
}
const char* DLL_CALLCONV NameJXR() {
  return "JPEG-XR";
}

}  // namespace

void DLL_CALLCONV InitEXR(Plugin* plugin, int) {
  LeaveOut<NameEXR>(plugin);
}
void DLL_CALLCONV InitJ2K(Plugin* plugin, int) {
  LeaveOut<NameJ2K>(plugin);
}
void DLL_CALLCONV InitJP2(Plugin* plugin, int) {
  LeaveOut<NameJP2>(plugin);
}
void DLL_CALLCONV InitRAW(Plugin* plugin, int) {
  LeaveOut<NameRAW>(plugin);
}
void DLL_CALLCONV InitWEBP(Plugin* plugin, int) {
  LeaveOut<NameWEBP>(plugin);
}
void DLL_CALLCONV InitJXR(Plugin* plugin, int) {
  LeaveOut<NameJXR>(plugin);
}
