#include <gmock/gmock.h>
#include <windows.h>

#include <ole2.h>

// The tests run where windows and controls live: on one thread with a message queue.
int main(int count, char** arguments) {
  testing::InitGoogleMock(&count, arguments);
  if (FAILED(OleInitialize(nullptr))) return 1;
  const int status = RUN_ALL_TESTS();
  OleUninitialize();
  return status;
}
