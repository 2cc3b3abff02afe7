# Packages of what is built, each written so that the same contents give the same bytes.
# shellcheck shell=bash

readonly package_packages=(wixl msitools zip unzip faketime) packing_time='2020-01-01 00:00:00'
readonly idl_folder=$root/src/component/idl packing=$build/packing

product_version() { sed -n 's/^project(tavrix VERSION \([0-9.]*\) .*/\1/p' "$root/CMakeLists.txt"; }

# The preset that builds for x64 or x86.
preset_of() { if [[ $1 == x64 ]]; then echo win64; else echo win32; fi; }

# What the definition of a library and its parts declare.
facts() { awk -f "$root/packaging/facts.awk" "$idl_folder/$1.idl" $(compgen -G "$idl_folder/$1_*.idl"); }

# An identifier that follows from the arguments, as installers write it.
identifier() {
  local hash
  hash=$(printf '%s\n' "$@" | hash_of)
  hash=${hash^^}
  printf '%s-%s-5%s-8%s-%s' "${hash:0:8}" "${hash:8:4}" "${hash:13:3}" "${hash:17:3}" "${hash:20:12}"
}

# Gives all files of folder $1 the same time.
still() { TZ=UTC find "$1" -exec touch -h -d "$packing_time" {} +; }

# One hash of the names and contents of a folder's files.
hash_of_folder() { (cd "$1" && find . -type f -print0 | sort -z | xargs -0 sha256sum | hash_of); }

# stage_program ARCHITECTURE NAME FOLDER: a program or library as it was linked; removing symbols later
# would put the time into it.
stage_program() { cp "$build/$(preset_of "$1")/bin/$2" "$3"; }

# stage_library ARCHITECTURE FOLDER: the library and what belongs beside it.
stage_library() {
  local arch=$1 folder=$2 library
  mkdir -p "$folder"
  stage_program "$arch" tavrix.dll "$folder"
  for library in qnFormUI qnDesignUI qnPickerUI qnSystem; do
    cp "$build/$(preset_of "$arch")/bin/$library.tlb" "$folder"
  done
  cp "$root/LICENSE" "$folder"
}

# stage_registry ARCHITECTURE FOLDER: what registering writes, as parts of the installer's source.
stage_registry() {
  local kind=win64 part
  [[ $1 == x64 ]] || kind=win32
  for part in classes names interfaces library; do
    facts tavrix | awk -v part="$part" -v kind="$kind" -v misc=131473 -f "$root/packaging/registry.awk" >"$2/$part.wxi"
  done
}

# write_installer SOURCE ARCHITECTURE VERSION LANGUAGE OUT [NAME=VALUE...]: an installer of the staged
# files beside its source. A package is another one as soon as its contents are.
write_installer() {
  local source=$1 arch=$2 version=$3 language=$4 out=$5 folder name file template=Intel defines define options=()
  shift 5
  folder=$(dirname "$source") name=$(basename "$source" .wxs)
  defines=("Arch=$arch" "Version=$version" "ProductCode=$(identifier "$name" "$arch" "$version")" "$@")
  if [[ $arch == x64 ]]; then
    template=x64
    defines+=(ProgramFiles=ProgramFiles64Folder Win64=yes)
  else
    defines+=(ProgramFiles=ProgramFilesFolder Win64=no)
  fi
  for define in "${defines[@]}"; do options+=(-D "$define"); done
  still "$folder"
  # The sources' own folder: an installer knows its files by relative names.
  (
    cd "$folder" || exit 1
    rm -f "$out"
    TZ=UTC faketime -f "$packing_time" wixl -a "$arch" "${options[@]}" -o "$out" "$name.wxs" || exit 1
    # Programs replace others by their version, which the compiler of installers does not read.
    for file in *.dll *.exe; do
      [[ -f $file ]] || continue
      query "$out" "UPDATE \`File\` SET \`Version\`='$version.0', \`Language\`='$language' WHERE \`File\`='$file'"
      query "$out" "DELETE FROM \`MsiFileHash\` WHERE \`File_\`='$file'"
    done
    query "$out" "UPDATE \`Component\` SET \`Condition\`='WINE' WHERE \`Component\`='Names64'"
    TZ=UTC faketime -f "$packing_time" msibuild "$out" -s "Tavrix $version" Tavrix \
      "$template;$language" "{$(identifier "$(hash_of_folder .)" "${defines[@]}")}"
  ) >>"$build/logs/package.log" 2>&1
  [[ -f $out ]]
}

# The texts of the desk's installer that its users see.
put_in_chinese() {
  local table=$packing/_ForceCodepage.idt
  printf '\r\n\r\n936\t_ForceCodepage\r\n' >"$table"
  TZ=UTC faketime -f "$packing_time" msibuild "$1" -i "$table" &&
    query "$1" "UPDATE \`Shortcut\` SET \`Name\`='会计科目'" &&
    query "$1" "UPDATE \`LaunchCondition\` SET \`Description\`='已安装更新的版本。'"
}

query() { TZ=UTC faketime -f "$packing_time" msibuild "$1" -q "$2"; }

