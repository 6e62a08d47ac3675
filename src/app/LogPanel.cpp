#include "app/LogPanel.h"

#include <wx/button.h>
#include <wx/clipbrd.h>
#include <wx/dataobj.h>
#include <wx/listctrl.h>
#include <wx/panel.h>
#include <wx/sizer.h>

#include <utility>
#include <vector>

#include "app/LogHistory.h"

namespace qv {
namespace {

const wxSize kSize(500, 300);
constexpr int kMargin = 8;
constexpr int kTimeWidth = 80;
constexpr int kLevelWidth = 80;

enum Column { kTime, kLevel, kMessage };

wxString TextOf(const LogHistory::Line& line, long column) {
  switch (column) {
    case kTime:
      return wxString::Format("%.3f", line.seconds);
    case kLevel:
      return NameOf(line.level);
    default:
      return wxString::FromUTF8(line.text);
  }
}

}  // namespace

// The lines as they were when it was last filled; the control asks for those that it shows.
class LogPanel::List : public wxListCtrl {
 public:
  explicit List(wxWindow* parent)
      : wxListCtrl(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                   wxLC_REPORT | wxLC_VIRTUAL | wxLC_HRULES) {
    AppendColumn(_("Seconds"), wxLIST_FORMAT_RIGHT, FromDIP(kTimeWidth));
    AppendColumn(_("Level"), wxLIST_FORMAT_LEFT, FromDIP(kLevelWidth));
    AppendColumn(_("Message"));
    Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
      event.Skip();
      FitMessages();
    });
  }

  void Fill(std::vector<LogHistory::Line> lines) {
    lines_ = std::move(lines);
    SetItemCount(static_cast<long>(lines_.size()));
    if (!lines_.empty()) EnsureVisible(static_cast<long>(lines_.size()) - 1);
    Refresh();
  }

  wxString AllText() const {
    wxString all;
    for (const LogHistory::Line& line : lines_) {
      for (const Column column : {kTime, kLevel}) all += TextOf(line, column) + '\t';
      all += TextOf(line, kMessage) + '\n';
    }
    return all;
  }

 private:
  wxString OnGetItemText(long item, long column) const override {
    const auto index = static_cast<std::size_t>(item);
    return index < lines_.size() ? TextOf(lines_[index], column) : wxString();
  }

  void FitMessages() {
    const int rest = GetClientSize().x - GetColumnWidth(kTime) - GetColumnWidth(kLevel);
    if (rest > 0) SetColumnWidth(kMessage, rest);
  }

  std::vector<LogHistory::Line> lines_;
};

LogPanel::LogPanel(wxWindow* parent) : FloatingFrame(parent, _("Log")) {
  auto* ground = new wxPanel(this);
  list_ = new List(ground);
  auto* copy = new wxButton(ground, wxID_COPY, _("Copy All"));
  auto* clear = new wxButton(ground, wxID_CLEAR);
  const int margin = FromDIP(kMargin);
  auto* buttons = new wxBoxSizer(wxHORIZONTAL);
  buttons->Add(copy, wxSizerFlags().Border(wxRIGHT, margin));
  buttons->Add(clear);
  auto* all = new wxBoxSizer(wxVERTICAL);
  all->Add(list_, wxSizerFlags(1).Expand());
  all->Add(buttons, wxSizerFlags().Right().Border(wxALL, margin));
  ground->SetSizer(all);
  SetSize(FromDIP(kSize));

  copy->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { CopyAll(); });
  clear->Bind(wxEVT_BUTTON, [](wxCommandEvent&) { LogHistory::Shared().Clear(); });
}

LogPanel::~LogPanel() {
  LogHistory::Shared().Watch({});
}

bool LogPanel::Show(bool show) {
  const bool changed = FloatingFrame::Show(show);
  if (!changed) return false;
  if (show) {
    Refill();
    LogHistory::Shared().Watch([this] {
      if (!refillPosted_.exchange(true)) CallAfter([this] { Refill(); });
    });
  } else {
    LogHistory::Shared().Watch({});
  }
  return true;
}

void LogPanel::Refill() {
  refillPosted_ = false;
  list_->Fill(LogHistory::Shared().Lines());
}

void LogPanel::CopyAll() {
  const wxClipboardLocker clipboard;
  if (!clipboard) return;
  wxTheClipboard->SetData(new wxTextDataObject(list_->AllText()));
}

}  // namespace qv
