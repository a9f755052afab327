#!/usr/bin/env python3
"""Holds the folders of src to the arrows that their CMakeLists.txt draw.

Each folder is a target (quillon_folder in CMake). Fails, one line a finding, when
- targets link each other in a circle,
- a file includes a header of a target that its own does not link, directly or through others,
- one target has a fifth of the code or more (tables made by a script not counted).

    check_layers.py [SOURCE-TREE]
"""
import pathlib
import re
import sys

TOP = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent)
SRC = TOP / "src"
LARGEST_SHARE = 1 / 5
MADE_BY_SCRIPT = {"element_table.cpp", "tags.h"}


def commands(cmake):
    """The commands of a file as (name, [arguments]); conditions are not looked at."""
    text = re.sub(r"#.*", "", cmake.read_text())
    for name, arguments in re.findall(r"(\w+)\s*\(([^()]*)\)", text):
        yield name.lower(), arguments.split()


def links_of(arguments):
    """What a quillon_folder links."""
    links, key = [], None
    for argument in arguments:
        if argument in ("DIRS", "DEPENDS", "USES", "REGISTERED_BY"):
            key = argument
        elif key in ("DEPENDS", "USES"):
            links.append(argument)
    return links


def read_targets():
    """Three tables: the targets' directories, what each links, and the headers that some give out for
    another target, as directories."""
    directories, links, given_out = {}, {}, {}
    for cmake in SRC.rglob("CMakeLists.txt"):
        for name, arguments in commands(cmake):
            if name == "quillon_folder":
                directories[arguments[0]] = cmake.parent
                links.setdefault(arguments[0], set()).update(links_of(arguments[1:]))
            elif name == "target_link_libraries":
                links.setdefault(arguments[0], set()).update(arguments[1:])
            elif name == "target_include_directories" and "INTERFACE" in arguments:
                if '"${CMAKE_CURRENT_SOURCE_DIR}/include"' in arguments:
                    given_out[arguments[0]] = cmake.parent / "include"
    own = {name: {link.removesuffix("_internal") for link in of} for name, of in links.items()}
    return directories, {name: {link for link in of if link in own} for name, of in own.items()}, given_out


def reachable(target, links, seen=None):
    seen = set() if seen is None else seen
    for link in links.get(target, ()):
        if link not in seen:
            seen.add(link)
            reachable(link, links, seen)
    return seen


def target_of(path, directories):
    """The target in whose directory the file lies; the innermost one."""
    at = path.parent
    by_directory = {directory: name for name, directory in directories.items()}
    while at != SRC:
        if at in by_directory:
            return by_directory[at]
        at = at.parent
    return None


def spellings(path, directory):
    """How other files may include a header."""
    relative = path.relative_to(directory)
    if relative.parts[0] in ("include", "internal"):
        return [pathlib.PurePath(*relative.parts[1:]).as_posix()]
    return [relative.name, relative.as_posix()]


def main():
    directories, links, given_out = read_targets()
    findings = [f"{name} links itself, through others" for name in directories
                if name in reachable(name, links)]
    files, headers, lines = {}, {}, {}
    for path in sorted(SRC.rglob("*")):
        if path.suffix not in (".cpp", ".h", ".inc") or path.is_dir():
            continue
        target = target_of(path, directories)
        if target is None:
            continue
        files[path] = target
        if path.name not in MADE_BY_SCRIPT:
            lines[target] = lines.get(target, 0) + path.read_text().count("\n")
        if path.suffix != ".cpp":
            for spelling in spellings(path, directories[target]):
                owners = headers.setdefault(spelling, set())
                owners.add(target)
                owners.update(name for name, at in given_out.items() if path.is_relative_to(at))
    for path, target in files.items():
        allowed = reachable(target, links) | {target}
        for included in re.findall(r'^\s*#include "([^"]+)"', path.read_text(), re.MULTILINE):
            owners = headers.get(included)
            if owners and not owners & allowed:
                findings.append(f"{path.relative_to(TOP)} includes {included} of "
                                f"{', '.join(sorted(owners))}, which {target} does not link")
    whole = sum(lines.values())
    for target, count in lines.items():
        if count >= LARGEST_SHARE * whole:
            findings.append(f"{target} has {count} of {whole} lines of src")
    for finding in findings:
        print(finding)
    if not files:
        print("nothing to check")
    return 1 if findings or not files else 0


sys.exit(main())
