#pragma once

#include <windows.h>

#include "app/controls/account_picker.h"
#include "app/controls/kjkm_view.h"
#include "host/objects.h"

namespace desk::app {

/// Asks, above `frame`, for the columns of the page that the view shows, and gives them to it.
/// Throws what the view and the host raise.
void AskViewLayout(KjkmView& view, tavrix::host::SystemObject& system, HWND frame);

/// The same for the list of the account picker, which takes back all of its layout.
void AskPickerLayout(AccountPicker& picker, tavrix::host::SystemObject& system, HWND frame);

}  // namespace desk::app
