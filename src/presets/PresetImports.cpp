// What the list takes over from elsewhere: the host's saved views, and files with camera paths.

#include <wx/config.h>
#include <wx/filename.h>
#include <wx/intl.h>
#include <wx/strconv.h>

#include "core/Calendar.h"
#include "presets/PathImport.h"
#include "presets/PresetsEditor.h"

namespace qv {
namespace {

constexpr const char* kImportFolderKey = "/Dirs/ImportSkp";
constexpr std::size_t kFewestKeys = 2;
constexpr char16_t kReplacement = 0xFFFD;

bool IsHighSurrogate(char16_t c) {
  return c >= 0xD800 && c < 0xDC00;
}

bool IsLowSurrogate(char16_t c) {
  return c >= 0xDC00 && c < 0xE000;
}

// UTF-16 as the library holds text; half a pair becomes the replacement character.
wxString TextOf(std::u16string text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (IsHighSurrogate(text[i]) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) {
      ++i;
    } else if (IsHighSurrogate(text[i]) || IsLowSurrogate(text[i])) {
      text[i] = kReplacement;
    }
  }
  return {reinterpret_cast<const char*>(text.data()), wxMBConvUTF16(),
          text.size() * sizeof(char16_t)};
}

SunRecord SunOf(const HostPage& page) {
  const double hours = page.minute / 60.0 + page.hour + page.second / 3600.0;
  return {JulianDateFromCalendar(page.year, page.month, page.day, hours, page.longitude),
          page.latitude, page.longitude, page.sunParam, 0};
}

}  // namespace

void PresetsEditor::ImportPages() {
  const std::vector<HostPage> pages = frame_.GetPages();
  if (pages.empty()) return;
  for (const HostPage& page : pages) {
    std::optional<wxString> name = TextOf(page.name);
    if (HasName(*name)) name = ProposeName(*name, true);
    if (!name) continue;
    RenderCamera camera;
    camera.position = page.eye;
    camera.forward = page.direction;
    camera.fieldOfView = page.fieldOfView;
    Append(std::make_shared<ViewPreset>(*name, LevelPose(camera), 0, frame_.EyeHeight(),
                                        page.hasSunTime, SunOf(page)));
  }
  SavePresets();
}

void PresetsEditor::ImportAnimatePath() {
  const auto file = prompts_.ChoosePathFile(settings_.Read(kImportFolderKey, wxString()));
  if (!file) return;
  settings_.Write(kImportFolderKey, wxFileName(*file).GetPath());
  ImportedPath path = ReadPathFile(*file, frame_.Stage().Camera().fieldOfView);
  if (path.fault) prompts_.ShowMessage(PathFaultText(*path.fault));
  if (path.keys.size() < kFewestKeys) {
    prompts_.ShowMessage(_("Keyframe count must be at least 2."));
    return;
  }
  const auto answer = AskPresetName(_("Path"), false);
  if (!answer) return;
  auto animation = std::make_shared<CameraAnimationPreset>(answer->name, SunRecord());
  animation->keys = std::move(path.keys);
  Append(std::move(animation));
  SavePresets();
}

}  // namespace qv
