# shellcheck shell=bash disable=SC2154,SC2034
# One function per service of a desktop: each starts it and returns when it is ready.

start_failed() {
    echo "desktop: $1 did not start; its log:" >&2
    tail -n 20 "$folder/logs/$1.log" >&2
    exit 1
}

# One wildcard entry serves the server and all clients, before the display number is known.
write_xauthority() {
    local cookie
    cookie=$(od -An -N16 -tx1 /dev/urandom | sed 's/ /\\x/g')
    (
        umask 077
        # family "wild", no address, no number, protocol name, 16 bytes of data
        # shellcheck disable=SC2059
        printf "\xff\xff\0\0\0\0\0\x12MIT-MAGIC-COOKIE-1\0\x10$cookie" >"$XAUTHORITY"
    )
}

# The server picks a free display itself.
start_display() {
    write_xauthority
    spawn_ready display Xvfb -displayfd 3 -screen 0 "$option_size" -auth "$XAUTHORITY" \
        -nolisten tcp -noreset -s 0 -dpi 96 +extension Composite +extension RANDR ||
        start_failed display
    echo "$ready_line" >"$folder/display"
    echo "export DISPLAY=':$ready_line'" >>"$folder/environment"
    export DISPLAY=":$ready_line"
    [[ $option_layout == us ]] || setxkbmap -layout "$option_layout"
}

start_bus() {
    [[ $option_dbus == on ]] || return 0
    [[ $option_a11y != absent ]] || hide_accessibility_bus
    rm -f "$XDG_RUNTIME_DIR/bus"
    spawn_ready bus dbus-daemon --session --nofork --nopidfile --nosyslog --print-address=3 \
        --address="$DBUS_SESSION_BUS_ADDRESS" || start_failed bus
}

# The user's service file hides the system's one of the same name, and it cannot be started.
hide_accessibility_bus() {
    local services=$XDG_DATA_HOME/dbus-1/services
    mkdir -p "$services"
    printf '[D-BUS Service]\nName=org.a11y.Bus\nExec=/bin/false\n' >"$services/org.a11y.Bus.service"
}

# The bus is started by whoever asks for it first; here we do, and say that it is wanted.
start_accessibility() {
    [[ $option_dbus == on && $option_a11y == on ]] || return 0
    ask_accessibility org.freedesktop.DBus.Properties.Set \
        string:org.a11y.Status string:IsEnabled variant:boolean:true || start_failed accessibility
    ask_accessibility org.a11y.Bus.GetAddress || start_failed accessibility
}

ask_accessibility() {
    dbus-send --session --print-reply --dest=org.a11y.Bus /org/a11y/bus "$@" \
        >>"$folder/logs/accessibility.log" 2>&1
}

start_wm() {
    case $option_wm in
        openbox) start_openbox ;;
        xfwm4) start_xfwm4 ;;
    esac
}

# Its start-up command runs when its keys are grabbed and its root properties are set. The pipe is
# named because it closes other descriptors for that command, and opened for both directions because
# opening one for reading would wait for ever if it ended early.
start_openbox() {
    local ready=$folder/wm-ready
    mkfifo "$ready"
    spawn wm openbox --sm-disable --startup "sh -c 'echo ready >\"$ready\"'"
    read -r -t 10 <>"$ready" || start_failed wm
    rm -f "$ready"
}

# The property must exist for its changes to be watched, and must not be a former manager's.
start_xfwm4() {
    xprop -root -f _NET_SUPPORTING_WM_CHECK 32c -set _NET_SUPPORTING_WM_CHECK 0
    spawn wm xfwm4 --compositor=off --vblank=off
    wait_for_root_property _NET_SUPPORTING_WM_CHECK 'window id' || start_failed wm
}

# wait_for_root_property NAME PATTERN: returns when the property's value matches.
wait_for_root_property() {
    local output spy line found=1
    exec {output}< <(exec xprop -spy -root "$1" 2>/dev/null)
    spy=$!
    while read -r -t 10 line <&"$output"; do
        [[ $line == *$2* ]] && { found=0; break; }
    done
    kill "$spy" 2>/dev/null
    exec {output}<&-
    return "$found"
}

# As a daemon it leaves the foreground when it is ready.
start_compositor() {
    [[ $option_comp == picom ]] || return 0
    local log=$folder/logs/compositor.log
    setsid picom --config /dev/null --backend xrender --no-vsync --no-fading-openclose --daemon \
        --write-pid-path "$folder/pids/compositor" --log-file "$log" </dev/null >/dev/null 2>&1 ||
        start_failed compositor
}

start_panel() {
    [[ $option_tray == xfce4-panel ]] || return 0
    local configuration=$XDG_CONFIG_HOME/xfce4/xfconf/xfce-perchannel-xml
    mkdir -p "$configuration"
    cp "$desktop_root/lib/xfce4-panel.xml" "$configuration/"
    spawn panel xfce4-panel --disable-wm-check
    gdbus wait --session --timeout 10 org.kde.StatusNotifierWatcher || start_failed panel
}
