# shellcheck shell=bash
# Decides where commands run: on this machine if everything is installed, otherwise in a root filesystem with Debian's
# packages, which is made once in the user's cache. ./dev sources this file and sets $project first.

: "${project:?}"
cache=${XDG_CACHE_HOME:-$HOME/.cache}/vantore-comp
suite=forky
groups=base # package groups that the command needs; lint, format and fuzz add one

say() { echo "dev: $*" >&2; }
fail() {
	say "$*"
	exit 1
}

native_libraries=(wlroots-0.20 scenefx-0.5 wayland-server wayland-client wayland-protocols xkbcommon cairo
	libdrm glesv2 pixman-1 stb libwebp libwebpdemux libwebpmux xcb xcb-ewmh xcb-icccm libinput libudev libpng nlohmann_json
	gtest_main gmock benchmark)

has_everything() {
	local program programs=(meson ninja wayland-scanner pkg-config c++ python3 foot grim wayland-info wl-copy)
	[ "$groups" = base ] || programs+=(clang++ clang-tidy clang-format shellcheck)
	for program in "${programs[@]}"; do
		command -v "$program" >/dev/null || return 1
	done
	pkg-config --exists "${native_libraries[@]}" 2>/dev/null || return 1
	c++ -std=c++23 -x c++ -fsyntax-only - </dev/null 2>/dev/null || return 1
	tools/find-protocols wlr >/dev/null 2>&1 && tools/find-protocols misc >/dev/null 2>&1
}

environment= # "native", or the path of the root filesystem; prepare sets it

is_native() { [ "$environment" = native ]; }

choose_environment() {
	case ${VANTORE_DEV_ENV:-auto} in
	native)
		has_everything || fail "not everything of tools/packages is installed here;" \
			"without VANTORE_DEV_ENV=native a root filesystem is made"
		environment=native
		;;
	rootfs) environment=$(rootfs_path) ;;
	*) if has_everything; then environment=native; else environment=$(rootfs_path); fi ;;
	esac
}

packages() {
	local group
	for group in $groups; do
		sed -e 's/#.*//' -e '/^\s*$/d' "tools/packages/$group"
	done
}

rootfs_path() { echo "$cache/rootfs-$(packages | sort | sha256sum | cut -c 1-16)"; }

as_root() {
	if [ "$(id -u)" -eq 0 ]; then
		"$@"
	elif command -v sudo >/dev/null && sudo -n true 2>/dev/null; then
		sudo "$@"
	else
		return 1
	fi
}

