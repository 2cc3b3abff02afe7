# Where books and layouts of whoever uses the desk by hand are kept: his own documents folder,
# outside of all that is built, cached and removed here.
# shellcheck shell=bash

# The documents folder as the desktop names it, for any user without one a folder in his home.
documents_folder() (
  dirs=${XDG_CONFIG_HOME:-$HOME/.config}/user-dirs.dirs
  # shellcheck source=/dev/null
  if [[ -r $dirs ]]; then source "$dirs"; fi
  folder=${XDG_DOCUMENTS_DIR:-$HOME/Documents}
  # Without such a folder the desktop names the home itself.
  [[ ${folder%/} != "${HOME%/}" ]] || folder=$HOME/Documents
  printf '%s\n' "$folder"
)

users_of() { find "$1/drive_c/users" -mindepth 1 -maxdepth 1 -type d ! -name Public 2>/dev/null; }

# take_along FROM TO: what lies in a folder of a prefix, unless it is there already.
take_along() {
  [[ -d $1 && ! -L $1 && ! -L $(dirname "$1") ]] || return 0
  mkdir -p "$2"
  cp -Rn "$1/." "$2/"
}

# rescue_documents PREFIX: books and layouts that were made inside a prefix, before it goes.
rescue_documents() {
  local home user
  home=$(documents_folder)/Tavrix
  users_of "$1" | while read -r user; do
    take_along "$user/Documents/Tavrix" "$home"
    take_along "$user/AppData/Roaming/Tavrix" "$home/user"
  done
}

# keep_documents PREFIX: the desk finds the user's own folders behind those of the prefix.
keep_documents() {
  local documents home user
  documents=$(documents_folder) home=$(documents_folder)/Tavrix
  mkdir -p "$home/user"
  users_of "$1" | while read -r user; do
    mkdir -p "$user/AppData/Roaming"
    rm -rf "$user/Documents" "$user/AppData/Roaming/Tavrix"
    ln -s "$documents" "$user/Documents"
    ln -s "$home/user" "$user/AppData/Roaming/Tavrix"
  done
}
