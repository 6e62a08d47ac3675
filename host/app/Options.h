#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "host/model/LoadModel.h"
#include "host/model/StartView.h"
#include "host/scenefile/SceneFile.h"

namespace qv::host {

// What the command line asks for.
struct Options {
  std::filesystem::path model;
  LoadOptions load;
  ViewWishes view;
  PlaceAndTime when;
  bool lights = true;
  bool areaLights = true;
  std::filesystem::path viewer;  // empty: the one beside this program
  std::string background;        // a cube map or a kind of weather; empty: as stored with the model
};

struct ShowHelp {};
struct ShowVersion {};
struct UsageError {
  std::string message;
};

// The place and the time that a model without any is shown at: a summer afternoon in the middle of
// Europe, with the sun high in the south-west.
LocationAndTime DefaultPlaceAndTime();

// What is known of a place and time: what the command line gives, else what the scene file gives,
// else the default. Without a zone the clock is that of the nearest whole hour of the longitude, as
// the viewer counts.
LocationAndTime PlaceAndTimeOf(const PlaceAndTime& commandLine, const PlaceAndTime& sceneFile);

std::string HelpText();

// `arguments` without the program's name. Options may stand before and after the model, as
// "--name value" or "--name=value"; "--" ends them.
std::variant<Options, ShowHelp, ShowVersion, UsageError> ParseOptions(
    const std::vector<std::string>& arguments);

}  // namespace qv::host
