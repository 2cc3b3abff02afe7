#pragma once

#include <windows.h>

#include <oaidl.h>

#include <string>
#include <string_view>

/// The trace of this module (`host/trace.h`), and the lines that calls and events make in it.
namespace tavrix::com {

/// Begins to trace into the file that the environment variable TAVRIX_TRACE names, at its end; does
/// nothing without one, nor when it has been called before.
void StartTrace() noexcept;

/// A call of `member` of the interface `iid` by another program.
void TraceCall(const IID& iid, std::string_view member) noexcept;
/// A call of a member of another object.
void TraceHostCall(const wchar_t* member, const DISPPARAMS& arguments) noexcept;
/// An event of the source interface `source`.
void TraceEvent(const IID& source, DISPID id, const DISPPARAMS& arguments) noexcept;
/// A failure that a caller gets.
void TraceFailure(HRESULT code, std::string_view text) noexcept;

}  // namespace tavrix::com
