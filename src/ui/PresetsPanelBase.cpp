#include "ui/PresetsPanelBase.h"

#include <wx/panel.h>
#include <wx/sizer.h>

#include <algorithm>

#include "ui/CommandIds.h"
#include "ui/Images.h"

namespace qv {
namespace {

const wxSize kClientSize(303, 289);
constexpr int kFewestRows = 4;
constexpr int kBorderAllowance = 16;

}  // namespace

_PresetsPanel::_PresetsPanel(wxWindow* parent)
    : FloatingFrame(parent, _("Presets")),
      record_(LoadToolImage("RecordCamera", kToolImageSize)),
      recording_(LoadToolImage("RecordCameraOn", kToolImageSize)) {
  tools_ = CreateToolBar(wxTB_HORIZONTAL | wxTB_FLAT);
  AddTools();

  auto* ground = new wxPanel(this);
  list_ = new wxListCtrl(ground, kIdPresetList, wxDefaultPosition, wxDefaultSize,
                         wxLC_REPORT | wxLC_NO_HEADER | wxLC_EDIT_LABELS);
  wxVector<wxBitmapBundle> pictures;
  for (const char* name : {"ViewSmallImported", "ViewSmall", "KeyFrameAnimationSmall"}) {
    pictures.push_back(LoadToolImage(name, kSmallImageSize));
  }
  list_->SetSmallImages(pictures);
  list_->AppendColumn(wxString());
  auto* all = new wxBoxSizer(wxVERTICAL);
  all->Add(list_, wxSizerFlags(1).Expand());
  ground->SetSizer(all);

  // All tools are in sight, whatever the frame's border takes of the width.
  const int width = tools_->GetBestSize().x + FromDIP(kBorderAllowance);
  SetMinClientSize(wxSize(width, kFewestRows * FromDIP(kToolImageSize.y)));
  wxSize size = FromDIP(kClientSize);
  size.IncTo(wxSize(width, 0));
  SetClientSize(size);
}

void _PresetsPanel::AddTools() {
  const auto add = [this](int id, const wxString& label, const wxString& help,
                          const wxBitmapBundle& picture) {
    tools_->AddTool(id, label, picture, help);
  };
  const auto image = [](const char* name) { return LoadToolImage(name, kToolImageSize); };
  add(kIdAddView, _("Add View"), _("Add an new View"), image("View"));
  add(kIdAddKeyframeAnimation, _("tool"), _("Add a keyframe animation"),
      image("KeyFrameAnimation_KeyFrames"));
  add(kIdAddTour, _("tool"), _("Add a tour animation"), image("KeyFrameAnimation_Tour"));
  add(kIdRecordPath, _("Start Camera Path"), _("Start recording a camera movement"), record_);
  add(kIdGenerateMovie, _("Generate a movie"), _("Generate a movie file"), image("Movie"));
  add(kIdMovePresetUp, _("tool"), _("Move up an item"), image("Up"));
  add(kIdMovePresetDown, _("tool"), _("Move down an item"), image("Down"));
  add(kIdDeletePreset, _("tool"), _("Delete an item"), image("Delete"));
  add(kIdImportPages, _("Import SketchUp scenes"), _("Import SketchUp scenes"),
      image("ImportScenes"));
  add(kIdImportPath, _("Import SUAnimate path"), _("Import SUAnimate path"),
      image("ImportSUAPath"));
  tools_->Realize();
}

wxMenu& _PresetsPanel::ContextMenu() {
  if (!contextMenu_) {
    contextMenu_ = std::make_unique<wxMenu>();
    contextMenu_->Append(kIdExplode, _("&Explode"));
    contextMenu_->Append(kIdUpdateView, _("&Update View"));
    contextMenu_->Append(kIdInsertView, _("Insert New View"));
    contextMenu_->AppendSeparator();
    contextMenu_->Append(kIdDeletePreset, _("&Delete"));
  }
  return *contextMenu_;
}

void _PresetsPanel::ShowRecordTool(bool recording) {
  tools_->SetToolNormalBitmap(kIdRecordPath, recording ? recording_ : record_);
}

}  // namespace qv