require_tools() {
	local missing=()
	command -v mmdebstrap >/dev/null || missing+=(mmdebstrap)
	command -v bwrap >/dev/null || missing+=(bubblewrap)
	[ ${#missing[@]} -gt 0 ] || return 0
	command -v apt-get >/dev/null ||
		fail "this machine has neither the libraries of a native build nor Debian's tools to make a place that has." \
			"Install the packages of tools/packages/base, or run on Debian."
	say "installing ${missing[*]}"
	as_root true || fail "installing ${missing[*]} needs root: run 'apt-get install ${missing[*]}' first."
	as_root apt-get -qq update >&2 || say "apt-get update failed; trying with the lists that are here"
	as_root apt-get -qq install -y "${missing[@]}" >&2 ||
		fail "can't install ${missing[*]}: is the network there? See apt's message above."
}

require_space() {
	local wanted_gib=3 free_kib
	[ "$groups" = base ] || wanted_gib=5
	free_kib=$(df --output=avail "$cache" | tail -n 1)
	[ "$free_kib" -ge $((wanted_gib * 1024 * 1024)) ] ||
		fail "making the root filesystem needs $wanted_gib GiB in $cache; $((free_kib / 1024 / 1024)) GiB are free." \
			"Free some, or set XDG_CACHE_HOME to a larger disk."
}

# The machine's own mirror according to its apt configuration, or nothing.
mirror() {
	# shellcheck disable=SC2016
	apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' 'Origin: Debian' 'Label: Debian' \
		2>/dev/null | head -n 1
}

bootstrap() { # TARGET APT-OPTIONS LOG
	local list source
	list=$(packages | paste -sd ,)
	source=$(mirror)
	local command=(mmdebstrap --variant=minbase '--aptopt=APT::Install-Recommends "false"'
		--include="$list" "$suite" "$1")
	if [ -n "$source" ]; then
		command+=("deb [$2 signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $source $suite main")
	elif [ -n "$2" ]; then
		command+=('--aptopt=Acquire::Check-Valid-Until "false"')
	fi
	"${command[@]}" 2>&1 | tee "$3" | grep --line-buffered '^I: ' >&2
	return "${PIPESTATUS[0]}"
}

explain_failure() { # LOG
	if grep -qi 'no space left' "$1"; then
		fail "the disk is full; free some space in $cache and run this again."
	elif grep -qiE 'could not resolve|temporary failure|unable to connect|connection (timed out|refused)' "$1"; then
		fail "the package mirror can't be reached: is the network there? The log is $1."
	fi
	tail -n 15 "$1" >&2
	fail "making the root filesystem failed; the log is $1."
}

make_rootfs() { # TARGET
	local partial=$1.partial log=$cache/rootfs.log
	require_tools
	require_space
	say "making a $suite root filesystem for the build in $cache (once; some minutes, 2 GB)"
	rm -rf --one-file-system "$partial"
	if ! bootstrap "$partial" "" "$log"; then
		grep -qiE 'is expired|not valid (any ?more|yet)|release file .* expired' "$log" || explain_failure "$log"
		say "the mirror's list of $suite is past its date: going on with it; its signatures are still checked"
		rm -rf --one-file-system "$partial"
		bootstrap "$partial" check-valid-until=no "$log" || explain_failure "$log"
	fi
	mv "$partial" "$1"
}

ensure_rootfs() { # TARGET
	local target=$1
	[ ! -d "$target" ] || return 0
	mkdir -p "$cache" || fail "can't make $cache"
	exec 9>"$cache/lock"
	flock 9 # another ./dev may be making the root filesystem
	[ -d "$target" ] || make_rootfs "$target"
	exec 9>&-
}

sandbox=() # arguments of bubblewrap

sandbox_arguments() {
	# All sandboxes share the runtime directory, so that ./dev shell can reach a session of ./dev run.
	sandbox=(--bind "$environment" / --dev /dev --proc /proc --tmpfs /tmp --tmpfs /run
		--bind "$cache/runtime" /run/user --dir /tmp/home --dir /tmp/.X11-unix
		--bind "$project" "$project" --bind "$cache/ccache" /var/cache/ccache
		--unsetenv WAYLAND_DISPLAY --unsetenv WAYLAND_SOCKET --unsetenv DISPLAY
		--setenv XDG_RUNTIME_DIR /run/user --setenv HOME /tmp/home --setenv CCACHE_DIR /var/cache/ccache
		--setenv CCACHE_BASEDIR "$project" --setenv CCACHE_NOHASHDIR 1
		--setenv CCACHE_SLOPPINESS "pch_defines,time_macros"
		--bind "$cache/lint" /var/cache/lint --setenv VANTORE_LINT_CACHE /var/cache/lint
		--setenv XDG_CACHE_HOME /tmp/home/.cache --setenv XDG_CONFIG_HOME /tmp/home/.config
		--setenv PATH /usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin --unsetenv LD_PRELOAD
		--unsetenv DBUS_SESSION_BUS_ADDRESS
		--chdir "$PWD" --unshare-pid --as-pid-1)
}

# Adds the host's displays, devices and sockets, for a session that is visible on the host.
sandbox_with_the_hosts_display() {
	local path
	sandbox+=(--ro-bind-try /sys /sys)
	for path in /dev/dri /dev/input /dev/tty /dev/udmabuf /run/udev /run/seatd.sock /run/dbus \
		/run/systemd /tmp/.X11-unix; do
		sandbox+=(--dev-bind-try "$path" "$path")
	done
	if [ -n "${XDG_RUNTIME_DIR:-}" ]; then
		sandbox+=(--bind "$XDG_RUNTIME_DIR" "$XDG_RUNTIME_DIR" --setenv XDG_RUNTIME_DIR "$XDG_RUNTIME_DIR")
	fi
	local name
	for name in WAYLAND_DISPLAY DISPLAY XAUTHORITY XDG_SESSION_ID; do
		[ -z "${!name:-}" ] || sandbox+=(--setenv "$name" "${!name}")
	done
	[ -z "${XAUTHORITY:-}" ] || sandbox+=(--ro-bind-try "$XAUTHORITY" "$XAUTHORITY")
}

# Starts a command inside. A signal would end bubblewrap, and with it the program without an orderly end. bubblewrap
# therefore ignores signals. The terminal sends Ctrl-C to the program too, and this function passes TERM on.
in_sandbox() {
	local status info
	info=$(mktemp)
	(
		trap '' INT TERM HUP
		exec bwrap "${sandbox[@]}" --die-with-parent --info-fd 8 \
			env --default-signal=INT,TERM,HUP "$project/tools/dev/init" "$@" 8>"$info"
	) <&0 &
	local outer=$!
	trap '' INT
	# shellcheck disable=SC2064
	trap "hand_on TERM '$info'" TERM
	# `wait` returns early when a signal is trapped.
	while status=0 && { wait "$outer" || status=$?; } && kill -0 "$outer" 2>/dev/null; do :; done
	trap - INT TERM
	rm -f "$info"
	return "$status"
}

hand_on() { # SIGNAL INFO-FILE
	local inner
	until [ -s "$2" ]; do # bubblewrap names the process within its first milliseconds
		kill -0 "$outer" 2>/dev/null || return 0
		sleep 0.02
	done
	inner=$(sed -n 's/.*"child-pid": *\([0-9]*\).*/\1/p' "$2")
	[ -z "$inner" ] || kill -s "$1" "$inner" 2>/dev/null || true
}

# Runs a command where everything is installed.
inside() {
	if is_native; then
		"$@"
	else
		in_sandbox "$@"
	fi
}

prepare() {
	choose_environment
	is_native && return
	ensure_rootfs "$environment"
	mkdir -p "$cache/ccache" "$cache/lint" "$cache/runtime"
	chmod 0700 "$cache/runtime"
	sandbox_arguments
}
