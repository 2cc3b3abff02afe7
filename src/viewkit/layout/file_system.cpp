#include "viewkit/layout/file_system.h"

#include <sys/stat.h>

#include <string>

#include "host/utf.h"
#ifdef _WIN32
#include <direct.h>
#endif

namespace tavrix::viewkit {

#ifdef _WIN32
namespace {

std::wstring Wide(std::string_view path) {
  const std::u16string text = host::ToUtf16(path);
  return {text.begin(), text.end()};
}

}  // namespace

bool Exists(std::string_view path) {
  struct _stat64 facts {};
  return _wstat64(Wide(path).c_str(), &facts) == 0;
}

void MakeFolder(std::string_view path) {
  _wmkdir(Wide(path).c_str());
}
#else
bool Exists(std::string_view path) {
  struct stat facts {};
  return stat(std::string(path).c_str(), &facts) == 0;
}

void MakeFolder(std::string_view path) {
  mkdir(std::string(path).c_str(), 0777);
}
#endif

}  // namespace tavrix::viewkit
