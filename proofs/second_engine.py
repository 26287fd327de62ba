"""The rules of the timer engine, read a second time and written down without a look at the first. Seconds are
floats, instants too; identifiers that have yet to be drawn are FRESH with a number."""

import dataclasses
import math
from typing import Optional

FRESH = "fresh"
ZONE = "Europe/Berlin"
WHITE_SPACE = "\t\n\v\f\r \x85\xa0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009\u200a\u2028\u2029\u202f\u205f\u3000"


@dataclasses.dataclass
class Settings:
    focus: float
    short: float
    long: float
    every: int  # N-th completed focus phase is followed by a long break
    starts_breaks: bool
    starts_focus: bool

    def sane(self):
        def length(value, default):
            return max(value, 1.0) if math.isfinite(value) else default

        return Settings(length(self.focus, 1500.0), length(self.short, 300.0), length(self.long, 900.0),
                        max(self.every, 1), self.starts_breaks, self.starts_focus)

    def duration(self, phase):
        return {"focus": self.focus, "shortBreak": self.short, "longBreak": self.long}[phase]


@dataclasses.dataclass
class State:
    phase: str = "focus"
    run: str = "idle"
    id: Optional[str] = None
    intention: Optional[str] = None
    started: Optional[float] = None
    end: Optional[float] = None
    paused: Optional[float] = None
    paused_left: Optional[float] = None
    planned: float = 0.0
    pauses: float = 0.0
    interruptions: int = 0
    completed: int = 0
    zone: Optional[str] = None


@dataclasses.dataclass
class Session:
    id: str
    phase: str
    outcome: str
    started: float
    scheduled: Optional[float]
    ended: float
    planned: float
    effective: float
    paused: float
    index: int
    interruptions: int
    intention: Optional[str]
    away: bool
    zone: str


def other(phase):
    return "shortBreak" if phase == "focus" else "focus"


def normalized(intention):
    return (intention or "").strip(WHITE_SPACE) or None


class Engine:
    """Every operation gives the session that it ended, or None, and leaves the state."""

    def __init__(self, settings, state=None):
        self.settings = settings.sane()
        self.drawn = 0
        self.state = state or State(planned=max(0.0, self.settings.focus))

    # Building blocks

    def prepare(self, phase, run):
        self.state = State(phase, run, planned=self.settings.duration(phase), completed=self.state.completed)

    def draw(self):
        self.drawn += 1
        return f"{FRESH}{self.drawn}"

    def begin(self, now, intention=None):
        s = self.state
        self.state = State(s.phase, "running", self.draw(), normalized(intention), now, now + s.planned, planned=s.planned,
                           completed=s.completed, zone=ZONE)

    def left(self, now):
        s = self.state
        if s.run == "idle":
            return max(0.0, s.planned)
        if s.run == "running":
            return max(0.0, s.end - now) if s.end is not None else 0.0
        return max(0.0, s.paused_left or 0.0) if s.run == "paused" else 0.0

    def cycle_index(self):
        completed, every = self.state.completed, self.settings.every
        place = completed % every
        if self.state.phase == "focus":
            return place + 1
        return every if place == 0 and completed >= 1 else max(place, 1)

    def session(self, outcome, ended, scheduled=None):
        s = self.state
        paused = s.pauses
        if s.run == "paused" and s.paused is not None:
            paused += max(0.0, ended - s.paused)
        paused = max(0.0, paused)
        started = ended if s.started is None else s.started
        planned = max(0.0, s.planned)
        if outcome in ("completed", "completedWhileAway"):
            effective = planned
        else:
            effective = min(max(0.0, ended - started - paused), planned)
        return Session(s.id or self.draw(), s.phase, outcome, started, s.end if scheduled is None else scheduled, ended,
                       planned, effective, paused, max(1, self.cycle_index()), max(0, s.interruptions), s.intention,
                       outcome == "completedWhileAway", s.zone or ZONE)

    def finish_if_due(self, now, away=False):
        s = self.state
        if s.run != "running" or s.end is None or s.end > now:
            return None
        ended = self.session("completedWhileAway" if away else "completed", s.end, s.end)
        if s.phase == "focus":
            s.completed += 1
            following = "longBreak" if s.completed >= 1 and s.completed % self.settings.every == 0 else "shortBreak"
            starts = self.settings.starts_breaks
        else:
            following, starts = "focus", self.settings.starts_focus
        self.prepare(following, "ringing")
        if starts:
            self.begin(now)
        return ended

    # Operations

    def settings_(self, settings):
        self.settings = settings.sane()
        if self.state.run == "idle":
            self.state.planned = self.settings.duration(self.state.phase)

    def selectPhase(self, phase):
        if self.state.run == "idle":
            self.state.phase, self.state.planned = phase, self.settings.duration(phase)

    def start(self, now, intention):
        if self.state.run == "idle":
            self.begin(now, intention)

    def pause(self, now):
        ended = self.finish_if_due(now)
        s = self.state
        if not ended and s.run == "running":
            s.paused_left = self.left(now)
            s.run, s.paused, s.end, s.interruptions = "paused", now, None, s.interruptions + 1
        return ended

    def resume(self, now):
        s = self.state
        if s.run == "paused" and s.paused_left is not None:
            if s.paused is not None:
                s.pauses += max(0.0, now - s.paused)
            s.run, s.end, s.paused, s.paused_left = "running", now + max(0.0, s.paused_left), None, None

    def addTime(self, now, length):
        if not (math.isfinite(length) and length > 0):
            return None
        ended = self.finish_if_due(now)
        s = self.state
        if not ended and s.run == "running" and s.end is not None:
            s.end, s.planned = s.end + length, s.planned + length
        elif not ended and s.run == "paused":
            s.paused_left, s.planned = length + max(0.0, s.paused_left or 0.0), s.planned + length
        return ended

    def abandon(self, now, outcome, phase, run):
        session = self.session(outcome, now)
        self.prepare(phase, run)
        return session

    def is_active(self):
        return self.state.run in ("running", "paused")

    def skip(self, now):
        ended = self.finish_if_due(now)
        if not ended and self.is_active():
            return self.abandon(now, "skipped", other(self.state.phase), "ringing")
        if not ended and self.state.run == "ringing":
            self.state.run = "idle"
        return ended

    def reset(self, now):
        ended = self.finish_if_due(now)
        if not ended and self.is_active():
            return self.abandon(now, "reset", self.state.phase, "idle")
        if not ended and self.state.run == "ringing":
            self.state.run = "idle"
        return ended

    def endEarly(self, now):
        ended = self.finish_if_due(now)
        if not ended and self.is_active():
            return self.abandon(now, "endedEarly", other(self.state.phase), "ringing")
        return ended

    def switchAndStart(self, now):
        ended = self.finish_if_due(now)
        if ended:
            if self.state.run == "ringing":
                self.begin(now)
        elif self.is_active():
            ended = self.abandon(now, "switchedEarly", other(self.state.phase), "idle")
            self.begin(now)
        return ended

    def advance(self, now):
        ended = self.finish_if_due(now)
        if self.state.run == "ringing":
            self.begin(now)
        return ended

    def skipPendingPhase(self, now):
        if self.state.run == "ringing":
            self.prepare(other(self.state.phase), "ringing")

    def reconcile(self, now, away):
        return self.finish_if_due(now, away)
