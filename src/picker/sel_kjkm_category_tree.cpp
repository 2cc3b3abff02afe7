#include <optional>
#include <string>

#include "host/account.h"
#include "host/calls.h"
#include "host/flag_scope.h"
#include "host/non_copyable.h"
#include "picker/parameters.h"
#include "picker/sel_kjkm_impl.h"
#include "picker/tree_keys.h"

namespace tavrix::picker {

namespace {

using viewkit::Relationship;

/// Lets the tree paint again, whatever stopped the filling of it.
class Painting : private host::NonCopyable {
 public:
  explicit Painting(viewkit::cTreeView& tree) : tree_(tree) {}
  ~Painting() { tree_.Redraw(false); }  // clearing the switch resumes the painting

 private:
  viewkit::cTreeView& tree_;
};

struct Answer {
  std::optional<host::OpenRows> rows;  // nothing when the query failed
  std::shared_ptr<host::ErrorEntry> entry;
  std::string error;
};

/// Runs a query whose failure does not end the routine.
Answer Query(host::SystemObject& system, const std::string& sql) {
  Answer answer;
  const auto database = host::DatabaseOf(system);
  try {
    const auto statement = host::Required(database->OpenSql(sql, host::kStatementMode), "OpenSql");
    answer.rows.emplace(host::Required(statement->OpenRecordset(), "Recordset"));
  } catch (const host::HostError& error) {
    answer.error = error.what();
  }
  answer.entry = host::Required(database->LastError(), "LastError");
  if (const std::string text = answer.entry->Description(); !text.empty()) answer.error = text;
  return answer;
}

/// A node of an empty name would have the root's key, and is left out.
void AddCategory(viewkit::cTreeView& tree, viewkit::TreeNode* root, const std::string& category) {
  if (category.empty()) return;
  tree.NodeAdd({.vRelative = root,
                .eRelationship = Relationship::kChild,
                .sKey = tree_key::kCategory + category,
                .sText = category})
      ->SetTag(category);
}

void AddAccounts(viewkit::cTreeView& tree, viewkit::TreeNode* root, const host::RowSet& accounts) {
  for (std::size_t row = 0; row < accounts.Rows(); ++row) {
    const std::string code(accounts.Text(row, 0));
    tree.NodeAdd({.vRelative = root,
                  .eRelationship = Relationship::kChild,
                  .sKey = tree_key::kAccount + code,
                  .sText = code + "  " + std::string(accounts.Text(row, 1))})
        ->SetTag(std::string(accounts.Text(row, 3)));
  }
}

}  // namespace

bool selKjkm::LoadCategoryTree() noexcept {
  return Trapped([this] {
    const auto session = Running();
    const auto tree = session->m_Tv;
    const int load = ++session->tree_loads;
    const auto codes = Parameter(parameter::kCodes);
    const auto category = Parameter(parameter::kCategory);
    const host::RowSet accounts =
        codes ? AccountsOfCode(*session, codes->ToText()) : host::RowSet(0);
    // While the host ran the query and the user read its error, the picker may have been loaded
    // anew or let go.
    if (session != session_ || load != session->tree_loads) return;
    {
      const host::FlagScope filling(filling_tree_);
      const Painting painting(*tree);
      tree->ClearTreeView();  // the tree does not paint from here on
      viewkit::TreeNode* root =
          tree->NodeAdd({.sKey = tree_key::kRoot, .sText = "会计科目", .bExpanded = true});
      if (codes) {
        AddAccounts(*tree, root, accounts);
      } else if (category) {
        AddCategory(*tree, root, category->ToText());
      } else {
        for (const std::string_view name : host::kCategories) {
          AddCategory(*tree, root, std::string(name));
        }
      }
    }
    const host::FlagScope filling(filling_tree_);
    tree->ReSelectItem();
  });
}

host::RowSet selKjkm::AccountsOfCode(Session& session, const std::string& code) {
  std::string where = " where 1=1";
  // The whole value in one pair of quotes, unlike the prefixes of the list: that is intended.
  if (!code.empty()) where.append(" and ccode in('").append(code).append("')");
  Answer answer = Query(*session.m_System, "select ccode,ccode_name,cclass,i_id from gl_code " +
                                               where + " order by igrade,ccode");
  if (!answer.error.empty()) {
    using viewkit::UserPort;
    (void)user_.Ask(answer.error, "FmMKjkm", UserPort::Icon::kCritical, UserPort::Buttons::kOk);
    answer.entry->Clear();
  }
  if (!answer.rows) return host::RowSet(0);
  host::OpenRows& rows = *answer.rows;
  constexpr std::size_t kTreeColumns = 4;
  host::RowSet accounts =
      rows->EndOfFile() ? host::RowSet(0) : host::GivenRows(*rows, kTreeColumns);
  rows.Close();
  return accounts;
}

void selKjkm::m_Tv_Selected() noexcept {
  if (!filling_tree_) LoadAccountList();  // whoever fills the tree loads the list once, after it
}

}  // namespace tavrix::picker
