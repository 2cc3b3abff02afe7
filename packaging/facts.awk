# What an interface definition declares, one fact a line, its words parted by tabs: the kind
# (library, coclass, interface, dispinterface), name, identifier, version, "control" or "automation"
# or "-", and the help text. Only what has an identifier counts.

{
  sub(/\/\/.*/, "")
  text = text $0 " "
}

function word(attributes, name) {
  if (match(attributes, name "\\(\"[^\"]*\"")) return substr(attributes, RSTART + length(name) + 2, RLENGTH - length(name) - 3)
  if (match(attributes, name "\\([^)]*")) return substr(attributes, RSTART + length(name) + 1, RLENGTH - length(name) - 1)
  return "-"
}

END {
  declaration = "\\[[^]]*\\] *(library|coclass|interface|dispinterface) +[A-Za-z0-9_]+"
  while (match(text, declaration)) {
    found = substr(text, RSTART, RLENGTH)
    text = substr(text, RSTART + RLENGTH)
    attributes = found
    sub(/\][^]]*$/, "", attributes)
    if (attributes !~ /uuid\(/) continue
    sub(/^.*\] */, "", found)
    split(found, declared, / +/)
    kind = "-"
    if (attributes ~ /[ ,]control[ ,]/) kind = "control"
    if (attributes ~ /dual|oleautomation/ || declared[1] == "dispinterface") kind = "automation"
    printf "%s\t%s\t{%s}\t%s\t%s\t%s\n", declared[1], declared[2], toupper(word(attributes, "uuid")),
      word(attributes, "version"), kind, word(attributes, "helpstring")
  }
}
