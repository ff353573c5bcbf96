# shellcheck shell=bash disable=SC2034
# The Debian 12 packages that the project needs, by purpose. Sourced by the other scripts.

build_packages=(
    g++ cmake ninja-build pkg-config
    qtbase5-dev libqt5svg5-dev libqwt-qt5-dev libquazip1-qt5-dev zlib1g-dev
    tzdata libc-bin # zone source and zic, its compiler
    fonts-dejavu-core # what the manual is printed in
)

# What scripts/package needs besides.
package_packages=(dpkg-dev file)

test_packages=(
    libgtest-dev
    bash-completion
    locales # source of a locale with decimal commas
    zip     # writes encrypted archives
    xvfb xauth # for tests that open windows
    poppler-utils # looks into the manual
    parallel # runs commands of the manual
)

# What only scripts/test --slow needs.
slow_test_packages=(
    dpkg-dev file lintian desktop-file-utils appstream # the Debian package, and what checks it
    debootstrap inotify-tools xdotool # a clean system to install it into, and what happens there
    python3 python3-numpy python3-pandas r-base-core r-cran-data.table gawk mawk sqlite3 # recipes for our files
)

benchmark_packages=(libbenchmark-dev)

# What scripts/bench runs and compares with.
comparison_packages=(python3 unzip)

# Other tools that it compares with where they are installed.
benchmark_peers=(python3-pandas r-base-core r-cran-data.table kst gnuplot-nox)

coverage_packages=(gcovr)

lint_packages=(clang-format clang-tidy)

clang_packages=(clang)

# The run-time libraries of the sanitizers, and the symbolizer of their reports.
sanitizer_packages=(clang libclang-rt-14-dev llvm)
