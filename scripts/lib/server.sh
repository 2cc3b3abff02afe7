# A database server of one's own: PostgreSQL on a free port of the loopback address, for the tests and
# the benchmarks. It keeps nothing: its data are in a temporary folder that goes with it.
# shellcheck shell=bash

server_folder=
server_port=
readonly server_host=127.0.0.1 standby_host=127.0.0.2
readonly new_key=(-newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes)

# The newest installed version's programs; Debian keeps them out of the path.
server_programs() { printf '%s\n' /usr/lib/postgresql/*/bin | sort -V | tail -n 1; }

# PostgreSQL refuses to run as root. Whoever else calls is unprivileged already. And it starts from a
# folder that it may enter.
as_server_user() {
  if [[ $(id -u) == 0 ]]; then
    (cd / && setpriv --reuid=postgres --regid=postgres --init-groups "$@")
  else
    (cd / && "$@")
  fi
}

# start_server LOG: starts one; server_connection then tells how to reach it.
start_server() {
  local log=$1 programs try
  programs=$(server_programs)
  [[ -x $programs/initdb ]] || { warn "PostgreSQL is not installed"; return 1; }
  server_folder=$(mktemp -d /tmp/tavrix-server.XXXXXX)
  if [[ $(id -u) == 0 ]]; then chown postgres: "$server_folder"; fi
  # The server's own settings, not those of whoever calls.
  as_server_user "$programs/initdb" -D "$server_folder/data" -U book -E UTF8 --locale=C.UTF-8 \
    -A trust --no-sync >"$log" 2>&1 && secure_server "$log" ||
    { cat "$log" >&2; stop_server; return 1; }
  for try in 1 2 3 4 5; do
    server_port=$((20000 + RANDOM % 20000))
    ! port_taken "$server_port" || continue
    if run_server start data "$server_host" "$log" 2>/dev/null; then return 0; fi
  done
  cat "$log" >&2
  stop_server
  return 1
}

# secure_server LOG: encryption for those who ask for it, with a certificate for the server's address
# that root.crt has signed and stranger.crt has not; and a group of users who need a password.
secure_server() {
  local log=$1 certificates name
  certificates=$(mktemp -d) || return 1
  (
    cd "$certificates"
    for name in root stranger; do
      openssl req -x509 "${new_key[@]}" -days 2 -subj "/CN=$name" -keyout "$name.key" -out "$name.crt"
    done
    openssl req "${new_key[@]}" -subj /CN=server -keyout server.key -out server.csr
    printf 'subjectAltName=IP:%s' "$server_host" >names
    openssl x509 -req -in server.csr -CA root.crt -CAkey root.key -CAcreateserial -days 2 \
      -extfile names -out server.crt
    chmod 600 server.key
    printf 'host all +password_users all scram-sha-256\n' >users
    cat "$server_folder/data/pg_hba.conf" >>users
    if [[ $(id -u) == 0 ]]; then chown postgres: -- *; fi
    mv root.crt stranger.crt server.crt server.key "$server_folder/data"
    mv users "$server_folder/data/pg_hba.conf"
    printf 'ssl = on\n' >>"$server_folder/data/postgresql.conf"
  ) >>"$log" 2>&1
  local status=$?
  rm -rf "$certificates"
  return "$status"
}

# start_standby LOG: a second server, on the same port of another host, repeats the first one, which
# from now on tells that something is committed when both have it.
start_standby() {
  local log=$1 programs
  programs=$(server_programs)
  as_server_user "$programs/pg_basebackup" -D "$server_folder/standby" -h "$server_host" \
    -p "$server_port" -U book -R -c fast --no-sync >>"$log" 2>&1 || return 1
  run_server start standby "$standby_host" "$log" || return 1
  ask_server "$server_host" "alter system set synchronous_standby_names='*'" >>"$log" &&
    ask_server "$server_host" "select pg_reload_conf()" >>"$log" &&
    await_in 20 standby_in_step
}

standby_in_step() {
  [[ $(ask_server "$server_host" "select sync_state from pg_stat_replication") == sync ]]
}

# The first server dies as a machine does whose power fails: all its processes at once.
kill_server() {
  local first
  first=$(head -n 1 "$server_folder/data/postmaster.pid")
  # shellcheck disable=SC2046 # one word for each process
  kill -KILL "$first" $(ps -o pid= --ppid "$first")
}

# promote_standby LOG: from now on the second server takes changes. It waits for nobody.
promote_standby() {
  as_server_user "$(server_programs)/pg_ctl" -D "$server_folder/standby" -w promote >>"$1" 2>&1
}

# ask_server HOST STATEMENT: the rows, columns separated by "|".
ask_server() {
  psql -X -A -t -q -v ON_ERROR_STOP=1 -h "$1" -p "$server_port" -U book -d postgres -c "$2"
}

port_taken() { (exec 3<>"/dev/tcp/$server_host/$1") 2>/dev/null; }

# run_server start|stop FOLDER HOST LOG
run_server() {
  local options
  options="-c listen_addresses=$3 -c port=$server_port -c fsync=off"
  options+=" -c unix_socket_directories= -c max_connections=200"
  as_server_user "$(server_programs)/pg_ctl" -D "$server_folder/$2" -w -m immediate -o "$options" \
    "$1" </dev/null >>"$4" 2>&1
}

stop_server() {
  [[ -n $server_folder ]] || return 0
  local name
  for name in standby data; do
    if [[ -f $server_folder/$name/postmaster.pid ]]; then
      run_server stop "$name" '' /dev/null || true
    fi
  done
  rm -rf "$server_folder"
  server_folder=
}

# server_connection [HOSTS]: of the first server unless others are named. Without encryption: what is
# measured is the desk.
server_connection() {
  printf 'Driver={PostgreSQL Unicode};Server=%s;Port=%s;Database=postgres;Uid=book;SSLmode=disable;' \
    "${1:-$server_host}" "$server_port"
}
