#pragma once

#include <wx/bmpbndl.h>
#include <wx/iconbndl.h>

namespace qv {

// The picture of a tool: "images/NAME.png" under the working directory, with "images/NAME@2x.png"
// for dense displays where there is one. A file that is missing or broken gives an empty square of
// `size` pixels, and no message.
wxBitmapBundle LoadToolImage(const wxString& name, const wxSize& size);

// All sizes of an icon file. Empty, and no message, where the file cannot be read.
wxIconBundle LoadIcons(const wxString& path);

}  // namespace qv
