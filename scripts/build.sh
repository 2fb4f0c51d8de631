# Shell functions to configure and build a preset; sourced by ./run and ./test.
# Expects the current folder to be the top of the repository.

# build_folder PRESET: where the preset builds.
build_folder() {
    if [ "$1" = release ]; then echo build; else echo "build-$1"; fi
}

# run_logged LOG COMMAND...: output goes to LOG; to a terminal its last line is shown as progress;
# to everybody when the command fails.
run_logged() {
    local log=$1 status=0
    shift
    if [ -t 2 ]; then
        "$@" 2>&1 | tee "$log" | while IFS= read -r line; do
            printf '\r\033[K%.*s' "$((${COLUMNS:-80} - 1))" "$line" >&2
        done
        status=${PIPESTATUS[0]}
        printf '\r\033[K' >&2
    else
        "$@" >"$log" 2>&1 || status=$?
    fi
    [ "$status" -eq 0 ] || cat "$log" >&2
    return "$status"
}

# is_configured FOLDER OPTION...: whether the folder can be built with these -DNAME=VALUE.
is_configured() {
    local folder=$1 option
    shift
    [ -f "$folder/build.ninja" ] && [ -f "$folder/CMakeCache.txt" ] || return 1
    # A copied folder would build the sources it was made from.
    [ "$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "$folder/CMakeCache.txt")" -ef . ] || return 1
    for option in "$@"; do
        option=${option#-D}
        grep -q "^${option%%=*}:[A-Z]*=${option#*=}\$" "$folder/CMakeCache.txt" || return 1
    done
}

# configure PRESET [OPTION...]
configure() {
    local folder
    folder=$(build_folder "$1")
    mkdir -p "$folder"
    cmake --preset "$@" >"$folder/configure.log" 2>&1 && return 0
    # What another generator, compiler or checkout left behind cannot be reused: start afresh.
    forget_configuration "$folder"
    run_logged "$folder/configure.log" cmake --preset "$@" && return 0
    echo "Could not configure the $1 build; the lines above say why." >&2
    return 1
}

forget_configuration() {
    rm -rf "$1/CMakeCache.txt" "$1/CMakeFiles" "$1/build.ninja"
}

# build PRESET [TARGET...]: of a configured folder.
build() {
    local preset=$1 folder
    shift
    folder=$(build_folder "$preset")
    run_logged "$folder/build.log" ninja -C "$folder" "$@" && return 0
    echo "The $preset build failed; the lines above say why ($folder/build.log)." >&2
    return 1
}

# build_product TARGET...: in the release folder, for people who only want the program.
build_product() {
    # Tests need packages that the product does not: leave them out until ./test asks for them.
    local fresh=(-DORVEL_TESTS=OFF -DORVEL_BENCH=OFF)
    is_configured build -DCMAKE_BUILD_TYPE=Release || configure release "${fresh[@]}" || return 1
    build release "$@" && return 0
    # Tools that are gone or a damaged cache: ninja then fails before it compiles anything.
    grep -qE 'CMake Error|ninja: (error|fatal)' build/build.log || return 1
    echo "Configuring afresh." >&2
    forget_configuration build
    configure release "${fresh[@]}" && build release "$@"
}
