#pragma once

namespace qv {

// Makes every conversion between number and text of the runtime use a decimal point, whatever the
// user's regional settings say. The other categories of the locale stay as they are.
void UseDecimalPoint();

}  // namespace qv
