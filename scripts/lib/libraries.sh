# The pinned sources of the libraries that read and write workbooks: Debian's source packages, as their
# makers published them, checked by their hashes.
# shellcheck shell=bash

readonly library_sums="\
ab00ee05c7067fd10a35c5d2a4922ebba746ddd50ff83b79c828da17bbdf1757  expat_2.5.0.orig.tar.gz
7d8da446d3b6799e7851f077a66551a46b80fc3de708549e79dbd3e49e842ba1  minizip_1.1.orig.tar.xz"

fetch_libraries() { fetch_pinned libraries "Expat and minizip" "$library_sums" unpack_libraries; }

# In the current folder; each step is checked, since `set -e` is off under `||`. Lists of source packages
# are kept here, so that the system's own stay as they are.
unpack_libraries() {
  local release
  release=$(source /etc/os-release && printf '%s' "$VERSION_CODENAME") &&
    mkdir -p lists/partial archives/partial unpacked/expat unpacked/minizip &&
    printf 'deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] %s %s main\n' \
      "$(debian_mirror)" "$release" >sources.list &&
    private_apt update >&2 &&
    private_apt --download-only source expat minizip >&2 &&
    sha256sum --check --quiet <<<"$library_sums" >&2 &&
    tar xzf expat_*.orig.tar.gz -C unpacked/expat --strip-components=3 --wildcards '*/expat/lib/*' &&
    tar xzf expat_*.orig.tar.gz -C unpacked/expat --strip-components=2 --wildcards '*/expat/COPYING' &&
    tar xJf minizip_*.orig.tar.xz -C unpacked/minizip --strip-components=1
}

private_apt() {
  apt-get -q -o Acquire::Retries=3 -o Dir::Etc::SourceList="$PWD/sources.list" \
    -o Dir::Etc::SourceParts=/dev/null -o Dir::State::Lists="$PWD/lists" -o Dir::Cache="$PWD" \
    -o APT::Sandbox::User=root "$@" </dev/null
}

# Where this system's own packages come from.
debian_mirror() {
  apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' 'Label: Debian' |
    sed 's,/$,,' | head -n 1
}
