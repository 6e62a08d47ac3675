#pragma once

#include <wx/gdicmn.h>
#include <wx/string.h>

#include <cstdint>
#include <string>

namespace qv {

// Local date and time of the sun, "hour:minute month/day". The Julian date is UT, the longitude in
// degrees.
std::string SunTimeText(double julianDate, float longitude);

// "Cam Height: ", translated, and the height in inches, the unit that the host sends its models in.
wxString EyeHeightText(float eyeHeight);

// The two lines, translated, over the picture: seconds of the last base and antialiasing pass, and
// what the scene holds.
wxString StatisticsText(double basePassSeconds, double antialiasPassSeconds,
                        std::int32_t triangleCount, std::int32_t materialCount);

// What the user is told when a picture of that size, in pixels, cannot be held.
wxString MemoryRefusedText(const wxSize& size);

}  // namespace qv
