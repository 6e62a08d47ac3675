#pragma once

#include <wx/bmpbndl.h>
#include <wx/gdicmn.h>
#include <wx/iconbndl.h>

namespace qv {

// Sizes that the pictures are drawn for, in pixels of an ordinary display: tools of toolbars, and
// small buttons and rows of lists.
inline const wxSize kToolImageSize(22, 22);
inline const wxSize kSmallImageSize(16, 16);

// A picture of the program: "images/NAME.png" under the working directory, with "NAME@1.5x.png" and
// "NAME@2x.png" for dense displays where there are such. Where the system's colours are dark, those
// of "images/dark" are shown instead, also when the user changes the colours later on. A file that
// is missing or broken gives an empty square of `size` pixels, and no message. GUI thread.
wxBitmapBundle LoadToolImage(const wxString& name, const wxSize& size);

// All sizes of an icon file. Empty, and no message, where the file cannot be read.
wxIconBundle LoadIcons(const wxString& path);

}  // namespace qv
