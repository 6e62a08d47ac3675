#pragma once

#include <wx/string.h>

namespace qv {

// Has texts looked up in the user's language from now on. Catalogues lie in `folder`, one folder a
// language: ours, "quorvane.mo", and the window library's. `language` ("de", "ja", ...) stands in
// for the user's choice unless it is empty. A language without catalogues leaves the texts in
// English, and a missing file is no error. Returns the language that the texts are in now. GUI
// thread, before the first window.
wxString LoadTranslations(const wxString& folder, const wxString& language);

}  // namespace qv
