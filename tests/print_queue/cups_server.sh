#!/usr/bin/env bash
# A private CUPS scheduler for the print-queue tests: its config, spool, logs and socket live in
# DIR, and a cups-pdf queue "QuorvelPDF" is its default destination. The machine's own CUPS
# set-up is not touched. Exit status 77: no scheduler can be started on this machine.
#   cups_server.sh start DIR   (prints the socket to use as CUPS_SERVER)
#   cups_server.sh stop DIR
set -euo pipefail
action=${1:?start or stop}
dir=${2:?the folder for the scheduler}
repo=$(cd "$(dirname "$0")/../.." && pwd)

# A process that has exited counts as stopped even while nobody has reaped it yet.
running() {
  local state
  state=$(awk '{print $3}' "/proc/$1/stat" 2>/dev/null) || return 1
  [ "$state" != Z ]
}

stop() {
  [ -f "$dir/cupsd.pid" ] || return 0
  local pid
  pid=$(cat "$dir/cupsd.pid")
  kill "$pid" 2>/dev/null || true
  for _ in $(seq 1 50); do running "$pid" || break; sleep 0.1; done
  running "$pid" && kill -9 "$pid" 2>/dev/null
  rm -f "$dir/cupsd.pid"
}

write_config() {
  mkdir -p "$dir"/etc "$dir"/spool "$dir"/tmp "$dir"/cache "$dir"/state "$dir"/log "$dir"/client
  chmod 1777 "$dir/tmp"  # the filters run as lp and keep their work files here
  cat >"$dir/etc/cupsd.conf" <<EOF
Listen $dir/cups.sock
LogLevel info
Browsing No
WebInterface No
DefaultAuthType None
# A job that fails is dropped; the queue stays usable for the next one.
ErrorPolicy abort-job
<Location />
  Order allow,deny
  Allow all
</Location>
<Location /admin>
  Order allow,deny
  Allow all
</Location>
<Policy default>
  <Limit All>
    Order deny,allow
  </Limit>
</Policy>
EOF
  cat >"$dir/etc/cups-files.conf" <<EOF
ServerRoot $dir/etc
RequestRoot $dir/spool
TempDir $dir/tmp
CacheDir $dir/cache
StateDir $dir/state
ErrorLog $dir/log/error_log
AccessLog $dir/log/access_log
PageLog $dir/log/page_log
SystemGroup root
Printcap
FileDevice No
EOF
}

start() {
  if [ "$(id -u)" -ne 0 ]; then
    echo "cups_server: the cups-pdf backend runs only under a scheduler started as root; this user cannot start one"
    exit 77
  fi
  bash "$repo/scripts/install-deps.sh" cups >&2 || true
  if ! command -v cupsd >/dev/null || [ ! -x /usr/lib/cups/backend/cups-pdf ]; then
    echo "cups_server: cupsd and the cups-pdf backend are not installed and could not be installed"
    exit 77
  fi
  write_config
  cupsd -f -c "$dir/etc/cupsd.conf" -s "$dir/etc/cups-files.conf" </dev/null >>"$dir/log/cupsd.out" 2>&1 &
  echo $! >"$dir/cupsd.pid"
  export CUPS_SERVER="$dir/cups.sock" CUPS_SERVERROOT="$dir/client"
  for _ in $(seq 1 150); do
    lpstat -r 2>/dev/null | grep -q "scheduler is running" && break
    sleep 0.1
  done
  if ! lpstat -r 2>/dev/null | grep -q "scheduler is running"; then
    echo "cups_server: cupsd did not come up:"
    tail -n 20 "$dir/log/cupsd.out" "$dir/log/error_log" 2>/dev/null || true
    stop
    exit 1
  fi
  local model
  model=$(lpinfo -m | awk '/CUPS-PDF_opt/ {print $1; exit}')
  # Ghostscript, the usual PDF-to-PostScript renderer, turns text into outlines; poppler keeps it
  # as text, so the PDF that cups-pdf writes can be read back.
  lpadmin -p QuorvelPDF -v cups-pdf:/ -m "$model" -o pdftops-renderer-default=pdftops -E 2>/dev/null
  # The scheduler's own default: lpoptions -d would write the user's ~/.cups/lpoptions instead.
  lpadmin -d QuorvelPDF
  echo "$dir/cups.sock"
}

case "$action" in
  start) start ;;
  stop) stop ;;
  *) echo "cups_server: start or stop, not '$action'" >&2; exit 2 ;;
esac
