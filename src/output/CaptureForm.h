#pragma once

#include <wx/arrstr.h>
#include <wx/confbase.h>
#include <wx/gdicmn.h>
#include <wx/string.h>

#include <optional>

namespace qv {

// A picture that the user asks for.
struct CaptureRequest {
  wxString filter;  // of the file dialog: its text, a bar, its pattern
  int width = 0;    // pixels
  int height = 0;
};

// What the dialog of image capture shows and decides, without its windows. The fields hold what the
// controls show; they are read from the settings store, and written back when they are accepted.
class CaptureForm {
 public:
  explicit CaptureForm(const wxConfigBase& settings);

  // The file dialog's filters of the formats, in the user's language, and what the choice shows of
  // them.
  static wxArrayString Filters();
  static wxArrayString FormatNames();

  int format = 0;        // index into Filters
  bool ownSize = false;  // rather than that of the view
  wxString width;
  wxString height;

  // Nothing if a size of the user's is asked for and a field is no number.
  std::optional<CaptureRequest> GetSettings(const wxSize& view) const;
  // What OK does: stores the choice and gives nothing, or stores nothing and gives the message that
  // says what is wrong.
  std::optional<wxString> Accept(const wxSize& view, wxConfigBase& settings) const;
};

// The name of the file that is written for a name that the user gave: without an extension it gets
// that of the filter's pattern.
wxString CompleteFileName(const wxString& name, const wxString& filter);

}  // namespace qv
