# A registration-free manifest from the facts of facts.awk: of a side-by-side assembly (kind=assembly,
# with `machine` and `file_version`), or for a host's own executable (kind=host). The assembly must not have
# the name of the DLL: Windows looks for NAME\NAME.dll before NAME\NAME.manifest, and would take the DLL for it.

BEGIN {
  FS = "\t"
  print "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>"
  print "<assembly xmlns=\"urn:schemas-microsoft-com:asm.v1\" manifestVersion=\"1.0\">"
  if (kind == "assembly") {
    printf "  <assemblyIdentity type=\"win32\" name=\"Tavrix.Controls\" version=\"%s\" processorArchitecture=\"%s\"/>\n",
      file_version, machine
  }
  print "  <file name=\"tavrix.dll\">"
}

$1 == "library" {
  library = $3
  name = $2
  printf "    <typelib tlbid=\"%s\" version=\"%s\" helpdir=\"\" resourceid=\"1\" flags=\"HASDISKIMAGE\"/>\n",
    $3, $4
}

$1 == "coclass" {
  printf "    <comClass description=\"%s\" clsid=\"%s\" progid=\"%s.%s\" threadingModel=\"Apartment\" tlbid=\"%s\"",
    $6, $3, name, $2, library
  if ($5 == "control") {
    printf "\n        miscStatusContent=\"recomposeonresize,cantlinkinside,insideout,activatewhenvisible,setclientsitefirst\""
  }
  print "/>"
}

# Those of events are for IDispatch alone.
$1 ~ /interface$/ && $5 == "automation" {
  proxies = proxies sprintf("  <comInterfaceExternalProxyStub name=\"%s\" iid=\"%s\" tlbid=\"%s\" proxyStubClsid32=\"{0002042%d-0000-0000-C000-000000000046}\"/>\n",
    $2, $3, library, $1 == "interface" ? 4 : 0)
}

END {
  print "  </file>"
  printf "%s", proxies
  print "</assembly>"
}
