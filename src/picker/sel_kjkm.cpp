#include "picker/sel_kjkm.h"

#include <utility>

#include "host/calls.h"
#include "host/grid_update.h"
#include "host/text.h"
#include "picker/parameters.h"
#include "picker/sel_kjkm_impl.h"

namespace tavrix::picker {

namespace {

/// The text of the first field of a query's first row; empty without a row.
std::string FirstField(host::SystemObject& system, const std::string& sql) {
  return host::ReadRows(system, sql, [](host::Recordset& rows) {
    if (rows.EndOfFile()) return std::string();
    return host::NoObject(rows.Field(0), "Fields").ToText();
  });
}

}  // namespace

selKjkm::selKjkm(viewkit::UserPort& user)
    : user_(user),
      TV_("TV"),
      Vs_("Vs"),
      SearchBox1_("SearchBox1"),
      Chk_("Chk"),
      Check_("Check"),
      ChkFind_("ChkFind"),
      LblCount_("LblCount"),
      lblMessage_("lblMessage"),
      Splitter1_("Splitter1") {
  AddControls();
  ConnectControls();
}

selKjkm::~selKjkm() {
  Clear();
}

void selKjkm::AddControls() {
  static constexpr std::array<const char*, kButtons> kCaptions = {"确定", "取消", "刷新",
                                                                  "科目..."};
  for (int index = 0; index < kButtons; ++index) {
    const auto at = static_cast<std::size_t>(index);
    Cmd_[at] = std::make_unique<viewkit::CommandButton>("Cmd", index);
    Cmd_[at]->SetCaption(kCaptions[at]);
  }
  Chk_.SetCaption("显示封存科目");
  Check_.SetCaption("筛选");
  ChkFind_.SetCaption("查找");
  ChkFind_.SetVisible(false);  // a click on it does nothing; a host that wants it shows it

  TV_.SetAccessibleName("科目类别");
  Vs_.SetAccessibleName("科目");
  SearchBox1_.SetAccessibleName("查找科目");
  Splitter1_.SetAccessibleName("分隔条");

  for (viewkit::Control* control : std::initializer_list<viewkit::Control*>{
           &TV_, &Vs_, &SearchBox1_, &Chk_, &Check_, &ChkFind_}) {
    controls_.Add(*control);
  }
  for (const auto& button : Cmd_) controls_.Add(*button);
  controls_.Add(LblCount_);
  controls_.Add(lblMessage_);
  controls_.Add(Splitter1_);
}

void selKjkm::ConnectControls() {
  Vs_.SelChange.Add([this] { ShowSelectionCount(); });
  Vs_.DoubleClick.Add([this] { FinishSelection(); });
  Vs_.AfterScroll.Add([this] { OnScrolled(); });
  Vs_.GotFocus.Add([this] { OnGridFocused(); });
  SearchBox1_.SearchRequested.Add([this] { OnSearch(); });
  Chk_.Clicked.Add([this] { LoadAccountList(); });
  Check_.Clicked.Add([this] { OnSearchMode(); });
  for (int index = 0; index < kButtons; ++index) {
    Cmd_[static_cast<std::size_t>(index)]->Clicked.Add([this, index] { OnButton(index); });
  }
  Splitter1_.Moved.Add([this] { OnSplitterMoved(); });
  for (std::size_t position = 0; position < controls_.Count(); ++position) {
    controls_.At(position).VisibleChanged.Add([this] { PlaceControls(); });
  }
  ConnectKeys();
}

bool selKjkm::Init(std::shared_ptr<host::SystemObject> pcSystem, std::int32_t plProgID,
                   const std::string&) {
  m_Parameters.reset();  // those of the host stay as they are
  Clear();
  const auto session = std::make_shared<Session>();
  session_ = session;
  session->m_System = host::Required(std::move(pcSystem), "pcSystem");
  session->program_id = plProgID;
  host::SystemObject& system = *session->m_System;
  m_Parameters = host::Required(system.CreateParameters(), "Parameters");
  m_Selected = std::make_shared<colKjkm>();

  session->mcMouseEvent.SetRate(host::LeadingNumber(
      FirstField(system,
                 "select item_value from xt_accinformation where system_code='system' and "
                 "item_code='mouseeventscrollrate'")));
  if (session_ != session) return false;  // the host has cleared the picker meanwhile

  session->m_Tv = std::make_shared<viewkit::cTreeView>(user_);
  session->m_Tv->HookCtrl(TV_);
  session->m_Tv->Selected.Add([this](viewkit::TreeNode&) { m_Tv_Selected(); });
  session->mcMouseEvent.Connect(system.CreateMouseEvent(),
                                [this, held = std::weak_ptr(session)](std::int32_t value) {
                                  if (Runs(held)) OnWheel(value);
                                });
  InitGrid();
  SearchBox1_.SetToolTipText("提示：按回车键选择完毕！");
  SearchBox1_.SetFilterMode(Check_.Value() == viewkit::CheckBox::kChecked);
  session->m_MaintainProgID =
      host::LeadingLong(FirstField(system, "select progID from xt_objects where billitem=2015"));
  session->started = session_ == session;
  return session->started;
}

void selKjkm::Clear() {
  const auto session = std::exchange(session_, nullptr);
  if (!session) return;
  session->ended = true;
  // In the order that hosts rely on: parameters, objects, wheel; the session ends the rest.
  // Objects are missing after a failed `Init`, parameters also when the host has set null.
  auto parameters = std::exchange(m_Parameters, nullptr);
  auto selected = std::exchange(m_Selected, nullptr);
  if (session->m_Tv) session->m_Tv->UnHookCtrl();
  if (parameters) host::IgnoreErrors([&] { parameters->Clear(); });
  parameters.reset();
  selected.reset();
  session->mcMouseEvent.Disconnect();
}

void selKjkm::SetPickerParameters(std::shared_ptr<host::Parameters> parameters) {
  m_Parameters = std::move(parameters);
}

void selKjkm::SetText(const std::string& text) {
  m_Text = text;
  const host::GridUpdate update(Vs_);
  // Emptied first, so that the search runs again when the same text stands there already.
  SearchBox1_.SetText("");
  SearchBox1_.SetText(text);
  // The row that the empty text or the one before has led to is not what was asked for.
  if (FirstMatch() < 0) Vs_.SetRow(Vs_.FixedRows() - 1);
}

void selKjkm::SetParameters(const std::shared_ptr<host::Parameters>& parameters) {
  static constexpr const char* kBackColor = "backcolor";
  Trapped([&] {
    if (!parameters || !parameters->Exists(kBackColor)) return;
    SetBackColor(viewkit::ColorOf(host::RequiredNumber(parameters->Item(kBackColor), kBackColor)));
  });
}

void selKjkm::SetBackColor(viewkit::Color color) {
  if (back_color_ == color) return;
  back_color_ = color;
  BackColorChanged.Raise();
}

void selKjkm::ShowError(const std::string& text) {
  lblMessage_.SetCaption(text);
}

std::shared_ptr<selKjkm::Session> selKjkm::Running() const {
  if (!session_ || !session_->started) throw host::HostError("控件尚未初始化");
  return session_;
}

bool selKjkm::Runs(const std::weak_ptr<Session>& session) {
  const auto held = session.lock();
  return held && !held->ended;
}

std::optional<host::Value> selKjkm::Parameter(const char* key) const {
  const auto parameters = m_Parameters;
  if (!parameters || !parameters->Exists(key)) return {};
  return host::NoObject(parameters->Item(key), key);
}

bool selKjkm::ParameterIsOne(const char* key) const {
  const auto value = Parameter(key);
  return value && value->ToNumber() == 1;
}

std::string selKjkm::StatusName() const {
  static constexpr std::string_view kForbidden = "<>:\"/\\|?*";
  std::string name = std::to_string(Running()->program_id) + container_name_;
  for (char& c : name) {
    const bool control = static_cast<unsigned char>(c) < 0x20;
    if (control || kForbidden.find(c) != std::string_view::npos) c = '_';
  }
  return name;
}

}  // namespace tavrix::picker
