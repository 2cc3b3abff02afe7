#include "picker/sel_kjkm.h"

namespace tavrix::picker {

// The status of the controls is neither kept nor restored yet: that needs the walk over a view's
// controls. The file it will go to is the per-user layout file named by `StatusName`.
void selKjkm::DoGetFormStatus() {}

void selKjkm::DoSaveFormStatus() {}

}  // namespace tavrix::picker
