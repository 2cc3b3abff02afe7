# A database server of one's own: PostgreSQL on a free port of the loopback address, for the tests and
# the benchmarks. It keeps nothing: its data are in a temporary folder that goes with it.
# shellcheck shell=bash

server_folder=
server_port=

# The newest installed version's programs; Debian keeps them out of the path.
server_programs() { printf '%s\n' /usr/lib/postgresql/*/bin | sort -V | tail -n 1; }

# PostgreSQL refuses to run as root. Whoever else calls is unprivileged already.
as_server_user() {
  if [[ $(id -u) == 0 ]]; then
    setpriv --reuid=postgres --regid=postgres --init-groups "$@"
  else
    "$@"
  fi
}

# start_server LOG: starts one; server_connection then tells how to reach it.
start_server() {
  local log=$1 programs try
  programs=$(server_programs)
  [[ -x $programs/initdb ]] || { warn "PostgreSQL is not installed"; return 1; }
  server_folder=$(mktemp -d /tmp/tavrix-server.XXXXXX)
  if [[ $(id -u) == 0 ]]; then chown postgres: "$server_folder"; fi
  # The server's own settings, not those of whoever calls; and from a folder that it may enter.
  (cd / && as_server_user "$programs/initdb" -D "$server_folder/data" -U book -E UTF8 \
    --locale=C.UTF-8 -A trust --no-sync) >"$log" 2>&1 || { cat "$log" >&2; stop_server; return 1; }
  for try in 1 2 3 4 5; do
    server_port=$((20000 + RANDOM % 20000))
    ! port_taken "$server_port" || continue
    if run_server start "$log" 2>/dev/null; then return 0; fi
  done
  cat "$log" >&2
  stop_server
  return 1
}

port_taken() { (exec 3<>"/dev/tcp/127.0.0.1/$1") 2>/dev/null; }

# run_server start|stop LOG
run_server() {
  local programs options
  programs=$(server_programs)
  options="-c listen_addresses=127.0.0.1 -c port=$server_port -c fsync=off"
  options+=" -c unix_socket_directories=$server_folder -c max_connections=200"
  (cd / && as_server_user "$programs/pg_ctl" -D "$server_folder/data" -w -m immediate -o "$options" \
    "$1" </dev/null >>"$2" 2>&1)
}

stop_server() {
  [[ -n $server_folder ]] || return 0
  if [[ -f $server_folder/data/postmaster.pid ]]; then run_server stop /dev/null || true; fi
  rm -rf "$server_folder"
  server_folder=
}

server_connection() {
  printf 'Driver={PostgreSQL Unicode};Server=127.0.0.1;Port=%s;Database=postgres;Uid=book;' \
    "$server_port"
}