# The library's installer.
package_library() {
  local arch=$1 version=$2 out=$3 folder=$packing/library-$1
  rm -rf "$folder"
  stage_library "$arch" "$folder"
  stage_registry "$arch" "$folder"
  cp "$root/packaging/tavrix.wxs" "$folder"
  if [[ $arch == x64 ]]; then
    set -- LibraryId=b0a81cbb-0b18-4d50-98d6-7e705beeb0b1 UpgradeCode=9bfc901d-1cc9-4243-a4e7-569bc86c0328
  else
    set -- LibraryId=70b7dc1b-df71-420c-ada7-012e53c7bc22 UpgradeCode=e7013d41-e8ff-4f84-8572-32fa67bcda53
  fi
  write_installer "$folder/tavrix.wxs" "$arch" "$version" 1033 "$out/tavrix-$version-$arch.msi" "$@"
}

# The notices of what is built into the desk, as their makers have published them.
write_notices() {
  local part
  printf 'The desk contains SQLite, which is in the public domain, and the following.\n'
  for part in "Expat:$cache/libraries/expat/COPYING" "minizip:$cache/libraries/minizip/MiniZip64_info.txt" \
    'zlib:/usr/share/doc/libz-mingw-w64-dev/copyright' \
    'Initials of pinyin, from the transliteration of ICU:/usr/share/doc/icu-devtools/copyright'; do
    printf '\n==== %s ====\n\n' "${part%%:*}"
    cat "${part#*:}" || return 1
  done
}

# The desk's installer.
package_desk() {
  local arch=$1 version=$2 out=$3 folder=$packing/desk-$1
  rm -rf "$folder"
  mkdir -p "$folder"
  stage_program "$arch" desk.exe "$folder"
  stage_program "$arch" tavrix.dll "$folder"
  cp "$root/LICENSE" "$root/packaging/desk.wxs" "$folder"
  write_notices >"$folder/NOTICES.txt" || die "a notice of the desk's parts is missing"
  if [[ $arch == x64 ]]; then
    set -- ComponentId=eb8b25e0-4c71-48c3-bdad-d3f7fbffe848 UpgradeCode=4859ab08-a59b-4567-ab5d-0627f0da47f6
  else
    set -- ComponentId=3eddd604-b648-44dd-94ac-97ea776ba9f5 UpgradeCode=f2e82cd8-e6b5-4736-b8cb-d90e572fd410
  fi
  write_installer "$folder/desk.wxs" "$arch" "$version" 2052 "$out/desk-$version-$arch.msi" "$@" &&
    put_in_chinese "$out/desk-$version-$arch.msi"
}

# What hosts are written and given away with, as a folder.
stage_kit() {
  local version=$1 folder=$2 arch machine
  rm -rf "$folder"
  for arch in x64 x86; do
    stage_library "$arch" "$folder/$arch"
    rm "$folder/$arch/LICENSE"
    cp "$build/$(preset_of "$arch")/bin/tavrix.tlb" "$folder/$arch"
    machine=amd64
    [[ $arch == x64 ]] || machine=x86
    facts tavrix | awk -v kind=host -f "$root/packaging/manifest.awk" >"$folder/$arch/host.manifest"
    facts tavrix | awk -v kind=assembly -v machine=$machine -v file_version="$version.0" \
      -f "$root/packaging/manifest.awk" >"$folder/$arch/Tavrix.Controls.manifest"
    sed "s/@FILE_VERSION@/$version.0/; s/@MACHINE@/$machine/" \
      "$root/packaging/host-of-assembly.manifest.in" >"$folder/$arch/host-of-assembly.manifest"
  done
  mkdir -p "$folder/include" "$folder/idl" "$folder/lib/cmake/Tavrix"
  # They are the same for both sizes.
  cp "$build/win64/src/component/idl/"*.h "$build/win64/src/component/idl/"*_i.c "$folder/include"
  cp "$idl_folder/"*.idl "$folder/idl"
  cp "$root/packaging/TavrixConfig.cmake" "$folder/lib/cmake/Tavrix"
  sed "s/@VERSION@/$version/" "$root/packaging/TavrixConfigVersion.cmake.in" \
    >"$folder/lib/cmake/Tavrix/TavrixConfigVersion.cmake"
  cp -r "$root/docs" "$root/README.md" "$root/LICENSE" "$folder"
  sed "s/^## Unreleased$/## $version/" "$root/CHANGELOG.md" >"$folder/CHANGELOG.md"
  [[ ! -d $root/samples ]] || cp -r "$root/samples" "$folder"
}

package_kit() {
  local version=$1 out=$2 name=tavrix-$1
  stage_kit "$version" "$packing/$name"
  still "$packing/$name"
  rm -f "$out/$name.zip"
  (cd "$packing" && find "$name" | sort | TZ=UTC zip -q -9 -X "$out/$name.zip" -@)
}

# write_packages VERSION FOLDER: all packages of what is built.
write_packages() {
  local version=$1 out=$2 arch
  mkdir -p "$out"
  package_kit "$version" "$out"
  for arch in x64 x86; do
    package_library "$arch" "$version" "$out"
    package_desk "$arch" "$version" "$out"
  done
  (cd "$out" && sha256sum ./*-"$version"* >SHA256SUMS)
}
