"""Checks many files in parallel, and skips those that passed before with the same contents."""

import hashlib
import json
import os
import re
import shlex
import subprocess
import time
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass
from pathlib import Path

PROJECT = Path(__file__).resolve().parent.parent
KEPT_SECONDS = 30 * 24 * 3600
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)


@dataclass
class Check:
    file: Path
    command: list[str]
    directory: Path


def compile_commands(build):
    """The project's own sources with the arguments of their compiler: {source: (arguments, directory)}."""
    database = json.loads(Path(build, "compile_commands.json").read_text())
    commands = {}
    for entry in database:
        directory = Path(entry["directory"])
        source = (directory / entry["file"]).resolve()
        if source.is_relative_to(PROJECT) and not source.is_relative_to(PROJECT / "build"):
            commands[source] = (shlex.split(entry["command"]), directory)
    return commands


def project_includes(file, folders=()):
    """The project's files that a file includes by a quoted name, in the order of the includes."""
    found = []
    for name in INCLUDE.findall(file.read_text()):
        places = (folder / name for folder in (file.parent, *folders))
        found += [p.resolve() for p in places if p.is_file()][:1]
    return [path for path in found if path.is_relative_to(PROJECT)]


def _include_folders(check):
    names = [argument[2:] for argument in check.command if argument.startswith("-I")]
    return [check.directory / name for name in names] + [PROJECT / "comp", PROJECT / "tests"]


def _files_read(check):
    folders = _include_folders(check)
    seen, unread = {check.file}, [check.file]
    while unread:
        new = set(project_includes(unread.pop(), folders)) - seen
        seen |= new
        unread += new
    return sorted(seen)


def _installed():
    """Represents the system's headers by the list of installed packages, if there is one."""
    packages = Path("/var/lib/dpkg/status")
    return packages.read_bytes() if packages.exists() else b""


def _fingerprint(check, common):
    """Is the same in every clone of the project."""
    digest = hashlib.sha256(common)
    digest.update("\0".join(check.command).replace(str(PROJECT), ".").encode())
    for file in _files_read(check):
        digest.update(str(file.relative_to(PROJECT)).encode() + b"\0" + file.read_bytes())
    return digest.hexdigest()


def _passes(check):
    result = subprocess.run(check.command, cwd=check.directory, text=True, stdin=subprocess.DEVNULL,
                            stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
    if result.returncode != 0:
        # clang-tidy prints its findings on stdout, and only their number on stderr.
        print(result.stdout or result.stderr, end="", flush=True)
    return result.returncode == 0


def _forget_old(store):
    for mark in store.iterdir():
        if time.time() - mark.stat().st_mtime > KEPT_SECONDS:
            mark.unlink(missing_ok=True)


def run(checks, name, common=b""):
    """Runs the checks and returns whether all pass. `common` is whatever else the results depend on. A check that
    passed is remembered in the user's cache under `name`, by the contents of the files that it read."""
    cache = os.environ.get("VANTORE_LINT_CACHE") or Path.home() / ".cache/vantore-comp/lint"
    store = Path(cache, name)
    store.mkdir(parents=True, exist_ok=True)
    _forget_old(store)
    common += _installed()
    marks = {_fingerprint(check, common): check for check in checks}

    def passes(mark):
        if (store / mark).exists():
            (store / mark).touch()
            return True
        if not _passes(marks[mark]):
            return False
        (store / mark).touch()
        return True

    with ThreadPoolExecutor(os.cpu_count()) as pool:
        return all(list(pool.map(passes, marks)))
