#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "host/controls.h"
#include "host/objects.h"
#include "host/value.h"

/// The interfaces through which a host drives the controls, one class each.
/// Where a result carries no meaning the description says so. Nothing but `Init` throws, except
/// where a member says otherwise.
namespace tavrix::host {

/// The host's standard commands, implemented by the maintenance view.
class IFormUI {
 public:
  virtual ~IFormUI() = default;
  /// Starts the view. `plCzID` and `plID` are accepted and not used. Failures of the host throw.
  [[nodiscard]] virtual bool Init(std::shared_ptr<SystemObject> pcSystem, std::int32_t plCzID,
                                  std::int32_t plID) = 0;
  virtual bool Refresh() = 0;
  virtual bool FileNew() = 0;
  virtual bool FileNewNext() = 0;
  virtual bool FileEdit() = 0;
  virtual bool FileDelete() = 0;
  virtual bool FileSave() = 0;
  virtual bool FileCancel() = 0;
  virtual bool Check() = 0;
  virtual bool UnCheck() = 0;
  virtual bool Help() = 0;
  virtual bool PrintSetup() = 0;
  virtual bool DoPrint(bool pbRealPrint) = 0;
  virtual bool RecordTop() = 0;
  virtual bool RecordPrevious() = 0;
  virtual bool RecordNext() = 0;
  virtual bool RecordBottom() = 0;
  virtual bool Find(const Value& pvData) = 0;
  virtual bool FindNext() = 0;
  virtual bool Filter(const Value& pvData) = 0;
  /// Always false; the result carries no meaning.
  virtual bool Clear() = 0;
  virtual bool DoSetStatus(const std::string& psStatusName, bool pbStatus) = 0;
  [[nodiscard]] virtual bool CheckStatus(const std::string& psStatusName) const = 0;
  [[nodiscard]] virtual bool IsDirty() const = 0;
  [[nodiscard]] virtual std::int32_t GetID() const = 0;
  [[nodiscard]] virtual std::string ReturnPrintName() const = 0;
  [[nodiscard]] virtual std::string Attributes(const std::string& psName) const = 0;
  virtual void DoSaveFormStatus() = 0;
  virtual void DoGetFormStatus() = 0;
};

/// The collection in which a picker hands back what was picked; its kind is the picker's own.
class PickedObjects {
 public:
  virtual ~PickedObjects() = default;
};

/// Choosing from a list and resolving typed text, implemented by the account picker.
class IPickerUI {
 public:
  virtual ~IPickerUI() = default;
  /// Starts the picker. `psHostName` is accepted and not kept. Failures of the host throw.
  [[nodiscard]] virtual bool Init(std::shared_ptr<SystemObject> pcSystem, std::int32_t plProgID,
                                  const std::string& psHostName) = 0;
  /// Loads what the parameters allow, unless it stands there already. Always true.
  virtual bool Refresh() = 0;
  /// Resolves typed text to one record and fills in the last two arguments; both are empty when
  /// nothing matched. Always false; the result carries no meaning. `psSqlString` is not used.
  /// Throws a failure of the host, with both strings empty.
  virtual bool Validate(const std::string& psSqlString, const std::string& psField_Code,
                        const std::string& psField_Name, const std::string& psText,
                        std::string& sReturnField_Code, std::string& sReturnField_Name) = 0;
  virtual void Clear() = 0;
  virtual void DoGetFormStatus() = 0;
  virtual void DoSaveFormStatus() = 0;
  [[nodiscard]] virtual std::string Attributes(const std::string& psName) const = 0;
  [[nodiscard]] virtual bool IsDirty() const = 0;
  virtual void SetIsDirty(bool dirty) = 0;
  /// The result of the last pick, validation or cancel; null before `Init` and after `Clear`.
  [[nodiscard]] virtual std::shared_ptr<PickedObjects> Objects() const = 0;
  /// `Parameters` of the contract, named apart from the designer's. Taking them reloads nothing.
  [[nodiscard]] virtual std::shared_ptr<Parameters> PickerParameters() const = 0;
  virtual void SetPickerParameters(std::shared_ptr<Parameters> parameters) = 0;
  [[nodiscard]] virtual const std::string& Text() const = 0;
  virtual void SetText(const std::string& text) = 0;
  [[nodiscard]] virtual const Value& GetValue() const = 0;
  virtual void SetValue(const Value& value) = 0;
};

/// What a host's designer walks and sets.
class IDesignUI {
 public:
  virtual ~IDesignUI() = default;
  [[nodiscard]] virtual ControlCollection& Controls() = 0;
  /// Null is allowed and changes nothing. There is nothing to read back.
  virtual void SetParameters(const std::shared_ptr<Parameters>& parameters) = 0;
};

}  // namespace tavrix::host
