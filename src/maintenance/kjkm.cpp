#include "maintenance/kjkm.h"

#include <utility>

#include "host/account.h"
#include "host/calls.h"
#include "host/report.h"
#include "host/text.h"
#include "maintenance/kjkm_impl.h"

namespace tavrix::maintenance {

namespace {

constexpr int kTabHeight = 28 * viewkit::kTwipsPerPixel;

}  // namespace

Kjkm::Kjkm(viewkit::UserPort& user) : user_(user), vxVSTab_("vxVSTab") {
  controls_.Add(vxVSTab_);
  vxVSTab_.SetAccessibleName("科目类别");
  vxVSTab_.AddTab("key1", "全部");
  for (std::size_t i = 0; i < host::kCategories.size(); ++i) {
    vxVSTab_.AddTab("key" + std::to_string(i + 2), std::string(host::kCategories[i]));
  }
  vxVSTab_.TabActivated.Add([this](const std::string& key) { OnTabActivated(key); });
  for (int page = 0; page < kPages; ++page) {
    auto& grid = Vs_[static_cast<std::size_t>(page)];
    grid = std::make_unique<viewkit::FlexGrid>("Vs", page);
    grid->SetAccessibleName(vxVSTab_.TabCaption(page) + "科目");
    grid->SetVisible(page == 0);
    grid->DoubleClick.Add([this] { FileEdit(); });
    ConnectEnter(*grid);
    grid->AfterScroll.Add([this, page] { OnScrolled(page); });
    grid->GotFocus.Add([this, page] { OnGridFocused(page); });
    controls_.Add(*grid);
  }
}

void Kjkm::ConnectEnter(viewkit::FlexGrid& grid) {
  using viewkit::Key;
  // A key held down, also since it has closed the dialog, is not a new wish to edit.
  grid.KeyDown.Add([this](Key key, viewkit::Modifiers modifiers) {
    const bool plain =
        !modifiers.shift && !modifiers.control && !modifiers.alt && !modifiers.repeated;
    if (key == Key::kEnter && plain) FileEdit();
  });
}

Kjkm::~Kjkm() {
  Clear();
}

bool Kjkm::Init(std::shared_ptr<host::SystemObject> pcSystem, std::int32_t, std::int32_t) {
  Clear();
  session_ = std::make_shared<Session>();
  const auto session = session_;
  session->pcSystem = host::Required(std::move(pcSystem), "pcSystem");
  host::SystemObject& system = *session->pcSystem;  // the session is held to the end

  session->code_rule = host::Required(system.CreateCodeRule(), "CodeRule");
  session->log_helper = host::Required(system.CreateLogHelper(), "LogHelper");
  session->navigator = host::Required(system.CreateGridNavigator(), "GridNavigator");
  session->data_helper = host::Required(system.CreateDataHelper(), "DataHelper");
  session->data_helper->SetDatabase(host::DatabaseOf(system));
  session->mcMouseEvent.Connect(system.CreateMouseEvent(),
                                [this, held = std::weak_ptr(session)](std::int32_t value) {
                                  if (Runs(held)) OnWheel(value);
                                });
  session->mcMouseEvent.SetRate(
      host::LeadingNumber(host::SettingText(system, host::kScrollRateSetting)));
  if (session_ != session) return false;  // the host has cleared the view meanwhile

  vxVSTab_.Activate("key1");
  for (const auto& grid : Vs_) {
    if (!InitVsControl(*grid)) return false;
  }
  current_tab_ = 0;
  session->mFrmBmAdd = CreateEditDialog();
  session->rule = host::SettingText(system, host::kCodeRuleSetting);
  session->started = session_ == session;
  return session->started;
}

bool Kjkm::Runs(const std::weak_ptr<Session>& session) {
  const auto held = session.lock();
  return held && !held->ended;
}

std::shared_ptr<editing::FmBkmAdd> Kjkm::CreateEditDialog() {
  auto dialog = std::make_shared<editing::FmBkmAdd>(user_);
  // The open dialog may outlast the session, and with it the view itself.
  const std::weak_ptr<Session> held = session_;
  dialog->EvHasLoad.Add([this, held](bool pNew, std::int32_t plID) {
    if (Runs(held)) OnAccountSaved(pNew, plID);
  });
  dialog->ErrMessage.Add(
      [this, held](const std::string& text, std::int32_t level, const std::string& title) {
        if (Runs(held)) ErrMessage.Raise(text, level, title);
      });
  dialog->Message.Add([this, held](const std::string& text) {
    if (Runs(held)) Message.Raise(text);
  });
  return dialog;
}

bool Kjkm::Clear() {
  const auto session = std::exchange(session_, nullptr);
  if (!session) return false;
  session->ended = true;
  session->mcMouseEvent.Disconnect();
  return false;  // deliberately: the result carries no meaning
}

std::string Kjkm::Attributes(const std::string& psName) const {
  return psName == "isVisibleNewNext" ? "True" : "";
}

void Kjkm::SetParameters(const std::shared_ptr<host::Parameters>& parameters) {
  static constexpr const char* kBackColor = "backcolor";
  Trapped("IDesignUI_Parameters->", host::kCommandError, [&] {
    if (!parameters || !parameters->Exists(kBackColor)) return;
    const viewkit::Color color =
        viewkit::ColorOf(host::RequiredNumber(parameters->Item(kBackColor), kBackColor));
    SetBackColor(color);
    vxVSTab_.SetBackColor(color);
  });
}

void Kjkm::SetBackColor(viewkit::Color color) {
  if (back_color_ == color) return;
  back_color_ = color;
  BackColorChanged.Raise();
}

void Kjkm::Resize(int width, int height) {
  if (width == width_ && height == height_) return;  // what the host has moved since stays there
  width_ = width;
  height_ = height;
  vxVSTab_.SetBounds({0, 0, width, kTabHeight});
  const int grid_height = height > kTabHeight ? height - kTabHeight : 0;
  for (const auto& grid : Vs_) grid->SetBounds({0, kTabHeight, width, grid_height});
}

void Kjkm::Report(const std::string& text, std::int32_t level) {
  ErrMessage.Raise(text, level, user_.ApplicationTitle());
}

std::shared_ptr<Kjkm::Session> Kjkm::Running() const {
  if (!session_ || !session_->started) throw host::HostError("控件尚未初始化");
  return session_;
}

}  // namespace tavrix::maintenance
