#pragma once

#include <string>

namespace desk::views {

/// The layouts that come with the program.
enum class DefaultLayout { kTrialBalance, kPicker };

/// Writes one of them to `path`, in place of what stands there. Throws what the file system raises.
void WriteDefaultLayout(DefaultLayout layout, const std::string& path);

/// Does so for a user who has none yet. Without a folder to write in there is no layout.
void EnsureLayout(DefaultLayout layout, const std::string& path);

}  // namespace desk::views
