// screen_pixels_compare FOLDER FOLDER MAXIMUM PART: compares the pictures of the same names in two
// folders byte by byte and tells, for each, how many pixels differ and by how much. Fails if a
// picture is missing, or if in one more than PART of the pixels (0 to 1) differ in a channel by
// more than MAXIMUM.

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

namespace {

struct Picture {
  int width = 0, height = 0;
  std::vector<unsigned char> rgb;
};

Picture Read(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  std::string kind;
  int most = 0;
  Picture picture;
  in >> kind >> picture.width >> picture.height >> most;
  in.get();
  picture.rgb.assign(std::istreambuf_iterator<char>(in), {});
  const bool whole = kind == "P6" && most == 255 && picture.width > 0 && picture.height > 0 &&
                     picture.rgb.size() == std::size_t{3} *
                                               static_cast<std::size_t>(picture.width) *
                                               static_cast<std::size_t>(picture.height);
  return whole ? picture : Picture{};
}

// Tells the differences and gives the part of the pixels that differ by more than `maximum`.
double Compare(const std::string& name, const Picture& a, const Picture& b, int maximum) {
  const std::size_t pixels = a.rgb.size() / 3;
  std::size_t different = 0, beyond = 0;
  int greatest = 0;
  for (std::size_t i = 0; i < pixels; ++i) {
    int difference = 0;
    for (std::size_t channel = 3 * i; channel < 3 * i + 3; ++channel) {
      difference = std::max(difference, std::abs(a.rgb[channel] - b.rgb[channel]));
    }
    different += difference > 0;
    beyond += difference > maximum;
    greatest = std::max(greatest, difference);
  }
  std::cout << name << ": " << different << " of " << pixels << " pixels differ, the most by "
            << greatest << ", " << beyond << " by more than " << maximum << '\n';
  return static_cast<double>(beyond) / static_cast<double>(pixels);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5) return 2;
  const int maximum = std::atoi(argv[3]);
  const double part = std::atof(argv[4]);
  int compared = 0;
  bool same = true;
  for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
    if (entry.path().extension() != ".ppm") continue;
    const std::string name = entry.path().stem().string();
    const Picture a = Read(entry.path());
    const Picture b = Read(std::filesystem::path(argv[2]) / entry.path().filename());
    if (a.rgb.empty() || a.width != b.width || a.height != b.height) {
      std::cout << name << ": missing, broken or of another size\n";
      same = false;
      continue;
    }
    same = Compare(name, a, b, maximum) <= part && same;
    ++compared;
  }
  return same && compared > 0 ? 0 : 1;
}
