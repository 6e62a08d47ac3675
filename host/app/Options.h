#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "host/model/LoadModel.h"
#include "host/model/StartView.h"
#include "link/IQuorvane.h"

namespace qv::host {

// What the command line asks for.
struct Options {
  std::string model;
  LoadOptions load;
  ViewWishes view;
  LocationAndTime when;
  bool lights = true;
  std::string viewer;      // empty: the one beside this program
  std::string background;  // a cube map or a kind of weather; empty: as stored with the model
};

struct ShowHelp {};
struct ShowVersion {};
struct UsageError {
  std::string message;
};

// The place and the time that a model without any is shown at: a summer afternoon in the middle of
// Europe, with the sun high in the south-west.
LocationAndTime DefaultPlaceAndTime();

std::string HelpText();

// `arguments` without the program's name. Options may stand before and after the model, as
// "--name value" or "--name=value"; "--" ends them.
std::variant<Options, ShowHelp, ShowVersion, UsageError> ParseOptions(
    const std::vector<std::string>& arguments);

}  // namespace qv::host
