// A program that was given the packages: creates each class and asks a control for the interface of
// its commands. With the argument "registered" the type library must be so too.
#include <windows.h>

#include <ole2.h>
#include <qnFormUI.h>
#include <tavrix.h>

#include <cstdio>
#include <cstring>

namespace {

bool Creates(const CLSID& clsid, const IID& iid) {
  IUnknown* object = nullptr;
  const HRESULT result = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, iid,
                                          reinterpret_cast<void**>(&object));
  if (FAILED(result)) {
    std::printf("0x%08lx\n", static_cast<unsigned long>(result));
    return false;
  }
  object->Release();
  return true;
}

bool HasTypeLibrary() {
  ITypeLib* library = nullptr;
  if (FAILED(LoadRegTypeLib(LIBID_tavrix, 1, 0, 0, &library))) return false;
  library->Release();
  return true;
}

}  // namespace

int main(int count, char** arguments) {
  if (FAILED(OleInitialize(nullptr))) return 2;
  const bool registered = count > 1 && std::strcmp(arguments[1], "registered") == 0;
  const bool fine = Creates(CLSID_Kjkm, IID_IFormUI) && Creates(CLSID_selKjkm, IID__selKjkm) &&
                    Creates(CLSID_colKjkm, IID__colKjkm) && Creates(CLSID_clsKjkm, IID__clsKjkm) &&
                    (!registered || HasTypeLibrary());
  OleUninitialize();
  return fine ? 0 : 1;
}
