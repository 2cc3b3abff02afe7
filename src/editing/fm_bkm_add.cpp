#include "editing/fm_bkm_add.h"

#include <utility>

#include "editing/fm_bkm_add_impl.h"
#include "host/error.h"
#include "host/text.h"

namespace tavrix::editing {

using viewkit::UserPort;

FmBkmAdd::FmBkmAdd(UserPort& user) : user_(user) {
  ConnectControls();
}

void FmBkmAdd::ConnectControls() {
  for (int i = 0; i < kTexts; ++i) {
    Txt(i).Changed.Add([this] { Edited(); });
  }
  Txt(kCodeBox).Changed.Add([this] {
    if (session_ && !filling_) session_->code_changed = true;
    TellAbove();
  });
  for (int i = 0; i < kLists; ++i) {
    Combo(i).Changed.Add([this] { Edited(); });
  }
  Combo(kCategoryList).Changed.Add([this] {
    if (!filling_) ProposeDirection();
  });
  for (int i = 0; i < kOptions; ++i) {
    opt(i).Clicked.Add([this] {
      Edited();
      if (session_ && !filling_) session_->proposes_direction = false;
    });
  }
  for (int i = 0; i < kChecks; ++i) {
    Chk(i).Clicked.Add([this, i] {
      Edited();
      if (!filling_) Chk_Click(i);
    });
  }
  for (int i = 0; i < kButtons; ++i) {
    Cmd(i).Clicked.Add([this, i] { Cmd_Click(i); });
  }
}

void FmBkmAdd::Edited() {
  if (session_ && !filling_) session_->changed = session_->unwritten = true;
}

/// A code that the user has changed may stand below another account, whose name nobody knows here.
void FmBkmAdd::TellAbove() {
  if (!above_) return ShowAbove("");
  const auto& [code, name] = *above_;
  if (code.empty()) return ShowAbove("无（一级科目）");
  const std::string account = name.empty() ? code : code + " " + name;
  ShowAbove(CodeText().starts_with(code) ? account : "");
}

viewkit::Control* FmBkmAdd::FirstFocus() {
  const bool proposed = session_ && session_->record_id == 0 && !CodeText().empty();
  if (session_) session_->passed_by = proposed;
  return proposed ? &Txt(kNameBox) : nullptr;
}

/// A proposed code may be none: the one behind the last of its siblings can have another parent.
bool FmBkmAdd::CheckPassedBy() noexcept {
  return !session_ || !std::exchange(session_->passed_by, false) || IsCanCodeRule();
}

std::shared_ptr<FmBkmAdd::Session> FmBkmAdd::Current() const {
  if (!session_) throw host::HostError("窗体尚未打开");
  return session_;
}

void FmBkmAdd::Report(const std::string& text, std::int32_t level) {
  ErrMessage.Raise(text, level, user_.ApplicationTitle());
}

void FmBkmAdd::Refuse(const std::string& text) {
  Report(text, host::kCommandError);
}

std::string FmBkmAdd::CodeText() {
  return std::string(host::Trimmed(Txt(kCodeBox).Text()));
}

void FmBkmAdd::OnFocusMoved(viewkit::Control& from, viewkit::Control& to) {
  // A wrong code shall not hold back a user who is giving up.
  if (&to == &Cmd(kCancelButton)) return;
  if (&to == &Txt(kCodeBox) && session_) session_->passed_by = false;
  if (&from != &Txt(kCodeBox)) return static_cast<void>(CheckPassedBy());
  if (IsCanCodeRule() && Chk(kGatherCheck).Value() == viewkit::CheckBox::kChecked) FillGatherList();
}

void FmBkmAdd::Cmd_Click(int Index) noexcept {
  Trapped("Cmd_Click->", host::kCommandError, [&] {
    if (Index == kCancelButton || (Index == kSaveButton && FileSave())) Close();
  });
}

bool FmBkmAdd::CloseForm() noexcept {
  return Trapped("CloseForm->", host::kCommandError, [this] {
    using Buttons = UserPort::Buttons;
    const auto agreed = [this](const char* question, Buttons buttons) {
      return user_.Ask(question, host::kPromptTitle, UserPort::Icon::kInformation, buttons) ==
             UserPort::Answer::kYes;
    };
    if (!session_ || !session_->Unsaved()) return true;
    if (!agreed("数据在关闭之前未保存，是否保存？", Buttons::kYesNo)) return true;
    return FileSave() || agreed("保存数据出错，是否关闭窗体？", Buttons::kYesNoDefaultNo);
  });
}

void FmBkmAdd::OnUnload() {
  session_.reset();
  above_.reset();
}

}  // namespace tavrix::editing
