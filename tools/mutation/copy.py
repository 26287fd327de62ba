"""A copy of the tree that has every mutant of a layer compiled in, each behind its number."""

import bisect
import concurrent.futures
import os
import re
import shutil
import subprocess

from .places import compiler_arguments, find_places

ERROR = re.compile(r"^(?P<file>[^\s:]+):(?P<line>\d+):\d+:\s+(?:(?:fatal )?error:|\s*required )", re.MULTILINE)
# The library's assertions stop a mutant that reads what is not there, which else may go well by chance.
FLAGS = "-std=c++20 -O1 -D_GLIBCXX_ASSERTIONS -w -fpermissive -Wno-narrowing"


class DoesNotBuild(Exception):
    """The copy fails in lines that no mutant is in."""


class Copy:
    """The copy under build/mutate/, its places and its mutants, numbered from 1 in the order of the files."""

    def __init__(self, root, layer, tests):
        self.root = root
        self.folder = root / "build" / "mutate" / layer.replace("/", "-")
        self.source = self.folder / "source"
        self.build_folder = self.folder / "build"
        self.tests = tests
        self.files, self.constants = {}, 0
        sources = sorted(path for path in (root / "src" / layer).rglob("*") if path.suffix in (".cpp", ".h"))
        arguments = compiler_arguments(root / "build" / "release" / "compile_commands.json")
        of_a_header = next(arguments[str(path)] for path in sources if str(path) in arguments)
        names = [str(path.relative_to(root / "src")) for path in sources]
        with concurrent.futures.ProcessPoolExecutor() as readers:
            found = readers.map(find_places, sources, names, [arguments.get(str(path), of_a_header) for path in sources])
        for name, (places, constants) in zip(names, found):
            self.files[name] = places
            self.constants += constants
        self.mutants = [mutant for places in self.files.values() for place in places for mutant in place.mutants]
        for number, mutant in enumerate(self.mutants, 1):
            mutant.number = number

    def build(self):
        """Writes and builds the copy. Gives the mutants that do not compile; they are left out of it."""
        dropped = set()
        self.copy_tree()
        while True:
            lines = {name: self.rewrite(name, dropped) for name in self.files}
            output = self.compile()
            if output is None:
                return [mutant for mutant in self.mutants if mutant.number in dropped]
            refused = self.refused(output, lines)
            if not refused:
                raise DoesNotBuild(output[-4000:])
            dropped |= refused

    def copy_tree(self):
        listed = subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], cwd=self.root, check=True,
                                capture_output=True, text=True).stdout.split("\n")
        wanted = {name for name in listed if name and (self.root / name).is_file()}
        for path in self.source.rglob("*") if self.source.exists() else ():
            if path.is_file() and str(path.relative_to(self.source)) not in wanted:
                path.unlink()
        for name in wanted:
            if name.removeprefix("src/") not in self.files:
                replace(self.source / name, (self.root / name).read_bytes())
                shutil.copymode(self.root / name, self.source / name)

    def rewrite(self, name, dropped):
        """Writes a source with its mutants and tells which lines belong to which of them."""
        original = (self.root / "src" / name).read_bytes()
        text = render(original, self.files[name], dropped)
        replace(self.source / "src" / name, text)
        return ranges_of_lines(text)

    def compile(self):
        """The compiler's words, None where there is nothing to complain."""
        environment = {**os.environ, "CCACHE_BASEDIR": str(self.root), "CCACHE_NOHASHDIR": "true", "LC_ALL": "C"}
        switch = self.source / "tools" / "mutation" / "mutation_switch.h"
        subprocess.run(["cmake", "-S", self.source, "-B", self.build_folder, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None",
                        f"-DCMAKE_CXX_FLAGS={FLAGS} -include {switch}"], check=True, capture_output=True, env=environment)
        built = subprocess.run(["cmake", "--build", self.build_folder, "--target",
                                *(f"tests/{test}/all" for test in self.tests), "--", "-k", "0"],
                               capture_output=True, text=True, env=environment)
        return None if built.returncode == 0 else built.stdout + built.stderr

    def refused(self, output, lines):
        found = set()
        for match in ERROR.finditer(output):
            path = os.path.relpath(self.build_folder / match["file"], self.source / "src")
            for first, last, numbers in lines.get(path, ()):
                if first <= int(match["line"]) <= last:
                    found |= numbers
                    break  # the smallest range
        return found


def replace(path, content):
    """Leaves an unchanged file alone, and with it what was built from it."""
    if path.exists() and path.read_bytes() == content:
        return
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(content)


def render(source, places, dropped):
    """The source with each place as `mutant ? changed : … : original`. Every changed text has lines of its own, so that
    the compiler names it, and is made of the original text: where one mutant is on, no other is."""
    kept = [place for place in places if any(mutant.number not in dropped for mutant in place.mutants)]

    def stretch(start, end, at):
        """The text from start to end, and the index of the first place behind it."""
        parts, position = [], start
        while at < len(kept) and kept[at].start < end:
            place = kept[at]
            inner, at = stretch(place.start, place.end, at + 1)
            parts += [source[position:place.start], mutated(place, inner, dropped)]
            position = place.end
        return b"".join((*parts, source[position:end])), at

    return stretch(0, len(source), 0)[0]


def mutated(place, original, dropped):
    numbers = [mutant.number for mutant in place.mutants if mutant.number not in dropped]
    choices = b"".join(b"\n/*<%d*/::brevlinMutant(%d) ? (%s)/*>*/\n: " % (mutant.number, mutant.number,
                                                                          mutant.code or b"void()")
                       for mutant in place.mutants if mutant.number in numbers)
    begin = b"/*[" + b",".join(b"%d" % number for number in numbers) + b"*/"
    if place.form == "declaration":
        return original + b"; " + begin + choices + b"static_cast<bool>(" + place.name + b")/*]*/"
    cast = {"expression": b"", "condition": b"static_cast<bool>", "statement": b"static_cast<void>"}[place.form]
    return begin + b"(" + choices + cast + b"(" + original + b"))/*]*/"


def ranges_of_lines(text):
    """(first line, last line, numbers) of each mutant and of each place, small ones first."""
    starts = [0, *(match.end() for match in re.finditer(rb"\n", text))]
    ranges, opened = [], []
    for match in re.finditer(rb"/\*(?:[<\[]([\d,]+)|[>\]])\*/", text):
        line = bisect.bisect_right(starts, match.start())
        if match[1]:
            opened.append((line, {int(number) for number in match[1].split(b",")}))
        else:
            first, numbers = opened.pop()
            ranges.append((first, line, numbers))
    return sorted(ranges, key=lambda each: each[1] - each[0])
