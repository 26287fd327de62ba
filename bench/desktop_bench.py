"""What the running program costs, beside an empty Qt Widgets window where that is the measure. Prints rows of the table
of bench/run. The argument is the folder of the built benchmarks."""

import contextlib
import ctypes
import json
import os
import pathlib
import re
import statistics
import struct
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path[:0] = [str(ROOT / "tests" / "desktop"), str(ROOT / "tools")]

from harness import PROGRAM, Desktop, now, wait_for  # noqa: E402
from make_history import make_history  # noqa: E402
from sway_desktop import SwayDesktop  # noqa: E402

BUILT = pathlib.Path(sys.argv[1])
EMPTY_WINDOW = BUILT / "brevlin_empty_window"
EMPTY_CORE = BUILT / "brevlin_empty_core"
EMPTY_CLOCK = BUILT / "brevlin_empty_clock"
STARTS = 21
VERBS = 101
MEMORY_TURNS = 5
SETTLING = 3.0  # seconds until what the start left to do is done
OBSERVED = 20.0  # seconds
DAY = 16 * 3600  # seconds that the program is open a day
PHASES = 50


def print_row(what, measured, goal, unit, source):
    met = "yes" if measured <= goal else "MISSED"
    print(f"| {what:<46} | {f'{measured:.2f} {unit}':>10} | {f'{goal:.1f} {unit}':>10} | {met:<6} | {source}", flush=True)


def print_ratio(what, ours, theirs, goal, unit):
    ratio = statistics.median(a / b for a, b in zip(ours, theirs))
    print_row(what, ratio, goal, "x",
              f"{statistics.median(ours):.1f} {unit} / {statistics.median(theirs):.1f} {unit}")


@contextlib.contextmanager
def new_desktop():
    desktop = Desktop()
    try:
        desktop.start_display()
        desktop.start_bus()
        yield desktop
    finally:
        desktop.close()


def first_paint(desktop, program):
    result = subprocess.run([BUILT / "brevlin_first_paint", program], env=desktop.environment, check=True,
                            stdout=subprocess.PIPE, timeout=60)
    return float(result.stdout.split()[0])


def measure_start():
    with new_desktop() as desktop:
        for program in (PROGRAM, EMPTY_WINDOW):  # reads both from the disk
            first_paint(desktop, program)
        ours, theirs = [], []
        for _ in range(STARTS):
            theirs.append(first_paint(desktop, EMPTY_WINDOW))
            ours.append(first_paint(desktop, PROGRAM))
    print_ratio("start to first painted window / empty window", ours, theirs, 1.5, "ms")


