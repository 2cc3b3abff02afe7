#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/non_copyable.h"
#include "viewkit/control.h"
#include "windows/painting_actions.h"

namespace tavrix::test {

/// A view with a book behind it.
class Scene : private host::NonCopyable {
 public:
  virtual ~Scene() = default;
  [[nodiscard]] virtual const viewkit::ControlList& Controls() = 0;
  /// Lays the controls out; sizes in twips.
  virtual void Resize(int width, int height) = 0;
  /// Something that only this view can do; its name.
  virtual std::string ActAlone(Dice& dice) = 0;
};

/// Of "maintenance", "picker", "balance" and "tree".
[[nodiscard]] std::unique_ptr<Scene> MakeScene(const std::string& name);

}  // namespace tavrix::test
