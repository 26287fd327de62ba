"""Plays random games with the timer engine and with a second reading of its rules, and compares every field."""

import dataclasses
import math
import re
import subprocess
import uuid

import proof
from second_engine import FRESH, Engine, Settings, State

DRIVER = proof.BUILT / "proofs" / "brevlin_engine_driver"
OPERATIONS_OF_A_GAME = 400
GAMES_OF_A_ROUND = 25
TOLERANCE = 1e-5  # of seconds; an instant of today is a multiple of 1e-7
PHASES = ["focus", "shortBreak", "longBreak"]
PLAIN = ["pause", "resume", "skip", "reset", "endEarly", "switchAndStart", "advance", "skipPendingPhase"]
IDENTIFIER = re.compile("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}")  # random
TEXTS = [None, "", "  ", "write", " \u3000write\u2028 more\t", "\u200bx", "\x1fy"]


def word(value):
    if value is None:
        return "-"
    if isinstance(value, bool):
        return str(int(value))
    if isinstance(value, float):
        return value.hex() if math.isfinite(value) else str(value)
    return str(value)


def text_word(value):
    return "-" if value is None else "x" + value.encode().hex()


class Game:
    """Both engines, asked the same. The answers of the driver come later, all at once."""

    def __init__(self, chance):
        self.chance = chance
        self.now = 8e8
        self.lines = []
        self.expected = []  # the state and the session after each line
        settings = self.settings()
        state = self.snapshot() if chance.random() < 0.5 else None
        self.engine = Engine(settings, dataclasses.replace(state) if state else None)
        self.say("new", *map(word, dataclasses.astuple(settings)), *(self.snapshot_words(state) if state else ()))
        for _ in range(OPERATIONS_OF_A_GAME):
            self.play()

    def say(self, *words, ended=None):
        self.lines.append(" ".join(words))
        self.expected.append((dataclasses.replace(self.engine.state), ended))

    def settings(self):
        length = lambda: self.chance.choice([1.0, 7.5, 300.0, 1500.0, 0.0, -30.0, math.nan, math.inf, -math.inf])
        return Settings(length(), length(), length(), self.chance.choice([1, 2, 3, 4, 12, 0, -5]),
                        self.chance.random() < 0.4, self.chance.random() < 0.4)

    def snapshot(self):
        """Any that may have been stored: the engine takes it as it stands."""
        chance = self.chance
        maybe = lambda value: value if chance.random() < 0.7 else None
        instant = lambda: 8e8 + chance.choice([-100000.0, -5.0, 0.0, 0.25, 600.0])
        length = lambda: chance.choice([-5.0, 0.0, 0.5, 90.0, 1500.0])
        return State(chance.choice(PHASES), chance.choice(["idle", "running", "paused", "ringing"]),
                     maybe(str(uuid.UUID(int=chance.getrandbits(128))).upper()), maybe("old"), maybe(instant()),
                     maybe(instant()), maybe(instant()), maybe(length()), length(), length(), chance.randrange(-2, 5),
                     chance.randrange(0, 30), maybe("Asia/Tokyo"))

    @staticmethod
    def snapshot_words(state):
        return [text_word(value) if name in ("intention", "zone") else word(value)
                for name, value in dataclasses.asdict(state).items()]

    def next_instant(self):
        chance, state = self.chance, self.engine.state
        if state.end is not None and chance.random() < 0.35:
            return state.end + chance.choice([0.0, 0.0, -0.001, 0.001, 3600.0])
        return self.now + chance.choice([0.0, 0.4, 1.0, 60.0, 400.0, -30.0, 86400.0])

    def play(self):
        name = self.chance.choice(PLAIN + ["start", "start", "advance", "addTime", "reconcile", "settings",
                                           "selectPhase"])
        now = self.next_instant()
        if name == "settings":
            settings = self.settings()
            self.engine.settings_(settings)
            self.say(name, *map(word, dataclasses.astuple(settings)))
        elif name == "selectPhase":
            phase = self.chance.choice(PHASES)
            self.engine.selectPhase(phase)
            self.say(name, phase)
        else:
            self.now = now
            more, told = [], []
            if name == "start":
                more = [self.chance.choice(TEXTS)]
                told = [text_word(more[0])]
            elif name == "addTime":
                more = [self.chance.choice([300.0, 0.5, 0.0, -5.0, math.nan, math.inf])]
            elif name == "reconcile":
                more = [self.chance.random() < 0.5]
            ended = getattr(self.engine, name)(now, *more)
            self.say(name, word(now), *(told or map(word, more)), ended=ended)


def fields(values):
    return [text_word(value) if isinstance(value, str) and kind in ("intention", "zone") else word(value)
            for kind, value in values.items()]


def difference(game, answers):
    """The first step where the engine does not say what is expected, or None."""
    known = {}  # fresh identifier: the one that was drawn for it
    for step, (line, answer) in enumerate(zip(game.lines, answers)):
        state, ended = game.expected[step]
        got = answer.split()
        expected = fields(dataclasses.asdict(state)) + (fields(dataclasses.asdict(ended)) if ended else [])
        if len(got) != len(expected):
            return step, f"{line}: {len(got)} fields instead of {len(expected)}: {answer}"
        for place, (mine, yours) in enumerate(zip(expected, got)):
            if mine.startswith(FRESH):
                agrees = IDENTIFIER.fullmatch(yours) and known.get(mine, yours) == yours and (
                    mine in known or yours not in known.values())
                known[mine] = yours
            else:
                agrees = same(mine, yours)
            if not agrees:
                return step, f"{line}: field {place} is {yours}, expected {mine} (state expected: {state}, {ended})"
    return None


def same(mine, yours):
    if mine == yours:
        return True
    try:
        return abs(float.fromhex(mine) - float.fromhex(yours)) <= TOLERANCE and "x" not in (mine[0], yours[0])
    except ValueError:
        return False


def second_reading(budget):
    row = proof.Row("operations of the engine, against a second reading", "operations")
    while budget.lasts():
        games = [Game(budget.chance) for _ in range(GAMES_OF_A_ROUND)]
        text = "\n".join(line for game in games for line in game.lines) + "\n"
        done = subprocess.run([DRIVER], input=text, stdout=subprocess.PIPE, text=True, check=False)
        answers = done.stdout.splitlines()
        if done.returncode or len(answers) != sum(len(game.lines) for game in games):
            row.add({"crashed": f"exit {done.returncode}"}, f"seed {budget.seed}, operation {row.count + len(answers)}")
            break
        for game in games:
            mine, answers = answers[:len(game.lines)], answers[len(game.lines):]
            if found := difference(game, mine):
                step, what = found
                row.add({"wrong": what}, f"seed {budget.seed}: printf '%s\\n' " +
                        " ".join(f"'{line}'" for line in game.lines[:step + 1][-12:]) + f" | {DRIVER}")
            row.count += len(game.lines) - 1
    return [row]
