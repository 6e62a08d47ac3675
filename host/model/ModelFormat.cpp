#include "host/model/ModelFormat.h"

#include <assimp/importerdesc.h>
#include <assimp/metadata.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <string_view>

#include "host/model/Units.h"

namespace qv::host {
namespace {

using Eigen::Matrix3d;
using Family = ModelFormat::Family;

// A file without a unit is not taken for a thing larger than this, if it can be helped.
constexpr double kLargestPlausibleMetres = 100;

// z up to y up, as the import library turns the formats of modelling programs with z up.
const Matrix3d kYUpFromZUp{{1, 0, 0}, {0, 0, 1}, {0, -1, 0}};
const Matrix3d kYUpFromXUp{{0, -1, 0}, {1, 0, 0}, {0, 0, 1}};

// What is fixed for a format. `extension` is the first that the import library lists for it.
struct FormatRow {
  std::string_view extension;
  Family family;
  UpAxis up;
  bool turned;       // the import library has turned z up to y up
  double metres;     // per unit; 0 where there is no rule
  LengthUnit habit;  // where there is no rule, or the rule is often broken
  bool wholeSpotAngles;
};

constexpr std::array kFormats = std::to_array<FormatRow>({
    {"dae", Family::kCollada, UpAxis::kY, false, 0, LengthUnit::kMetre, true},
    {"ifc", Family::kIfc, UpAxis::kZ, true, 0, LengthUnit::kMetre, false},
    {"gltf", Family::kGltf, UpAxis::kY, false, 1, LengthUnit::kMetre, false},
    {"fbx", Family::kFbx, UpAxis::kY, false, 0.01, LengthUnit::kMetre, true},
    {"obj", Family::kObj, UpAxis::kY, false, 0, LengthUnit::kMetre, false},
    {"3ds", Family::k3ds, UpAxis::kZ, true, 0, LengthUnit::kInch, true},
    {"ase", Family::kOther, UpAxis::kZ, true, 0, LengthUnit::kInch, true},
    {"dxf", Family::kOther, UpAxis::kZ, true, 0, LengthUnit::kInch, false},
    {"blend", Family::kOther, UpAxis::kZ, false, 1, LengthUnit::kMetre, true},
    {"x3d", Family::kOther, UpAxis::kY, false, 1, LengthUnit::kMetre, false},
    {"stl", Family::kOther, UpAxis::kZ, false, 0, LengthUnit::kMillimetre, false},
    {"3mf", Family::kOther, UpAxis::kZ, false, 0, LengthUnit::kMillimetre, false},
    {"amf", Family::kOther, UpAxis::kZ, false, 0, LengthUnit::kMillimetre, false},
    {"cob", Family::kOther, UpAxis::kZ, false, 0, LengthUnit::kMetre, false},
    {"xgl", Family::kOther, UpAxis::kZ, false, 0, LengthUnit::kMetre, false},
    {"bsp", Family::kOther, UpAxis::kZ, false, kMetresPerInch, LengthUnit::kMetre, false},
    {"smd", Family::kOther, UpAxis::kZ, false, kMetresPerInch, LengthUnit::kMetre, false},
    {"md2", Family::kOther, UpAxis::kZ, true, kMetresPerInch, LengthUnit::kMetre, false},
    {"md3", Family::kOther, UpAxis::kZ, true, kMetresPerInch, LengthUnit::kMetre, false},
    {"md5mesh", Family::kOther, UpAxis::kZ, true, kMetresPerInch, LengthUnit::kMetre, false},
    {"mdc", Family::kOther, UpAxis::kZ, true, kMetresPerInch, LengthUnit::kMetre, false},
    {"mdl", Family::kOther, UpAxis::kZ, true, kMetresPerInch, LengthUnit::kMetre, false},
    {"iqm", Family::kOther, UpAxis::kZ, true, 0, LengthUnit::kMetre, false},
});

ModelFormat FromRow(const FormatRow& row) {
  ModelFormat format;
  format.family = row.family;
  format.fileUp = row.up;
  if (row.turned) format.sceneFromFile = kYUpFromZUp;
  format.metresPerFileUnit = row.metres;
  format.habit = row.habit;
  format.wholeSpotAngles = row.wholeSpotAngles;
  format.losesHardEdges = row.extension == "blend";
  format.linearColors = row.family == Family::kGltf;
  return format;
}

Matrix3d Linear(const aiMatrix4x4& m) {
  return Matrix3d{{m.a1, m.a2, m.a3}, {m.b1, m.b2, m.b3}, {m.c1, m.c2, m.c3}};
}

// COLLADA and IFC: the root node holds the scale to metres.
void TakeMetricRoot(const Matrix3d& root, ModelFormat& format) {
  const double scale = root.col(0).norm();
  if (!std::isfinite(scale) || scale <= 0) return;
  format.sceneUnitsPerFileUnit = scale;
  format.metresPerFileUnit = scale;
}

// COLLADA: the root node holds the turn to y up as well.
void TakeColladaRoot(const Matrix3d& root, ModelFormat& format) {
  TakeMetricRoot(root, format);
  const Matrix3d turn = root / format.sceneUnitsPerFileUnit;
  if (turn.isApprox(kYUpFromZUp, 1e-4)) {
    format.fileUp = UpAxis::kZ;
    format.sceneFromFile = kYUpFromZUp;
  } else if (turn.isApprox(kYUpFromXUp, 1e-4)) {
    format.fileUp = UpAxis::kX;
    format.sceneFromFile = kYUpFromXUp;
  }
}

// FBX: coordinates come as they are, unit (in centimetres) and axis stand in the metadata.
void TakeFbxMetadata(const aiMetadata* metadata, ModelFormat& format) {
  if (metadata == nullptr) return;
  float centimetres = 0;
  if (metadata->Get("UnitScaleFactor", centimetres) && std::isfinite(centimetres) &&
      centimetres > 0) {
    format.metresPerFileUnit = 0.01 * static_cast<double>(centimetres);
  }
  std::int32_t axis = 1;
  if (metadata->Get("UpAxis", axis) && axis >= 0 && axis <= 2) {
    format.fileUp = static_cast<UpAxis>(axis);
  }
}

Matrix3d ZUpFrom(UpAxis axis) {
  switch (axis) {
    case UpAxis::kX:
      return kYUpFromZUp.transpose() * kYUpFromXUp;
    case UpAxis::kY:
      return kYUpFromZUp.transpose();
    case UpAxis::kZ:
      break;
  }
  return Matrix3d::Identity();
}

// Below this a file without a unit is not taken for what its format is used for.
double SmallestPlausibleMetres(LengthUnit habit) {
  switch (habit) {
    case LengthUnit::kInch:
      return 0.3;
    case LengthUnit::kMillimetre:
      return 0.01;
    default:
      return 0;
  }
}

LengthUnit LikelyUnit(LengthUnit habit, double diagonal) {
  for (const LengthUnit unit : {habit, LengthUnit::kMetre, LengthUnit::kCentimetre}) {
    const double metres = diagonal * MetresPer(unit);
    if (metres >= SmallestPlausibleMetres(habit) && metres <= kLargestPlausibleMetres) return unit;
  }
  return LengthUnit::kMillimetre;
}

const char* NameOf(LengthUnit unit) {
  switch (unit) {
    case LengthUnit::kInch:
      return "inches";
    case LengthUnit::kMetre:
      return "metres";
    case LengthUnit::kCentimetre:
      return "centimetres";
    case LengthUnit::kMillimetre:
      return "millimetres";
    case LengthUnit::kFoot:
      return "feet";
  }
  return "";
}

std::string NameOfLength(double metres) {
  for (const LengthUnit unit : {LengthUnit::kInch, LengthUnit::kMetre, LengthUnit::kCentimetre,
                                LengthUnit::kMillimetre, LengthUnit::kFoot}) {
    if (std::abs(metres / MetresPer(unit) - 1) < 1e-4) return NameOf(unit);
  }
  return "units of " + std::to_string(metres) + " m";
}

char NameOf(UpAxis axis) {
  return "xyz"[static_cast<int>(axis)];
}

}  // namespace

double MetresPer(LengthUnit unit) {
  switch (unit) {
    case LengthUnit::kInch:
      return kMetresPerInch;
    case LengthUnit::kMetre:
      return 1;
    case LengthUnit::kCentimetre:
      return 0.01;
    case LengthUnit::kMillimetre:
      return 0.001;
    case LengthUnit::kFoot:
      return 12 * kMetresPerInch;
  }
  return 1;
}

ModelFormat FormatOf(const Assimp::Importer& importer, const aiScene& scene) {
  const int index = importer.GetPropertyInteger("importerIndex", -1);
  const aiImporterDesc* description =
      index >= 0 ? importer.GetImporterInfo(static_cast<std::size_t>(index)) : nullptr;
  ModelFormat format;
  if (description == nullptr) return format;

  const std::string_view extensions = description->mFileExtensions;
  const std::string_view first = extensions.substr(0, extensions.find(' '));
  for (const FormatRow& row : kFormats) {
    if (row.extension == first) format = FromRow(row);
  }
  const std::string_view name = description->mName;
  format.name = name.substr(0, name.find(" Importer"));
  const Matrix3d root = Linear(scene.mRootNode->mTransformation);
  if (format.family == Family::kCollada) TakeColladaRoot(root, format);
  if (format.family == Family::kIfc) TakeMetricRoot(root, format);
  if (format.family == Family::kFbx) TakeFbxMetadata(scene.mMetaData, format);
  return format;
}

SceneUnits UnitsOf(const ModelFormat& format, const LoadOptions& options, double diagonal) {
  const double fileDiagonal = diagonal / format.sceneUnitsPerFileUnit;
  const bool stated = options.unit || format.metresPerFileUnit > 0;
  double metresPerFileUnit = format.metresPerFileUnit;
  if (options.unit) {
    metresPerFileUnit = MetresPer(*options.unit);
  } else if (!stated) {
    metresPerFileUnit = MetresPer(LikelyUnit(format.habit, fileDiagonal));
  }
  const UpAxis up = options.up.value_or(format.fileUp);
  const double scale = metresPerFileUnit / kMetresPerInch / format.sceneUnitsPerFileUnit;
  return {scale * ZUpFrom(up) * format.sceneFromFile.transpose(),
          format.name + ", " + NameOfLength(metresPerFileUnit) +
              (stated ? "" : " (a guess, the file states no unit)") + ", " + NameOf(up) + " up"};
}

}  // namespace qv::host
