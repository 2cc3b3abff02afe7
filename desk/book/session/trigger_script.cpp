#include "book/session/trigger_script.h"

#include <utility>

namespace desk::book {

void PostgresScript::Add(const std::string& trigger, const std::string& name,
                         const std::string& body) {
  script_.push_back("create function " + name +
                    "() returns trigger language plpgsql set search_path from current as "
                    "$$declare leaf text; begin perform "
                    "set_config('search_path',quote_ident(tg_table_schema),true);" +
                    body + " end$$");
  function_ = name;
  AddTrigger(trigger);
}

void PostgresScript::AddTrigger(const std::string& trigger) {
  script_.push_back(trigger + "execute function " + function_ + "()");
}

std::vector<std::string> PostgresScript::Take() {
  return std::move(script_);
}

}  // namespace desk::book
