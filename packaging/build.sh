# shellcheck shell=bash
# Sourced by the scripts at the top, in the repository's folder.

# build PRESET [TARGET...]: configures once and builds; ninja configures again by itself when needed.
build() {
    local preset=$1 log
    shift
    if [[ ! -f build/$preset/build.ninja ]]; then
        echo "Configuring build/$preset"
        log=$(cmake --preset "$preset" 2>&1) || {
            echo "$log" >&2
            return 1
        }
    fi
    echo "Building build/$preset"
    ninja -C "build/$preset" "$@"
}
