# The documents against what they speak of.
# shellcheck shell=bash

documents() { (cd "$root" && find README.md CHANGELOG.md docs -name '*.md' | sort); }

check_texts() {
  local bad=0
  links_lead_nowhere && bad=1
  headings_are_gone && bad=1
  paths_are_gone && bad=1
  commands_are_not_told && bad=1
  keys_differ && bad=1
  return "$bad"
}

# complain WHAT: tells what standard input lists; fails when that is nothing.
complain() {
  local found
  found=$(cat)
  [[ -n $found ]] || return 1
  warn "$1"
  printf '%s\n' "$found" >&2
}

links_lead_nowhere() {
  documents | while read -r document; do
    { grep -oE '\]\([^)#]+' "$root/$document" || true; } | sed 's/^](//' | grep -v '^[a-z]*:' |
      while read -r target; do
        [[ -e $root/$(dirname "$document")/$target ]] || printf '%s: %s\n' "$document" "$target"
      done
  done | complain "these links lead nowhere:"
}

# Links to a heading of a document: no heading there makes that anchor.
headings_are_gone() {
  documents | (cd "$root" && perl -Mutf8 -CS -Mopen=:std,:utf8 -MFile::Basename -e '
    my %anchors;
    sub text_of { open(my $file, "<:utf8", $_[0]) or return ""; local $/; return scalar <$file> }
    sub anchors_of {
      my ($path) = @_;
      return $anchors{$path} //= { map { my $a = lc; $a =~ s/[^\w\s-]//g; $a =~ s/ /-/g; ($a => 1) }
        text_of($path) =~ /^#+ (.*)$/mg };
    }
    while (my $document = <STDIN>) {
      chomp $document;
      my $text = text_of($document);
      while ($text =~ /\]\(([^):#]*)#([^)]+)\)/g) {
        my $target = $1 eq "" ? $document : dirname($document) . "/$1";
        print "$document: $1#$2\n" unless anchors_of($target)->{$2};
      }
    }') | complain "these headings are gone:"
}

# What a document names in `...` below one of our folders.
paths_are_gone() {
  documents | grep -v CHANGELOG | while read -r document; do
    { grep -oE '`(src|desk|tests|scripts|docs|bench|fuzz|samples|packaging)/[^` ]*' "$root/$document" || true; } |
      tr -d '`' | sort -u | while read -r path; do
        compgen -G "$root/$path" >/dev/null || printf '%s: %s\n' "$document" "$path"
      done
  done | complain "these files are gone:"
}

commands_are_not_told() {
  find "$root/scripts" -maxdepth 1 -type f -perm -u+x -printf 'scripts/%f\n' | sort |
    while read -r command; do
      grep -qE "$command([^-a-z0-9]|\$)" "$root/docs/building.md" || printf '%s\n' "$command"
    done | complain "docs/building.md does not tell of:"
}

# The keys in the desk's tables of commands: as its menus show them.
keys_differ() {
  local told product
  product=$(grep -oE ', "(Ctrl|Shift|Alt|F[0-9]|Del)[^"]*"' "$root/desk/views/commands.cpp" |
    sed 's/^[^"]*"//; s/"$//' | sort -u)
  told=$(sed -n '/^| Key | Command/,/^$/p' "$root/docs/desk.md" |
    awk -F '|' 'NR > 2 { print $2; print $4 }' | sed 's/ … /, /g' | tr ',' '\n' |
    sed 's/^ *//; s/ *$//' | sort -u)
  {
    # Alt+F4 is the system's; keys between the ends of a range are not told one by one.
    comm -23 <(printf '%s\n' "$product") <(printf '%s\n' "$told") |
      grep -vE '^(Alt\+F4|Ctrl\+[2-6])$' | sed 's/^/not told: /'
    # What the view and the system do by themselves is no command of the desk.
    comm -13 <(printf '%s\n' "$product") <(printf '%s\n' "$told") |
      grep -vE '^(|Enter|Shift\+F10|menu key|right click)$' | sed 's/^/no command: /'
  } | complain "docs/desk.md and the desk's keys differ:"
}

# Runs, as they stand, what the documents on building and debugging tell to type: all lines of their listings
# that build one target or run one program. (Whole scripts run as themselves, the guide's commands in
# scripts/lib/samples.sh and scripts/test-package.)
run_documented_commands() {
  local command output bad=0
  while read -r command; do
    if ! output=$(cd "$root" && timeout 600 bash -c "$command" 2>&1 </dev/null); then
      warn "fails: $command"
      bad=1
    elif grep -qE 'Running 0 tests|No tests were found' <<<"$output"; then
      warn "runs no test: $command"
      bad=1
    fi
  done < <(documented_commands)
  return "$bad"
}

documented_commands() {
  (cd "$root" && awk '/^```/ { inside = !inside; next } inside' docs/building.md docs/debugging.md) |
    grep -E '^(cmake (--build )?--preset|ctest --preset|build/[^ ]*|scripts/wine) ' | sort -u
}
