#include "com/member_table.h"

#include <oleauto.h>

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>

#include "com/failure.h"
#include "com/type_library.h"
#include "host/non_copyable.h"

namespace tavrix::com {

namespace {

struct IidLess {
  bool operator()(const IID& left, const IID& right) const {
    return memcmp(&left, &right, sizeof(IID)) < 0;
  }
};

/// What a type library lends out and takes back.
template <class Description, void (STDMETHODCALLTYPE ITypeInfo::*release)(Description*)>
class Lent : private host::NonCopyable {
 public:
  explicit Lent(ITypeInfo& info) : info_(info) {}
  ~Lent() {
    if (description_ != nullptr) (info_.*release)(description_);
  }
  [[nodiscard]] Description** Put() { return &description_; }
  const Description* operator->() const { return description_; }

 private:
  ITypeInfo& info_;
  Description* description_ = nullptr;
};
using LentFunction = Lent<FUNCDESC, &ITypeInfo::ReleaseFuncDesc>;
using LentType = Lent<TYPEATTR, &ITypeInfo::ReleaseTypeAttr>;

VARTYPE PassedType(ITypeInfo& info, const TYPEDESC& type);

/// What stands behind a name: an interface is an object, an alias what it stands for.
VARTYPE NamedType(ITypeInfo& info, HREFTYPE reference) {
  ComPtr<ITypeInfo> named;
  Check(info.GetRefTypeInfo(reference, named.Put()));
  LentType attributes(*named.Get());
  Check(named->GetTypeAttr(attributes.Put()));
  if (attributes->typekind != TKIND_ALIAS) return VT_DISPATCH;
  const VARTYPE target = PassedType(*named.Get(), attributes->tdescAlias);
  // Colours: script engines cannot calculate with numbers that have no sign.
  return target == VT_UI4 ? static_cast<VARTYPE>(VT_I4) : target;
}

/// The type as it is passed: a pointer to a simple type becomes VT_BYREF, an object a VT_DISPATCH.
VARTYPE PassedType(ITypeInfo& info, const TYPEDESC& type) {
  if (type.vt == VT_USERDEFINED) return NamedType(info, type.hreftype);
  if (type.vt != VT_PTR) return type.vt;
  const VARTYPE target = PassedType(info, *type.lptdesc);
  const bool object = type.lptdesc->vt == VT_USERDEFINED && target == VT_DISPATCH;
  return object ? target : static_cast<VARTYPE>(VT_BYREF | target);
}

Parameter ReadParameter(ITypeInfo& info, const ELEMDESC& element) {
  const USHORT flags = element.paramdesc.wParamFlags;
  Parameter parameter;
  parameter.type = PassedType(info, element.tdesc);
  parameter.result = (flags & PARAMFLAG_FRETVAL) != 0;
  parameter.optional = (flags & (PARAMFLAG_FOPT | PARAMFLAG_FHASDEFAULT)) != 0;
  parameter.fallback = Variant::Missing();
  if ((flags & PARAMFLAG_FHASDEFAULT) != 0) {
    parameter.fallback = Variant(element.paramdesc.pparamdescex->varDefaultValue);
  }
  return parameter;
}

Member ReadMember(ITypeInfo& info, const LentFunction& function) {
  Member member;
  member.id = function->memid;
  member.kind = function->invkind;
  member.slot = static_cast<ULONG_PTR>(function->oVft);
  for (SHORT i = 0; i < function->cParams; ++i) {
    member.parameters.push_back(ReadParameter(info, function->lprgelemdescParam[i]));
  }
  return member;
}

}  // namespace

std::size_t Member::Arguments() const {
  return parameters.size() - (HasResult() ? 1 : 0);
}

bool Member::HasResult() const {
  return !parameters.empty() && parameters.back().result;
}

const MemberTable& MemberTable::Of(const IID& iid) {
  static std::mutex mutex;  // apartments share the tables
  static std::map<IID, std::unique_ptr<MemberTable>, IidLess> tables;
  const std::lock_guard lock(mutex);
  auto& table = tables[iid];
  if (!table) table = std::make_unique<MemberTable>(iid);
  return *table;
}

MemberTable::MemberTable(const IID& iid) : info_(TypeInfoOf(iid)) {
  Bstr name;
  Check(info_->GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr));
  name_ = ViewOf(name.Get());
  HREFTYPE reference = 0;
  // A dual interface is described twice; -1 leads from its names to its table of methods.
  Check(info_->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference));
  ComPtr<ITypeInfo> methods;
  Check(info_->GetRefTypeInfo(reference, methods.Put()));
  Read(*methods.Get());
}

void MemberTable::Read(ITypeInfo& methods) {
  LentType type(methods);
  Check(methods.GetTypeAttr(type.Put()));
  if (IsEqualGUID(type->guid, IID_IDispatch) != FALSE) return;
  iids_.push_back(type->guid);
  for (UINT i = 0; i < type->cFuncs; ++i) {
    LentFunction function(methods);
    Check(methods.GetFuncDesc(i, function.Put()));
    members_.push_back(ReadMember(methods, function));
  }
  ReadInherited(methods);
}

void MemberTable::ReadInherited(ITypeInfo& methods) {
  HREFTYPE reference = 0;
  ComPtr<ITypeInfo> base;
  if (FAILED(methods.GetRefTypeOfImplType(0, &reference))) return;
  Check(methods.GetRefTypeInfo(reference, base.Put()));
  Read(*base.Get());
}

const Member* MemberTable::Find(DISPID id, WORD flags) const {
  // A property that takes objects is set with either kind of assignment, and one with arguments is
  // read with what looks like a call.
  constexpr WORD kAssign = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;
  const int kinds = flags | ((flags & kAssign) != 0 ? kAssign : 0) |
                    ((flags & DISPATCH_METHOD) != 0 ? DISPATCH_PROPERTYGET : 0);
  const auto found = std::find_if(members_.begin(), members_.end(), [&](const Member& member) {
    return member.id == id && (member.kind & kinds) != 0;
  });
  return found == members_.end() ? nullptr : &*found;
}

bool MemberTable::Covers(const IID& iid) const {
  return std::any_of(iids_.begin(), iids_.end(),
                     [&](const IID& own) { return IsEqualGUID(own, iid) != FALSE; });
}

HRESULT MemberTable::IdsOfNames(LPOLESTR* names, UINT count, DISPID* ids) const {
  return info_->GetIDsOfNames(names, count, ids);
}

}  // namespace tavrix::com
