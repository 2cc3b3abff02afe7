#include "component/server/classes.h"

#include "component/classes/picked_accounts.h"
#include "component/classes/view_controls.h"

namespace tavrix::component {

namespace {

template <class Class>
com::ComPtr<IUnknown> Create(IUnknown* outer) {
  return com::MakeObject<Class>(outer);
}

const ClassEntry kClasses[] = {
    {&CLSID_Kjkm, L"tavrix.Kjkm", L"Tavrix: chart of accounts", true, &Create<KjkmControl>},
    {&CLSID_selKjkm, L"tavrix.selKjkm", L"Tavrix: account picker", true, &Create<SelKjkmControl>},
    {&CLSID_colKjkm, L"tavrix.colKjkm", L"Tavrix: picked accounts", false, &Create<ColKjkmObject>},
    {&CLSID_clsKjkm, L"tavrix.clsKjkm", L"Tavrix: a picked account", false, &Create<ClsKjkmObject>},
};

}  // namespace

std::span<const ClassEntry> AllClasses() {
  return kClasses;
}

}  // namespace tavrix::component
