# Shared by demo, test and the scripts: sourced from the root of the sources.

# The packages are looked up only when the list of them is newer than the last look, or when a
# tool went away since.
need_packages() { # NAME PACKAGE-SETS...
    local stamp=build/.packages-$1
    shift
    if [ -f "$stamp" ] && [ "$stamp" -nt scripts/install-deps ] &&
        type -P cmake ninja pkg-config c++ >/dev/null; then
        return 0
    fi
    scripts/install-deps "$@" && mkdir -p build && touch "$stamp"
}

# Configures build/PRESET once; afterwards the build itself sees what changed.
configure() { # PRESET CMAKE-ARGUMENTS...
    local preset=$1 tree=build/$1 home
    shift
    if [ -f "$tree/CMakeCache.txt" ]; then
        home=$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "$tree/CMakeCache.txt")
        # Sources that were moved or copied with their build tree.
        [ "$home" = "$PWD" ] || rm -rf "$tree"
    fi
    if [ ! -f "$tree/build.ninja" ] || [ CMakePresets.json -nt "$tree/build.ninja" ] ||
        [ $# -gt 0 ]; then
        cmake --preset "$preset" "$@"
    fi
}
