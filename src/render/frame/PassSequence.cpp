#include "render/frame/PassSequence.h"

namespace qv {
namespace {

constexpr PassStep kPreview[] = {{PassPreview, false, false, true}};
constexpr PassStep kMotion[] = {{PassPreview, false, false, true},
                                {PassFull, true, false, true},
                                {PassAntialias, true, false, true}};
constexpr PassStep kSunMotion[] = {{PassSunPreview, false, false, true},
                                   {PassFull, true, false, true},
                                   {PassAntialias, true, true, true}};
constexpr PassStep kSunPreview[] = {{PassSunPreview, false, false, true}};
constexpr PassStep kStill[] = {{PassFull, true, false, true}, {PassAntialias, true, false, true}};
constexpr PassStep kFinal[] = {{PassFull, false, false, false},
                               {PassAntialias, false, false, true}};

}  // namespace

std::span<const PassStep> PassesOf(RenderMode mode) {
  switch (mode) {
    case ModePreview:
      return kPreview;
    case ModeMotion:
      return kMotion;
    case ModeSunMotion:
      return kSunMotion;
    case ModeSunPreview:
      return kSunPreview;
    case ModeStill:
      return kStill;
    case ModeFinal:
      return kFinal;
  }
  return {};
}

}  // namespace qv
