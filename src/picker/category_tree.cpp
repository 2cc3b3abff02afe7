#include <string>

#include "host/account.h"
#include "host/calls.h"
#include "picker/parameters.h"
#include "picker/session.h"
#include "picker/trap.h"
#include "viewkit/flag_scope.h"

namespace tavrix::picker {

namespace {

using viewkit::Relationship;

constexpr const char* kRootKey = "r";

/// Lets the tree paint again, whatever stopped the filling of it.
class Painting {
 public:
  explicit Painting(viewkit::cTreeView& tree) : tree_(tree) {}
  Painting(const Painting&) = delete;
  Painting& operator=(const Painting&) = delete;
  ~Painting() { tree_.Redraw(false); }  // clearing the switch resumes the painting

 private:
  viewkit::cTreeView& tree_;
};

struct Answer {
  std::shared_ptr<host::Recordset> rows;  // null when the query failed
  std::shared_ptr<host::ErrorEntry> entry;
  std::string error;
};

/// Runs a query whose failure does not end the routine.
Answer Ask(host::SystemObject& system, const std::string& sql) {
  Answer answer;
  const auto database = host::DatabaseOf(system);
  try {
    const auto statement = host::Required(database->OpenSql(sql, host::kStatementMode), "OpenSql");
    answer.rows = host::Required(statement->OpenRecordset(), "Recordset");
  } catch (const host::HostError& error) {
    answer.error = error.what();
  }
  answer.entry = host::Required(database->LastError(), "LastError");
  if (const std::string text = answer.entry->Description(); !text.empty()) answer.error = text;
  return answer;
}

}  // namespace

bool selKjkm::LoadCategoryTree() noexcept {
  return Trapped([this] {
    const auto session = Running();
    const viewkit::FlagScope filling(filling_tree_);
    {
      const Painting painting(*session->m_Tv);
      session->m_Tv->ClearTreeView();  // the tree does not paint from here on
      viewkit::TreeNode* root =
          session->m_Tv->NodeAdd({.sKey = kRootKey, .sText = "会计科目", .bExpanded = true});
      if (const auto codes = Parameter(parameter::kCodes)) {
        AddAccountNodes(*session, *codes, root);
      } else if (const auto category = Parameter(parameter::kCategory)) {
        AddCategoryNode(*session, root, category->ToText());
      } else {
        for (const std::string_view name : host::kCategories) {
          AddCategoryNode(*session, root, std::string(name));
        }
      }
    }
    session->m_Tv->ReSelectItem();
    return true;
  });
}

void selKjkm::AddCategoryNode(Session& session, viewkit::TreeNode* root,
                              const std::string& category) {
  viewkit::TreeNode* node = session.m_Tv->NodeAdd({.vRelative = root,
                                                   .eRelationship = Relationship::kChild,
                                                   .sKey = kRootKey + category,
                                                   .sText = category});
  node->SetTag(category);
}

void selKjkm::AddAccountNodes(Session& session, const host::Value& code, viewkit::TreeNode* root) {
  std::string where = " where 1=1";
  // The whole value in one pair of quotes, unlike the prefixes of the list: that is intended.
  if (const std::string text = code.ToText(); !text.empty()) {
    where.append(" and ccode in('").append(text).append("')");
  }
  const Answer answer = Ask(*session.m_System, "select ccode,ccode_name,cclass,i_id from gl_code " +
                                                   where + " order by igrade,ccode");
  if (!answer.error.empty()) {
    using viewkit::UserPort;
    (void)user_.Ask(answer.error, "FmMKjkm", UserPort::Icon::kCritical, UserPort::Buttons::kOk);
    answer.entry->Clear();
  }
  if (!answer.rows || answer.rows->EndOfFile() || !session.m_Tv) return;
  const host::RowSet accounts = answer.rows->GetRows();
  answer.rows->Close();
  for (std::size_t row = 0; row < accounts.Rows(); ++row) {
    const std::string account(accounts.Text(row, 0));
    viewkit::TreeNode* node =
        session.m_Tv->NodeAdd({.vRelative = root,
                               .eRelationship = Relationship::kChild,
                               .sKey = "k" + account,
                               .sText = account + "  " + std::string(accounts.Text(row, 1))});
    node->SetTag(std::string(accounts.Text(row, 3)));
  }
}

void selKjkm::m_Tv_Selected() noexcept {
  if (!filling_tree_) LoadAccountList();  // whoever fills the tree loads the list once, after it
}

}  // namespace tavrix::picker