@contextlib.contextmanager
def furnished_desktop():
    """With the services that a desktop has: accessibility, the portal's settings, notifications, status items."""
    portal, settings = "org.freedesktop.portal.Desktop", "org.freedesktop.portal.Settings"
    with new_desktop() as desktop:
        desktop.run_in_background(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"])
        wait_for("accessibility", lambda: desktop.bus().name_has_owner("org.a11y.Bus"))
        mock = desktop.start_mock("--session", portal, "/org/freedesktop/portal/desktop", settings, name=portal,
                                  path="/org/freedesktop/portal/desktop")
        mock.AddMethod(settings, "ReadAll", "as", "a{sa{sv}}",
                       "ret = {'org.freedesktop.appearance': {'color-scheme': dbus.UInt32(2)}}")
        desktop.start_mock("--session", "--template", "notification_daemon", name="org.freedesktop.Notifications",
                           path="/org/freedesktop/Notifications")
        yield desktop


@contextlib.contextmanager
def desktop_without_bus():
    with new_desktop() as desktop:
        desktop.environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={desktop.folder}/nobody"
        yield desktop


def measure_start_on_other_buses():
    with new_desktop() as bare:
        first_paint(bare, PROGRAM)
        for what, other in (("with a desktop's services", furnished_desktop), ("without a bus", desktop_without_bus)):
            with other() as desktop:
                first_paint(desktop, PROGRAM)
                ours, theirs = [], []
                for _ in range(STARTS):
                    theirs.append(first_paint(bare, PROGRAM))
                    ours.append(first_paint(desktop, PROGRAM))
            print_ratio(f"start {what} / on a bare bus", ours, theirs, 1.1, "ms")


def measure_instructions():
    """Of a start and an end; they do not swing with the machine's load, but few virtual machines count them."""
    with new_desktop() as desktop:
        counts = []
        for program in (PROGRAM, EMPTY_WINDOW):
            counter = desktop.folder / "instructions"
            subprocess.run(["perf", "stat", "-x", ",", "-e", "instructions:u", "-o", counter, BUILT / "brevlin_first_paint",
                            program], env=desktop.environment, check=False, stdout=subprocess.PIPE, timeout=60)
            text = counter.read_text() if counter.exists() else ""
            counts += [float(line.split(",")[0]) / 1e6 for line in text.splitlines() if line[:1].isdigit()]
    if len(counts) == 2:
        print_ratio("instructions of a start / empty window", counts[:1], counts[1:], 1.5, "million")
    else:
        print("| instructions of a start / empty window         |          - |      1.5 x | -      | not counted here", flush=True)


def measure_start_with_a_history():
    """Beside a start without one, in turns; ten years of use are 40,000 records."""
    with new_desktop() as without, new_desktop() as desktop:
        first_paint(without, PROGRAM)
        for count, goal in ((10_000, 1.05), (100_000, 1.1)):
            desktop.data.mkdir(parents=True, exist_ok=True)
            records = make_history(count, count // 10, time.time(), 11, "UTC")
            (desktop.data / "sessions-v1.json").write_text(json.dumps(records, separators=(",", ":")))
            first_paint(desktop, PROGRAM)
            ours, theirs = [], []
            for _ in range(STARTS):
                theirs.append(first_paint(without, PROGRAM))
                ours.append(first_paint(desktop, PROGRAM))
            print_ratio(f"start with {count:,} records / with none", ours, theirs, goal, "ms")


def measure_figures():
    """From the first frame to the last change of the figures above the timer."""
    with new_desktop() as desktop:
        desktop.data.mkdir(parents=True, exist_ok=True)
        records = make_history(100_000, 10_000, time.time(), 11, "UTC")
        (desktop.data / "sessions-v1.json").write_text(json.dumps(records, separators=(",", ":")))
        first_paint(desktop, PROGRAM)
        waits = [float(subprocess.run([BUILT / "brevlin_first_paint", PROGRAM, "200", "230", "880", "50"],
                                      env=desktop.environment, check=True, stdout=subprocess.PIPE, timeout=60)
                       .stdout.split()[1]) for _ in range(MEMORY_TURNS)]
    print_row("figures of 100,000 records after the first frame", statistics.median(waits), 400, "ms",
              f"worst {max(waits):.0f} ms")


def proportional_memory(process):
    """Megabytes."""
    for line in pathlib.Path(f"/proc/{process.pid}/smaps_rollup").read_text().splitlines():
        if line.startswith("Pss:"):
            return int(line.split()[1]) / 1024
    raise AssertionError("no Pss")


def start_phase(desktop):
    desktop.wait_for_window()
    desktop.press("space")
    desktop.wait_for_state("running")


def start_in_background(desktop):
    """With a phase that runs, and without a window."""
    process = desktop.run_in_background([PROGRAM, "--background"])
    wait_for("a program that answers", lambda: desktop.ask(PROGRAM, "status"))
    desktop.ask(PROGRAM, "start")
    desktop.wait_for_state("running")
    return process


def measure_memory():
    ours, without_window, theirs = [], [], []
    for _ in range(MEMORY_TURNS):
        # One at a time: what two programs share would count half.
        with new_desktop() as desktop:
            process = desktop.run_in_background([str(EMPTY_WINDOW)])
            desktop.wait_for_window(EMPTY_WINDOW.name)
            time.sleep(SETTLING)
            theirs.append(proportional_memory(process))
        with new_desktop() as desktop:
            process = desktop.start_program()
            start_phase(desktop)
            time.sleep(SETTLING)
            ours.append(proportional_memory(process))
        with new_desktop() as desktop:
            desktop.set_preferences(focus=1500, capsule=False)
            process = start_in_background(desktop)
            time.sleep(SETTLING)
            without_window.append(proportional_memory(process))
    print_ratio("memory (PSS), phase running / empty window", ours, theirs, 1.3, "MB")
    print_ratio("the same, started without the window", without_window, theirs, 1.3, "MB")


def picture_memory(process):
    """What of it is shared with whoever shows the windows, MB."""
    total, counts = 0, False
    for line in pathlib.Path(f"/proc/{process.pid}/smaps").read_text().splitlines():
        if re.match(r"[0-9a-f]+-[0-9a-f]+ ", line):
            counts = "/memfd:wayland-shm" in line or "/memfd:xorg" in line
        elif counts and line.startswith("Pss:"):
            total += int(line.split()[1])
    return total / 1024


@contextlib.contextmanager
def sway():
    desktop = SwayDesktop()
    try:
        desktop.start_bus()
        desktop.start_sway(xwayland="force")
        yield desktop
    finally:
        desktop.close()


def measure_native():
    """As a native Wayland program, beside the same through the session's X server."""
    if not PROGRAM or not (pathlib.Path(PROGRAM).parent / "brevlin-wayland.so").exists():
        return
    with sway() as desktop:
        ways = {}
        for platform in ("x11", "wayland"):
            ways[platform] = desktop.folder / platform
            ways[platform].write_text(f"#!/bin/sh\nBREVLIN_PLATFORM={platform} DISPLAY={desktop.inside} exec {PROGRAM}\n")
            ways[platform].chmod(0o755)
        desktop.environment["DISPLAY"] = desktop.outside
        for way in ways.values():
            first_paint(desktop, way)
        native, other = [], []
        for _ in range(STARTS):
            other.append(first_paint(desktop, ways["x11"]))
            native.append(first_paint(desktop, ways["wayland"]))
    print_ratio("start native on Wayland / through its X server", native, other, 1.0, "ms")
    memory, pictures = {}, {}
    for platform in 2 * ("x11", "wayland"):
        with sway() as desktop:
            desktop.set_preferences(focus=1500)
            desktop.environment |= {"BREVLIN_PLATFORM": platform, "DISPLAY": desktop.inside}
            process = desktop.start_program()
            wait_for("the window", desktop.windows)
            desktop.ask(PROGRAM, "start")
            time.sleep(SETTLING)
            memory.setdefault(platform, []).append(proportional_memory(process))
            pictures.setdefault(platform, []).append(picture_memory(process))
    print_ratio("memory native / through the X server", memory["wayland"], memory["x11"], 1.0, "MB")
    # A compositor that paints in software keeps the last ones, so that Qt needs more of them.
    less = {platform: [a - b for a, b in zip(memory[platform], pictures[platform])] for platform in memory}
    print_ratio("the same less the windows' pictures", less["wayland"], less["x11"], 1.0, "MB")


def processor_time(process):
    """Milliseconds of all threads, of those that have ended, too, counted in nanoseconds."""
    libc = ctypes.CDLL(None)
    clock = ctypes.c_int()
    if libc.clock_getcpuclockid(process.pid, ctypes.byref(clock)) != 0:
        raise AssertionError("no clock of the process")
    return time.clock_gettime_ns(clock.value) / 1e6


def wake_ups(process):
    """How often each thread has slept and was woken."""
    return {task.name: int(line.split()[1]) for task in pathlib.Path(f"/proc/{process.pid}/task").iterdir()
            for line in (task / "status").read_text().splitlines() if line.startswith("voluntary_ctxt_switches")}


def print_a_second(what, process, milliseconds, wakes):
    begin, time_before, wakes_before = time.monotonic(), processor_time(process), wake_ups(process)
    time.sleep(OBSERVED)
    seconds = time.monotonic() - begin
    spent = (processor_time(process) - time_before) / seconds
    woken = sum(count - wakes_before.get(thread, 0) for thread, count in wake_ups(process).items()) / seconds
    print_row(f"processor time a second, {what}", spent, milliseconds, "ms", f"{spent * DAY / 1000:.0f} s in 16 hours")
    print_row(f"wake-ups a second, {what}", woken, wakes, "", f"{woken * DAY:,.0f} in 16 hours")


def measure_processor_time():
    for capsule in (False, True):
        with new_desktop() as desktop:
            desktop.set_preferences(focus=1500, capsule=capsule)
            process = desktop.start_program()
            desktop.wait_for_window()
            if not capsule:
                time.sleep(SETTLING)
                print_a_second("idle", process, 0.1, 0.2)
            start_phase(desktop)
            desktop.move_pointer(640, 600)
            if not capsule:
                time.sleep(SETTLING)
                print_a_second("window open", process, 0.8, 6)
            desktop.press("ctrl+w")
            wait_for("a closed window", lambda: not desktop.windows())
            time.sleep(SETTLING)
            if capsule:
                print_a_second("capsule alone", process, 0.4, 3)
            else:
                print_a_second("window closed", process, 0.15, 3)


def measure_floors():
    """What Qt takes for the same by itself: for no goal, only to see what could still be gained."""
    with new_desktop() as desktop:
        for pictures in (0, 1, 2):
            process = desktop.run_in_background([str(EMPTY_CLOCK), str(pictures)])
            time.sleep(SETTLING)
            before = processor_time(process)
            time.sleep(OBSERVED)
            spent = (processor_time(process) - before) / OBSERVED
            desktop.stop(process)
            print(f"| {f'a second of a timer and {pictures} pictures':<46} | {f'{spent:.2f} ms':>10} | {'-':>10} | -      | Qt alone",
                  flush=True)


def measure_capsule():
    for compositor in (False, True):
        with new_desktop() as desktop:
            if compositor:
                desktop.run_in_background(["picom", "--backend", "xrender", "--config", "/dev/null"])
                wait_for("a compositor", lambda: desktop.ask("xdotool", "search", "--name", "picom"))
            median, longest, worst = map(float, desktop.ask(str(BUILT / "brevlin_capsule_frames")).split())
            source = "with a compositor" if compositor else "without a compositor"
            print_row("work in a frame of the capsule's, median", median, 1.2, "ms", source)
            print_row("the same, longest of a round", longest, 2.5, "ms", f"{source}; of all {worst:.1f} ms")


def measure_lateness():
    """From the instant of a phase's end to the moment at which the program has seen it, sent it to the screen and
    begun to write its record; and to that at which the record is in place, which is the disk's affair."""
    moved_to, created = 0x80, 0x100  # of inotify(7)
    libc = ctypes.CDLL(None, use_errno=True)
    with new_desktop() as desktop:
        desktop.set_preferences(focus=1, short_break=1, long_break=1, auto_start=True)
        desktop.start_program()
        desktop.wait_for_window()
        watch = libc.inotify_init()
        if watch < 0 or libc.inotify_add_watch(watch, os.fsencode(desktop.data), moved_to | created) < 0:
            raise OSError(ctypes.get_errno(), "the folder of the history cannot be watched")
        desktop.press("space")
        begun, lateness, kept = now(), [], []
        while len(kept) < PHASES:
            events, seen = os.read(watch, 4096), now()
            while events:
                _, mask, _, length = struct.unpack_from("iIII", events)
                events = events[struct.calcsize("iIII") + length:]
                if mask & created:
                    begun = seen
                else:
                    end = desktop.history()[0]["endedAt"]
                    lateness.append((begun - end) * 1000)
                    kept.append((seen - end) * 1000)
        os.close(watch)
    print_row(f"lateness of a phase's end, median of {PHASES}", statistics.median(lateness), 2, "ms", "")
    print_row("the same, worst", max(lateness), 5, "ms",
              f"record in place: median {statistics.median(kept):.1f} ms, worst {max(kept):.1f} ms")


def took(desktop, *command):
    """How long the command runs, in milliseconds."""
    begin = time.monotonic()
    subprocess.run(command, env=desktop.environment, check=True, stdout=subprocess.DEVNULL, timeout=60)
    return (time.monotonic() - begin) * 1000


def measure_verbs():
    with new_desktop() as desktop:
        background = [[], []]
        for _ in range(STARTS):
            background[1].append(first_paint(desktop, EMPTY_WINDOW))
            background[0].append(took(desktop, PROGRAM, "toggle"))
            took(desktop, PROGRAM, "quit")
            wait_for("the end", lambda: subprocess.run([PROGRAM, "status"], env=desktop.environment, check=False,
                                                       capture_output=True).returncode == 3)
        print_ratio("start without the window, till a verb is done", *background, 2, "ms")
        took(desktop, PROGRAM, "toggle")
        ours, theirs = [], []
        for _ in range(VERBS):
            theirs.append(took(desktop, EMPTY_CORE))
            ours.append(took(desktop, PROGRAM, "status", "--json"))
        print_ratio("round trip of a verb / empty Qt Core program", ours, theirs, 3, "ms")
        took(desktop, PROGRAM, "quit")


measure_start()
measure_verbs()
measure_instructions()
measure_start_on_other_buses()
measure_start_with_a_history()
measure_figures()
measure_memory()
measure_native()
measure_processor_time()
measure_floors()
measure_capsule()
measure_lateness()
