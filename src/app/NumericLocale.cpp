#include "app/NumericLocale.h"

#include <clocale>

namespace qv {

void UseDecimalPoint() {
  // Names that systems know for a locale with a decimal point, by preference; every system knows
  // the last.
  constexpr const char* kNames[] = {"English", "C"};
  for (const char* name : kNames) {
    if (std::setlocale(LC_NUMERIC, name)) return;
  }
}

}  // namespace qv
