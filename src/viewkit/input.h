#pragma once

namespace tavrix::viewkit {

/// Keys that models decide on, numbered as the system's virtual key codes. Any other key of the
/// keyboard arrives as its own number.
enum class Key {
  kBack = 0x08,
  kTab = 0x09,
  kEnter = 0x0D,
  kEscape = 0x1B,
  kSpace = 0x20,
  kPageUp = 0x21,
  kPageDown = 0x22,
  kEnd = 0x23,
  kHome = 0x24,
  kLeft = 0x25,
  kUp = 0x26,
  kRight = 0x27,
  kDown = 0x28,
  kDelete = 0x2E,
  kA = 0x41,
  kB = 0x42,
  kC = 0x43,
  kMultiply = 0x6A,
  kAdd = 0x6B,
  kSubtract = 0x6D,
  kProcessed = 0xE5,  ///< an input method keeps the key for itself; its release comes as its own
};

struct Modifiers {
  bool shift = false;
  bool control = false;
  bool alt = false;
  bool repeated = false;  ///< the key is being held; never set when it comes up
};

}  // namespace tavrix::viewkit
