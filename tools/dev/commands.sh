# shellcheck shell=bash
# shellcheck disable=SC2154 # environment.sh sets $environment and $sandbox
# The commands of ./dev, which sources this file after environment.sh.

dev_help() {
	cat <<'EOT'
usage: ./dev COMMAND [ARGUMENTS]

  run [--once] [--headless]  build, and start a session: a window inside a desktop, else a headless demo that
                             writes a picture and stays until Ctrl-C (--once: ends after the picture)
  test [--quick] [--filter PATTERN] [NAME...]
                             build, and run the tests, then again under the sanitizers (--quick: not those).
                             A NAME is that of a file of tests; a PATTERN chooses tests as GoogleTest's filter does
  build                      build only
  shell [COMMAND...]         a shell, or one command, where everything is installed
  lint                       formatting, clang-tidy, header and text checks
  format                     format the sources
  bench [NAME...]            build and run the benchmarks
  fuzz [SECONDS]             play random requests, then run each fuzz target, a minute each or SECONDS
  help                       this text

VANTORE_DEV_ENV=native or =rootfs chooses where to build; without it, native where everything is installed.
EOT
}

sanitize=("-Db_sanitize=address,undefined" -Db_lundef=false -Doptimization=1)

configure() { # DIRECTORY MESON-OPTIONS...
	local directory=build/$1
	shift
	# A directory that was configured in another environment has the wrong paths.
	if [ "$(cat "$directory/made-in" 2>/dev/null)" != "$environment" ]; then
		rm -rf "$directory"
	fi
	if [ ! -f "$directory/build.ninja" ]; then
		inside meson setup "$directory" "$@" >&2
		echo "$environment" >"$directory/made-in"
	fi
}

compile() { # DIRECTORY TARGET...
	inside ninja -C "build/$1" "${@:2}" >&2
}

dev_build() {
	prepare
	configure dev
	compile dev
}

dev_shell() {
	prepare
	[ $# -gt 0 ] || set -- bash
	if is_native; then
		exec "$@"
	fi
	exec bwrap "${sandbox[@]}" --die-with-parent "$@"
}

run_tests() { # DIRECTORY MESON-TEST-ARGUMENTS...
	local directory=build/$1
	shift
	# A program that dies must not be counted by what an earlier run of it left behind.
	rm -f "$directory"/meson-logs/testlog*.junit.xml "$directory"/tests/*/*.xml
	# Builds what the tests need. On a slow or busy machine, the tests need more time than their own limits allow.
	inside meson test -C "$directory" --timeout-multiplier 3 --print-errorlogs "$@" >&2
}

dev_test() {
	local builds=(dev sanitized) chosen=() names=() status=0 build
	while [ $# -gt 0 ]; do
		case $1 in
		--quick) builds=(dev) ;;
		--filter)
			[ $# -gt 1 ] || fail "--filter needs a pattern"
			chosen+=("--test-args=--gtest_filter='$2'")
			shift
			;;
		-*) fail "test knows --quick, --filter PATTERN and names of tests, not '$1'" ;;
		*) names+=("$1") ;;
		esac
		shift
	done
	# All tests keep the machine busy by themselves; those of a few files would not.
	[ ${#names[@]} -eq 0 ] || chosen+=(--wrapper "$project/tools/run-in-parts" "${names[@]}")
	prepare
	for build in "${builds[@]}"; do
		case $build in
		dev) configure dev ;;
		sanitized) configure sanitized "${sanitize[@]}" ;;
		esac
		run_tests "$build" "${chosen[@]}" || status=1
	done
	inside python3 tools/count-tests "${builds[@]/#/build/}" || status=1
	return "$status"
}

dev_run() {
	local headless=no arguments=() argument
	for argument in "$@"; do
		case $argument in
		--headless) headless=yes ;;
		--once) arguments+=(--once) ;;
		*) fail "run knows --once and --headless, not '$argument'" ;;
		esac
	done
	prepare
	configure dev
	compile dev comp/vantore-comp tools/vantore-msg/vantore-msg tools/libheadless_stand_in.so \
		tools/standard-wallpaper/Vantore.png
	export VANTORE_STANDARD_WALLPAPER=$project/build/dev/tools/standard-wallpaper/Vantore.png
	if [ "$headless" = no ] && { [ -n "${WAYLAND_DISPLAY:-}" ] || [ -n "${DISPLAY:-}" ]; }; then
		is_native || sandbox_with_the_hosts_display
		# The session has no bus, because it must not announce itself to the desktop that it runs in.
		inside env -u DBUS_SESSION_BUS_ADDRESS tools/with-launcher build/dev/comp/vantore-comp
	else
		inside tools/demo-session "${arguments[@]}"
	fi
}

dev_bench() {
	prepare
	configure bench --buildtype=release -Dbench=true -Dtests=true
	compile bench benchmarks
	inside tools/run-benchmarks build/bench "$@"
}

# Plays random requests of hostile clients, from a seed that is chosen at random. A failure prints it.
fuzz_requests() { # SECONDS
	prepare
	configure sanitized "${sanitize[@]}"
	say "requests, for $1 seconds"
	VANTORE_TEST_SECONDS=$1 VANTORE_TEST_FIRST=$((RANDOM * 32768 + RANDOM + 1)) inside meson test -C build/sanitized \
		--timeout-multiplier 0 --verbose random_requests >&2
}

# Findings of a target go to build/fuzz/found. New corpus entries stay in build/fuzz/corpus, outside the tree.
dev_fuzz() {
	local seconds=${1:-60} source name status=0
	[[ $seconds =~ ^[0-9]+$ ]] || fail "fuzz takes a number of seconds, not '$seconds'"
	fuzz_requests "$seconds" || status=1
	groups="base lint"
	prepare
	CXX=clang++ CC=clang configure fuzz "${sanitize[@]}" -Dtests=false -Dfuzz=true -Db_pch=false
	for source in fuzz/fuzz_*.cpp; do
		name=$(basename "$source" .cpp)
		inside ninja -C build/fuzz "fuzz/$name" >&2
		say "$name, for $seconds seconds"
		mkdir -p "build/fuzz/found" "build/fuzz/corpus/$name"
		inside "build/fuzz/fuzz/$name" -max_total_time="$seconds" -print_final_stats=1 \
			-artifact_prefix="build/fuzz/found/$name-" "build/fuzz/corpus/$name" \
			"fuzz/corpus/${name#fuzz_}" || status=1
	done
	return "$status"
}

dev_format() {
	groups="base lint"
	prepare
	inside tools/format-sources -i
}

dev_lint() {
	local status=0
	groups="base lint"
	prepare
	CXX=clang++ CC=clang configure lint -Dtests=true -Dbench=true -Db_pch=false
	inside ninja -C build/lint build.ninja >&2 # the list of targets may be older than the sources
	inside ninja -C build/lint -t targets all 2>/dev/null |
		sed -n 's/^\([^:]*-protocol\.[hc]\): .*/\1/p' |
		inside xargs -d '\n' ninja -C build/lint >&2 || status=1
	inside tools/lint build/lint || status=1
	[ "$status" -eq 0 ] && say "lint found nothing"
	return "$status"
}
