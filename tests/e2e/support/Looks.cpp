#include "e2e/support/Looks.h"

#include <FreeImage.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "e2e/support/Programs.h"

namespace qv::e2e {
namespace {

bool IsStrong(const Colour& c) {
  const auto [low, high] = std::minmax({c.red, c.green, c.blue});
  return high - low > 60;
}

// The first and last of `count` lines of which more than half is strong; `at(line, i)` gives a
// pixel of `length`.
template <class At>
std::pair<int, int> StrongRange(int count, int length, At&& at) {
  int first = count, last = -1;
  for (int line = 0; line < count; ++line) {
    int strong = 0;
    for (int i = 0; i < length; ++i) strong += IsStrong(at(line, i));
    if (strong * 2 <= length) continue;
    first = std::min(first, line);
    last = line;
  }
  return {first, last};
}

// A small picture with an opacity of 0 to 1 for each pixel, top row first.
struct Template {
  int width = 0, height = 0;
  std::vector<Colour> pixels;
  std::vector<double> opacity;
};

Template LoadTemplate(const std::filesystem::path& file) {
  Template loaded;
  FIBITMAP* read = FreeImage_Load(FIF_PNG, file.string().c_str());
  if (read == nullptr) return loaded;
  FIBITMAP* bitmap = FreeImage_ConvertTo32Bits(read);
  loaded.width = static_cast<int>(FreeImage_GetWidth(bitmap));
  loaded.height = static_cast<int>(FreeImage_GetHeight(bitmap));
  for (int y = loaded.height - 1; y >= 0; --y) {
    const BYTE* at = FreeImage_GetScanLine(bitmap, y);
    for (int x = 0; x < loaded.width; ++x, at += 4) {
      loaded.pixels.push_back({at[FI_RGBA_RED], at[FI_RGBA_GREEN], at[FI_RGBA_BLUE]});
      loaded.opacity.push_back(at[FI_RGBA_ALPHA] / 255.0);
    }
  }
  FreeImage_Unload(bitmap);
  FreeImage_Unload(read);
  return loaded;
}

double Brightness(const Colour& c) {
  return 0.299 * c.red + 0.587 * c.green + 0.114 * c.blue;
}

// How bright the template is on a plain ground, in the order of its pixels.
std::vector<double> OnGround(const Template& wanted, const Colour& ground) {
  std::vector<double> values;
  for (std::size_t i = 0; i < wanted.pixels.size(); ++i) {
    const double a = wanted.opacity[i];
    values.push_back(a * Brightness(wanted.pixels[i]) + (1 - a) * Brightness(ground));
  }
  return values;
}

// Takes the mean away, and scales what is left to the length 1.
void Normalise(std::vector<double>& values) {
  double mean = 0, square = 0;
  for (const double v : values) mean += v;
  mean /= static_cast<double>(values.size());
  for (double& v : values) {
    v -= mean;
    square += v * v;
  }
  if (square <= 0) return;
  for (double& v : values) v /= std::sqrt(square);
}

// The correlation of normalised values of a template, `width` a row, with as many in a picture of
// `stride` a row: 1 where they are the same but for light and contrast. It does not change when a
// picture is faded, nor, of brightness, when it is greyed. Bare pointers, since a sanitizer looks
// at each use of an index, and there are millions.
double Correlation(const std::vector<double>& expected, std::size_t width, const double* at,
                   std::size_t stride) {
  double sum = 0, square = 0, product = 0;
  const double* const end = expected.data() + expected.size();
  for (const double* row = expected.data(); row != end; row += width, at += stride) {
    for (std::size_t x = 0; x < width; ++x) {
      sum += at[x];
      square += at[x] * at[x];
      product += at[x] * row[x];
    }
  }
  const double spread = square - sum * sum / static_cast<double>(expected.size());
  // Of a plain ground only what rounding leaves.
  return spread > 1e-6 ? product / std::sqrt(spread) : 0;
}

}  // namespace

Area FindPicture(const Screenshot& shot) {
  const auto rows = StrongRange(shot.height, shot.width,
                                [&](int line, int i) -> const Colour& { return shot.At(i, line); });
  const auto columns = StrongRange(
      shot.width, shot.height, [&](int line, int i) -> const Colour& { return shot.At(line, i); });
  return {columns.first, rows.first, columns.second - columns.first + 1,
          rows.second - rows.first + 1};
}

std::optional<Point> FindTool(const Screenshot& shot, int bottom, const std::string& name) {
  constexpr double kAlike = 0.85;
  const std::filesystem::path images =
      std::filesystem::path(ViewerProgram()).parent_path() / "images";
  const Template wanted = LoadTemplate(images / (name + ".png"));
  if (wanted.pixels.empty() || shot.height < bottom) return std::nullopt;
  std::vector<double> expected = OnGround(wanted, shot.At(shot.width - 4, bottom - 4));
  Normalise(expected);
  std::vector<double> bright(static_cast<std::size_t>(shot.width) * bottom);
  std::transform(shot.pixels.begin(), shot.pixels.begin() + bright.size(), bright.begin(),
                 Brightness);
  double best = kAlike;
  std::optional<Point> found;
  for (int top = 0; top + wanted.height <= bottom; ++top) {
    const double* const row = bright.data() + static_cast<std::size_t>(top) * shot.width;
    for (int left = 0; left + wanted.width <= shot.width; ++left) {
      const double alike = Correlation(expected, wanted.width, row + left, shot.width);
      if (alike <= best) continue;
      best = alike;
      found = Point{left + wanted.width / 2, top + wanted.height / 2};
    }
  }
  return found;
}

int CountWhite(const Screenshot& shot, const Area& part) {
  int white = 0;
  for (int y = part.top; y < part.top + part.height; ++y) {
    for (int x = part.left; x < part.left + part.width; ++x) {
      const Colour& c = shot.At(x, y);
      white += c.red > 200 && c.green > 200 && c.blue > 200;
    }
  }
  return white;
}

std::string NameOf(const Colour& c) {
  const auto over = [](int a, int b) { return a > 40 && a * 2 > b * 3; };
  if (over(c.red, c.green) && over(c.red, c.blue)) return "red";
  if (over(c.green, c.red) && over(c.green, c.blue)) return "green";
  if (over(c.blue, c.red) && over(c.blue, c.green)) return "blue";
  if (over(c.red, c.blue) && over(c.green, c.blue)) return "yellow";
  return std::to_string(c.red) + ' ' + std::to_string(c.green) + ' ' + std::to_string(c.blue);
}

std::vector<std::string> QuarterColours(const Screenshot& shot, const Area& picture) {
  std::vector<std::string> names;
  for (const int row : {1, 3}) {
    for (const int column : {1, 3}) {
      names.push_back(NameOf(shot.At(picture.left + picture.width * column / 4,
                                     picture.top + picture.height * row / 4)));
    }
  }
  return names;
}

}  // namespace qv::e2e
