// Which kind of window a kind of control gets.

#include <stdexcept>

#include "viewkit/win32/button_peers.h"
#include "viewkit/win32/drawn_peers.h"
#include "viewkit/win32/grid_peer.h"
#include "viewkit/win32/input_peers.h"
#include "viewkit/win32/tree_peer.h"

namespace tavrix::viewkit::win32 {
namespace {

/// A peer when the control is of this kind; else null.
template <class PeerKind, class ControlKind>
std::shared_ptr<ControlPeer> Try(ViewContext& context, Control& control) {
  auto* model = dynamic_cast<ControlKind*>(&control);
  return model == nullptr ? nullptr : std::make_shared<PeerKind>(context, *model);
}

}  // namespace

std::shared_ptr<ControlPeer> MakePeer(ViewContext& context, Control& control) {
  using Maker = std::shared_ptr<ControlPeer> (*)(ViewContext&, Control&);
  constexpr Maker kMakers[] = {
      Try<GridPeer, FlexGrid>,
      Try<TabPeer, TabStrip>,
      Try<TreePeer, TreeView>,
      Try<TextBoxPeer, TextBox>,
      Try<SearchBoxPeer, SearchBox>,
      Try<ComboBoxPeer, ComboBox>,
      Try<CheckBoxPeer, CheckBox>,
      Try<OptionButtonPeer, OptionButton>,
      Try<CommandButtonPeer, CommandButton>,
      Try<LabelPeer, Label>,
      Try<FramePeer, FrameBox>,
      Try<SplitterPeer, Splitter>,
      Try<ListPeer, ListView>,
      Try<DatePeer, DTPicker>,
  };
  for (const Maker make : kMakers) {
    if (auto peer = make(context, control)) return peer;
  }
  throw std::invalid_argument("no window for a control of type " + control.TypeName());
}

}  // namespace tavrix::viewkit::win32
