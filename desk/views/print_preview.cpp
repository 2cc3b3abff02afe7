#include "views/print_preview.h"

#include <algorithm>
#include <array>
#include <utility>

namespace desk::views {

using viewkit::CheckBox;
using viewkit::Key;
using viewkit::Modifiers;

namespace {

struct PaperName {
  const char* name;
  int width;
  int height;
};
constexpr std::array kPapers = {PaperName{"A4", 11906, 16838}, PaperName{"A3", 16838, 23811},
                                PaperName{"A5", 8391, 11906}, PaperName{"B5", 10319, 14571},
                                PaperName{"Letter", 12240, 15840}};
constexpr std::array kZooms = {"整页", "75%", "100%", "页宽", "150%", "200%"};

/// Printers round.
bool AlikeLengths(int one, int other) {
  constexpr int kTolerance = 60;
  return std::abs(one - other) < kTolerance;
}

int PaperAt(const PrintSetup& setup) {
  for (std::size_t i = 0; i < kPapers.size(); ++i) {
    const PaperName& paper = kPapers[i];
    if (AlikeLengths(paper.width, setup.width) && AlikeLengths(paper.height, setup.height)) {
      return static_cast<int>(i);
    }
  }
  return -1;
}

}  // namespace

Paper PaperOf(const PrintSetup& setup) {
  Paper paper;
  paper.width = setup.landscape ? setup.height : setup.width;
  paper.height = setup.landscape ? setup.width : setup.height;
  return paper;
}

Paper PaperForPrinter(const PrintSetup& setup, const Paper& printers) {
  Paper paper = PaperOf(setup);
  const bool same =
      AlikeLengths(paper.width, printers.width) && AlikeLengths(paper.height, printers.height);
  if (!same) {
    paper.width = printers.width;
    paper.height = printers.height;
  }
  const auto reach = [](int& margin, int least) { margin = std::max(margin, least); };
  reach(paper.left, printers.left);
  reach(paper.top, printers.top);
  reach(paper.right, printers.right);
  reach(paper.bottom, printers.bottom);
  return paper;
}

bool WantsLandscape(const PrintTable& table, PrintSetup setup,
                    const viewkit::TextMeasure& measure) {
  constexpr int kComfortable = 145;
  setup.landscape = false;
  const PrintLayout upright(table, PaperOf(setup), measure);
  if (!upright.Crowded() && upright.Size() >= kComfortable) return false;
  setup.landscape = true;
  const PrintLayout across(table, PaperOf(setup), measure);
  return across.Size() > upright.Size() || (upright.Crowded() && !across.Crowded());
}

PrintPreview::PrintPreview(std::vector<PrintChoice> choices, const PrintSetup& setup,
                           const viewkit::TextMeasure& measure, Calls calls)
    : choices_(std::move(choices)), setup_(setup), measure_(measure) {
  MakeControls();
  Take(0);
  calls_ = std::move(calls);  // whoever makes this is not ready to be told before
  Listen();
}

void PrintPreview::MakeControls() {
  print_.SetCaption("打印(&P)…");
  for (const PrintChoice& choice : choices_) choice_.AddItem(choice.name);
  choice_.SetListIndex(0);
  choice_.SetAccessibleName("打印范围");
  paper_label_.SetCaption("纸张(&S)");
  for (const PaperName& paper : kPapers) paper_.AddItem(paper.name);
  if (PaperAt(setup_) < 0) {
    const auto millimetres = [](int twips) { return std::to_string((twips * 254 + 7200) / 14400); };
    paper_.AddItem(millimetres(setup_.width) + "×" + millimetres(setup_.height));
  }
  const int known = PaperAt(setup_);
  paper_.SetListIndex(known < 0 ? static_cast<int>(kPapers.size()) : known);
  landscape_.SetCaption("横向(&L)");
  zoom_label_.SetCaption("显示(&Z)");
  for (const char* zoom : kZooms) zooms_.AddItem(zoom);
  previous_.SetCaption("上一页(&B)");
  next_.SetCaption("下一页(&N)");
  close_.SetCaption("关闭(&C)");
  for (viewkit::Control* control : std::initializer_list<viewkit::Control*>{
           &print_, &choice_, &paper_label_, &paper_, &landscape_, &zoom_label_, &zooms_,
           &previous_, &next_, &position_, &close_}) {
    controls_.Add(*control);
  }
  choice_.SetVisible(choices_.size() > 1);
}

void PrintPreview::Listen() {
  print_.Clicked.Add([this] { calls_.print(); });
  close_.Clicked.Add([this] { calls_.close(); });
  previous_.Clicked.Add([this] { GoTo(page_ - 1); });
  next_.Clicked.Add([this] { GoTo(page_ + 1); });
  choice_.Changed.Add([this] {
    if (!filling_ && choice_.ListIndex() >= 0) Take(choice_.ListIndex());
  });
  paper_.Changed.Add([this] {
    const int paper = paper_.ListIndex();
    if (filling_ || paper < 0 || paper >= static_cast<int>(kPapers.size())) return;
    setup_.width = kPapers.at(static_cast<std::size_t>(paper)).width;
    setup_.height = kPapers.at(static_cast<std::size_t>(paper)).height;
    LayOut();
  });
  landscape_.Clicked.Add([this] {
    if (filling_) return;
    setup_.landscape = landscape_.Value() == CheckBox::kChecked;
    LayOut();
  });
  zooms_.Changed.Add([this] {
    if (!filling_ && zooms_.ListIndex() >= 0) SetZoom(static_cast<Zoom>(zooms_.ListIndex()));
  });
}

void PrintPreview::Take(int choice) {
  layout_.reset();
  table_ = choices_.at(static_cast<std::size_t>(choice)).make();
  setup_.landscape = setup_.landscape || WantsLandscape(table_, setup_, measure_);
  page_ = 0;
  LayOut();
}

void PrintPreview::LayOut() {
  layout_.emplace(table_, PaperOf(setup_), measure_);
  page_ = std::clamp(page_, 0, layout_->Pages() - 1);
  ShowState();
}

void PrintPreview::ShowState() {
  filling_ = true;
  landscape_.SetValue(setup_.landscape ? CheckBox::kChecked : CheckBox::kUnchecked);
  zooms_.SetListIndex(static_cast<int>(zoom_));
  filling_ = false;
  previous_.SetEnabled(page_ > 0);
  next_.SetEnabled(page_ + 1 < layout_->Pages());
  position_.SetCaption(PositionText());
  if (calls_.changed) calls_.changed();
}

std::string PrintPreview::PositionText() const {
  return "第 " + std::to_string(page_ + 1) + " 页 共 " + std::to_string(layout_->Pages()) + " 页";
}

std::string PrintPreview::Title() const {
  return "打印预览 - " + table_.title;
}

bool PrintPreview::GoTo(int page) {
  const int bounded = std::clamp(page, 0, layout_->Pages() - 1);
  if (bounded == page_) return false;
  page_ = bounded;
  ShowState();
  return true;
}

void PrintPreview::SetZoom(Zoom zoom) {
  if (zoom == zoom_) return;
  zoom_ = zoom;
  ShowState();
}

bool PrintPreview::UseKey(Key key, Modifiers modifiers) {
  const auto next_zoom = [this](int step) {
    const int zoom = static_cast<int>(zoom_) + step;
    if (zoom >= 0 && zoom < static_cast<int>(kZooms.size())) SetZoom(static_cast<Zoom>(zoom));
    return true;
  };
  constexpr Key kPrint{'P'};
  constexpr Key kPlus{0xBB};
  constexpr Key kMinus{0xBD};
  if (modifiers.alt) return false;
  if (modifiers.control && key == kPrint) return calls_.print(), true;
  if (modifiers.control && key == Key::kHome) return GoTo(0), true;
  if (modifiers.control && key == Key::kEnd) return GoTo(layout_->Pages() - 1), true;
  if (key == Key::kAdd || (modifiers.control && key == kPlus)) return next_zoom(1);
  if (key == Key::kSubtract || (modifiers.control && key == kMinus)) return next_zoom(-1);
  if (key == Key::kEscape) return calls_.close(), true;
  return false;
}

int PrintPreview::Resize(int width) {
  constexpr int kEdge = 120;
  constexpr int kLine = 345;
  constexpr int kLabelDrop = 60;
  int left = kEdge;
  int top = kEdge;
  // What has no room comes on the next line.
  const auto put = [&](std::initializer_list<std::pair<viewkit::Control*, int>> group, int gap) {
    int room = 0;
    for (const auto& [control, wanted] : group) room += wanted;
    if (left > kEdge && left + room + kEdge > width) {
      left = kEdge;
      top += kLine + kEdge / 2;
    }
    for (const auto& [control, wanted] : group) {
      const int drop = dynamic_cast<viewkit::Label*>(control) != nullptr ? kLabelDrop : 0;
      control->SetBounds({left, top + drop, wanted - 60, kLine - drop});
      left += wanted;
    }
    left += gap;
  };
  put({{&print_, 1300}}, 90);
  if (choices_.size() > 1) put({{&choice_, 2300}}, 90);
  put({{&paper_label_, 750}, {&paper_, 1150}}, 60);
  put({{&landscape_, 1050}}, 60);
  put({{&zoom_label_, 750}, {&zooms_, 950}}, 90);
  put({{&previous_, 1250}, {&next_, 1250}}, 60);
  put({{&position_, 1850}}, 60);
  put({{&close_, 1100}}, 0);
  return top + kLine + kEdge;
}

}  // namespace desk::views
