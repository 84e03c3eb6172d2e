# shellcheck shell=bash disable=SC2154,SC2034
# The sound server with speakers and, unless left out, a microphone that plays what it is fed: a
# sink ("micfeed") whose monitor is the master of a source of its own ("mic"). A monitor itself is
# no microphone to programs that tell the two apart.

start_sound() {
    case $option_audio in
        pulse) start_pulseaudio ;;
        pipewire) start_pipewire ;;
    esac >>"$folder/logs/sound.log"
}

write_pulseaudio_script() {
    cat <<END
load-module module-native-protocol-unix auth-anonymous=1 auth-cookie-enabled=0 socket=$XDG_RUNTIME_DIR/pulse/native
load-module module-null-sink sink_name=speakers sink_properties=device.description=Speakers
set-default-sink speakers
END
}

# As a daemon it leaves the foreground when it is ready.
start_pulseaudio() {
    local runtime=$XDG_RUNTIME_DIR/pulse log=$folder/logs/sound.log
    mkdir -p "$runtime"
    rm -f "$runtime/native" "$runtime/pid"
    write_pulseaudio_script >"$folder/pulse.pa"
    env -u PULSE_SERVER setsid pulseaudio -n -F "$folder/pulse.pa" --daemonize=yes \
        --use-pid-file=yes --exit-idle-time=-1 --disallow-exit=no --realtime=no \
        --high-priority=no --disable-shm=yes --log-level=notice --log-target="file:$log" \
        </dev/null >>"$log" 2>&1 || start_failed sound
    cp "$runtime/pid" "$folder/pids/sound"
    [[ $option_mic == off ]] || plug_microphone
}

start_pipewire() {
    spawn sound pipewire
    wait_until 10 test -S "$XDG_RUNTIME_DIR/pipewire-0" || start_failed sound
    spawn sound wireplumber
    spawn sound pipewire-pulse
    wait_until 10 pactl info || start_failed sound
    pactl load-module module-null-sink sink_name=speakers media.class=Audio/Sink channel_map=stereo
    pactl set-default-sink speakers
    [[ $option_mic == off ]] || plug_microphone
}

# Without norewinds the first seconds of a recording would be lost: the sink takes them early and
# hands them out again when the next stream arrives.
plug_microphone() {
    local pulse_options=(format=float32le norewinds=1)
    [[ $option_audio == pulse ]] || pulse_options=(channel_map=mono)
    pactl load-module module-null-sink sink_name=micfeed rate=48000 channels=1 "${pulse_options[@]}" \
        sink_properties=device.description=MicrophoneFeed
    pactl load-module module-remap-source source_name=mic master=micfeed.monitor channels=1 \
        channel_map=mono source_properties=device.description=Microphone
    wait_until 10 sh -c 'pactl list short sources | grep -qw mic' || start_failed sound
    pactl set-default-source mic
}

# The source before the sink that feeds it, which would take it along.
unplug_microphone() {
    local module rest
    pactl list short modules | tac | while read -r module rest; do
        [[ $rest == *source_name=mic* || $rest == *sink_name=micfeed* ]] || continue
        pactl unload-module "$module"
    done
}

# play_into_microphone FILE: returns when it has been played. Raw files are 16 kHz, mono, 16 bit.
play_into_microphone() {
    case $1 in
        *.raw) exec paplay -d micfeed --raw --rate=16000 --channels=1 --format=s16le "$1" ;;
        *) exec paplay -d micfeed "$1" ;;
    esac
}
