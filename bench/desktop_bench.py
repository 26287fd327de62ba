"""What the running program costs, beside an empty Qt Widgets window where that is the measure. Prints rows of the table
of bench/run. The argument is the folder of the built benchmarks."""

import contextlib
import ctypes
import json
import os
import pathlib
import statistics
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path[:0] = [str(ROOT / "tests" / "desktop"), str(ROOT / "tools")]

from harness import PROGRAM, Desktop, now, wait_for  # noqa: E402
from make_history import make_history  # noqa: E402

BUILT = pathlib.Path(sys.argv[1])
EMPTY_WINDOW = BUILT / "brevlin_empty_window"
STARTS = 21
MEMORY_TURNS = 5
SETTLING = 3.0  # seconds until what the start left to do is done
OBSERVED = 20.0  # seconds
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
    return float(result.stdout)


def measure_start():
    with new_desktop() as desktop:
        for program in (PROGRAM, EMPTY_WINDOW):  # reads both from the disk
            first_paint(desktop, program)
        ours, theirs = [], []
        for _ in range(STARTS):
            theirs.append(first_paint(desktop, EMPTY_WINDOW))
            ours.append(first_paint(desktop, PROGRAM))
    print_ratio("start to first painted window / empty window", ours, theirs, 1.5, "ms")


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


def measure_memory():
    ours, theirs = [], []
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
    print_ratio("memory (PSS), phase running / empty window", ours, theirs, 1.3, "MB")


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
    print_row(f"processor time a second, {what}", (processor_time(process) - time_before) / seconds, milliseconds, "ms", "")
    woken = sum(count - wakes_before.get(thread, 0) for thread, count in wake_ups(process).items())
    print_row(f"wake-ups a second, {what}", woken / seconds, wakes, "", "")


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


def measure_capsule():
    for compositor in (False, True):
        with new_desktop() as desktop:
            if compositor:
                desktop.run_in_background(["picom", "--backend", "xrender", "--config", "/dev/null"])
                wait_for("a compositor", lambda: desktop.ask("xdotool", "search", "--name", "picom"))
            longest = float(desktop.ask(str(BUILT / "brevlin_capsule_frames")))
            print_row("longest frame of the capsule", longest, 16, "ms",
                      "with a compositor" if compositor else "without a compositor")


def measure_lateness():
    """From the instant of a phase's end to the moment at which its record is in place."""
    moved_to = 0x80  # IN_MOVED_TO of inotify(7)
    libc = ctypes.CDLL(None, use_errno=True)
    with new_desktop() as desktop:
        desktop.set_preferences(focus=1, short_break=1, long_break=1, auto_start=True)
        desktop.start_program()
        desktop.wait_for_window()
        watch = libc.inotify_init()
        if watch < 0 or libc.inotify_add_watch(watch, os.fsencode(desktop.data), moved_to) < 0:
            raise OSError(ctypes.get_errno(), "the folder of the history cannot be watched")
        desktop.press("space")
        lateness = []
        while len(lateness) < PHASES:
            os.read(watch, 4096)
            seen = now()
            lateness.append((seen - desktop.history()[0]["endedAt"]) * 1000)
        os.close(watch)
    print_row(f"lateness of a phase's end, median of {PHASES}", statistics.median(lateness), 2, "ms",
              f"worst {max(lateness):.1f} ms")


measure_start()
measure_start_with_a_history()
measure_memory()
measure_processor_time()
measure_capsule()
measure_lateness()
