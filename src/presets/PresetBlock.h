#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "presets/AnimationPresets.h"

namespace qv {

using PresetPointer = std::shared_ptr<Preset>;

// The list of presets as the host keeps it under the property "presets": a count, and the records
// back to back.
std::vector<std::byte> WritePresetBlock(std::span<const PresetPointer> presets);

// The presets of a block. A code that stands for no kind of preset makes none, and reading goes on
// behind it; a record that the end of the block cuts is kept with what there is of it, and is the
// last. Both are told in the log.
std::vector<PresetPointer> ReadPresetBlock(std::span<const std::byte> block);

}  // namespace qv
