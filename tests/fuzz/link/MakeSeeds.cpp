#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <vector>

#include "link/RecordBytes.h"

// Writes the seeds of the link's fuzzer into a folder: well-formed records of every kind, each
// small, and a few sequences.
namespace qv {
namespace {

using Input = std::vector<char>;

void Append(Input& input, std::span<const std::byte> bytes) {
  const auto* first = reinterpret_cast<const char*>(bytes.data());
  input.insert(input.end(), first, first + bytes.size());
}

// As the fuzzer's decoder of commands takes it: code, size of the rest, the rest.
Input Commands(std::initializer_list<RecordBytes> records) {
  Input input{0};
  for (const RecordBytes& record : records) {
    const auto rest = record.bytes().subspan(4);
    input.push_back(static_cast<char>(record.bytes()[0]));
    input.push_back(static_cast<char>(rest.size() & 0xff));
    input.push_back(static_cast<char>(rest.size() >> 8));
    Append(input, rest);
  }
  return input;
}

Input Message(char reader, const RecordBytes& record) {
  Input input{reader};
  Append(input, record.bytes());
  return input;
}

Input Property(char name, const RecordBytes& record) {
  Input input{1, name};
  Append(input, record.bytes());
  return input;
}

RecordBytes MeshData() {
  return RecordBytes(8)
      .Ints(4, {3, 20, 2, 140})
      .Floats(20, {0, 0, 0, 0, 0, 1, 0, 0, 0, 0})
      .Floats(60, {1, 0, 0, 0, 0, 1, 1, 0, 1, 0})
      .Floats(100, {0, 1, 0, 0, 0, 1, 0, 1, 0, 1})
      .Ints(140, {0, 1, 2, 0})
      .Ints(156, {2, 1, 0, -65535});
}

RecordBytes Material() {
  return RecordBytes(3)
      .Floats(4, {0.1f, 0.1f, 0.1f, 0.8f, 0.7f, 0.6f, 1, 1, 1, 1, 20, 0.5f})
      .Int(52, 1)
      .Float(56, 1.5f)
      .Int(60, 0)
      .Float(64, 0.5f)
      .Byte(68, 1)
      .Int(72, 80)
      .Float(76, 0.01f)
      .Text(80, "/textures/wood.jpg");
}

RecordBytes Location(std::size_t offset) {
  RecordBytes record;
  if (offset != 0) record = RecordBytes(14);
  return record.Floats(offset, {0.5f, 48, 9}).Ints(offset + 12, {2024, 6, 21, 12, 30, 0, 1});
}

void Write(const std::filesystem::path& folder, const std::string& name, const Input& input) {
  std::ofstream(folder / name, std::ios::binary)
      .write(input.data(), static_cast<std::streamsize>(input.size()));
}

void WriteCommands(const std::filesystem::path& folder) {
  Write(folder, "scene-complete", Commands({RecordBytes(1)}));
  Write(folder, "set-camera",
        Commands({RecordBytes(2)
                      .Floats(4, {1, 2, 3, 0, 1, 0, 0, 0, 1, 0.785f, 1, 5, 3})
                      .Byte(56, 1)
                      .Size(60)}));
  Write(folder, "add-material", Commands({Material(), Material().Byte(68, 0)}));
  Write(folder, "point-light", Commands({RecordBytes(4).Floats(4, {1, 1, 1, 10, 20, 30})}));
  Write(folder, "spot-light",
        Commands({RecordBytes(5).Floats(4, {1, 1, 1, 10, 20, 30, 0, 0, -1, 0.5f, 0.75f})}));
  Write(folder, "directional-light",
        Commands({RecordBytes(6).Floats(4, {1, 1, 1, 0, 0.6f, -0.8f})}));
  Write(folder, "lem-light",
        Commands({RecordBytes(7)
                      .Floats(4, {5, 5, 5})
                      .Ints(16, {1, 24})
                      .Floats(24, {0, 0, 0, 1, 0, 0, 0, 1, 0})}));
  Write(folder, "static-mesh",
        Commands({RecordBytes(12), MeshData(), MeshData(), RecordBytes(13)}));
  Write(folder, "billboard",
        Commands({RecordBytes(10), MeshData(), RecordBytes(11).Floats(4, {1, 2, 3, 0.6f, 0.8f})}));
  Write(folder, "model-directory", Commands({RecordBytes(9).Int(4, 8).Text(8, "/models/house")}));
  Write(folder, "location-and-time", Commands({Location(4)}));
  Write(folder, "status-and-progress",
        Commands({RecordBytes(15).Int(4, 8).Text(8, "Sending"), RecordBytes(16).Float(4, 0.5f)}));
  Write(folder, "is-camera-linked", Commands({RecordBytes(17), RecordBytes(18), RecordBytes(0)}));
  Write(folder, "small-scene",
        Commands({RecordBytes(9).Int(4, 8).Text(8, "/models"), Material(), RecordBytes(12),
                  MeshData(), RecordBytes(13), Location(4), RecordBytes(1),
                  RecordBytes(2).Size(60)}));
}

void WriteMessages(const std::filesystem::path& folder) {
  const RecordBytes numbers = RecordBytes().Floats(0, {1, 2, 3, 0, 1, 0, 0, 0, 1, 0.785f, 4, 5, 6});
  Write(folder, "camera-reply", Message(2, numbers));
  Write(folder, "location-reply", Message(3, Location(0)));
  Write(folder, "pages-reply",
        Message(4, RecordBytes()
                       .Ints(0, {8, 1})
                       .Byte(8, 'F')
                       .Floats(8200, {1, 2, 3, 0, 1, 0, 0, 0, 1, 0.785f})
                       .Byte(8240, 1)
                       .Ints(8244, {2024, 6, 21, 12, 30, 0})
                       .Floats(8268, {48, 9, 0.5f})));
  Write(folder, "camera-record", Message(5, numbers));
  Write(folder, "date-record", Message(6, RecordBytes().Ints(0, {2024, 6, 21, 12, 30, 0})));
  Write(folder, "property-record",
        Message(7, RecordBytes().Ints(0, {12, 18, 4}).Text(12, "gamma").Float(18, 2.2f)));
  Write(folder, "property-request", Message(8, RecordBytes().Int(0, 4).Text(4, "presets")));
  Write(folder, "presets-reply", Property(0, RecordBytes().Ints(0, {8, 5}).Text(8, "text")));
  Write(folder, "factors-reply",
        Property(5, RecordBytes().Ints(0, {8, 20}).Floats(8, {1, 1, 1, 1}).Byte(24, 1).Size(28)));
}

}  // namespace
}  // namespace qv

int main(int count, char** words) {
  if (count != 2) return 2;
  const std::filesystem::path folder = words[1];
  std::filesystem::create_directories(folder);
  qv::WriteCommands(folder);
  qv::WriteMessages(folder);
  return 0;
}
