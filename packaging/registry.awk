# What registering the library writes, as registry values of an installer's component. Reads the facts
# of facts.awk; `part` chooses: classes, names, interfaces or library. `misc` is the controls'
# MiscStatus.

# The first one of a component without files tells whether it is installed.
function value(key, name, text,    first) {
  first = !written++ && part != "classes"
  gsub(/&/, "\\&amp;", text)
  printf "  <RegistryValue Root=\"HKCR\" Key=\"%s\"%s Type=\"string\" Value=\"%s\"%s/>\n", key,
    name == "" ? "" : " Name=\"" name "\"", text, first ? " KeyPath=\"yes\"" : ""
}

BEGIN {
  FS = "\t"
  print "<Include>"
}

$1 == "library" {
  library = $3
  name = $2
  version = $4
  if (part == "library") {
    key = "TypeLib\\" library "\\" version
    value(key, "", $6)
    value(key "\\FLAGS", "", "0")
    value(key "\\HELPDIR", "", "[INSTALLFOLDER]")
  }
  if (part == "classes") value("TypeLib\\" library "\\" version "\\0\\" kind, "", "[#tavrix.dll]")
}

$1 == "coclass" && part == "classes" {
  key = "CLSID\\" $3
  value(key, "", $6)
  value(key "\\InprocServer32", "", "[#tavrix.dll]")
  value(key "\\InprocServer32", "ThreadingModel", "Apartment")
  value(key "\\ProgID", "", name "." $2)
  value(key "\\TypeLib", "", library)
  value(key "\\Version", "", version)
}

$1 == "coclass" && part == "classes" && $5 == "control" {
  value(key "\\Control", "", "")
  value(key "\\MiscStatus", "", "0")
  value(key "\\MiscStatus\\1", "", misc)
}

$1 == "coclass" && part == "names" {
  value(name "." $2, "", $6)
  value(name "." $2 "\\CLSID", "", $3)
}

# The system's own proxies: of Automation for interfaces, of IDispatch for events.
$1 ~ /interface$/ && $5 == "automation" && part == "interfaces" {
  key = "Interface\\" $3
  proxy = "{0002042" ($1 == "interface" ? 4 : 0) "-0000-0000-C000-000000000046}"
  value(key, "", $2)
  value(key "\\ProxyStubClsid", "", proxy)
  value(key "\\ProxyStubClsid32", "", proxy)
  value(key "\\TypeLib", "", library)
  value(key "\\TypeLib", "Version", version)
}

END { print "</Include>" }
