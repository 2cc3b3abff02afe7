# Tables of characters that are built in: made once by the tools that know them, checked by their hashes.
# shellcheck shell=bash

readonly table_sums="\
ff8f8cf8b6da8150810adfad20b34726727c6222528b6d137acceff297106432  gb18030.txt
d2510be342b1b7706512eb2d0e0ca64d5acdef68ca5ff12ab6822beec68628a7  gb18030_ranges.txt
3a64760be360a72cab0746f1725dc7ba2399e92947142c3786593db5366f038c  pinyin_initials.txt"

make_tables() {
  local folder=$cache/tables
  stamped "$folder/stamp" "$table_sums" && return 0
  say "making tables of characters"
  mkdir -p "$folder"
  (cd "$folder" && write_tables && sha256sum --check --quiet <<<"$table_sums" >&2) ||
    die "the tables of characters are not those that the sources were written for: see above"
  stamp "$folder/stamp" "$table_sums"
}

# In the current folder; each step is checked, since `set -e` is off under `||`.
write_tables() {
  write_gb18030 >gb18030.txt && write_gb18030_ranges >gb18030_ranges.txt &&
    write_pinyin_initials >pinyin_initials.txt
}

# The characters of two bytes, a line for each first byte.
write_gb18030() {
  perl -e 'for $lead (0x81 .. 0xFE) {
      print map({ chr($lead) . chr } 0x40 .. 0x7E, 0x80 .. 0xFE), "\n";
    }' | iconv -f GB18030 -t UTF-8
}

# Those of four bytes below U+10000 stand in order: where a run of them begins, counted from the first
# one, and the code point there.
write_gb18030_ranges() {
  perl -e 'for $i (0 .. 39419) {
      print pack("C4", 0x81 + int($i / 12600), 0x30 + $i / 1260 % 10, 0x81 + $i / 10 % 126,
        0x30 + $i % 10), "\n";
    }' | iconv -c -f GB18030 -t UTF-8 | perl -CSD -ne 'chomp; $point = length ? ord : 0;
      printf "%d %d\n", $. - 1, $point if $point != ($last ? $last + 1 : 0);
      $last = $point;'
}

# The first letter of the usual reading of each character from U+4E00 to U+9FFF, 64 on a line; a dot for
# those without one.
write_pinyin_initials() {
  perl -CS -e 'print chr, "\n" for 0x4E00 .. 0x9FFF' | uconv -f UTF-8 -t UTF-8 -x 'Han-Latin; Latin-ASCII' |
    perl -ne 'print /^([a-z])/ ? $1 : "."; print "\n" if $. % 64 == 0'
}
