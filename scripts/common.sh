# shellcheck shell=bash
# What the scripts share: installing packages, configuring and building. Sourced; stops the caller on failure.

set -euo pipefail

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=scripts/packages.sh
source "$root/scripts/packages.sh"

note() {
    printf '%s\n' "$*" >&2
}

fail() {
    note "$@"
    exit 1
}

# Prints those of the given packages that are not installed: all of them where there is no dpkg to ask.
missing_packages() {
    local package
    for package in "$@"; do
        if ! dpkg-query -W -f='${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed; then
            printf '%s\n' "$package"
        fi
    done
}

install_packages() {
    local -a missing as_root=()
    mapfile -t missing < <(missing_packages "$@")
    ((${#missing[@]})) || return 0
    if ! command -v apt-get >/dev/null; then
        note "There is no apt-get here. Going on in the hope that these Debian packages have their like:" \
            "${missing[*]}"
        return 0
    fi
    if ((EUID != 0)); then
        command -v sudo >/dev/null || fail "These packages must be installed first: ${missing[*]}"
        as_root=(sudo)
    fi
    note "Installing: ${missing[*]}"
    local -a apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=300)
    "${apt[@]}" update >&2 </dev/null || note "The package lists could not be renewed."
    "${apt[@]}" install -y --no-install-recommends "${missing[@]}" >&2 </dev/null ||
        fail "These packages could not be installed: ${missing[*]}"
}

# Checks the preset's name and installs what building it needs.
install_for_preset() {
    case $1 in
        release | debug) install_packages "${build_packages[@]}" ;;
        coverage) install_packages "${build_packages[@]}" "${coverage_packages[@]}" ;;
        clang) install_packages "${build_packages[@]}" "${clang_packages[@]}" ;;
        asan | tsan | fuzz) install_packages "${build_packages[@]}" "${sanitizer_packages[@]}" ;;
        *) fail "There is no preset '$1': take release, debug, clang, coverage, asan, tsan or fuzz." ;;
    esac
}

# configure PRESET TESTS BENCHMARKS: the last two are ON or OFF.
configure() (
    cd "$root"
    cmake --preset "$1" -DBUILD_TESTING="$2" -DFVQA_BENCHMARKS="$3" \
        -DCMAKE_CXX_COMPILER_LAUNCHER="$(command -v ccache || true)"
)

# For a person who wants the programs: tests and benchmarks are part of it only where their packages are.
configure_programs() {
    local tests=ON benchmarks=ON
    [[ -z $(missing_packages "${test_packages[@]}") ]] || tests=OFF
    [[ -z $(missing_packages "${benchmark_packages[@]}") ]] || benchmarks=OFF
    configure "$1" "$tests" "$benchmarks"
}

# Installs for, and configures, a build with everything that is tested and linted. Benchmarks belong to the
# release build, the only one whose figures count.
configure_all() {
    local benchmarks=OFF
    install_for_preset "$1"
    install_packages "${test_packages[@]}"
    if [[ $1 == release ]]; then
        install_packages "${benchmark_packages[@]}"
        benchmarks=ON
    fi
    configure "$1" ON "$benchmarks"
}

# build PRESET [ARGUMENTS OF cmake --build...]
build() (
    cd "$root"
    cmake --build --preset "$@"
)

# Runs a command without its output, which is shown only when it fails.
quietly() {
    local output
    output=$("$@" 2>&1) || {
        local status=$?
        printf '%s\n' "$output" >&2
        return "$status"
    }
}
