#include "app/Translations.h"

#include <wx/log.h>
#include <wx/translation.h>

namespace qv {
namespace {

const char kDomain[] = "quorvane";

}  // namespace

wxString LoadTranslations(const wxString& folder, const wxString& language) {
  const wxLogNull silence;
  wxFileTranslationsLoader::AddCatalogLookupPathPrefix(folder);
  // A table of our own: the one of the locale knows only languages that the system has a locale
  // for, and this one also heeds the list of languages that a user may have.
  auto* translations = new wxTranslations;
  wxTranslations::Set(translations);
  if (!language.empty()) translations->SetLanguage(language);
  translations->AddStdCatalog();
  translations->AddCatalog(kDomain);
  return translations->IsLoaded(kDomain) ? translations->GetBestTranslation(kDomain)
                                         : wxString("en");
}

}  // namespace qv
