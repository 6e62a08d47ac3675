#include "presets/PresetBlock.h"

#include <wx/mstream.h>
#include <wx/strconv.h>

#include <string>

#include "core/Log.h"

namespace qv {
namespace {

constexpr std::size_t kTypeSize = 4;

PresetPointer MakePreset(PresetType type) {
  switch (type) {
    case PresetType::kView:
      return std::make_shared<ViewPreset>();
    case PresetType::kCameraAnimation:
      return std::make_shared<CameraAnimationPreset>();
    case PresetType::kCameraKeyAnimation:
      return std::make_shared<CameraKeyAnimationPreset>();
    case PresetType::kTour:
      return std::make_shared<TourAnimationPreset>();
  }
  return nullptr;
}

void WriteList(wxOutputStream& output, std::span<const PresetPointer> presets) {
  wxDataOutputStream stream(output, wxConvUTF8);
  stream.Write32(static_cast<wxUint32>(presets.size()));
  for (const PresetPointer& preset : presets) preset->Write(stream);
}

}  // namespace

std::vector<std::byte> WritePresetBlock(std::span<const PresetPointer> presets) {
  // Twice: a stream in memory that has to grow copies a long list again and again.
  wxCountingOutputStream counted;
  WriteList(counted, presets);
  std::vector<std::byte> block(counted.GetSize());
  wxMemoryOutputStream memory(block.data(), block.size());
  WriteList(memory, presets);
  return block;
}

std::vector<PresetPointer> ReadPresetBlock(std::span<const std::byte> block) {
  PresetReader reader(block);
  std::vector<PresetPointer> presets;
  std::size_t unknown = 0;
  std::uint32_t left = reader.ReadCount();
  for (; left > 0 && reader.Remaining() >= kTypeSize; --left) {
    const PresetPointer preset = MakePreset(static_cast<PresetType>(reader.ReadInt()));
    if (!preset) {
      ++unknown;
      continue;
    }
    preset->Read(reader);
    presets.push_back(preset);
  }
  if (unknown > 0) {
    Log(LogLevel::kWarning,
        "Presets: " + std::to_string(unknown) + " records of an unknown kind were passed over");
  }
  if (left > 0 || reader.IsShort()) {
    Log(LogLevel::kWarning, "Presets: the block ends before its last preset");
  }
  return presets;
}

}  // namespace qv
