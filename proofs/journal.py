"""What document_writer has promised, and whether its folder keeps it."""

import copy
import json
import pathlib
import subprocess

import proof

WRITER = proof.BUILT / "proofs" / "brevlin_document_writer"
TIMER = "Brevlin.activeTimerSnapshot.v1"
PREFERENCES = "Brevlin.preferences.v1"
CRASH_SIGNALS = {-4, -6, -7, -8, -11}


DETAILS = "session-details-v1"
NUMBERED = (("timer", TIMER), ("preferences", PREFERENCES), ("details", DETAILS))


def path_of(folder, document):
    if document in ("history", DETAILS):
        return folder / "data" / ("sessions-v1.json" if document == "history" else f"{DETAILS}.json")
    return folder / "config" / f"{document}.json"


class Journal:
    """Follows the writer's lines. `certain` has to be in the file; `possible` may be, or may not."""

    def __init__(self):
        self.certain = {}  # id: number of the step
        self.possible = {}
        self.removing = set()  # of the possible ones
        self.refused = set()  # removals that the disk refused: still there, unless only the last sync failed
        self.changing = {}  # id: number that the record has or will have
        self.unchanged = {}  # the same, refused
        self.saved = {document: 0 for document, _ in NUMBERED}
        self.asked = dict(self.saved)
        self.last = 0
        self.ended = False
        self.left_over = False  # something that time alone did not bring to the disk

    def copy(self):
        return copy.deepcopy(self)

    def follow(self, lines):
        self.ended = False
        for line in lines:
            words = line.split()
            match words:
                case ["about", "insert", identifier, number]:
                    self.refused.clear()  # the next save writes what was not removed
                    if identifier not in self.certain:
                        self.possible[identifier] = int(number)
                    self.last = max(self.last, int(number))
                case ["about", "remove", identifier]:
                    self.possible[identifier] = self.certain.pop(identifier, self.possible.get(identifier))
                    self.removing.add(identifier)
                case ["about", "change", identifier, number]:
                    self.changing[identifier] = int(number)
                case ["unchanged", identifier]:
                    # Unless only the last sync failed; the next save writes what it was.
                    self.unchanged[identifier] = self.changing.pop(identifier)
                case ["about", document, number]:
                    self.asked[document] = int(number)
                case ["refused", identifier]:
                    self.removing.discard(identifier)
                    self.refused.add(identifier)
                case ["saved", "history"]:
                    self.settle()
                case ["saved", ("timer" | "preferences" | "details") as document, number]:
                    self.saved[document] = int(number)
                case ["left", "over"]:
                    self.left_over = True
                case ["saved", "by", "itself"]:
                    self.left_over = False
                case ["end"]:
                    self.ended = True
        return self

    def settle(self):
        for identifier, number in list(self.possible.items()):
            if identifier in self.removing:
                del self.possible[identifier]
            elif identifier not in self.refused:
                self.certain[identifier] = number
                del self.possible[identifier]
        self.removing.clear()
        for identifier, number in self.changing.items():
            for numbers in (self.certain, self.possible):
                if identifier in numbers:
                    numbers[identifier] = number
        self.changing.clear()
        self.unchanged.clear()

    def numbers_of(self, identifier):
        """What the record may hold; none where that is not known."""
        return {number for number in (self.certain.get(identifier), self.possible.get(identifier),
                                      self.changing.get(identifier), self.unchanged.get(identifier)) if number}

    def is_all_saved(self):
        return not self.possible.keys() - self.refused and self.saved == self.asked and not self.left_over

    def adopt(self, folder, unreadable=None):
        """Takes what stands in the folder for certain: the next writer begins with it."""
        found = records(folder, unreadable)
        self.certain = {identifier: int(record["interruptionCount"]) for identifier, record in found.items()}
        self.possible, self.removing, self.refused, self.changing, self.unchanged = {}, set(), set(), {}, {}
        for document, key in NUMBERED:
            self.saved[document] = self.asked[document] = number_in(folder, key, unreadable)

    def judge(self, folder, unreadable=None):
        """lost, torn and wrong, each with what was seen; empty when every promise is kept. A document with the
        unreadable content may still stand in its place."""
        verdict = {}
        try:
            found = records(folder, unreadable)
        except (ValueError, KeyError, TypeError) as error:
            return {"torn": f"the history: {error}"}
        lost = self.certain.keys() - found.keys()
        if lost:
            verdict["lost"] = f"{len(lost)} of {len(self.certain)} records, {sorted(lost)[0]} among them"
        strange = found.keys() - self.certain.keys() - self.possible.keys()
        if strange:
            verdict["wrong"] = f"{len(strange)} records that were removed or never made, {sorted(strange)[0]} among them"
        for identifier, record in found.items():
            numbers = self.numbers_of(identifier)
            if numbers and not any(record == record_of(identifier, number) for number in numbers):
                verdict["torn"] = f"a record with another content: {record}"
        for document, key in NUMBERED:
            try:
                number = number_in(folder, key, unreadable)
            except (ValueError, KeyError, TypeError) as error:
                verdict["torn"] = f"{document}: {error}"
                continue
            if not self.saved[document] <= number <= self.asked[document]:
                verdict["lost"] = f"{document} {number}, saved {self.saved[document]}, asked {self.asked[document]}"
        return verdict


def record_of(identifier, number):
    """As the writer makes it: no two fields hold the same."""
    return {"id": identifier, "actualStartAt": 8e8 + number, "plannedStartAt": 8e8 + number,
            "endedAt": 8e8 + number + 1500, "scheduledEndAt": 8e8 + number + 1500.5, "plannedDuration": 10000.5 + number,
            "effectiveDuration": 20000.25 + number, "pauseDuration": 30000.125 + number, "cycleIndex": 40000 + number,
            "interruptionCount": number, "intention": f"record {number}", "phaseRawValue": "longBreak",
            "outcomeRawValue": "completedWhileAway", "completedWhileAway": True,
            "timeZoneIdentifierAtStart": "Asia/Kathmandu"}


def content(path, unreadable=None):
    """The bytes; None without a file and where it is the one that is known for unreadable."""
    bytes_of_it = path.read_bytes() if path.exists() else None
    return None if bytes_of_it == unreadable else bytes_of_it


def records(folder, unreadable=None):
    """By id, of the history; none without a file. Raises where the document is not whole."""
    text = content(path_of(folder, "history"), unreadable)
    if text is None:
        return {}
    sessions = json.loads(text)["sessions"]
    found = {record["id"]: record for record in sessions}
    if len(found) != len(sessions):
        raise ValueError("an id stands there twice")
    return found


def number_in(folder, key, unreadable=None):
    """The number of the step that the document was written in; 0 without one."""
    text = content(path_of(folder, key), unreadable)
    if text is None:
        return 0
    document = json.loads(text)
    if key == DETAILS:
        return int(document["details"][0]["pauses"][0]["start"])
    return int(document["interruptionCount"] if key == TIMER else document["timerSettings"]["focusDuration"])


def write(folder, steps, first=1, prefix=()):
    """Runs the writer to its end and gives its exit code and its lines."""
    done = subprocess.run([*prefix, WRITER, folder, str(steps), str(first)], stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False, timeout=120)
    return done.returncode, done.stdout.decode().splitlines(), done.stderr.decode(errors="replace")


def whole_lines(output):
    """Of a writer that was killed: an unfinished line was not said."""
    return output.decode().split("\n")[:-1]


def set_aside(folder):
    return [path for path in pathlib.Path(folder).rglob("*") if ".unreadable-" in path.name]
