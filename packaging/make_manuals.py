#!/usr/bin/env python3
"""Manual pages and completion of zenro, made from its own help: nothing of it is written twice.

usage: make_manuals.py ZENRO HELP2MAN VERSION FOLDER
writes FOLDER/man1/zenro*.1.gz and FOLDER/completion/{zenro.bash,_zenro,zenro.fish}
"""
import gzip
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile

OPTION = re.compile(r"^  (?:(-\w),)?(--[\w-]+)(?:\{\w+\})?(?: (.*?))?(?:  +(.*))?$")


def choices(kind):
    """The values that an option takes by name: {a,b} or ENUM:a|b of its help. Where one comes again they are pairs: {a,b,b,a}."""
    found = re.search(r"\{([\w.,-]+)\}|:([\w.-]+(?:\|[\w.-]+)+)", kind)
    if not found:
        return []
    if found[2]:
        return found[2].split("|")
    values = found[1].split(",")
    if len(set(values)) == len(values):
        return values
    return [",".join(pair) for pair in zip(values[::2], values[1::2])]


class Verb:
    """One command of the program: its words, its options and the commands below it."""

    def __init__(self, zenro, words):
        self.words = words
        text = subprocess.run([zenro, *words, "--help"], capture_output=True, text=True, check=True).stdout
        self.summary = text.splitlines()[0].strip()
        self.options = []  # (short, long, values, takes a value, what it says)
        self.below = []
        section = ""
        pending = None
        for line in text.splitlines():
            if line and not line.startswith(" "):
                section = line.rstrip(":")
                continue
            if section == "Options":
                match = OPTION.match(line)
                if match:
                    kind = match[3] or ""
                    pending = [match[1] or "", match[2], choices(kind),
                               bool(re.match(r"[A-Z]{3,}", kind)), (match[4] or "").strip()]
                    self.options.append(pending)
                elif pending and line.startswith(" " * 10) and not pending[4]:
                    pending[4] = line.strip()
            elif section == "Subcommands":
                match = re.match(r"^  ([a-z][\w-]*)(?:  +(.*))?$", line)
                if match:
                    self.below.append(match[1])
        if not self.options:
            sys.exit(f"make_manuals: no options found in the help of {' '.join(['zenro', *words])}")


def all_verbs(zenro, words=()):
    verb = Verb(zenro, list(words))
    yield verb
    for name in verb.below:
        yield from all_verbs(zenro, [*words, name])


def write_manuals(verbs, zenro, help2man, version, folder):
    folder.mkdir(parents=True)
    for verb in verbs:
        name = "-".join(["zenro", *verb.words])
        with tempfile.TemporaryDirectory() as place:
            # help2man asks a program of the page's name.
            program = pathlib.Path(place) / name
            program.write_text(f'#!/bin/sh\nexec {shlex.quote(zenro)} {" ".join(verb.words)} "$@"\n')
            program.chmod(0o755)
            page = subprocess.run(
                [help2man, "--no-info", "--no-discard-stderr", "--section=1", f"--version-string={name} {version}",
                 "--manual=ZenroMath", f"--name={verb.summary.rstrip('.')}", str(program)],
                capture_output=True, text=True, check=True).stdout
        others = [".BR \"" + "-".join(["zenro", *v.words]) + "\" (1)" for v in verbs
                  if v is not verb and (v.words[:-1] == verb.words or v.words == verb.words[:-1])]
        if others:
            page += ".SH \"SEE ALSO\"\n" + ",\n".join(others) + "\n"
        with gzip.GzipFile(folder / (name + ".1.gz"), "wb", 9, mtime=0) as file:
            file.write(page.encode())


def cases(verbs):
    """What bash and zsh ask: the paths of the verbs; (path:option, values); (path, words that may follow)."""
    paths, values, words = [], [], []
    for verb in verbs:
        path = "".join(" " + word for word in verb.words)
        if path:
            paths.append(path)
        values += [(f"{path}:{long}", " ".join(those)) for _, long, those, *_ in verb.options if those]
        words.append((path, " ".join(verb.below + [w for short, long, *_ in verb.options for w in (short, long) if w])))
    return paths, values, words


def bash(verbs):
    paths, values, words = cases(verbs)
    return "\n".join([
        "# Completion of zenro for bash; made from its help.", "_zenro() {",
        '    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} verb="" word',
        '    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do', '        case "$verb $word" in',
        *[f'            "{path}") verb="{path}" ;;' for path in paths],
        "        esac", "    done", '    case "$verb:$previous" in',
        *[f'        "{after}") COMPREPLY=($(compgen -W "{those}" -- "$current")); return ;;' for after, those in values],
        "    esac", '    case "$verb" in',
        *[f'        "{path}") COMPREPLY=($(compgen -W "{those}" -- "$current")) ;;' for path, those in words],
        "    esac", '    [ ${#COMPREPLY[@]} -gt 0 ] || COMPREPLY=($(compgen -f -- "$current"))', "}",
        "complete -o filenames -o bashdefault -F _zenro zenro", ""])


def quoted(text):
    return "'" + text.replace("\\", "\\\\").replace("'", "\\'") + "'"


def fish(verbs):
    lines = ["# Completion of zenro for fish; made from its help."]
    for verb in verbs:
        conditions = [f"__fish_seen_subcommand_from {word}" for word in verb.words]
        if verb.below:
            conditions.append("not __fish_seen_subcommand_from " + " ".join(verb.below))
        when = f" -n {quoted('; and '.join(conditions))}" if conditions else ""
        for name in verb.below:
            summary = next(v.summary for v in verbs if v.words == [*verb.words, name])
            lines.append(f"complete -c zenro{when} -f -a {name} -d {quoted(summary)}")
        for short, long, values, takes, says in verb.options:
            lines.append(f"complete -c zenro{when} -l {long[2:]}" + (f" -s {short[1:]}" if short else "") +
                         (f" -x -a {quoted(' '.join(values))}" if values else " -r" if takes else "") +
                         (f" -d {quoted(says)}" if says else ""))
    return "\n".join(lines) + "\n"


def zsh(verbs):
    paths, values, words = cases(verbs)
    return "\n".join([
        "#compdef zenro", "# Completion of zenro for zsh; made from its help.", 'local verb="" word',
        'for word in "${(@)words[2,CURRENT-1]}"; do', '    case "$verb $word" in',
        *[f'        "{path}") verb="{path}" ;;' for path in paths],
        "    esac", "done", 'case "$verb:${words[CURRENT-1]}" in',
        *[f'    "{after}") compadd -- {those}; return ;;' for after, those in values],
        "esac", 'case "$verb" in',
        *[f'    "{path}") compadd -- {those} ;;' for path, those in words],
        "esac", "_files", ""])


def main():
    zenro, help2man, version, target = sys.argv[1:]
    target = pathlib.Path(target)
    with tempfile.TemporaryDirectory() as settings:
        os.environ.update(XDG_CONFIG_HOME=settings, LC_ALL="C.UTF-8", ZENRO_LANGUAGE="en")
        verbs = list(all_verbs(zenro))
        shutil.rmtree(target, ignore_errors=True)
        write_manuals(verbs, zenro, help2man, version, target / "man1")
    completion = target / "completion"
    completion.mkdir()
    for name, text in (("zenro.bash", bash(verbs)), ("_zenro", zsh(verbs)), ("zenro.fish", fish(verbs))):
        (completion / name).write_text(text, encoding="utf-8")
    (target / "done").write_text(f"{len(verbs)} commands\n")


if __name__ == "__main__":
    main()
