#include "viewkit/win32/back_buffer.h"

#include <algorithm>

namespace tavrix::viewkit::win32 {

bool BackBuffer::Prepare(HDC target, const RECT& area) {
  const LONG width = area.right - area.left;
  const LONG height = area.bottom - area.top;
  if (width <= size_.cx && height <= size_.cy) return true;
  const SIZE wanted{std::max(width, size_.cx), std::max(height, size_.cy)};
  Bitmap grown(CreateCompatibleBitmap(target, wanted.cx, wanted.cy));
  if (!grown) return false;
  Drop();
  bitmap_ = std::move(grown);
  size_ = wanted;
  previous_ = SelectObject(dc_.Get(), bitmap_.get());
  return true;
}

void BackBuffer::Drop() {
  if (previous_ != nullptr) SelectObject(dc_.Get(), previous_);
  previous_ = nullptr;
  bitmap_.reset();
}

}  // namespace tavrix::viewkit::win32
