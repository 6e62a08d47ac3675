#include "render/material/Log2Table.h"

#include <cmath>

namespace qv {

const Log2Table& Log2Table::Instance() {
  static const Log2Table table;
  return table;
}

Log2Table::Log2Table() : entries_(kSize) {
  for (int i = 1; i < kSize; ++i) {
    entries_[i] = static_cast<float>(std::log(0.01 * i) / std::log(2.0));
  }
}

}  // namespace qv
