# shellcheck shell=bash disable=SC2154,SC2034
# Starting, finding and ending a desktop's processes.

# spawn SERVICE COMMAND...: starts it in a session of its own, with its log and process id recorded.
spawn() {
    local service=$1
    shift
    setsid "$@" </dev/null >>"$folder/logs/$service.log" 2>&1 &
    echo $! >>"$folder/pids/$service"
}

# Process ids of everything that carries the desktop's mark in its environment (zombies do not);
# grep itself must not.
marked_processes() {
    local process
    CORVANDI_DESKTOP='' grep -lzxF "CORVANDI_DESKTOP=$1" /proc/[0-9]*/environ 2>/dev/null |
        while IFS=/ read -r _ _ process _; do
            [[ $process == "$$" || $process == "$BASHPID" ]] || echo "$process"
        done
}

# signal_and_wait SIGNAL ROUNDS LIST_COMMAND...: signals what the command lists until it lists
# nothing; false if something is left after so many rounds of 20 ms.
signal_and_wait() {
    local signal=$1 rounds=$2 processes
    shift 2
    while processes=$("$@") && [[ -n $processes ]]; do
        ((rounds-- > 0)) || return 1
        # shellcheck disable=SC2086
        kill "-$signal" $processes 2>/dev/null
        sleep 0.02
    done
    return 0
}

is_alive() {
    local stat
    stat=$(sed 's/.*) //' "/proc/$1/stat" 2>/dev/null) && [[ ${stat%% *} != Z ]]
}

service_processes() {
    local process
    [[ -f $folder/pids/$1 ]] || return 0
    while read -r process; do
        is_alive "$process" && echo "$process"
    done <"$folder/pids/$1"
    return 0
}

# Ends one service: politely, then at any price. Returns when it is gone.
end_service() {
    local processes
    processes=$(service_processes "$1")
    # shellcheck disable=SC2086
    [[ -n $processes ]] && kill -TERM $processes 2>/dev/null
    signal_and_wait CONT 75 service_processes "$1" ||
        signal_and_wait KILL 100 service_processes "$1"
    rm -f "$folder/pids/$1"
}

# Ends every process of the desktop in that folder and removes all that it left, also when it is
# half started or half ended already. Needs no environment but PATH.
dismantle() {
    local folder=$1 display='' processes
    [[ $folder == "$desktop_prefix".* ]] || return 0
    processes=$(marked_processes "$folder")
    # shellcheck disable=SC2086
    [[ -n $processes ]] && kill -TERM $processes 2>/dev/null
    signal_and_wait CONT 50 marked_processes "$folder" ||
        signal_and_wait KILL 250 marked_processes "$folder"
    [[ -f $folder/display ]] && read -r display <"$folder/display"
    remove_display_lock "$display" "$folder/pids/display"
    rm -rf "$folder"
    return 0
}

# A display server that had to be killed leaves its lock and socket behind.
remove_display_lock() {
    local display=$1 owner holder
    [[ -n $display && -f $2 && -f /tmp/.X$display-lock ]] || return 0
    read -r owner <"$2"
    read -r holder <"/tmp/.X$display-lock"
    [[ $holder -eq $owner ]] && rm -f "/tmp/.X$display-lock" "/tmp/.X11-unix/X$display"
    return 0
}

# Runs a command again every 20 ms until it succeeds; false after that many seconds.
wait_until() {
    local end=$((SECONDS + $1))
    shift
    until "$@" >/dev/null 2>&1; do
        ((SECONDS <= end)) || return 1
        sleep 0.02
    done
}

# spawn_ready SERVICE COMMAND...: as spawn, with descriptor 3 a pipe on which the service writes a
# line when it is ready; that goes into `ready_line`. False if it ended without, or took ten seconds.
spawn_ready() {
    local pipe status
    exec {pipe}< <(spawn "$@" 3>&1)
    read -r -t 10 ready_line <&"$pipe"
    status=$?
    exec {pipe}<&-
    return "$status"
}
