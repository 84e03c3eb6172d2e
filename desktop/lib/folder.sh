# shellcheck shell=bash disable=SC2154,SC2034
# A desktop is a folder below /tmp: its home, runtime folder, logs, process ids, and two files that
# are sourced: `options` (what it was started with) and `environment` (what runs inside it sees).
# The folder's path stands in the environment of every process of the desktop (CORVANDI_DESKTOP);
# that is how they are found again.

# Socket paths are limited to 107 bytes, so the folder's name is short and TMPDIR is not used.
readonly desktop_prefix=/tmp/cdesk

fail() {
    echo "desktop: $*" >&2
    exit 1
}

is_desktop() { [[ $1 == "$desktop_prefix".* && -f $1/environment ]]; }

# Prints the folder of the desktop that was named by path or by last path component.
find_desktop() {
    local candidate
    for candidate in "$1" "/tmp/$1"; do
        is_desktop "$candidate" && { echo "$candidate"; return; }
    done
    return 1
}

# Writes the environment, without anything that could lead into the person's own session.
write_environment() {
    local home=$folder/home runtime=$folder/run
    mkdir -p "$home"/{.config,.cache,.local/share,.local/state} "$folder"/{logs,pids}
    mkdir -m 700 "$runtime"
    cat >"$folder/environment" <<END
unset WAYLAND_DISPLAY WINDOWID SESSION_MANAGER NO_AT_BRIDGE DESKTOP_SESSION XDG_SESSION_ID
unset XDG_SEAT XDG_VTNR XDG_CONFIG_DIRS XDG_DATA_DIRS XMODIFIERS GTK_IM_MODULE QT_IM_MODULE
unset GTK_MODULES GTK_THEME QT_QPA_PLATFORM QT_QPA_PLATFORMTHEME QT_STYLE_OVERRIDE QT_PLUGIN_PATH
unset QT_SCALE_FACTOR QT_FONT_DPI GDK_SCALE AT_SPI_BUS_ADDRESS DBUS_STARTER_ADDRESS
unset DBUS_STARTER_BUS_TYPE LC_ALL LANGUAGE PULSE_SINK PULSE_SOURCE PULSE_RUNTIME_PATH
unset PIPEWIRE_REMOTE PIPEWIRE_RUNTIME_DIR
export CORVANDI_DESKTOP='$folder' HOME='$home' XDG_RUNTIME_DIR='$runtime'
export XDG_CONFIG_HOME='$home/.config' XDG_CACHE_HOME='$home/.cache'
export XDG_DATA_HOME='$home/.local/share' XDG_STATE_HOME='$home/.local/state'
export XAUTHORITY='$folder/xauthority' XDG_SESSION_TYPE=x11 XDG_CURRENT_DESKTOP=XFCE
export DBUS_SESSION_BUS_ADDRESS='unix:path=$runtime/bus' PULSE_SERVER='unix:$runtime/pulse/native'
export LANG=C.UTF-8 GDK_BACKEND=x11 GSETTINGS_BACKEND=memory GIO_USE_VFS=local
export LIBGL_ALWAYS_SOFTWARE=1
END
}

# Puts the desktop's environment into this shell, with its options as `option_...`.
enter_desktop() {
    # shellcheck source=/dev/null
    source "$folder/environment"
    # shellcheck source=/dev/null
    source "$folder/options"
}
