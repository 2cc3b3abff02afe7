#include <string>

#include "host/calls.h"
#include "picker/parameters.h"
#include "picker/sel_kjkm_impl.h"

namespace tavrix::picker {

bool selKjkm::Validate(const std::string&, const std::string& psField_Code,
                       const std::string& psField_Name, const std::string& psText,
                       std::string& sReturnField_Code, std::string& sReturnField_Name) {
  sReturnField_Code.clear();
  sReturnField_Name.clear();
  const auto session = Running();
  const auto selected = m_Selected = std::make_shared<colKjkm>();
  // Neither the tree nor the show-closed box narrows what may be typed. The mixed case of "OR" and
  // "or" is part of the text.
  std::string where = " where (ccode='" + psText + "' OR ccode_name='" + psText + "' or chelp='" +
                      psText + "')" + ParameterFilter();
  if (ParameterIsOne(parameter::kLeavesOnly)) where += " and bend=1";
  host::OpenRows account = host::QueryRows(*session->m_System, "select * FROM gl_code" + where);
  AddResultRow(*account, *selected);
  std::string value;
  std::string text;
  if (!account->EndOfFile()) {
    value = host::ReadField(*account, psField_Code.empty() ? "i_id" : psField_Code).ToText();
    text = host::ReadField(*account, psField_Name.empty() ? "ccode" : psField_Name).ToText();
  }
  account.Close();
  m_Value = host::Value(value);
  m_Text = text;
  sReturnField_Code = std::move(value);
  sReturnField_Name = std::move(text);
  return false;  // deliberately in every case: the two strings tell
}

}  // namespace tavrix::picker
