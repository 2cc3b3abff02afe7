#include "book/sql/sql_words.h"

#include <algorithm>
#include <string>
#include <vector>

namespace desk::book {

namespace {

// Words that some server reads as more than a name, functions without parentheses and columns that
// servers add to every table among them. Everyday words that no server stumbles over (date, year,
// name, value) are left to the callers.
constexpr std::string_view kWords =
    "_rowid_ abs absolute action add admin after aggregate all allocate alphanumeric alter "
    "analyse analyze and any application are array as asc asensitive assertion asymmetric at "
    "atomic attach authorization auto autoincrement avg backup before begin between bigint "
    "binary bit blob boolean both break browse bulk by byte call cascade cascaded case cast "
    "catalog change char character check checkpoint close clustered cmax cmin coalesce collate "
    "collation column commit compute concurrently condition connect constraint contains "
    "containstable continue convert copy corresponding count counter create cross ctid cube "
    "current current_catalog current_date current_default_transform_group current_path "
    "current_role current_row current_schema current_time current_timestamp "
    "current_transform_group_for_type current_user cursor cycle database databases day_hour "
    "day_microsecond day_minute day_second dayofmonth dbcc deallocate dec decimal declare "
    "default deferrable deferred delayed delete deny desc describe detach deterministic disallow "
    "disconnect disk distinct distinctrow distributed div do domain double drop dual dump each "
    "else elseif empty enclosed end eqv errlvl escape escaped every except exception exclude "
    "exclusive exec execute exists exit explain external extract fail false fetch file "
    "fillfactor filter first float float4 float8 following for force foreign found free freetext "
    "freetexttable freeze from full fulltext function fusion generated get glob global go goto "
    "grant group grouping groups handler having high_priority hold holdlock hour_microsecond "
    "hour_minute hour_second identity identity_insert identitycol ieeedouble ieeesingle if "
    "ignore iif ilike immediate imp in index indexed indicator infile initially inner inout "
    "input insensitive insert instead int int1 int2 int3 int4 int8 integer intersect "
    "intersection interval into is isnull iterate join json_table key keys kill language last "
    "lateral leading leave left len like limit linear lineno lines load local localtime "
    "localtimestamp lock logical logical1 long longbinary longblob longtext loop low_priority "
    "lower master_bind master_heartbeat_period master_ssl_verify_server_cert match materialized "
    "max maxvalue mediumblob mediumint mediumtext member merge method min minus "
    "minute_microsecond minute_second mod modifies multiset national natural nchar nclob new "
    "next no no_write_to_binlog nocheck nonclustered none not notnull now nowait null "
    "nullif nulls numeric nvarchar of off offset offsets oid oj old oleobject on once only open "
    "opendatasource openquery openrowset openxml optimize option optionally or order ordinality "
    "others out outer outfile over overlaps overlay overwrite owneraccess pad page_checksum "
    "parameters parse_vcol_expr partial partition percent pivot placing plan pragma preceding "
    "precision prepare primary print prior privileges proc procedure public purge qualify query "
    "quick raise raiserror raw read read_write readonly reads readtext real receive reconfigure "
    "recursive ref_system_id references referencing regexp reindex relative release rename "
    "repeat replace replication require resignal restore restrict result return returning revert "
    "revoke right rlike role rollback rollup round row row_number rowcount rowguidcol rowid "
    "rownum rows rule save savepoint schema schemas scroll search second_microsecond "
    "securityaudit select self semantickeyphrasetable semanticsimilaritydetailstable "
    "semanticsimilaritytable send sensitive separator session session_user set setof setuser "
    "share short show shutdown signal similar size smallint some spatial specific sql "
    "sql_big_result sql_calc_found_rows sql_no_cache sql_small_result sqlexception sqlstate "
    "sqlwarning ssl start starting static statistics stats_auto_recalc stats_persistent "
    "stats_sample_pages straight_join sum symmetric sysdate sysname system system_time "
    "system_user table tableid tableoid tablesample temp temporary terminated textsize then "
    "throw ties timestamp tinyblob tinyint tinytext to top trailing tran transaction transform "
    "translate translation treat trigger trim true truncate try_convert tsequal unbounded under "
    "undo union unique uniqueidentifier unknown unlock unnest unpivot unsigned update updatetext "
    "upper usage use user using utc_date utc_time utc_timestamp vacuum values varbinary varchar "
    "varcharacter variadic varying verbose view virtual waitfor when whenever where while window "
    "with within without work write writetext xmax xmin xml xor year_month yesno zerofill ";

/// The words in order.
std::vector<std::string_view> SortedWords() {
  std::vector<std::string_view> words;
  for (std::string_view rest = kWords; !rest.empty();) {
    const std::size_t end = rest.find(' ');
    words.push_back(rest.substr(0, end));
    rest.remove_prefix(end + 1);
  }
  std::ranges::sort(words);
  return words;
}

constexpr char LowerLetter(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

bool IsSqlWord(std::string_view word) {
  static const std::vector<std::string_view> words = SortedWords();
  std::string lower(word);
  std::ranges::transform(lower, lower.begin(), LowerLetter);
  return std::ranges::binary_search(words, std::string_view(lower));
}

bool IsSameName(std::string_view left, std::string_view right) {
  return std::ranges::equal(left, right, {}, LowerLetter, LowerLetter);
}

bool IsNameBefore(std::string_view left, std::string_view right) {
  return std::ranges::lexicographical_compare(left, right, {}, LowerLetter, LowerLetter);
}

}  // namespace desk::book
