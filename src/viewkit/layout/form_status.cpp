#include "viewkit/layout/form_status.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <string_view>

#include "host/report.h"
#include "host/text.h"
#include "viewkit/controls/check_box.h"
#include "viewkit/controls/combo_box.h"
#include "viewkit/controls/list_view.h"
#include "viewkit/controls/option_button.h"
#include "viewkit/controls/search_box.h"
#include "viewkit/controls/text_box.h"
#include "viewkit/grid/flex_grid.h"
#include "viewkit/layout/layout_file.h"
#include "viewkit/layout/m_mode.h"
#include "viewkit/layout/status_controls.h"
#include "viewkit/tree/tree_view.h"

namespace tavrix::viewkit {

namespace {

using host::IgnoreErrors;

constexpr const char* kSection = "Form";

struct Walk {
  const std::string& path;
  bool width_only;
  StatusWalk kind;
  host::SystemObject& system;
  std::shared_ptr<host::SettingsFile> file;

  [[nodiscard]] std::string Read(const std::string& key, const std::string& fallback) const {
    return ReadOr(*file, kSection, key, fallback);
  }
  void Write(const std::string& key, const std::string& value) const {
    file->WriteValue(kSection, key, value);
  }
};

std::string ControlKey(const Control& control) {
  std::string key = host::UpperCase(control.TypeName()) + "_" + control.Name();
  const int index = GetCtrlIndex(control);
  if (index != kNoArray) key += "_" + std::to_string(index);
  return key;
}

// --- each kind of control

void Save(const Walk& walk, const std::string& key, SearchBox& box) {
  walk.Write(key, box.SaveStatus());
}
void Restore(const Walk& walk, const std::string& key, SearchBox& box) {
  box.GetStatus(walk.Read(key, box.SaveStatus()));
}

void Save(const Walk& walk, const std::string& key, vxTxt_S& box) {
  IgnoreErrors([&] { walk.Write(key + "_Value", box.Value()); });
  walk.Write(key + "_Text", box.Text());
}
/// The value first, because setting it replaces the text.
void Restore(const Walk& walk, const std::string& key, vxTxt_S& box) {
  IgnoreErrors([&] { box.SetValue(walk.Read(key + "_Value", box.Value())); });
  box.SetText(walk.Read(key + "_Text", box.Text()));
}

void Save(const Walk& walk, const std::string& key, CheckBox& box) {
  walk.Write(key, std::to_string(box.Value()));
}
void Restore(const Walk& walk, const std::string& key, CheckBox& box) {
  box.SetValue(host::LeadingLong(walk.Read(key, std::to_string(box.Value()))));
}

void Save(const Walk& walk, const std::string& key, TextBox& box) {
  walk.Write(key, box.Text());
}
void Restore(const Walk& walk, const std::string& key, TextBox& box) {
  box.SetText(walk.Read(key, box.Text()));
}

void Save(const Walk& walk, const std::string& key, ComboBox& box) {
  walk.Write(key, box.Text());
}
void Restore(const Walk& walk, const std::string& key, ComboBox& box) {
  box.SetText(walk.Read(key, box.Text()));
}

/// As Automation writes a Boolean; read leniently, any number but 0 is a choice too.
void Save(const Walk& walk, const std::string& key, OptionButton& button) {
  walk.Write(key, button.Value() ? "True" : "False");
}
void Restore(const Walk& walk, const std::string& key, OptionButton& button) {
  const std::string value = walk.Read(key, button.Value() ? "True" : "False");
  button.SetValue(host::EqualNoCase(value, "True") || host::LeadingNumber(value) != 0);
}

void Save(const Walk& walk, const std::string&, FlexGrid& grid) {
  SaveVsLayout(walk.path, grid, walk.width_only, walk.system);
}
void Restore(const Walk& walk, const std::string&, FlexGrid& grid) {
  ApplyVsLayout(walk.path, grid, walk.width_only, walk.system);
}

void Save(const Walk& walk, const std::string& key, TreeView& tree) {
  if (const TreeNode* node = tree.SelectedItem()) walk.Write(key, node->Text());
}
void Restore(const Walk& walk, const std::string& key, TreeView& tree) {
  const std::string text = walk.Read(key, "");
  // A form reads it and leaves its tree alone, deliberately.
  if (text.empty() || walk.kind == StatusWalk::kForm) return;
  TreeNodes& nodes = tree.Nodes();
  for (int index = 1; index <= nodes.Count(); ++index) {
    TreeNode& node = nodes.Item(index);
    if (host::EqualNoCase(node.Text(), text)) return node.SetSelected(true);
  }
}

void Save(const Walk& walk, const std::string& key, ListView& list) {
  if (list.SelectedItem() > 0) walk.Write(key, std::to_string(list.SelectedItem()));
}
void Restore(const Walk& walk, const std::string& key, ListView& list) {
  const std::string stored = walk.Read(key, "");
  if (stored.empty()) return;
  const double number = host::LeadingNumber(stored);
  const int index = host::ToLong32(number);
  if (index != number || index < 1 || index > list.Count()) return;
  IgnoreErrors([&] { list.SetSelectedItem(index); });
  IgnoreErrors([&] { list.SetSelected(index, true); });
  IgnoreErrors([&] { list.EnsureVisible(index); });
}

void Save(const Walk& walk, const std::string& key, vxGrid& grid) {
  for (int col = 0; col < grid.Cols(); ++col) {
    IgnoreErrors([&] {
      walk.Write(key + "_Col" + std::to_string(col), std::to_string(grid.ColWidth(col)));
    });
  }
}
void Restore(const Walk& walk, const std::string& key, vxGrid& grid) {
  for (int col = 0; col < grid.Cols(); ++col) {
    IgnoreErrors([&] {
      const std::string now = std::to_string(grid.ColWidth(col));
      grid.SetColWidth(col, SaneNumber(walk.Read(key + "_Col" + std::to_string(col), now)));
    });
  }
}

// --- the table of kinds

using Visit = void (*)(const Walk& walk, const std::string& key, Control& control);

template <class Model>
void SaveAs(const Walk& walk, const std::string& key, Control& control) {
  Save(walk, key, dynamic_cast<Model&>(control));
}
template <class Model>
void RestoreAs(const Walk& walk, const std::string& key, Control& control) {
  Restore(walk, key, dynamic_cast<Model&>(control));
}
void LeaveAlone(const Walk&, const std::string&, Control&) {}

struct Kind {
  std::string_view type;
  bool in_form;  ///< a form keeps it too
  Visit save;
  Visit restore;
};

template <class Model>
constexpr Kind KindOf(std::string_view type, bool in_form = true) {
  return {type, in_form, &SaveAs<Model>, &RestoreAs<Model>};
}

/// The first that fits counts. Date pickers are known and left alone, deliberately: they keep what
/// the view gives them when it opens.
constexpr Kind kKinds[] = {
    KindOf<SearchBox>("SearchBox", false),
    KindOf<vxTxt_S>("vxTxt_S"),
    KindOf<CheckBox>("CheckBox"),
    KindOf<TextBox>("TextBox"),
    KindOf<ComboBox>("ComboBox"),
    KindOf<OptionButton>("OptionButton"),
    {"DTPicker", true, &LeaveAlone, &LeaveAlone},
    {"gcDTP", true, &LeaveAlone, &LeaveAlone},
    KindOf<FlexGrid>("VsFlexGrid"),
    KindOf<TreeView>("TreeView"),
    KindOf<ListView>("ListView", false),
    KindOf<vxGrid>("vxGrid"),
};

void WalkControls(const ControlList& controls, const Walk& walk, Visit Kind::*visit) {
  for (std::size_t i = 0; i < controls.Count(); ++i) {
    Control& control = controls.At(i);
    const std::string type = control.TypeName();
    const auto* const kind = std::ranges::find_if(kKinds, [&](const Kind& each) {
      return host::EqualNoCase(each.type, type) &&
             (each.in_form || walk.kind == StatusWalk::kPicker);
    });
    if (kind == std::end(kKinds)) continue;
    IgnoreErrors([&] { (kind->*visit)(walk, ControlKey(control), control); });
  }
}

void WalkFile(const ControlList& controls, const std::string& path, bool width_only,
              StatusWalk kind, host::SystemObject& system, Visit Kind::*visit) {
  IgnoreErrors([&] {
    const Walk walk{path, width_only, kind, system, OpenSettingsFile(system, path)};
    WalkControls(controls, walk, visit);
  });
}

}  // namespace

void GetFormStatus(const ControlList& controls, const std::string& psFile, bool pbWidthOnly,
                   StatusWalk walk, host::SystemObject& pcSystem) {
  WalkFile(controls, psFile, pbWidthOnly, walk, pcSystem, &Kind::restore);
}

void SaveFormStatus(const ControlList& controls, const std::string& psFile, bool pbWidthOnly,
                    StatusWalk walk, host::SystemObject& pcSystem) {
  WalkFile(controls, psFile, pbWidthOnly, walk, pcSystem, &Kind::save);
}

}  // namespace tavrix::viewkit
