#pragma once

#include <cstddef>
#include <cstdint>

#include "core/SceneRecords.h"

// The records of the link, byte for byte as they stand in shared memory on both systems:
// little-endian, floats of 32 bits, every field on its natural boundary. Offsets to strings and
// arrays count from the start of the record.
namespace qv::wire {

enum Command : std::int32_t {
  kSceneComplete = 1,
  kSetCamera = 2,
  kAddMaterial = 3,
  kAddPointLight = 4,
  kAddSpotLight = 5,
  kAddDirectionalLight = 6,
  kAddLEMLight = 7,
  kAddMeshData = 8,
  kSetModelDirectory = 9,
  kBeginBillboard = 10,
  kEndBillboard = 11,
  kBeginStaticMesh = 12,
  kEndMesh = 13,
  kSetLocationAndTime = 14,
  kSetStatusMessage = 15,
  kSetProgress = 16,
  kIsCameraLinked = 17,
};

// A texture's file name with its terminator.
constexpr std::size_t kLongestTextureName = 260;
// What AddMaterial leaves as its result where the record was refused.
constexpr std::int32_t kNoMaterial = -1;

struct SetCameraRecord {
  std::int32_t code;
  float eye[3];
  float direction[3];
  float up[3];
  float fieldOfView;
  float target[3];
  std::uint8_t showProgress;
  std::uint8_t unused[3];
};
static_assert(sizeof(SetCameraRecord) == 60);
static_assert(offsetof(SetCameraRecord, eye) == 4);
static_assert(offsetof(SetCameraRecord, direction) == 16);
static_assert(offsetof(SetCameraRecord, up) == 28);
static_assert(offsetof(SetCameraRecord, fieldOfView) == 40);
static_assert(offsetof(SetCameraRecord, target) == 44);
static_assert(offsetof(SetCameraRecord, showProgress) == 56);

struct AddMaterialRecord {
  std::int32_t code;
  float ambientColor[3];
  float diffuseColor[3];
  float specularColor[3];
  float diffuseFactor;
  float specularExponent;
  float reflectance;
  std::int32_t glossy;
  float refractiveIndex;
  std::int32_t shadingFlag;
  float opacity;
  std::uint8_t hasTexture;
  std::uint8_t unused[3];
  std::int32_t textureName;  // offset
  float bumpFactor;
};
static_assert(sizeof(AddMaterialRecord) == 80);
static_assert(offsetof(AddMaterialRecord, ambientColor) == 4);
static_assert(offsetof(AddMaterialRecord, diffuseColor) == 16);
static_assert(offsetof(AddMaterialRecord, specularColor) == 28);
static_assert(offsetof(AddMaterialRecord, diffuseFactor) == 40);
static_assert(offsetof(AddMaterialRecord, specularExponent) == 44);
static_assert(offsetof(AddMaterialRecord, reflectance) == 48);
static_assert(offsetof(AddMaterialRecord, glossy) == 52);
static_assert(offsetof(AddMaterialRecord, refractiveIndex) == 56);
static_assert(offsetof(AddMaterialRecord, shadingFlag) == 60);
static_assert(offsetof(AddMaterialRecord, opacity) == 64);
static_assert(offsetof(AddMaterialRecord, hasTexture) == 68);
static_assert(offsetof(AddMaterialRecord, textureName) == 72);
static_assert(offsetof(AddMaterialRecord, bumpFactor) == 76);

struct AddPointLightRecord {
  std::int32_t code;
  float color[3];
  float position[3];
};
static_assert(sizeof(AddPointLightRecord) == 28);
static_assert(offsetof(AddPointLightRecord, color) == 4);
static_assert(offsetof(AddPointLightRecord, position) == 16);

struct AddSpotLightRecord {
  std::int32_t code;
  float color[3];
  float position[3];
  float direction[3];
  float innerAngle;
  float outerAngle;
};
static_assert(sizeof(AddSpotLightRecord) == 48);
static_assert(offsetof(AddSpotLightRecord, color) == 4);
static_assert(offsetof(AddSpotLightRecord, position) == 16);
static_assert(offsetof(AddSpotLightRecord, direction) == 28);
static_assert(offsetof(AddSpotLightRecord, innerAngle) == 40);
static_assert(offsetof(AddSpotLightRecord, outerAngle) == 44);

struct AddDirectionalLightRecord {
  std::int32_t code;
  float color[3];
  float direction[3];
};
static_assert(sizeof(AddDirectionalLightRecord) == 28);
static_assert(offsetof(AddDirectionalLightRecord, color) == 4);
static_assert(offsetof(AddDirectionalLightRecord, direction) == 16);

struct AddLEMLightRecord {
  std::int32_t code;
  float emission[3];
  std::int32_t triangleCount;
  std::int32_t vertices;  // offset; 9 floats for each triangle
};
static_assert(sizeof(AddLEMLightRecord) == 24);
static_assert(offsetof(AddLEMLightRecord, emission) == 4);
static_assert(offsetof(AddLEMLightRecord, triangleCount) == 16);
static_assert(offsetof(AddLEMLightRecord, vertices) == 20);
constexpr std::size_t kFloatsOfLEMTriangle = 9;

struct AddMeshDataRecord {
  std::int32_t code;
  std::int32_t vertexCount;
  std::int32_t vertices;  // offset; MeshVertex
  std::int32_t triangleCount;
  std::int32_t triangles;  // offset; MeshTriangle
};
static_assert(sizeof(AddMeshDataRecord) == 20);
static_assert(offsetof(AddMeshDataRecord, vertexCount) == 4);
static_assert(offsetof(AddMeshDataRecord, vertices) == 8);
static_assert(offsetof(AddMeshDataRecord, triangleCount) == 12);
static_assert(offsetof(AddMeshDataRecord, triangles) == 16);

// SetModelDirectory and SetStatusMessage.
struct TextRecord {
  std::int32_t code;
  std::int32_t text;  // offset
};
static_assert(sizeof(TextRecord) == 8);
static_assert(offsetof(TextRecord, text) == 4);

struct EndBillboardRecord {
  std::int32_t code;
  float position[3];
  float direction[2];
};
static_assert(sizeof(EndBillboardRecord) == 24);
static_assert(offsetof(EndBillboardRecord, position) == 4);
static_assert(offsetof(EndBillboardRecord, direction) == 16);

// The location reply; behind the code it is SetLocationAndTime too.
struct LocationRecord {
  float sunRotation;
  float latitude;
  float longitude;
  std::int32_t year;
  std::int32_t month;
  std::int32_t day;
  std::int32_t hour;
  std::int32_t minute;
  std::int32_t second;
  std::int32_t timeZone;
};
static_assert(sizeof(LocationRecord) == 40);
static_assert(offsetof(LocationRecord, sunRotation) == 0);
static_assert(offsetof(LocationRecord, latitude) == 4);
static_assert(offsetof(LocationRecord, longitude) == 8);
static_assert(offsetof(LocationRecord, year) == 12);
static_assert(offsetof(LocationRecord, month) == 16);
static_assert(offsetof(LocationRecord, day) == 20);
static_assert(offsetof(LocationRecord, hour) == 24);
static_assert(offsetof(LocationRecord, minute) == 28);
static_assert(offsetof(LocationRecord, second) == 32);
static_assert(offsetof(LocationRecord, timeZone) == 36);

struct SetLocationAndTimeRecord {
  std::int32_t code;
  LocationRecord location;
};
static_assert(sizeof(SetLocationAndTimeRecord) == 44);
static_assert(offsetof(SetLocationAndTimeRecord, location) == 4);

struct SetProgressRecord {
  std::int32_t code;
  float value;
};
static_assert(sizeof(SetProgressRecord) == 8);
static_assert(offsetof(SetProgressRecord, value) == 4);

// Travels with WM_HOST_CAMERA_CHANGED.
struct CameraRecord {
  float eye[3];
  float direction[3];
  float up[3];
  float fieldOfView;
};
static_assert(sizeof(CameraRecord) == 40);
static_assert(offsetof(CameraRecord, eye) == 0);
static_assert(offsetof(CameraRecord, direction) == 12);
static_assert(offsetof(CameraRecord, up) == 24);
static_assert(offsetof(CameraRecord, fieldOfView) == 36);

// The answer to WM_HOST_GET_CAMERA.
struct CameraReplyRecord {
  CameraRecord camera;
  float target[3];
};
static_assert(sizeof(CameraReplyRecord) == 52);
static_assert(offsetof(CameraReplyRecord, target) == 40);

// Travels with WM_HOST_DATE_TIME_CHANGED.
struct DateRecord {
  std::int32_t year;
  std::int32_t month;
  std::int32_t day;
  std::int32_t hour;
  std::int32_t minute;
  std::int32_t second;
};
static_assert(sizeof(DateRecord) == 24);
static_assert(offsetof(DateRecord, year) == 0);
static_assert(offsetof(DateRecord, month) == 4);
static_assert(offsetof(DateRecord, day) == 8);
static_assert(offsetof(DateRecord, hour) == 12);
static_assert(offsetof(DateRecord, minute) == 16);
static_assert(offsetof(DateRecord, second) == 20);

// Travels with WM_HOST_SET_PROPERTY: this, the name with its terminator, the value.
struct PropertyRecord {
  std::int32_t name;   // offset, always 12
  std::int32_t value;  // offset
  std::int32_t valueLength;
};
static_assert(sizeof(PropertyRecord) == 12);
static_assert(offsetof(PropertyRecord, name) == 0);
static_assert(offsetof(PropertyRecord, value) == 4);
static_assert(offsetof(PropertyRecord, valueLength) == 8);

// Travels with WM_HOST_GET_PROPERTY: this, and the name with its terminator.
struct PropertyRequestRecord {
  std::int32_t name;  // offset, always 4
};
static_assert(sizeof(PropertyRequestRecord) == 4);

// The answer to it.
struct PropertyReplyRecord {
  std::int32_t value;  // offset
  std::int32_t valueLength;
};
static_assert(sizeof(PropertyReplyRecord) == 8);
static_assert(offsetof(PropertyReplyRecord, value) == 0);
static_assert(offsetof(PropertyReplyRecord, valueLength) == 4);

// The value of the property "light_factors": 20 bytes are written, 17 read.
struct LightFactorsValue {
  float sun;
  float ambient;
  float point;
  float lem;
  std::uint8_t useSkyColorForAmbient;
  std::uint8_t unused[3];
};
static_assert(sizeof(LightFactorsValue) == 20);
static_assert(offsetof(LightFactorsValue, sun) == 0);
static_assert(offsetof(LightFactorsValue, ambient) == 4);
static_assert(offsetof(LightFactorsValue, point) == 8);
static_assert(offsetof(LightFactorsValue, lem) == 12);
static_assert(offsetof(LightFactorsValue, useSkyColorForAmbient) == 16);

// The answer to WM_HOST_GET_PAGES: this, and the page records back to back.
struct PagesReplyRecord {
  std::int32_t pages;  // offset
  std::int32_t pageCount;
};
static_assert(sizeof(PagesReplyRecord) == 8);
static_assert(offsetof(PagesReplyRecord, pages) == 0);
static_assert(offsetof(PagesReplyRecord, pageCount) == 4);

struct PageRecord {
  char16_t name[4096];
  float eye[3];
  float direction[3];
  float up[3];
  float fieldOfView;
  std::uint8_t hasSunTime;
  std::uint8_t unused[3];
  std::int32_t year;
  std::int32_t month;
  std::int32_t day;
  std::int32_t hour;
  std::int32_t minute;
  std::int32_t second;
  float latitude;
  float longitude;
  float sunParam;
};
static_assert(sizeof(PageRecord) == 8272);
static_assert(offsetof(PageRecord, name) == 0);
static_assert(offsetof(PageRecord, eye) == 8192);
static_assert(offsetof(PageRecord, direction) == 8204);
static_assert(offsetof(PageRecord, up) == 8216);
static_assert(offsetof(PageRecord, fieldOfView) == 8228);
static_assert(offsetof(PageRecord, hasSunTime) == 8232);
static_assert(offsetof(PageRecord, year) == 8236);
static_assert(offsetof(PageRecord, month) == 8240);
static_assert(offsetof(PageRecord, day) == 8244);
static_assert(offsetof(PageRecord, hour) == 8248);
static_assert(offsetof(PageRecord, minute) == 8252);
static_assert(offsetof(PageRecord, second) == 8256);
static_assert(offsetof(PageRecord, latitude) == 8260);
static_assert(offsetof(PageRecord, longitude) == 8264);
static_assert(offsetof(PageRecord, sunParam) == 8268);

}  // namespace qv::wire
