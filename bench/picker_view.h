#pragma once

#include <memory>
#include <stdexcept>
#include <string>

#include "book/book.h"
#include "book/host/parameters.h"
#include "picker/sel_kjkm.h"
#include "quiet_user.h"

namespace tavrix::bench {

/// A picker on a book, as a host starts it.
class Picker {
 public:
  explicit Picker(const std::string& path) : book_(desk::book::Book::Open(path)), view_(user_) {
    if (!view_.Init(system_, 0, "")) throw std::runtime_error("Init failed");
    view_.SetPickerParameters(parameters_);
    view_.Resize(9000, 9000);
  }

  /// Loads tree and list anew: the parameters differ, the rows do not.
  void Refresh() {
    reloads_ = !reloads_;
    parameters_->Set("bsup", reloads_ ? "0" : "0.0");
    view_.Refresh();
    const std::string& message = Get<viewkit::Label>("lblMessage").Caption();
    if (!message.empty()) throw std::runtime_error(message);
  }
  template <class Kind>
  [[nodiscard]] Kind& Get(const std::string& name) {
    for (std::size_t at = 0; at < view_.Controls().Count(); ++at) {
      if (view_.Controls().At(at).Name() == name) {
        return dynamic_cast<Kind&>(view_.Controls().At(at));
      }
    }
    throw std::runtime_error(name);
  }
  [[nodiscard]] desk::book::Book& Book() { return book_; }
  [[nodiscard]] viewkit::FlexGrid& List() { return Get<viewkit::FlexGrid>("Vs"); }
  [[nodiscard]] picker::selKjkm& View() { return view_; }
  [[nodiscard]] host::SystemObject& System() { return *system_; }
  [[nodiscard]] desk::book::ParameterList& Parameters() { return *parameters_; }

 private:
  desk::book::Book book_;
  std::shared_ptr<host::SystemObject> system_ = book_.System();
  QuietUser user_;
  std::shared_ptr<desk::book::ParameterList> parameters_ =
      std::make_shared<desk::book::ParameterList>();
  picker::selKjkm view_;
  bool reloads_ = false;
};

}  // namespace tavrix::bench
