#pragma once

/// Keys of the parameters that the picker knows. A parameter counts as present when its key exists,
/// whatever its value.
namespace tavrix::picker::parameter {

inline constexpr const char* kSingle = "single";
inline constexpr const char* kCodes = "科目编码";
inline constexpr const char* kCategory = "科目类别";
inline constexpr const char* kCustomers = "bcus";
inline constexpr const char* kSuppliers = "bsup";
inline constexpr const char* kLeavesOnly = "ismx";

}  // namespace tavrix::picker::parameter
