"""The list of mutants that no test can tell from the program, or that are only slower."""

import dataclasses


@dataclasses.dataclass
class Entry:
    key: tuple  # file, function, before, after
    reason: str
    matched: bool = False
    holds: bool = False  # for one of the places that read so
    noticed_by: str = ""


class Equivalents:
    """The entries of equivalents.txt. They name the code itself, so that a line may move."""

    def __init__(self, path):
        self.entries = {}
        key = None
        for line in path.read_text().splitlines():
            if not line.strip() or line.startswith("#"):
                continue
            if not line.startswith(" "):
                key = tuple(part.strip() for part in line.split(" | "))
                if len(key) != 4:
                    raise ValueError(f"not FILE | FUNCTION | BEFORE | AFTER: {line}")
                self.entries[key] = Entry(key, "")
            else:
                self.entries[key].reason = f"{self.entries[key].reason} {line.strip()}".strip()
        without = [" | ".join(entry.key) for entry in self.entries.values() if not entry.reason]
        if without:
            raise ValueError("without a reason: " + "; ".join(without))

    def find(self, mutant):
        entry = self.entries.get(mutant.key())
        if entry:
            entry.matched = True
        return entry

    def unmatched(self, layer):
        return [" | ".join(entry.key) for entry in self.entries.values()
                if not entry.matched and entry.key[0].startswith(layer + "/")]
